// One request from the command line to the exit code, with the real program and real host windows.
#include "app/AbnormalEnd.h"
#include "app/ResultCode.h"
#include "tests/support/DialogProbe.h"
#include "tests/support/HostWindow.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/RealInput.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

namespace
{

/// The longest command line that the platform lets a process have, in code units.
constexpr size_t kLongestCommandLine = 32'766;

/// A number that nothing but these tests sends.
constexpr UINT kFence = WM_APP + 0x123;

/// Everything that has arrived at the host by now, also what is still on its way.
std::vector<ReceivedMessage> ReceivedSoFar(const HostWindow& host)
{
    ::SendMessageW(host.Handle(), kFence, 0, 0);
    std::vector<ReceivedMessage> received = host.Received();
    std::erase_if(received, [](const ReceivedMessage& entry) { return entry.message == kFence; });
    return received;
}

HostOptions Named(std::wstring title = L"Host")
{
    return {UniqueName(L"Host"), std::move(title)};
}

std::wstring TextOf(const ReceivedMessage& message)
{
    std::wstring text(message.bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), message.bytes.data(), message.bytes.size());
    return text;
}

// --- What a run ends with ---------------------------------------------------------------------

TEST(RunFlow, NoDialogAloneEndsAtOnceWithMinusOne)
{
    EXPECT_EQ(RunQuillet(L" -nodlg"), kResultCancelled);
}

TEST(RunFlow, NoArgumentsOnlyWaitForTheUser)
{
    const QuilletRun run(L"");
    const HWND dialog = run.WaitForWaitingDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(IsWaiting(run, dialog));
    ::PostMessageW(::GetDlgItem(dialog, IDCANCEL), BM_CLICK, 0, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

TEST(RunFlow, NotificationArrivesAndEndsWithMinusOne)
{
    const HostWindow host(Named());
    EXPECT_EQ(RunQuillet(L" -nodlg -msg=7 -wparam=-1 -lparam=0x10 -kla=" + host.ClassName()),
              kResultCancelled);
    const auto received = ReceivedSoFar(host);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, WM_USER + 7u);
    EXPECT_EQ(received[0].wParam, static_cast<WPARAM>(-1));
    EXPECT_EQ(received[0].lParam, 0x10);
}

TEST(RunFlow, NotificationDefaultsToZeros)
{
    const HostWindow host(Named());
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + host.ClassName()), kResultCancelled);
    const auto received = ReceivedSoFar(host);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, static_cast<UINT>(WM_USER));
    EXPECT_EQ(received[0].wParam, 0u);
    EXPECT_EQ(received[0].lParam, 0);
}

TEST(RunFlow, AcceptedCopyDataEndsWithTheHostsAnswer)
{
    const HostWindow host(Named(), AnswerWith(42));
    EXPECT_EQ(RunQuillet(L" -copydata=abc -kla=" + host.ClassName()), 42);
}

TEST(RunFlow, AcceptedCopyDataWithoutADialogEndsWithZero)
{
    const HostWindow host(Named());
    EXPECT_EQ(RunQuillet(L" -nodlg -copydata=abc -kla=" + host.ClassName()), kResultAccepted);
}

TEST(RunFlow, RefusedCopyDataEndsWithMinusThree)
{
    const HostWindow host(Named(), ReturnFromCopyData(0));
    EXPECT_EQ(RunQuillet(L" -nodlg -copydata=abc -kla=" + host.ClassName()), kResultSendFailed);
}

// A host that closes while it is being brought to the front: found, but gone before the send.
TEST(RunFlow, FailedNotificationEndsWithMinusThree)
{
    HostOptions options = Named();
    options.style |= WS_MINIMIZE;
    options.alsoRecord = {WM_QUERYOPEN};
    const HostWindow host(options, [](HWND window, const ReceivedMessage& message) {
        std::optional<LRESULT> result;
        if (message.message == WM_QUERYOPEN)
        {
            ::DestroyWindow(window);
            result = FALSE;
        }
        return result;
    });
    const HostWindow inFront(Named());
    ASSERT_TRUE(WaitForForeground(inFront.Handle()));
    EXPECT_EQ(RunQuillet(L" -nodlg -activatewindow -kla=" + host.ClassName()), kResultSendFailed);
}

