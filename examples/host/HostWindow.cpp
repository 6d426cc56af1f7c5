#include "examples/host/HostWindow.h"

#include "examples/host/Answer.h"
#include "examples/host/Base64Url.h"

#include <algorithm>
#include <exception>
#include <sstream>
#include <utility>

namespace
{

// The host's own message, outside of the range that callers use. That keeps it apart from theirs,
// and does not keep it to ourselves: anybody can post it, and the timer's and the button's messages
// as well. So it only wakes; what there is to do is looked up in the queues.
constexpr UINT kWake = WM_APP + 1;

constexpr int kAnswerButton = 1;
constexpr UINT_PTR kWorkTimer = 1;

// In bytes; a longer text is refused before it is copied. No command line carries more, in UTF-8.
// A host that knows what its texts look like takes less.
constexpr DWORD kLongestText = 3 * 32'766;

// In units of 1/96 inch.
constexpr int kWindowWidth = 560;
constexpr int kWindowHeight = 340;
constexpr int kMargin = 12;
constexpr int kCaptionHeight = 22;
constexpr int kButtonWidth = 110;
constexpr int kButtonHeight = 28;

constexpr std::size_t kBytesShown = 128;

int Scaled(int pixelsAt96Dpi)
{
    return MulDiv(pixelsAt96Dpi, static_cast<int>(GetDpiForSystem()), USER_DEFAULT_SCREEN_DPI);
}

std::wstring InHex(std::span<const std::byte> bytes)
{
    constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
    std::wstring text;
    for (const std::byte byte : bytes.first(std::min(bytes.size(), kBytesShown)))
    {
        const auto value = std::to_integer<unsigned>(byte);
        text += L' ';
        text += kDigits[value / 16];
        text += kDigits[value % 16];
    }
    return bytes.size() > kBytesShown ? text + L" …" : text;
}

} // namespace

HostWindow::HostWindow(const HostOptions& options) : m_options(options), m_log(options.logFile) {}

bool HostWindow::Create(HINSTANCE instance, int showCommand)
{
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = WindowProc;
    windowClass.hInstance = instance;
    windowClass.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    windowClass.lpszClassName = kHostWindowClass;
    if (RegisterClassExW(&windowClass) == 0 ||
        CreateWindowExW(0, kHostWindowClass, m_options.title.c_str(), WS_OVERLAPPEDWINDOW,
                        CW_USEDEFAULT, CW_USEDEFAULT, Scaled(kWindowWidth), Scaled(kWindowHeight),
                        nullptr, nullptr, instance, this) == nullptr)
    {
        return false;
    }

    CreateControls();
    LayOut();

    // A host that runs with higher rights than its callers has to let their messages in, each by
    // its number:
    //     ChangeWindowMessageFilterEx(m_window, WM_COPYDATA, MSGFLT_ALLOW, nullptr);
    // This one runs with the rights of its user and needs nothing.

    ShowWindow(m_window, showCommand);
    m_log.Write(L"Bereit: Klasse " + std::wstring(kHostWindowClass) + L", Fenster »" +
                m_options.title + L"«");
    return true;
}

LRESULT CALLBACK HostWindow::WindowProc(HWND window, UINT message, WPARAM wParam,
                                        LPARAM lParam) noexcept
{
    auto* self = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr && message == WM_NCCREATE)
    {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        self = static_cast<HostWindow*>(creation->lpCreateParams);
        self->m_window = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    if (self == nullptr)
    {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    try
    {
        const LRESULT result = self->Handle(message, wParam, lParam);
        if (HIWORD(GetQueueStatus(QS_SENDMESSAGE | QS_POSTMESSAGE)) ==
            0) // else after the next ones
        {
            self->m_log.Show();
        }
        return result;
    }
    catch (const std::exception&)
    {
        return 0; // out of memory: for WM_COPYDATA this says that the request was not taken
    }
}

LRESULT HostWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message >= WM_USER && message < WM_APP)
    {
        return OnNotification(message, wParam, lParam);
    }
    switch (message)
    {
    case WM_COPYDATA:
        return OnCopyData(wParam, *reinterpret_cast<const COPYDATASTRUCT*>(lParam));
    case kWake:
    case WM_TIMER:
        Work();
        return 0;
    case WM_COMMAND:
        // Anybody can post this, too: a pressed button is no consent to what cannot be undone.
        if (m_options.answersByButton && LOWORD(wParam) == kAnswerButton)
        {
            AnswerOldest();
        }
        return 0;
    case WM_SETFOCUS:
        SetFocus(m_button);
        return 0;
    case WM_SIZE:
        LayOut();
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcW(m_window, message, wParam, lParam);
    }
}

