#include "examples/host/HostWindow.h"

#include "examples/host/Answer.h"
#include "examples/host/Base64Url.h"

#include <algorithm>
#include <exception>
#include <sstream>
#include <utility>

namespace
{

// The host's own message, outside of the range that callers use.
constexpr UINT kRequestTaken = WM_APP + 1;

constexpr int kAnswerButton = 1;
constexpr UINT_PTR kAnswerTimer = 1;

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

// Texts from outside are shown, not obeyed: control characters must not break lines of the
// protocol.
std::wstring Printable(std::wstring text)
{
    std::replace_if(text.begin(), text.end(), [](wchar_t unit) { return unit < L' '; }, L'\u00B7');
    return text;
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
    if (message == WM_NCCREATE)
    {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        auto* self = static_cast<HostWindow*>(creation->lpCreateParams);
        self->m_window = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    auto* self = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr)
    {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    try
    {
        return self->Handle(message, wParam, lParam);
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
    case kRequestTaken:
        OnRequestTaken();
        return 0;
    case WM_TIMER:
        OnAnswerDue();
        return 0;
    case WM_COMMAND:
        if (LOWORD(wParam) == kAnswerButton)
        {
            OnAnswerDue();
        }
        return 0;
    case WM_CREATE:
        CreateControls();
        return 0;
    case WM_SETFOCUS:
        SetFocus(m_button);
        return 0;
    case WM_SIZE:
        LayOut(LOWORD(lParam), HIWORD(lParam));
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
    m_taken.push_back({message, wParam, lParam, 0, {}});
    PostMessageW(m_window, kRequestTaken, 0, 0);
    return 0;
}

LRESULT HostWindow::OnCopyData(WPARAM dialog, const COPYDATASTRUCT& data)
{
    const auto* first = static_cast<const std::byte*>(data.lpData);
    m_taken.push_back(
        {WM_COPYDATA, dialog, 0, data.dwData, std::vector(first, first + data.cbData)});
    PostMessageW(m_window, kRequestTaken, 0, 0);
    return m_options.refusesCopyData ? FALSE : TRUE;
}

void HostWindow::OnRequestTaken()
{
    Request request = std::move(m_taken.front());
    m_taken.pop_front();
    Show(request);
    if (request.message == WM_COPYDATA && m_options.refusesCopyData)
    {
        m_log.Write(L"  abgelehnt");
        return; // nobody waits
    }
    m_unanswered.push_back(std::move(request));
    PrepareAnswer();
}

void HostWindow::OnAnswerDue()
{
    KillTimer(m_window, kAnswerTimer);
    if (m_unanswered.empty())
    {
        return;
    }
    Answer(m_unanswered.front());
    m_unanswered.pop_front();
    PrepareAnswer();
}

// Arranges for the oldest request's answer.
void HostWindow::PrepareAnswer()
{
    if (!m_options.answersByButton && !m_unanswered.empty())
    {
        SetTimer(m_window, kAnswerTimer, m_options.delayMilliseconds, nullptr);
    }
}

void HostWindow::Answer(const Request& request)
{
    const HWND dialog =
        request.message == WM_COPYDATA ? reinterpret_cast<HWND>(request.wParam) : FindWaitDialog();
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
        m_log.Write(L"  keine Antwort: der Dialog ist nicht mehr da");
    }
}

void HostWindow::Show(const Request& request)
{
    std::wostringstream line;
    if (request.message == WM_COPYDATA)
    {
        line << L"WM_COPYDATA: dwData = " << static_cast<LONG_PTR>(request.data) << L", cbData = "
             << request.bytes.size();
        m_log.Write(line.str());
        ShowText(request.bytes);
        return;
    }
    line << L"WM_USER + " << request.message - WM_USER << L": wParam = "
         << static_cast<LONG_PTR>(request.wParam) << L", lParam = " << request.lParam;
    m_log.Write(line.str());
}

void HostWindow::ShowText(std::span<const std::byte> bytes)
{
    const auto text = DecodeText(bytes, m_options.encoding);
    const std::wstring name = NameOf(m_options.encoding);
    m_log.Write(text ? L"  Text (" + name + L"): »" + Printable(*text) + L"«"
                     : L"  kein Text in " + name);
    if (text && m_options.decodesBase64Url)
    {
        const auto decoded = DecodeBase64Url(*text);
        m_log.Write(decoded ? L"  base64url: »" + Printable(*decoded) + L"«" : L"  kein base64url");
    }
    m_log.Write(L"  Bytes:" + InHex(bytes));
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

void HostWindow::LayOut(int width, int height)
{
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