TEST(RunFlow, DialogIsOnScreenDuringTheSendAndGoneAfterARefusal)
{
    HWND dialogDuringDelivery = nullptr;
    const HostWindow host(Named(), [&](HWND, const ReceivedMessage& message) {
        dialogDuringDelivery = reinterpret_cast<HWND>(message.wParam);
        return std::optional<LRESULT>(::IsWindowVisible(dialogDuringDelivery) ? 0 : 1);
    });
    // Refused when, and only when, the dialog is visible.
    EXPECT_EQ(RunQuillet(L" -copydata=abc -kla=" + host.ClassName()), kResultSendFailed);
    EXPECT_FALSE(::IsWindow(dialogDuringDelivery));
}

TEST(RunFlow, MissingWindowEndsWithMinusTwo)
{
    const std::wstring nobody = UniqueName(L"Nobody");
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + nobody), kResultWindowNotFound);
    EXPECT_EQ(RunQuillet(L" -nodlg -nam=" + nobody), kResultWindowNotFound);
    EXPECT_EQ(RunQuillet(L" -kla=" + nobody), kResultWindowNotFound);
    EXPECT_EQ(RunQuillet(L" -kla=" + nobody + L" -copydata=abc"), kResultWindowNotFound);
}

// No result code, and no box that waits for somebody.
TEST(RunFlow, UncaughtExceptionEndsAtOnceWithACodeThatIsNoResult)
{
    EXPECT_EQ(RunQuillet(L" -nodlg -url=x?nam=%"), static_cast<int>(kAbnormalEndExitCode));
    EXPECT_EQ(RunQuillet(L" -url=x?nam=%"), static_cast<int>(kAbnormalEndExitCode));
}

// --- Which window -----------------------------------------------------------------------------

struct Lookup
{
    const char* reason;
    std::wstring classSwitch;
    std::wstring textSwitch;
    bool found;
};

TEST(RunFlow, ClassAndTextMustBothFit)
{
    const std::wstring title = UniqueName(L"Mein Fenster ");
    const HostWindow host(Named(title));
    const std::wstring nobody = UniqueName(L"Nobody");
    const Lookup lookups[] = {
        {"class alone", host.ClassName(), L"", true},
        {"text alone", L"", title, true},
        {"both", host.ClassName(), title, true},
        {"the platform compares without case", L"h" + host.ClassName().substr(1), L"", true},
        {"class fits, text does not", host.ClassName(), nobody, false},
        {"text fits, class does not", nobody, title, false},
        {"a part of the text", host.ClassName(), L"Mein", false},
        {"wildcards are literal here", host.ClassName(), L"*", false},
    };
    for (const Lookup& lookup : lookups)
    {
        SCOPED_TRACE(lookup.reason);
        const size_t before = ReceivedSoFar(host).size();
        EXPECT_EQ(RunQuillet(L" -nodlg -kla=\"" + lookup.classSwitch + L"\" -nam=\"" +
                             lookup.textSwitch + L'"'),
                  lookup.found ? kResultCancelled : kResultWindowNotFound);
        EXPECT_EQ(ReceivedSoFar(host).size() - before, lookup.found ? 1u : 0u);
    }
}

TEST(RunFlow, HiddenDisabledAndUntitledWindowsAreFound)
{
    constexpr DWORD kStyles[] = {WS_OVERLAPPEDWINDOW,
                                 WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_DISABLED,
                                 WS_POPUP | WS_VISIBLE, WS_OVERLAPPEDWINDOW | WS_MINIMIZE};
    for (const DWORD style : kStyles)
    {
        SCOPED_TRACE(style);
        const HostWindow host({.className = UniqueName(L"Host"), .style = style});
        EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + host.ClassName()), kResultCancelled);
        EXPECT_EQ(ReceivedSoFar(host).size(), 1u);
    }
}

