#include "target/WindowSearch.h"

#include "target/GlobMatch.h"

namespace
{

/// In UTF-16 code units, the terminator included: a longer window text is matched in its first
/// 4,095.
constexpr int kTextCapacity = 4096;

/// `query` is GetWindowTextW or a function like it. When it fails it writes nothing, and the window
/// is tested as if its text were empty.
template <typename Query>
bool Matches(HWND window, Query query, wchar_t (&buffer)[kTextCapacity], const wchar_t* pattern)
{
    if (pattern == nullptr)
    {
        return true;
    }
    ::ZeroMemory(buffer, sizeof(buffer));
    query(window, buffer, kTextCapacity);
    return GlobMatch(buffer, pattern) != 0;
}

} // namespace

BOOL CALLBACK EnumTargetWindowsProc(HWND window, LPARAM context) noexcept
{
    if (window == nullptr)
    {
        return TRUE;
    }
    auto& search = *reinterpret_cast<WindowSearchContext*>(context);
    wchar_t buffer[kTextCapacity];
    // Both tests are always made. The class is the window's real type, which for windows built on a
    // system class can differ from the registered name that the exact lookup compares; the
    // difference is intentional.
    const bool titleMatches = Matches(window, &::GetWindowTextW, buffer, search.titlePattern);
    const bool classMatches = Matches(window, &::RealGetWindowClassW, buffer, search.classPattern);
    if (!titleMatches || !classMatches)
    {
        return TRUE;
    }
    search.foundWindow = window;
    return FALSE;
}

HWND FindWindowByPattern(const wchar_t* classPattern, const wchar_t* titlePattern)
{
    WindowSearchContext search{classPattern, titlePattern, nullptr};
    // The result only repeats whether the walk was ended early.
    ::EnumWindows(&EnumTargetWindowsProc, reinterpret_cast<LPARAM>(&search));
    return search.foundWindow;
}
