#include "target/WindowSearch.h"

#include "tests/scripted/ScriptedPlatform.h"

namespace
{

constexpr std::size_t kLongestSeen = 4'095;

std::string TextOf(const char* window)
{
    return std::string("GetWindowTextW(") + window + ", zeroed buffer, 4096)";
}

std::string ClassOf(const char* window)
{
    return std::string("RealGetWindowClassW(") + window + ", zeroed buffer, 4096)";
}

class WindowSearch : public testing::Test
{
protected:
    HWND Add(const char* name, const wchar_t* text, const wchar_t* windowClass)
    {
        return m_platform.AddWindow({.name = name, .text = text, .windowClass = windowClass});
    }

    ScriptedPlatform m_platform;
};

TEST_F(WindowSearch, TextAloneNeverAsksForTheClass)
{
    Add("a", L"Alpha", L"Frame");
    const HWND second = Add("b", L"Beta", L"Frame");
    EXPECT_EQ(FindWindowByPattern(nullptr, L"B*"), second);
    EXPECT_TRUE(m_platform.Made({"EnumWindows()", TextOf("a"), TextOf("b")}));
}

TEST_F(WindowSearch, ClassAloneNeverAsksForTheText)
{
    Add("a", L"Text", L"Alpha");
    const HWND second = Add("b", L"Text", L"Beta");
    EXPECT_EQ(FindWindowByPattern(L"B*", nullptr), second);
    EXPECT_TRUE(m_platform.Made({"EnumWindows()", ClassOf("a"), ClassOf("b")}));
}

TEST_F(WindowSearch, BothTestsAreAlwaysMade)
{
    Add("text only", L"yes", L"no");
    Add("class only", L"no", L"yes");
    Add("neither", L"no", L"no");
    const HWND both = Add("both", L"yes", L"yes");
    Add("below", L"yes", L"yes");
    EXPECT_EQ(FindWindowByPattern(L"yes", L"yes"), both);
    EXPECT_TRUE(m_platform.Made({"EnumWindows()", TextOf("text only"), ClassOf("text only"),
                                 TextOf("class only"), ClassOf("class only"), TextOf("neither"),
                                 ClassOf("neither"), TextOf("both"), ClassOf("both")}));
}

TEST_F(WindowSearch, TopmostMatchIsTaken)
{
    const HWND upper = Add("upper", L"x", L"c");
    Add("lower", L"x", L"c");
    EXPECT_EQ(FindWindowByPattern(L"c", L"x"), upper);
}

TEST_F(WindowSearch, NoMatchGivesNone)
{
    Add("a", L"Editor - 1", L"Frame");
    EXPECT_EQ(FindWindowByPattern(nullptr, L"editor*"), nullptr);
    EXPECT_EQ(FindWindowByPattern(L"frame", nullptr), nullptr);
}

TEST_F(WindowSearch, NoWindowsGiveNone)
{
    EXPECT_EQ(FindWindowByPattern(L"*", L"*"), nullptr);
    EXPECT_TRUE(m_platform.Made({"EnumWindows()"}));
}

TEST_F(WindowSearch, WithoutPatternsTheTopmostWindowMatchesUnasked)
{
    const HWND top = Add("a", L"x", L"c");
    EXPECT_EQ(FindWindowByPattern(nullptr, nullptr), top);
    EXPECT_TRUE(m_platform.Made({"EnumWindows()"}));
}

TEST_F(WindowSearch, HiddenAndMinimisedWindowsTakePart)
{
    const HWND hidden = m_platform.AddWindow({.name = "hidden", .style = 0, .text = L"hidden"});
    const HWND minimised =
        m_platform.AddWindow({.name = "icon", .minimised = true, .text = L"icon"});
    EXPECT_EQ(FindWindowByPattern(nullptr, L"hidden"), hidden);
    EXPECT_EQ(FindWindowByPattern(nullptr, L"icon"), minimised);
}

TEST_F(WindowSearch, UntitledWindowMatchesWhatMatchesNothing)
{
    const HWND untitled = Add("untitled", L"", L"c");
    EXPECT_EQ(FindWindowByPattern(nullptr, L"*"), untitled);
    EXPECT_EQ(FindWindowByPattern(nullptr, L"?*"), nullptr);
}

// The window above left its text and class in memory; nothing of them may be seen.
TEST_F(WindowSearch, WindowThatDiesDuringTheWalkCountsAsEmpty)
{
    Add("alive", L"abc", L"abc");
    const HWND dying = m_platform.AddWindow({.name = "dying", .text = L"abc", .dying = true});
    EXPECT_EQ(FindWindowByPattern(L"abc", L"?*x"), nullptr);
    EXPECT_EQ(FindWindowByPattern(nullptr, L""), dying);
    EXPECT_EQ(FindWindowByPattern(L"", nullptr), dying);
    m_platform.Window(m_platform.ZOrder()[0]).dying = true;
    EXPECT_EQ(FindWindowByPattern(L"abc", nullptr), nullptr);
    EXPECT_EQ(FindWindowByPattern(nullptr, L"?*"), nullptr);
}

TEST_F(WindowSearch, LongTextIsMatchedInItsFirst4095Units)
{
    const std::wstring seen = L"prefix" + std::wstring(kLongestSeen - 6, L'x');
    const HWND window = Add("long", (seen + L"tail").c_str(), (seen + L"tail").c_str());
    EXPECT_EQ(FindWindowByPattern(nullptr, L"prefix*"), window);
    EXPECT_EQ(FindWindowByPattern(L"prefix*", nullptr), window);
    EXPECT_EQ(FindWindowByPattern(nullptr, seen.c_str()), window);
    EXPECT_EQ(FindWindowByPattern(nullptr, L"*tail"), nullptr);
    EXPECT_EQ(FindWindowByPattern(L"*tail", nullptr), nullptr);
}

TEST_F(WindowSearch, CallbackPassesOverNoWindowAtAll)
{
    WindowSearchContext search{L"*", L"*", nullptr};
    EXPECT_TRUE(EnumTargetWindowsProc(nullptr, reinterpret_cast<LPARAM>(&search)));
    EXPECT_EQ(search.foundWindow, nullptr);
    EXPECT_TRUE(EnumTargetWindowsProc(nullptr, 0)); // the context is not touched
    EXPECT_TRUE(m_platform.Made({}));
}

TEST_F(WindowSearch, CallbackWritesItsContextOnlyForAMatch)
{
    const HWND window = Add("a", L"x", L"c");
    const HWND before = reinterpret_cast<HWND>(0x77);
    WindowSearchContext search{nullptr, L"y", before};
    EXPECT_TRUE(EnumTargetWindowsProc(window, reinterpret_cast<LPARAM>(&search)));
    EXPECT_EQ(search.foundWindow, before);
    search.titlePattern = L"x";
    EXPECT_FALSE(EnumTargetWindowsProc(window, reinterpret_cast<LPARAM>(&search)));
    EXPECT_EQ(search.foundWindow, window);
}

} // namespace
