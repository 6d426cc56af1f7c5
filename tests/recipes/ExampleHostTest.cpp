// The example host, which people lift into their own programs: what it makes of messages that
// anybody can send.
#include "tests/recipes/RecipeRun.h"
#include "tests/support/Process.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/RandomSeed.h"

#include <optional>
#include <random>
#include <string>

namespace
{

constexpr wchar_t kDialogClass[] = L"#32770";
constexpr UINT kHostAnswer = WM_USER + 2; // what the example host answers
constexpr WPARAM kHostButton = 1;

/// A window in the place of a wait dialog. What is posted to it stays in this thread's queue.
class WaitingWindow
{
public:
    explicit WaitingWindow(const wchar_t* className = kDialogClass, const wchar_t* caption = L"")
        : m_window(::CreateWindowExW(0, className, caption, WS_POPUP, 0, 0, 10, 10, nullptr,
                                     nullptr, nullptr, nullptr))
    {
        EXPECT_NE(m_window, nullptr);
    }
    ~WaitingWindow() { ::DestroyWindow(m_window); }
    WaitingWindow(const WaitingWindow&) = delete;
    WaitingWindow& operator=(const WaitingWindow&) = delete;

    HWND Handle() const { return m_window; }

    /// The number of answers that have come since the last call.
    std::size_t Answers() const
    {
        std::size_t count = 0;
        for (MSG message; ::PeekMessageW(&message, m_window, WM_USER, WM_USER + 4096, PM_REMOVE);)
        {
            EXPECT_EQ(message.message, kHostAnswer);
            ++count;
        }
        return count;
    }

private:
    HWND m_window;
};

/// The example host in a process of its own, ready.
class ExampleHost
{
public:
    explicit ExampleHost(const std::wstring& options = L"")
    {
        // Without an output of its own, which would be the test's.
        const HANDLE output = ::GetStdHandle(STD_OUTPUT_HANDLE);
        ::SetStdHandle(STD_OUTPUT_HANDLE, nullptr);
        m_process.emplace(BuiltProgram(L"example_host.exe"),
                          L"example_host --log=" + Quoted(m_log) + L' ' + options);
        ::SetStdHandle(STD_OUTPUT_HANDLE, output);
        EXPECT_TRUE(WaitUntil([this] { return Says("Bereit: ") && Window() != nullptr; }));
        m_window = Window();
    }

    /// Sends a message as the program does: handled before all that was posted, not waited for.
    void Forge(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        EXPECT_TRUE(::SendNotifyMessageW(m_window, message, wParam, lParam)) << message;
    }
    void ForgePosted(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        EXPECT_TRUE(::PostMessageW(m_window, message, wParam, lParam)) << message;
    }
    /// What was sent before has been handled when this returns.
    void TakeAll() const { ::SendMessageW(m_window, WM_NULL, 0, 0); }

    /// Sends a text and gives the result.
    LRESULT Ask(const std::wstring& text, HWND caller) const
    {
        return Ask(text.data(), text.size() * sizeof(wchar_t), caller);
    }
    LRESULT Ask(const wchar_t* text, std::size_t bytes, HWND caller) const
    {
        COPYDATASTRUCT data = {0, static_cast<DWORD>(bytes), const_cast<wchar_t*>(text)};
        return ::SendMessageW(m_window, WM_COPYDATA, reinterpret_cast<WPARAM>(caller),
                              reinterpret_cast<LPARAM>(&data));
    }

    std::string Log() const { return ContentOf(m_log); }
    bool Says(const std::string& text) const { return Log().find(text) != std::string::npos; }
    bool WaitUntilItSays(const std::string& text) const
    {
        return WaitUntil([&] { return Says(text); });
    }

private:
    HWND Window() const { return FindProcessWindow(m_process->Id(), kHostClass, nullptr); }

    std::wstring m_log = ScratchPath(L"example-host.log");
    std::optional<Process> m_process;
    HWND m_window = nullptr;
};

std::size_t Count(const std::string& all, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t at = all.find(part); at != all.npos; at = all.find(part, at + part.size()))
    {
        ++count;
    }
    return count;
}

/// Sends the host every number from `first` to `last`, and some at random, with a text now and
/// then.
void ExpectTextsToBeShownAndAnsweredOnce(UINT first, UINT last)
{
    constexpr UINT kRandomEvery = 8;
    constexpr UINT kTextEvery = 1000;
    const ExampleHost host;
    std::mt19937 random(RandomSeed());
    std::uniform_int_distribution<UINT> anyMessage(WM_USER, 0xFFFF);
    const WaitingWindow caller;
    int texts = 0;
    for (UINT message = first; message <= last; ++message)
    {
        host.Forge(message, random(), static_cast<LPARAM>(random()));
        if (message % kRandomEvery == 0)
        {
            host.ForgePosted(anyMessage(random), random(), static_cast<LPARAM>(random()));
        }
        if (message % kTextEvery == 0)
        {
            const std::wstring text = L"Anfrage " + std::to_wstring(++texts) + L'.';
            ASSERT_EQ(host.Ask(text, caller.Handle()), TRUE);
            ASSERT_TRUE(WaitUntil([&] { return caller.Answers() == 1; })) << text;
        }
    }
    const WaitingWindow end;
    ASSERT_EQ(host.Ask(L"Ende", end.Handle()), TRUE);
    ASSERT_TRUE(WaitUntil([&] { return end.Answers() == 1; })); // answers come in order
    EXPECT_EQ(caller.Answers(), 0u);
    const std::string log = host.Log();
    for (int number = 1; number <= texts; ++number)
    {
        const std::string text = "Anfrage " + std::to_string(number) + '.';
        EXPECT_EQ(Count(log, text), 1u) << text;
    }
}

