// The search by pattern over all top-level windows, seen by which window a real run finds.
#include "app/ResultCode.h"
#include "tests/support/ExpectedDifference.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace
{

/// Without a dialog the run's end tells whether a window was found: a notification that is on its
/// way ends with -1.
constexpr int kFound = kResultCancelled;
constexpr int kNotFound = kResultWindowNotFound;

/// Searches by pattern; without a text or class the switch is left out.
int Search(std::wstring_view title, std::wstring_view className = L"")
{
    std::wstring arguments = L" -nodlg -seaglob -msg=7";
    if (!title.empty())
    {
        arguments += L" -nam=\"" + std::wstring(title) + L"\"";
    }
    if (!className.empty())
    {
        arguments += L" -kla=\"" + std::wstring(className) + L"\"";
    }
    return RunQuillet(arguments);
}

void MoveToTop(const ScriptedHost& host)
{
    ::SetWindowPos(host.Handle(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

TEST(PatternSearch, FindsByTextByClassAndByBoth)
{
    const std::wstring name = UniqueName(L"Search");
    const ScriptedHost host({name + L"Class", name + L" - Document 5"});
    EXPECT_EQ(Search(name + L" - *"), kFound);
    EXPECT_EQ(Search(L"", name + L"*"), kFound);
    EXPECT_EQ(Search(L"*Document [0-9]", L"*" + name + L"?lass"), kFound);
    EXPECT_EQ(host.ReceivedSoFar().size(), 3u);
}

// Hidden ones, so that no window manager that has just focused one of them raises it meanwhile.
TEST(PatternSearch, TakesTheWindowHigherInTheZOrder)
{
    const std::wstring title = UniqueName(L"Twin");
    const ScriptedHost one({UniqueName(L"Host"), title + L" one", WS_OVERLAPPEDWINDOW});
    const ScriptedHost other({UniqueName(L"Host"), title + L" other", WS_OVERLAPPEDWINDOW});
    for (const auto& [top, bottom] : {std::pair(&one, &other), std::pair(&other, &one)})
    {
        const std::size_t before = bottom->ReceivedSoFar().size();
        const std::size_t beforeTop = top->ReceivedSoFar().size();
        MoveToTop(*top);
        EXPECT_EQ(Search(title + L"*"), kFound);
        EXPECT_EQ(top->ReceivedSoFar().size(), beforeTop + 1);
        EXPECT_EQ(bottom->ReceivedSoFar().size(), before);
    }
}

TEST(PatternSearch, PassesOverWindowsThatMatchOnlyOneOfTwoPatterns)
{
    const std::wstring name = UniqueName(L"Half");
    const ScriptedHost both({name + L"Class", name + L"Title"});
    const ScriptedHost onlyTitle({UniqueName(L"Other"), name + L"Title"});
    const ScriptedHost onlyClass({name + L"ClassToo", L"Other"});
    EXPECT_EQ(Search(name + L"Title", name + L"Class*"), kFound);
    EXPECT_EQ(both.ReceivedSoFar().size(), 1u);
    EXPECT_EQ(onlyTitle.ReceivedSoFar().size(), 0u);
    EXPECT_EQ(onlyClass.ReceivedSoFar().size(), 0u);
}

TEST(PatternSearch, TextAndClassOfTwoDifferentWindowsFindNone)
{
    const std::wstring name = UniqueName(L"Split");
    const ScriptedHost titled({UniqueName(L"Other"), name + L"Title"});
    const ScriptedHost classed({name + L"Class", L"Other"});
    EXPECT_EQ(Search(name + L"Title", name + L"Class"), kNotFound);
}

TEST(PatternSearch, NoKindOfTopLevelWindowIsPassedOver)
{
    const ScriptedHost owner({UniqueName(L"Owner"), L"Owner"});
    const struct
    {
        const char* kind;
        DWORD style;
        DWORD extendedStyle;
        HWND owner;
    } kRows[] = {
        {"hidden", WS_OVERLAPPEDWINDOW, 0, nullptr},
        {"minimised", WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_MINIMIZE, 0, nullptr},
        {"maximised", WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_MAXIMIZE, 0, nullptr},
        {"disabled", WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_DISABLED, 0, nullptr},
        {"owned", WS_POPUP | WS_CAPTION | WS_VISIBLE, 0, owner.Handle()},
        {"tool window", WS_POPUP | WS_VISIBLE, WS_EX_TOOLWINDOW, nullptr},
        {"never activated", WS_POPUP | WS_VISIBLE, WS_EX_NOACTIVATE, nullptr},
        {"transparent", WS_POPUP | WS_VISIBLE, WS_EX_TRANSPARENT | WS_EX_LAYERED, nullptr},
    };
    for (const auto& row : kRows)
    {
        const std::wstring title = UniqueName(L"Kind");
        const ScriptedHost host(
            {UniqueName(L"Host"), title, row.style, row.extendedStyle, row.owner});
        EXPECT_EQ(Search(title + L"*"), kFound) << row.kind;
        EXPECT_EQ(host.ReceivedSoFar().size(), 1u) << row.kind;
    }
}

TEST(PatternSearch, ChildAndMessageOnlyWindowsAreNotSearched)
{
    const ScriptedHost parent({UniqueName(L"Parent"), L"Parent"});
    const struct
    {
        const char* kind;
        DWORD style;
        HWND parent;
    } kRows[] = {
        {"child", WS_CHILD | WS_VISIBLE, parent.Handle()},
        {"message-only", 0, HWND_MESSAGE},
    };
    for (const auto& row : kRows)
    {
        const std::wstring title = UniqueName(L"Inner");
        const ScriptedHost host({UniqueName(L"Host"), title, row.style, 0, row.parent});
        ASSERT_TRUE(::IsWindow(host.Handle())) << row.kind;
        EXPECT_EQ(Search(title + L"*"), kNotFound) << row.kind;
    }
}

TEST(PatternSearch, AStarAloneTakesTheTopmostWindowEvenHiddenAndUntitled)
{
    ScriptedHostOptions options{UniqueName(L"Host")};
    options.style = WS_POPUP;
    options.extendedStyle = WS_EX_TOPMOST;
    const ScriptedHost host(options);
    MoveToTop(host);
    // A stranger's window must not get the notification.
    const bool isFirst =
        ExpectsAsUnderWine("topmost-windows", "nothing is above a topmost window",
                           "windows of the shell can be, and the star is kept to the host's class");
    EXPECT_EQ(Search(L"*", isFirst ? L"" : host.ClassName()), kFound);
    EXPECT_EQ(host.ReceivedSoFar().size(), 1u);
}

TEST(PatternSearch, AnUntitledWindowMatchesAStarButNotOneUnitMore)
{
    const ScriptedHost host({UniqueName(L"Untitled")});
    EXPECT_EQ(Search(L"*", host.ClassName()), kFound);
    EXPECT_EQ(Search(L"?", host.ClassName()), kNotFound);
}

// The program's own dialog exists before the search and takes part in it. It refuses the text that
// it is sent. (By class alone it may be a stranger's dialog.)
TEST(PatternSearch, TheOwnDialogCanBeTheWindowFound)
{
    for (const auto* pattern : {L" -nam=Orvane*", L" -kla=#3277? -nam=Orvane*"})
    {
        EXPECT_EQ(RunQuillet(std::wstring(L" -seaglob -copydata=abc") + pattern), kResultSendFailed)
            << testing::PrintToString(pattern);
    }
}

// The notification reaches the dialog before its loop runs: it is hidden, and waits.
TEST(PatternSearch, AnAnswerToItselfOnlyHidesTheOwnDialog)
{
    const QuilletRun run(L" -seaglob -nam=Orvane* -msg=7");
    const HWND dialog = run.WaitForWaitingDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(::IsWindowVisible(dialog));
    EXPECT_TRUE(run.IsRunning());
    ::PostMessageW(dialog, WM_USER + 3, 0, 0);
    EXPECT_EQ(run.WaitForExit(), 3);
}

TEST(PatternSearch, LongTextsAreMatchedOnTheirFirst4095Units)
{
    constexpr std::size_t kSeen = 4095;
    const std::wstring prefix = UniqueName(L"Long");
    const std::wstring fill(kSeen - prefix.size() - 1, L'x');
    // The units at the border: `y` is the last one seen, `z` the first one cut off.
    const std::wstring title = prefix + fill + L"yz and the tail";
    const ScriptedHost host({UniqueName(L"Host"), title});
    EXPECT_EQ(Search(prefix + L"*"), kFound);
    EXPECT_EQ(Search(prefix + L"*tail"), kNotFound);
    EXPECT_EQ(Search(prefix + L"*yz*"), kNotFound);
    EXPECT_EQ(Search(prefix + L"*xy"), kFound);
    EXPECT_EQ(Search(prefix + fill + L"y"), kFound);
    EXPECT_EQ(Search(title), kNotFound);
}

TEST(PatternSearch, WithoutTheSwitchPatternsAreTakenLiterally)
{
    const std::wstring name = UniqueName(L"Literal");
    const ScriptedHost host({name, name});
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=*"), kNotFound);
    EXPECT_EQ(RunQuillet(L" -nodlg -nam=" + name + L"*"), kNotFound);
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + name + L"*"), kNotFound);

    const ScriptedHost star({UniqueName(L"Host"), name + L" [*]"});
    EXPECT_EQ(RunQuillet(L" -nodlg -nam=\"" + name + L" [*]\""), kFound);
    EXPECT_EQ(star.ReceivedSoFar().size(), 1u);
    EXPECT_EQ(host.ReceivedSoFar().size(), 0u);
}

TEST(PatternSearch, LetterCaseMattersOnlyForPatterns)
{
    const ScriptedHost host({UniqueName(L"HostOfCase"), UniqueName(L"Editor")});
    std::wstring lower = host.Title();
    lower[0] = L'e';
    std::wstring lowerClass = host.ClassName();
    lowerClass[0] = L'h';
    EXPECT_EQ(Search(lower + L"*"), kNotFound);
    EXPECT_EQ(Search(L"", lowerClass), kNotFound);
    EXPECT_EQ(Search(host.Title() + L"*", host.ClassName()), kFound);
    EXPECT_EQ(RunQuillet(L" -nodlg -nam=" + lower), kFound);
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + lowerClass), kFound);
}

