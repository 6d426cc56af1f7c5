// The fakes, and the import pointers that lead to them. The product calls the platform through
// pointers that the linker normally takes from the import libraries; an object that defines them
// comes first. The product is linked as it is shipped and knows nothing of it.
//
// Names and parameters are the linker's and the platform's.
// NOLINTBEGIN(bugprone-reserved-identifier,bugprone-macro-parentheses,readability-identifier-naming,readability-non-const-parameter)
#include "tests/scripted/ScriptedPlatform.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <sstream>

namespace
{

ScriptedPlatform& Platform()
{
    return *ScriptedPlatform::Current();
}

const HMENU kSystemMenu = reinterpret_cast<HMENU>(0x3E0);
const HDC kPaintContext = reinterpret_cast<HDC>(0xDC0);

std::string Text(const std::string& text)
{
    return text;
}
std::string Text(HWND window)
{
    return Platform().NameOf(window);
}
std::string Text(std::int64_t number)
{
    return std::to_string(number);
}

std::string Hexadecimal(UINT number)
{
    std::ostringstream text;
    text << "0x" << std::hex << number;
    return text.str();
}

std::string TrueOrFalse(BOOL value)
{
    return value ? "TRUE" : "FALSE";
}

/// Records "name(argument, argument, ...)".
template <typename... Arguments>
void Record(const char* name, const Arguments&... arguments)
{
    std::string list;
    ((list += (list.empty() ? "" : ", ") + Text(arguments)), ...);
    Platform().Record(std::string(name) + "(" + list + ")");
}

// --- finding ---

HWND WINAPI FakeFindWindowW(LPCWSTR windowClass, LPCWSTR text)
{
    Record("FindWindowW", Quoted(windowClass), Quoted(text));
    return Platform().found;
}

BOOL WINAPI FakeEnumWindows(WNDENUMPROC callback, LPARAM context)
{
    Record("EnumWindows");
    const auto windows = Platform().ZOrder();
    for (const HWND window : windows)
    {
        if (!callback(window, context))
        {
            return FALSE;
        }
    }
    return TRUE;
}

/// Writes as much as fits, as the platform does. The record says when the buffer came with
/// something in it.
int Query(const char* name, HWND window, const std::wstring& text, wchar_t* buffer, int capacity)
{
    const bool zeroed = static_cast<size_t>(std::count(buffer, buffer + capacity, L'\0')) ==
                        static_cast<size_t>(capacity);
    Record(name, window, std::string(zeroed ? "zeroed buffer" : "USED BUFFER"),
           std::int64_t{capacity});
    if (Platform().Window(window).dying)
    {
        return 0;
    }
    const size_t length = std::min(text.size(), static_cast<size_t>(capacity) - 1);
    buffer[text.copy(buffer, length)] = L'\0';
    return static_cast<int>(length);
}

int WINAPI FakeGetWindowTextW(HWND window, LPWSTR buffer, int capacity)
{
    return Query("GetWindowTextW", window, Platform().Window(window).text, buffer, capacity);
}

UINT WINAPI FakeRealGetWindowClassW(HWND window, LPWSTR buffer, UINT capacity)
{
    return static_cast<UINT>(Query("RealGetWindowClassW", window,
                                   Platform().Window(window).windowClass, buffer,
                                   static_cast<int>(capacity)));
}

// --- activating ---

LONG WINAPI FakeGetWindowLongW(HWND window, int index)
{
    Record("GetWindowLongW", window, std::string(index == GWL_STYLE ? "GWL_STYLE" : "?"));
    return Platform().Window(window).style;
}

HWND WINAPI FakeGetForegroundWindow()
{
    Record("GetForegroundWindow");
    return Platform().foreground;
}

DWORD WINAPI FakeGetWindowThreadProcessId(HWND window, LPDWORD process)
{
    Record("GetWindowThreadProcessId", window, std::string(process == nullptr ? "NULL" : "?"));
    return Platform().Window(window).thread;
}

BOOL WINAPI FakeAttachThreadInput(DWORD thread, DWORD toThread, BOOL attach)
{
    Record("AttachThreadInput", std::int64_t{thread}, std::int64_t{toThread}, TrueOrFalse(attach));
    return !attach || Platform().attachRefusals-- <= 0;
}

void WINAPI FakeSleep(DWORD milliseconds)
{
    Record("Sleep", std::int64_t{milliseconds});
}

BOOL WINAPI FakeSetForegroundWindow(HWND window)
{
    Record("SetForegroundWindow", window);
    return FALSE;
}

BOOL WINAPI FakeIsIconic(HWND window)
{
    Record("IsIconic", window);
    return Platform().Window(window).minimised;
}

std::string NameOfShow(int command)
{
    switch (command)
    {
    case SW_SHOWNORMAL:
        return "SW_SHOWNORMAL";
    case SW_SHOWMINIMIZED:
        return "SW_SHOWMINIMIZED";
    case SW_SHOW:
        return "SW_SHOW";
    case SW_RESTORE:
        return "SW_RESTORE";
    default:
        return std::to_string(command);
    }
}

BOOL WINAPI FakeShowWindow(HWND window, int command)
{
    Record("ShowWindow", window, NameOfShow(command));
    return FALSE;
}

// --- delivering ---

BOOL WINAPI FakeSendNotifyMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Record("SendNotifyMessageW", window, Hexadecimal(message), static_cast<std::int64_t>(wParam),
           std::int64_t{lParam});
    return Platform().notificationResult;
}