LRESULT HostWindow::OnNotification(UINT message, WPARAM wParam, LPARAM lParam)
{
    m_taken.push_back({.message = message, .wParam = wParam, .lParam = lParam, .due = AnswerDue()});
    Wake();
    return 0;
}

LRESULT HostWindow::OnCopyData(WPARAM dialog, const COPYDATASTRUCT& data)
{
    const DWORD readable = data.lpData != nullptr ? kLongestText : 0;
    const bool fits = data.cbData <= readable;
    const auto* first = static_cast<const std::byte*>(data.lpData);
    m_taken.push_back({.message = WM_COPYDATA,
                       .wParam = dialog,
                       .data = data.dwData,
                       .size = data.cbData,
                       .bytes = std::vector(first, first + (fits ? data.cbData : 0)),
                       .isRefused = !fits || m_options.refusesCopyData,
                       .due = AnswerDue()});
    Wake();
    return m_taken.back().isRefused ? FALSE : TRUE;
}

// Has Work() called when the sender is no longer blocked. A full queue refuses the message; the
// timer needs no place there.
void HostWindow::Wake()
{
    if (!PostMessageW(m_window, kWake, 0, 0))
    {
        SetTimer(m_window, kWorkTimer, USER_TIMER_MINIMUM, nullptr);
    }
}

// Does what there is to do, whoever has woken us and how often.
void HostWindow::Work()
{
    while (!m_taken.empty())
    {
        Request request = std::move(m_taken.front());
        m_taken.pop_front();
        Show(request);
        if (!request.isRefused) // else nobody waits
        {
            m_unanswered.push_back(std::move(request));
        }
    }
    KillTimer(m_window, kWorkTimer);
    if (m_options.answersByButton)
    {
        return;
    }
    ULONGLONG now = GetTickCount64();
    while (!m_unanswered.empty() && m_unanswered.front().due <= now)
    {
        AnswerOldest();
    }
    if (!m_unanswered.empty())
    {
        const ULONGLONG wait = m_unanswered.front().due - now;
        SetTimer(m_window, kWorkTimer, static_cast<UINT>(wait), nullptr);
    }
}

ULONGLONG HostWindow::AnswerDue() const
{
    return GetTickCount64() + m_options.delayMilliseconds;
}

void HostWindow::AnswerOldest()
{
    if (m_unanswered.empty())
    {
        return;
    }
    const Request request = std::move(m_unanswered.front());
    m_unanswered.pop_front();
    const HWND dialog = DialogOf(request);
    if (dialog == nullptr)
    {
        m_log.Write(L"  keine Antwort: kein Dialog wartet");
    }
    else if (PostAnswer(dialog, m_options.answer))
    {
        m_log.Write(L"  Antwort: WM_USER + " + std::to_wstring(m_options.answer));
    }
    else
    {
        m_log.Write(L"  keine Antwort: dort ist kein Dialog, oder keiner mehr");
    }
}