TEST(RunFlow, TextTellsWindowsOfOneClassApart)
{
    const std::wstring className = UniqueName(L"Host");
    const HostWindow first({className, L"First"});
    const HostWindow second({className, L"Second"});
    EXPECT_EQ(RunQuillet(L" -nodlg -nam=First -kla=" + className), kResultCancelled);
    EXPECT_EQ(ReceivedSoFar(first).size(), 1u);
    EXPECT_EQ(ReceivedSoFar(second).size(), 0u);
    EXPECT_EQ(RunQuillet(L" -nodlg -nam=Second -kla=" + className), kResultCancelled);
    EXPECT_EQ(ReceivedSoFar(first).size(), 1u);
    EXPECT_EQ(ReceivedSoFar(second).size(), 1u);
    // The class alone reaches one of them, whichever lies on top.
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + className), kResultCancelled);
    EXPECT_EQ(ReceivedSoFar(first).size() + ReceivedSoFar(second).size(), 3u);
}

TEST(RunFlow, NamesBeyondAsciiAndBeyondTheBasicPlaneAreFound)
{
    for (const wchar_t* stem : {L"Größe", L"Ωмега漢字", L"Lupe\xD83D\xDD0D", L"İstanbul"})
    {
        SCOPED_TRACE(::testing::PrintToString(std::wstring(stem)));
        const HostWindow host({UniqueName(stem), UniqueName(stem)});
        EXPECT_EQ(
            RunQuillet(L" -nodlg -nam=\"" + host.Title() + L"\" -kla=\"" + host.ClassName() + L'"'),
            kResultCancelled);
        EXPECT_EQ(ReceivedSoFar(host).size(), 1u);
    }
}

// --- How switches are read --------------------------------------------------------------------

struct Number
{
    const wchar_t* text;
    long long value;
};

constexpr Number kNumbers[] = {
    {L"0", 0},       {L"12", 12},     {L"+12", 12}, {L"-3", -3}, {L"0x10", 16},
    {L"0X1f", 31},   {L"-0x10", -16}, {L"010", 8},  {L"09", 0}, // octal: stops at the 9
    {L"7abc", 7},                                               // stops at the first letter
    {L"1.5", 1},                                                //
    {L" 9", 9},                                                 // white space is skipped,
    {L"\t \t9", 9},                                             // of any kind,
    {L" -wrong", 0},                                            // but another switch is no number
    {L"\"5\"", 0},                                              // no quotes
    {L"abc", 0},     {L"", 0},        {L"-", 0},    {L"--5", 0},
};

TEST(Switches, NumbersAreReadInEveryForm)
{
    HostOptions options = Named();
    options.alsoRecord = {WM_USER - 3, WM_USER - 16};
    const HostWindow host(options);
    size_t runs = 0;
    for (const auto& [text, value] : kNumbers)
    {
        SCOPED_TRACE(::testing::PrintToString(std::wstring(text)));
        const std::wstring number = text;
        EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + host.ClassName() + L" -msg=" + number +
                             L" -lparam=" + number + L" -wparam=" + number),
                  kResultCancelled);
        const auto received = ReceivedSoFar(host);
        ASSERT_EQ(received.size(), ++runs);
        EXPECT_EQ(received.back().message, static_cast<UINT>(WM_USER + value));
        EXPECT_EQ(received.back().wParam, static_cast<WPARAM>(value));
        EXPECT_EQ(received.back().lParam, value);
    }
}

TEST(Switches, ParametersHave64Bits)
{
    const HostWindow host(Named());
    EXPECT_EQ(RunQuillet(L" -nodlg -lparam=-9223372036854775807 -wparam=0x7edcba9876543210 -kla=" +
                         host.ClassName()),
              kResultCancelled);
    const auto received = ReceivedSoFar(host);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].wParam, 0x7edcba9876543210u);
    EXPECT_EQ(received[0].lParam, -9223372036854775807);
}

// No range check: an offset can name a message below WM_USER.
TEST(Switches, NegativeOffsetGivesANumberBelowWmUser)
{
    constexpr WPARAM kMark = 4711;
    HostOptions options = Named();
    options.alsoRecord = {WM_NULL};
    const HostWindow host(options);
    EXPECT_EQ(RunQuillet(L" -nodlg -msg=-1024 -wparam=4711 -kla=" + host.ClassName()),
              kResultCancelled);
    const auto received = ReceivedSoFar(host);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, static_cast<UINT>(WM_NULL));
    EXPECT_EQ(received[0].wParam, kMark);
}

/// A raw line's end and what it makes of a host window called by `{class}`: the exit code, and the
/// copy-data text that arrives.
struct Line
{
    const char* reason;
    std::wstring arguments;
    int exitCode;
    std::wstring copyData;
};