std::string Bytes(const COPYDATASTRUCT& data)
{
    constexpr size_t kMost = 16;
    std::ostringstream text;
    text << data.cbData << " bytes:" << std::hex;
    const auto* bytes = static_cast<const unsigned char*>(data.lpData);
    for (size_t i = 0; i < std::min<size_t>(data.cbData, kMost); ++i)
    {
        text << ' ' << static_cast<unsigned>(bytes[i]);
    }
    return text.str() + (data.cbData > kMost ? " ..." : "");
}

LRESULT DeliverToHost(HWND window, WPARAM wParam, LPARAM lParam)
{
    const auto& data = *reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    Record("SendMessageW", window, std::string("WM_COPYDATA"), reinterpret_cast<HWND>(wParam),
           "dwData " + std::to_string(static_cast<std::int64_t>(data.dwData)), Bytes(data));
    Platform().duringCopyData(data);
    return Platform().copyDataResult;
}

LRESULT WINAPI FakeSendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    constexpr UINT kIconEraseBackground = 0x27;
    switch (message)
    {
    case WM_COPYDATA:
        return DeliverToHost(window, wParam, lParam);
    case WM_SETICON:
        Record("SendMessageW", window, std::string("WM_SETICON"),
               std::string(wParam == ICON_BIG ? "ICON_BIG" : "ICON_SMALL"),
               std::string(lParam == reinterpret_cast<LPARAM>(Platform().Icon()) ? "icon" : "?"));
        break;
    case kIconEraseBackground:
        Record("SendMessageW", window, std::string("WM_ICONERASEBKGND"),
               std::string(wParam == reinterpret_cast<WPARAM>(kPaintContext) ? "dc" : "?"),
               std::int64_t{lParam});
        break;
    default:
        Record("SendMessageW", window, Hexadecimal(message));
    }
    return Platform().Send(window, message, wParam, lParam);
}

int WINAPI FakeMessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type)
{
    Record("MessageBoxW", owner, std::string("text"), Quoted(caption), Hexadecimal(type));
    Platform().messageBoxText = text;
    return IDOK;
}

// --- dialogs and their messages ---

HWND WINAPI FakeCreateDialogParamW(HINSTANCE, LPCWSTR name, HWND owner, DLGPROC procedure,
                                   LPARAM parameter)
{
    const auto idTemplate = static_cast<UINT>(reinterpret_cast<ULONG_PTR>(name));
    Record("CreateDialogParamW", std::int64_t{idTemplate}, owner);
    if (!Platform().dialogsCanBeMade)
    {
        return nullptr;
    }
    const HWND dialog = Platform().MakeDialog(idTemplate);
    Platform().answerToInitDialog = procedure(dialog, WM_INITDIALOG, 0, parameter);
    return dialog;
}

BOOL WINAPI FakeEndDialog(HWND dialog, INT_PTR result)
{
    Record("EndDialog", dialog, std::int64_t{result});
    return TRUE;
}

BOOL WINAPI FakeDestroyWindow(HWND window)
{
    Record("DestroyWindow", window);
    Platform().DestroyWindow(window);
    return TRUE;
}

BOOL WINAPI FakeEnableWindow(HWND window, BOOL enable)
{
    Record("EnableWindow", window, TrueOrFalse(enable));
    return FALSE;
}

// A window that waits for ever would only be noticed by the watchdog.
BOOL WINAPI FakeGetMessageW(LPMSG message, HWND, UINT, UINT)
{
    Record("GetMessageW");
    const auto next = Platform().NextMessage();
    EXPECT_TRUE(next) << "Waits for a message when none will come";
    *message = next.value_or(MSG{nullptr, WM_QUIT, 0, 0, 0, {}});
    return message->message != WM_QUIT;
}