// Null when nobody waits. A text names its dialog; for a notification it is searched, and that of a
// text that has yet to be answered is not the one.
HWND HostWindow::DialogOf(const Request& request) const
{
    if (request.message == WM_COPYDATA)
    {
        return reinterpret_cast<HWND>(request.wParam);
    }
    HWND dialog = FindWaitDialog(nullptr);
    while (dialog != nullptr && IsOfAText(dialog))
    {
        dialog = FindWaitDialog(dialog);
    }
    return dialog;
}

bool HostWindow::IsOfAText(HWND dialog) const
{
    const auto names = [dialog](const Request& request) {
        return request.message == WM_COPYDATA && reinterpret_cast<HWND>(request.wParam) == dialog;
    };
    return std::ranges::any_of(m_taken, names) || std::ranges::any_of(m_unanswered, names);
}

void HostWindow::Show(const Request& request)
{
    std::wostringstream line;
    if (request.message == WM_COPYDATA)
    {
        line << L"WM_COPYDATA: dwData = " << static_cast<LONG_PTR>(request.data) << L", cbData = "
             << request.size;
        m_log.Write(line.str());
        ShowText(request);
        return;
    }
    line << L"WM_USER + " << request.message - WM_USER << L": wParam = "
         << static_cast<LONG_PTR>(request.wParam) << L", lParam = " << request.lParam;
    m_log.Write(line.str());
}

void HostWindow::ShowText(const Request& request)
{
    if (request.bytes.size() == request.size)
    {
        const auto text = DecodeText(request.bytes, m_options.encoding);
        const std::wstring name = NameOf(m_options.encoding);
        m_log.Write(text ? L"  Text (" + name + L"): »" + *text + L"«" : L"  kein Text in " + name);
        if (text && m_options.decodesBase64Url)
        {
            const auto decoded = DecodeBase64Url(*text);
            m_log.Write(decoded ? L"  base64url: »" + *decoded + L"«" : L"  kein base64url");
        }
        m_log.Write(L"  Bytes:" + InHex(request.bytes));
    }
    if (request.isRefused)
    {
        m_log.Write(L"  abgelehnt");
    }
}

void HostWindow::CreateControls()
{
    const auto create = [this](const wchar_t* controlClass, const wchar_t* text, DWORD style,
                               DWORD extendedStyle, int id) {
        return CreateWindowExW(extendedStyle, controlClass, text, WS_CHILD | WS_VISIBLE | style, 0,
                               0, 0, 0, m_window, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                               nullptr, nullptr);
    };
    m_caption = create(L"STATIC", L"Empfangene Nachrichten:", 0, 0, 0);
    m_edit = create(L"EDIT", L"", WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL,
                    WS_EX_CLIENTEDGE, 0);
    if (m_options.answersByButton)
    {
        m_button = create(L"BUTTON", L"Antworten", 0, 0, kAnswerButton);
    }

    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    // Lives as long as the process, like the window.
    const HFONT font = CreateFontIndirectW(&metrics.lfMessageFont);
    for (const HWND control : {m_caption, m_edit, m_button})
    {
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    }
    SendMessageW(m_edit, EM_SETLIMITTEXT, 0, 0);
    m_log.ShowIn(m_edit);
}

void HostWindow::LayOut()
{
    RECT client = {};
    GetClientRect(m_window, &client);
    const int width = client.right;
    const int height = client.bottom;
    const int margin = Scaled(kMargin);
    const int captionHeight = Scaled(kCaptionHeight);
    const int buttonWidth = Scaled(kButtonWidth);
    const int buttonHeight = Scaled(kButtonHeight);
    const int editTop = margin + captionHeight;
    const int buttonTop = height - margin - buttonHeight;
    const int editBottom = m_button == nullptr ? height - margin : buttonTop - margin;
    MoveWindow(m_caption, margin, margin, width - 2 * margin, captionHeight, TRUE);
    MoveWindow(m_edit, margin, editTop, width - 2 * margin, editBottom - editTop, TRUE);
    MoveWindow(m_button, width - margin - buttonWidth, buttonTop, buttonWidth, buttonHeight, TRUE);
}