class RawLine : public ::testing::Test
{
protected:
    void Expect(const Line& line)
    {
        SCOPED_TRACE(line.reason);
        const HostWindow host(Named(L"x -nodlg"));
        std::wstring arguments = line.arguments;
        for (size_t place; (place = arguments.find(L"{class}")) != arguments.npos;)
        {
            arguments.replace(place, 7, host.ClassName());
        }
        EXPECT_EQ(RunQuillet(arguments), line.exitCode);
        const auto received = ReceivedSoFar(host);
        if (line.exitCode == kResultAccepted)
        {
            ASSERT_EQ(received.size(), 1u);
            EXPECT_EQ(TextOf(received[0]), line.copyData);
        }
        else
        {
            EXPECT_EQ(received.size(), line.exitCode == kResultWindowNotFound ? 0u : 1u);
        }
    }
};

TEST_F(RawLine, IsSearchedAsOneText)
{
    const Line lines[] = {
        {"names in any case", L" -NODLG -KLA={class} -CopyData=ABC", 0, L"ABC"},
        {"the first of a repeated switch", L" -nodlg -copydata=a -copydata=b -kla={class} -kla=x",
         0, L"a"},
        {"a value ends at its first blank", L" -nodlg -copydata=abc def -kla={class}", 0, L"abc"},
        {"a switch at the end of the line", L" -kla={class} -copydata=abc -nodlg", 0, L"abc"},
        {"a flag's text needs nothing behind it", L" -kla={class} -copydata=a -nodlgxyz", 0, L"a"},
        {"a flag inside a quoted value", L" -kla={class} -copydata=\"x -nodlg\"", 0, L"x -nodlg"},
        {"a flag inside a window text", L" -kla={class} -nam=\"x -nodlg\"", kResultCancelled, {}},
        {"a quoted value keeps blanks and tabs", L" -nodlg -kla={class} -copydata=\" a \t b \"", 0,
         L" a \t b "},
        {"a tab does not end a value", L" -nodlg -kla={class} -copydata=a\tb c", 0, L"a\tb"},
        {"a quote inside a value is kept", L" -nodlg -kla={class} -copydata=a\"b c\"", 0, L"a\"b"},
        {"an unclosed quote takes the rest", L" -nodlg -kla={class} -copydata=\"a b -msg=5", 0,
         L"a b -msg=5"},
        {"a lone quote is empty: a notification",
         L" -nodlg -kla={class} -copydata=\"",
         kResultCancelled,
         {}},
        {"an empty value is none", L" -nodlg -kla={class} -copydata=\"\"", kResultCancelled, {}},
        {"an empty text is none", L" -nodlg -kla={class} -nam= -copydata=a", 0, L"a"},
        {"a quoted empty text is none", L" -nodlg -kla={class} -nam=\"\" -copydata=a", 0, L"a"},
        {"a dash behind a quote is no switch",
         L" -nodlg -kla={class} \"-copydata=a\"",
         kResultCancelled,
         {}},
        {"a longer name is another switch",
         L" -nodlg -kla={class} -copydataencoding=a",
         kResultCancelled,
         {}},
        {"unknown switches and words are ignored",
         L" -nodlg /kla=x --kla=y -what word -kla={class}",
         kResultCancelled,
         {}},
        {"units beyond ASCII move no position",
         L" İßﬁÄ\xD83D\xDD0D -nodlg -kla={class} -copydata=Ä", 0, L"Ä"},
    };
    for (const Line& line : lines)
    {
        Expect(line);
    }
}

TEST(Switches, TextSwitchInsideAnothersValueIsFound)
{
    const HostWindow host(Named());
    const std::wstring text = L"to -kla=" + host.ClassName() + L" now";
    EXPECT_EQ(RunQuillet(L" -nodlg -copydata=\"" + text + L'"'), kResultAccepted);
    const auto received = ReceivedSoFar(host);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(TextOf(received[0]), text);
}

TEST(Switches, NothingToSearchForEndsWithoutSending)
{
    const HostWindow host(Named());
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=\"\" -nam= -copydata=abc"), kResultCancelled);
    EXPECT_EQ(RunQuillet(L" -nodlg \t-kla=" + host.ClassName()), kResultCancelled);
    EXPECT_TRUE(ReceivedSoFar(host).empty());
}

