// Fakes: the messages that the run sends, posts and waits for, and the conversion of their text.
#include "tests/scripted/FakeHandles.h"
#include "tests/scripted/Recording.h"
#include "tests/support/BytesAsText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace
{

/// Size and first bytes.
std::string Content(const COPYDATASTRUCT& data)
{
    constexpr std::size_t kMost = 16;
    const std::span bytes(static_cast<const std::byte*>(data.lpData), data.cbData);
    return std::to_string(bytes.size()) +
           " bytes: " + BytesAsText(bytes.first(std::min(bytes.size(), kMost))) +
           (bytes.size() > kMost ? " ..." : "");
}

LRESULT DeliverToHost(HWND window, WPARAM wParam, LPARAM lParam)
{
    const auto& data = *reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    Record("SendMessageW", window, std::string("WM_COPYDATA"), reinterpret_cast<HWND>(wParam),
           "dwData " + std::to_string(static_cast<std::int64_t>(data.dwData)), Content(data));
    Platform().duringCopyData(data);
    return Platform().copyDataResult;
}

} // namespace

BOOL WINAPI FakeSendNotifyMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Record("SendNotifyMessageW", window, Hexadecimal(message), static_cast<std::int64_t>(wParam),
           std::int64_t{lParam});
    return Platform().notificationResult;
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

/// A window that waits for ever would only be noticed by the watchdog.
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

BOOL WINAPI FakePostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Platform().Post(window, message, wParam, lParam);
    return TRUE;
}

void WINAPI FakePostQuitMessage(int)
{
    Platform().Quit();
}

/// Without a script, for the test program's own purposes, the real one.
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