/// A top-level window of a class that is built on the system's button.
class SuperclassedButton
{
public:
    explicit SuperclassedButton(const std::wstring& className, const std::wstring& title)
        : m_className(className)
    {
        WNDCLASSW button{};
        ::GetClassInfoW(nullptr, L"Button", &button);
        button.hInstance = ::GetModuleHandleW(nullptr);
        button.lpszClassName = m_className.c_str();
        ::RegisterClassW(&button);
        m_window = ::CreateWindowExW(0, m_className.c_str(), title.c_str(), WS_POPUP, 0, 0, 10, 10,
                                     nullptr, nullptr, button.hInstance, nullptr);
    }
    ~SuperclassedButton()
    {
        ::DestroyWindow(m_window);
        ::UnregisterClassW(m_className.c_str(), ::GetModuleHandleW(nullptr));
    }
    SuperclassedButton(const SuperclassedButton&) = delete;
    SuperclassedButton& operator=(const SuperclassedButton&) = delete;

    std::wstring RealClass() const
    {
        std::array<wchar_t, 256> name{};
        ::RealGetWindowClassW(m_window, name.data(), static_cast<UINT>(name.size()));
        return name.data();
    }

private:
    std::wstring m_className;
    HWND m_window;
};

// The pattern search goes by the window's type, the exact lookup by the registered name. Windows
// reports the type of the system class; Wine reports the registered name and so cannot show the
// difference.
TEST(PatternSearch, GoesByTheRealClassOfWindowsBuiltOnASystemClass)
{
    const std::wstring registered = UniqueName(L"OwnButton");
    const std::wstring title = UniqueName(L"Superclassed");
    const SuperclassedButton window(registered, title);
    const bool sameClass =
        ExpectsAsUnderWine("real-class", "the type of a window is its registered class",
                           "it is the system class that it is built on");
    EXPECT_EQ(window.RealClass(), sameClass ? registered : L"Button");

    EXPECT_EQ(Search(title, window.RealClass()), kFound);
    EXPECT_EQ(Search(title, registered), sameClass ? kFound : kNotFound);
    EXPECT_EQ(RunQuillet(L" -nodlg -nam=" + title + L" -kla=" + registered), kFound);
}

} // namespace