LRESULT WINAPI FakeDispatchMessageW(const MSG* message)
{
    return Platform().IsWindow(message->hwnd)
               ? Platform().Send(message->hwnd, message->message, message->wParam, message->lParam)
               : 0;
}

BOOL WINAPI FakeTranslateMessage(const MSG*)
{
    return FALSE;
}

HWND WINAPI FakeGetAncestor(HWND, UINT)
{
    return nullptr;
}

BOOL WINAPI FakePostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Platform().Post(window, message, wParam, lParam);
    return TRUE;
}

void WINAPI FakePostQuitMessage(int)
{
    Platform().Quit();
}

// The only value that anybody sets here is the window's procedure.
LONG_PTR WINAPI FakeSetWindowLongPtrW(HWND window, int, LONG_PTR value)
{
    return reinterpret_cast<LONG_PTR>(
        std::exchange(Platform().Window(window).procedure, reinterpret_cast<WNDPROC>(value)));
}

LRESULT WINAPI FakeCallWindowProcW(WNDPROC procedure, HWND window, UINT message, WPARAM wParam,
                                   LPARAM lParam)
{
    return procedure(window, message, wParam, lParam);
}

// --- menu, icon, painting ---

HMENU WINAPI FakeGetSystemMenu(HWND window, BOOL revert)
{
    Record("GetSystemMenu", window, TrueOrFalse(revert));
    return Platform().hasSystemMenu ? kSystemMenu : nullptr;
}

BOOL WINAPI FakeAppendMenuW(HMENU menu, UINT flags, UINT_PTR id, LPCWSTR text)
{
    Record("AppendMenuW", std::string(menu == kSystemMenu ? "system menu" : "?"),
           Hexadecimal(flags), static_cast<std::int64_t>(id), Quoted(text));
    return TRUE;
}

// With no room for the text, the platform gives a pointer to it.
int WINAPI FakeLoadStringW(HINSTANCE, UINT id, LPWSTR buffer, int capacity)
{
    Record("LoadStringW", std::int64_t{id}, std::int64_t{capacity});
    const std::wstring& text = Platform().aboutText;
    *reinterpret_cast<LPCWSTR*>(buffer) = text.c_str();
    return static_cast<int>(text.size());
}

HICON WINAPI FakeLoadIconW(HINSTANCE, LPCWSTR name)
{
    Record("LoadIconW", static_cast<std::int64_t>(reinterpret_cast<ULONG_PTR>(name)));
    return Platform().Icon();
}

int WINAPI FakeGetSystemMetrics(int index)
{
    return index == SM_CXICON   ? Platform().iconSize.cx
           : index == SM_CYICON ? Platform().iconSize.cy
                                : 0;
}

// Not at the origin: only the size may count.
BOOL WINAPI FakeGetClientRect(HWND, LPRECT rect)
{
    const SIZE size = Platform().clientSize;
    *rect = {5, 7, 5 + size.cx, 7 + size.cy};
    return TRUE;
}

HDC WINAPI FakeBeginPaint(HWND window, LPPAINTSTRUCT paint)
{
    Record("BeginPaint", window);
    paint->hdc = kPaintContext;
    return paint->hdc;
}

BOOL WINAPI FakeEndPaint(HWND window, const PAINTSTRUCT*)
{
    Record("EndPaint", window);
    return TRUE;
}

BOOL WINAPI FakeDrawIcon(HDC context, int x, int y, HICON icon)
{
    Record("DrawIcon", std::string(context == kPaintContext ? "dc" : "?"), std::int64_t{x},
           std::int64_t{y}, std::string(icon == Platform().Icon() ? "icon" : "?"));
    return TRUE;
}

// --- process and text ---

LPWSTR WINAPI FakeGetCommandLineW()
{
    return Platform().commandLine.data();
}

// Without a script, for the test program's own purposes, the real one.
int WINAPI FakeWideCharToMultiByte(UINT codePage, DWORD flags, LPCWCH text, int units, LPSTR store,
                                   int capacity, LPCCH defaultCharacter, LPBOOL defaultUsed)
{
    static const auto real =
        reinterpret_cast<decltype(&::WideCharToMultiByte)>(reinterpret_cast<void*>(
            ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "WideCharToMultiByte")));
    if (ScriptedPlatform::Current() != nullptr)
    {
        Record("WideCharToMultiByte", std::int64_t{codePage}, std::int64_t{flags},
               std::to_string(units) + " units", Platform().NameOf(static_cast<const void*>(store)),
               std::int64_t{capacity});
        EXPECT_TRUE(defaultCharacter == nullptr && defaultUsed == nullptr);
        auto& conversions = Platform().conversions;
        if (!conversions.empty())
        {
            const ScriptedConversion conversion = conversions.front();
            conversions.pop_front();
            ::SetLastError(conversion.error);
            return conversion.result;
        }
    }
    return real(codePage, flags, text, units, store, capacity, defaultCharacter, defaultUsed);
}