TEST(ExampleHost, ShowsAndAnswersEveryTextOnceAmongNotifications)
{
    ExpectTextsToBeShownAndAnsweredOnce(WM_USER, WM_APP - 1);
}

// The host's own message is among them.
TEST(ExampleHost, ShowsAndAnswersEveryTextOnceAmongTheNumbersAboveThem)
{
    ExpectTextsToBeShownAndAnsweredOnce(WM_APP, 0xFFFF);
}

// The link names the host's own message, which then finds nothing to do.
TEST(ExampleHost, LinkWithTheHostsOwnMessageTakesNothingFromAnybody)
{
    const ExampleHost host;
    EXPECT_EQ(RunQuillet(L" -url=\"x?kla=QuilletBeispielHost&msg=31745&nodlg\""), -1);
    for (const std::wstring text : {L"eins", L"zwei"})
    {
        EXPECT_EQ(RunQuillet(L" -kla=QuilletBeispielHost -copydata=" + text), 2);
    }
    EXPECT_EQ(Count(host.Log(), "»eins«"), 1u);
    EXPECT_EQ(Count(host.Log(), "»zwei«"), 1u);
}

TEST(ExampleHost, ForgedTimerAnswersNothingBeforeItsTime)
{
    const ExampleHost host(L"--delay=3600000");
    const WaitingWindow caller;
    ASSERT_EQ(host.Ask(L"spät", caller.Handle()), TRUE);
    ASSERT_TRUE(host.WaitUntilItSays("»spät«"));
    host.Forge(WM_TIMER, 1);
    host.TakeAll();
    EXPECT_EQ(caller.Answers(), 0u);
}

// The host cannot tell who has pressed its button: what the documents say of such a button.
TEST(ExampleHost, LinkPressesTheButtonAndTheCallerGetsTheAnswer)
{
    const ExampleHost host(L"--manual");
    const QuilletRun run(L" -kla=QuilletBeispielHost -copydata=Freigabe");
    ASSERT_TRUE(host.WaitUntilItSays("»Freigabe«"));
    EXPECT_EQ(RunQuillet(L" -url=\"x?kla=QuilletBeispielHost&msg=-751&wparam=1&nodlg\""), -1);
    EXPECT_EQ(run.WaitForExit(), 2);
}

// A notification does not tell its dialog; that of a text is not the one.
TEST(ExampleHost, NotificationIsNotAnsweredToTheCallerOfAText)
{
    const ExampleHost host(L"--manual");
    const WaitingWindow caller(kDialogClass, kWaitDialogCaption);
    host.Forge(WM_USER + 5);
    ASSERT_EQ(host.Ask(L"Freigabe", caller.Handle()), TRUE);
    ASSERT_TRUE(host.WaitUntilItSays("»Freigabe«"));
    host.Forge(WM_COMMAND, kHostButton);
    host.TakeAll();
    EXPECT_EQ(caller.Answers(), 0u);
    EXPECT_TRUE(host.Says("kein Dialog wartet"));
    host.Forge(WM_COMMAND, kHostButton);
    host.TakeAll();
    EXPECT_EQ(caller.Answers(), 1u);
}

TEST(ExampleHost, OnlyDialogsAreAnswered)
{
    const ExampleHost host;
    const WaitingWindow window(L"Static");
    EXPECT_EQ(host.Ask(L"a", window.Handle()), TRUE);
    EXPECT_TRUE(host.WaitUntilItSays("dort ist kein Dialog, oder keiner mehr"));
    EXPECT_EQ(window.Answers(), 0u);
}

TEST(ExampleHost, LongestTextIsTakenAndALongerOneRefused)
{
    constexpr std::size_t kLongest = 98'298; // bytes
    const ExampleHost host;
    const WaitingWindow caller;
    const std::wstring text(kLongest / sizeof(wchar_t) + 1, L'a');
    EXPECT_EQ(host.Ask(text.data(), kLongest + 1, caller.Handle()), FALSE);
    EXPECT_EQ(host.Ask(text.data(), kLongest, caller.Handle()), TRUE);
    EXPECT_TRUE(WaitUntil([&] { return caller.Answers() == 1; }));
    EXPECT_EQ(Count(host.Log(), "abgelehnt"), 1u);
}

TEST(ExampleHost, ControlCharactersAreShownAsDots)
{
    const ExampleHost host;
    const WaitingWindow caller;
    EXPECT_EQ(host.Ask(L"a\r\n\t\x7F\x80\x85\x9F\u061C\u200E\u200F\u2028\u2029\u202A\u202E\u2066"
                       L"\u2069z \u00A0\u00DF\u200D\u20AC",
                       caller.Handle()),
              TRUE);
    ASSERT_TRUE(WaitUntil([&] { return caller.Answers() == 1; }));
    std::string dots;
    for (int count = 0; count < 16; ++count)
    {
        dots += "\u00B7";
    }
    EXPECT_TRUE(host.Says("»a" + dots + "z \u00A0ß\u200D€«")) << host.Log();
}

} // namespace