// Only a blank makes a switch.
TEST(Switches, BehindATabIsNoSwitch)
{
    const HostWindow host(Named());
    const QuilletRun run(L"\t-nodlg\t-kla=" + host.ClassName());
    const HWND dialog = run.WaitForWaitingDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(ReceivedSoFar(host).empty());
    ::PostMessageW(dialog, WM_CLOSE, 0, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

TEST(Switches, FirstInTheLineNeedsABlankBeforeIt)
{
    const Process run(BuiltProgram(L"quillet.exe"), L"-nodlg");
    HWND dialog = nullptr;
    ASSERT_TRUE(WaitUntil([&] {
        dialog = FindProcessWindow(run.Id(), L"#32770", L"Orvane Anwendungsweiterleitung");
        return dialog != nullptr;
    }));
    ASSERT_TRUE(WaitForPostedMessages(dialog));
    ::PostMessageW(dialog, WM_CLOSE, 0, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

// The program's own path is part of the line.
TEST(Switches, InTheProgramsPathAreFound)
{
    const auto folder =
        std::filesystem::temp_directory_path() / (UniqueName(L"Quillet") + L" -nodlg -msg=5 x");
    std::filesystem::create_directories(folder);
    const auto program = folder / L"quillet.exe";
    std::filesystem::copy_file(BuiltProgram(L"quillet.exe"), program);
    const HostWindow host(Named());
    {
        const Process run(program, L'"' + program.wstring() + L"\" -kla=" + host.ClassName());
        EXPECT_EQ(run.WaitForExit(), kResultCancelled);
    }
    const auto received = ReceivedSoFar(host);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, WM_USER + 5u);
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

// --- The longest line -------------------------------------------------------------------------

/// A line of the greatest length: `first`, as many x as fit, `last`.
std::wstring LongestLine(const std::wstring& first, const std::wstring& last)
{
    return first + std::wstring(kLongestCommandLine - first.size() - last.size(), L'x') + last;
}

class LongestLineTest : public ::testing::Test
{
protected:
    int Run(const std::wstring& first, const std::wstring& last)
    {
        const std::wstring line = LongestLine(first, last);
        sent = line.substr(first.size(), line.size() - first.size() - last.size());
        const Process run(BuiltProgram(L"quillet.exe"), line);
        return run.WaitForExit().value_or(kStillRuns);
    }

    static constexpr int kStillRuns = 999'999;
    const HostWindow host{Named()};
    const std::wstring target = L" -kla=" + host.ClassName();
    /// What filled the line.
    std::wstring sent;
};

TEST_F(LongestLineTest, FlagIsFoundAtItsEnd)
{
    EXPECT_EQ(Run(L"q" + target + L" -copydata=a ", L" -nodlg"), kResultAccepted);
}

TEST_F(LongestLineTest, NumberIsFoundAtItsEnd)
{
    EXPECT_EQ(Run(L"q -nodlg" + target + L" ", L" -msg=5"), kResultCancelled);
    ASSERT_EQ(ReceivedSoFar(host).size(), 1u);
    EXPECT_EQ(ReceivedSoFar(host)[0].message, WM_USER + 5u);
}

TEST_F(LongestLineTest, TextIsFoundAtItsEnd)
{
    EXPECT_EQ(Run(L"q -nodlg ", target), kResultCancelled);
    EXPECT_EQ(ReceivedSoFar(host).size(), 1u);
}

TEST_F(LongestLineTest, CopyDataTextFillsIt)
{
    EXPECT_EQ(Run(L"q -nodlg" + target + L" -copydata=", L""), kResultAccepted);
    ASSERT_EQ(ReceivedSoFar(host).size(), 1u);
    EXPECT_EQ(TextOf(ReceivedSoFar(host)[0]), sent);
}

TEST_F(LongestLineTest, EncodingNameFillsIt)
{
    EXPECT_EQ(Run(L"q -nodlg" + target + L" -copydata=a -copydataencoding=", L""), kResultAccepted);
    ASSERT_EQ(ReceivedSoFar(host).size(), 1u);
    EXPECT_EQ(TextOf(ReceivedSoFar(host)[0]), L"a");
}

TEST_F(LongestLineTest, WindowTextFillsIt)
{
    EXPECT_EQ(Run(L"q -nodlg" + target + L" -nam=\"", L"\""), kResultWindowNotFound);
    EXPECT_TRUE(ReceivedSoFar(host).empty());
}

TEST_F(LongestLineTest, ClassNameFillsIt)
{
    EXPECT_EQ(Run(L"q -nodlg -kla=", L""), kResultWindowNotFound);
}

// --- Help -------------------------------------------------------------------------------------

/// A run that asks for help, with its message box.
class Help : public ::testing::TestWithParam<const wchar_t*>
{
protected:
    /// The box, once it waits for its user.
    static HWND WaitForBox(const Process& run)
    {
        HWND box = nullptr;
        const bool shown = WaitUntil([&] {
            box = FindProcessWindow(run.Id(), L"#32770", L"Orvane");
            return box != nullptr && ::IsWindowVisible(box);
        });
        return shown && WaitForPostedMessages(box) ? box : nullptr;
    }

    static std::wstring TextOfControl(HWND box, int id)
    {
        std::wstring text(kLongestCommandLine + 2000, L'\0');
        const LRESULT size = ::SendDlgItemMessageW(box, id, WM_GETTEXT, text.size(),
                                                   reinterpret_cast<LPARAM>(text.data()));
        text.resize(static_cast<size_t>(size));
        return text;
    }

    /// The message box's text; the platform has no name for its id.
    static constexpr int kTextId = 0xFFFF;
};

TEST_P(Help, WinsOverEverythingElse)
{
    const HostWindow host(Named());
    const std::wstring arguments =
        GetParam() + (L" -kla=" + host.ClassName()) + L" -copydata=abc -url=x?nam=%";
    const QuilletRun run(arguments);
    const HWND box = WaitForBox(run);
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(run.Dialog(), nullptr);
    EXPECT_EQ(::GetWindow(box, GW_OWNER), nullptr);

    const std::wstring text = TextOfControl(box, kTextId);
    EXPECT_NE(text.find(arguments + L"\n\n  -?\t\tHilfe\n"), std::wstring::npos);
    EXPECT_NE(text.find(L"  -lparam=...\tWert für den LParameter der Message \n"),
              std::wstring::npos);
    EXPECT_TRUE(text.ends_with(L"  \t-3\tFehler beim Senden der Message\n\n\n"));

    EXPECT_TRUE(run.IsRunning());
    EXPECT_TRUE(
        ActInFront(box, [] { PressKey(VK_RETURN); }, [box] { return !::IsWindowVisible(box); }));
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
    EXPECT_TRUE(ReceivedSoFar(host).empty());
}

INSTANTIATE_TEST_SUITE_P(Switches, Help,
                         ::testing::Values(L" -?", L" -nodlg -?", L" -nodlg -nam=\"what -?\"",
                                           L" -?xyz -activatewindow -seaglob"));

TEST_F(Help, HasOneButtonAndAnIcon)
{
    const QuilletRun run(L" -?");
    const HWND box = WaitForBox(run);
    ASSERT_NE(box, nullptr);
    int buttons = 0;
    int icons = 0;
    for (HWND control = ::GetWindow(box, GW_CHILD); control != nullptr;
         control = ::GetWindow(control, GW_HWNDNEXT))
    {
        wchar_t className[16] = {};
        ::GetClassNameW(control, className, 16);
        const auto style = static_cast<DWORD>(::GetWindowLongW(control, GWL_STYLE));
        const bool shown = (style & WS_VISIBLE) != 0;
        buttons += shown && ::_wcsicmp(className, L"Button") == 0 ? 1 : 0;
        icons += shown && ::_wcsicmp(className, L"Static") == 0 && (style & SS_TYPEMASK) == SS_ICON;
    }
    EXPECT_EQ(buttons, 1);
    EXPECT_EQ(icons, 1);
    ::PostMessageW(box, WM_CLOSE, 0, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

TEST_F(Help, OfTheLongestLineIsShownWhole)
{
    const std::wstring line = LongestLine(L"q -? ", L"");
    const Process run(BuiltProgram(L"quillet.exe"), line);
    const HWND box = WaitForBox(run);
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(TextOfControl(box, kTextId).starts_with(line + L"\n\n  -?"));
    ::PostMessageW(box, WM_CLOSE, 0, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

} // namespace