bool HasMemory()
{
    return Platform().memoryFailsAfter-- > 0;
}

void* RecordedBlock(const std::string& call, void* block)
{
    if (block != nullptr)
    {
        Platform().AddBlock(block);
    }
    Platform().Record(call + " = " + (block == nullptr ? "NULL" : Platform().NameOf(block)));
    return block;
}

} // namespace

extern "C" {
void* __real_calloc(size_t count, size_t size);
void __real_free(void* block);
size_t __real_wcslen(const wchar_t* text);

// The product asks for bytes. The run-time libraries, which come through here as well, ask for
// objects.
void* __wrap_calloc(size_t count, size_t size)
{
    if (ScriptedPlatform::Current() == nullptr || size != 1)
    {
        return __real_calloc(count, size);
    }
    return RecordedBlock("calloc(" + std::to_string(count) + ", 1)",
                         HasMemory() ? __real_calloc(count, size) : nullptr);
}

void __wrap_free(void* block)
{
    auto* platform = ScriptedPlatform::Current();
    if (platform != nullptr && block != nullptr)
    {
        // Named before it is forgotten; blocks of others are nobody's business.
        const std::string name = platform->NameOf(static_cast<const void*>(block));
        if (platform->RemoveBlock(block))
        {
            platform->Record("free(" + name + ")");
        }
    }
    __real_free(block);
}

size_t __wrap_wcslen(const wchar_t* text)
{
    const auto* platform = ScriptedPlatform::Current();
    return platform != nullptr && platform->textLength ? *platform->textLength
                                                       : __real_wcslen(text);
}
}

namespace
{

void* FakeRecalloc(void* block, size_t count, size_t size)
{
    const std::string call = "_recalloc(" + Platform().NameOf(static_cast<const void*>(block)) +
                             ", " + std::to_string(count) + ", " + std::to_string(size) + ")";
    if (!HasMemory())
    {
        return RecordedBlock(call, nullptr);
    }
    Platform().RemoveBlock(block);
    return RecordedBlock(call, std::realloc(block, count * size));
}

} // namespace

#define REPLACE_IMPORT(function) decltype(&::function) __imp_##function = &Fake##function

extern "C" {
REPLACE_IMPORT(AppendMenuW);
REPLACE_IMPORT(AttachThreadInput);
REPLACE_IMPORT(BeginPaint);
REPLACE_IMPORT(CallWindowProcW);
REPLACE_IMPORT(CreateDialogParamW);
REPLACE_IMPORT(DestroyWindow);
REPLACE_IMPORT(DispatchMessageW);
REPLACE_IMPORT(DrawIcon);
REPLACE_IMPORT(EnableWindow);
REPLACE_IMPORT(EndDialog);
REPLACE_IMPORT(EndPaint);
REPLACE_IMPORT(EnumWindows);
REPLACE_IMPORT(FindWindowW);
REPLACE_IMPORT(GetAncestor);
REPLACE_IMPORT(GetClientRect);
REPLACE_IMPORT(GetCommandLineW);
REPLACE_IMPORT(GetForegroundWindow);
REPLACE_IMPORT(GetMessageW);
REPLACE_IMPORT(GetSystemMenu);
REPLACE_IMPORT(GetSystemMetrics);
REPLACE_IMPORT(GetWindowLongW);
REPLACE_IMPORT(GetWindowTextW);
REPLACE_IMPORT(GetWindowThreadProcessId);
REPLACE_IMPORT(IsIconic);
REPLACE_IMPORT(LoadIconW);
REPLACE_IMPORT(LoadStringW);
REPLACE_IMPORT(MessageBoxW);
REPLACE_IMPORT(PostMessageW);
REPLACE_IMPORT(PostQuitMessage);
REPLACE_IMPORT(RealGetWindowClassW);
REPLACE_IMPORT(SendMessageW);
REPLACE_IMPORT(SendNotifyMessageW);
REPLACE_IMPORT(SetForegroundWindow);
REPLACE_IMPORT(SetWindowLongPtrW);
REPLACE_IMPORT(ShowWindow);
REPLACE_IMPORT(Sleep);
REPLACE_IMPORT(TranslateMessage);
REPLACE_IMPORT(WideCharToMultiByte);
void* (*__imp__recalloc)(void*, size_t, size_t) = &FakeRecalloc;
}
// NOLINTEND(bugprone-reserved-identifier,bugprone-macro-parentheses,readability-identifier-naming,readability-non-const-parameter)
