// Requests that come as a URL, from the raw command line or a clicked link to what the host
// receives.
#include "app/AbnormalEnd.h"
#include "app/ResultCode.h"
#include "tests/support/ExpectedDifference.h"
#include "tests/support/LongTexts.h"
#include "tests/support/OpenByShell.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <string>

namespace
{

/// What a run brought about, as far as the caller and the host can see it.
struct Outcome
{
    std::optional<int> exitCode;
    /// The notification's offset to WM_USER; nothing when the host got none.
    std::optional<UINT> offset;
    /// The copy-data message's text; nothing when the host got none.
    std::optional<std::wstring> text;

    bool operator==(const Outcome&) const = default;
};

Outcome Notified(UINT offset)
{
    return {kResultCancelled, offset, std::nullopt};
}

Outcome Sent(std::wstring text)
{
    return {kResultAccepted, std::nullopt, std::move(text)};
}

Outcome NothingReceived(int exitCode)
{
    return {exitCode, std::nullopt, std::nullopt};
}

std::string Printable(const std::optional<std::wstring>& text)
{
    // A long text is not worth its pages.
    return text && text->size() > 200 ? std::to_string(text->size()) + " units"
                                      : testing::PrintToString(text);
}

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome)
{
    return stream << "exit code " << testing::PrintToString(outcome.exitCode) << ", WM_USER + "
                  << testing::PrintToString(outcome.offset) << ", text " << Printable(outcome.text);
}

class UrlRun : public testing::Test
{
protected:
    /// The text with each `HOST` and `TITLE` replaced by this test's own names.
    std::wstring WithNames(std::wstring text) const
    {
        for (const auto& [word, name] :
             {std::pair(L"HOST", m_host.ClassName()), std::pair(L"TITLE", m_host.Title())})
        {
            for (size_t at = text.find(word); at != text.npos; at = text.find(word, at))
            {
                text.replace(at, std::wcslen(word), name);
            }
        }
        return text;
    }

    /// Runs the program with these arguments, in which HOST and TITLE stand for the host's names.
    Outcome Run(const std::wstring& arguments)
    {
        const size_t before = m_host.Received().size();
        Outcome outcome;
        outcome.exitCode = QuilletRun(WithNames(arguments)).WaitForExit();
        const auto received = m_host.ReceivedSoFar();
        EXPECT_LE(received.size(), before + 1);
        if (received.size() > before)
        {
            const auto& last = received.back();
            if (last.message == WM_COPYDATA)
            {
                outcome.text = last.Text();
            }
            else
            {
                outcome.offset = last.message - WM_USER;
            }
        }
        return outcome;
    }

    /// The URL's room on a command line that ends with it, from ` -url=` on.
    static size_t RoomForUrl()
    {
        return kLongestCommandLine - QuilletRun::CommandLine(L" -url=").size();
    }

    const ScriptedHost& Host() const { return m_host; }

private:
    ScriptedHost m_host{{UniqueName(L"url"), UniqueName(L"title")}};
};

TEST_F(UrlRun, ParametersTakeEffectInTheRun)
{
    const struct
    {
        const wchar_t* arguments;
        Outcome outcome;
    } kRows[] = {
        {L" -url=myproto://open?kla=HOST&msg=5&nodlg", Notified(5)},
        {L" -URL=x?kla=HOST&msg=5&nodlg", Notified(5)},
        {L" -url=x?copydata=MiXeD&kla=HOST&nodlg", Sent(L"MiXeD")},
        // Keys are lower case.
        {L" -nodlg -kla=HOST -url=x?KLA=NoSuchClass&Msg=9", Notified(0)},
        // An unquoted URL ends at the first blank, and switches go on counting.
        {L" -url=x?msg=1&kla=HOST -nodlg", Notified(1)},
        {L" -url=x?kla=HOST -msg=3 -nodlg", Notified(3)},
        // The URL overrides the switches, wherever it stands.
        {L" -url=x?msg=1 -msg=3 -kla=HOST -nodlg", Notified(1)},
        {L" -nodlg -kla=NoSuchClass -url=x?kla=HOST", Notified(0)},
        {L" -nodlg -kla=NoSuchClass -nam=TITLE -url=x?kla=", Notified(0)},
        // Flags can be set, never cleared.
        {L" -nodlg -url=x?nodlg=0&kla=HOST", Notified(0)},
        {L" -url=x?nodlg=0&kla=HOST", Notified(0)},
        {L" -url=x?nodlg=&kla=HOST", Notified(0)},
        {L" -url=x?nodlg;seaglob;nam=TIT*", NothingReceived(kResultWindowNotFound)},
        {L" -url=x?nodlg;seaglob;nam=*TITLE*", Notified(0)},
        {L" -seaglob -url=x?nodlg&seaglob=0&kla=HOS?", NothingReceived(kResultWindowNotFound)},
        // Without a value there is nothing to find.
        {L" -nodlg -url=x?kla&nam", NothingReceived(kResultCancelled)},
        // The first of several wins; what is no number changes nothing.
        {L" -nodlg -kla=HOST -url=x?msg=1&msg=2", Notified(1)},
        {L" -nodlg -kla=HOST -msg=4 -url=x?msg=abc", Notified(4)},
        {L" -nodlg -kla=HOST -url=x?msg=0x10", Notified(16)},
        {L" -nodlg -kla=HOST -url=x?msg=010", Notified(8)},
        {L" -nodlg -kla=HOST -url=x?msg=%20+7", Notified(7)},
        // No URL, no parameters.
        {L" -nodlg -kla=HOST -msg=4 -url=\"\"", Notified(4)},
        {L" -nodlg -kla=HOST -msg=4 -url=", Notified(4)},
        {L" -nodlg -kla=HOST -msg=4 -url=x?", Notified(4)},
        {L" -nodlg -kla=HOST -msg=4 -url=x?#msg=9", Notified(4)},
        {L" -nodlg -kla=HOST -url=x?msg=2#&msg=9", Notified(2)},
        {L" -nodlg -kla=HOST -msg=4 -url=x??msg=9", Notified(4)},
        {L" -nodlg -kla=HOST -msg=4 -url=msg=9", Notified(4)},
        {L" -nodlg -kla=HOST -url=x?;;a-b=1&&=x&msg=6;", Notified(6)},
        // Decoded before it is trimmed: an escaped blank ends a value that is not quoted.
        {L" -nodlg -kla=HOST -url=x?copydata=Mein%20Fenster", Sent(L"Mein")},
        {L" -nodlg -kla=HOST -url=x?copydata=%22Mein%20Fenster%22", Sent(L"Mein Fenster")},
        {L" -nodlg -kla=HOST -url=x?copydata=%22kein%20Ende", Sent(L"kein Ende")},
        {L" -nodlg -kla=HOST -url=x?copydata=a=b%26c%3dd", Sent(L"a=b&c=d")},
        {L" -nodlg -kla=HOST -url=x?copydata=%c3%a4%C3%96%41+%25+%1F+%7F",
         Sent(L"\u00E4\u00D6%41+%25+%1F+\x7F")},
        {L" -nodlg -kla=HOST -url=x?copydata=eins%0D%0Azwei", Sent(L"eins\r\nzwei")},
        // An embedded zero is a unit like any other in UTF-16, and the end in a converted text.
        {L" -nodlg -kla=HOST -url=x?copydata=a%00b", Sent(std::wstring(L"a\0b", 3))},
        {L" -nodlg -kla=HOST -url=x?copydata=%00", Sent(std::wstring(1, L'\0'))},
        // A "%" before the last unit is no escape.
        {L" -nodlg -kla=HOST -url=x?copydata=50%2", Sent(L"50%2")},
    };
    for (const auto& [arguments, outcome] : kRows)
    {
        EXPECT_EQ(Run(arguments), outcome) << testing::PrintToString(std::wstring(arguments));
    }
}

// A text that begins with a zero counts as given, and whoever reads it reads an empty one: a window
// without a title is found, a class never.
TEST_F(UrlRun, NothingButAZeroLooksForAnUntitledWindow)
{
    const ScriptedHost untitled({UniqueName(L"untitled")});
    for (const auto* search : {L"", L"&seaglob"})
    {
        SCOPED_TRACE(testing::PrintToString(search));
        EXPECT_EQ(RunQuillet(L" -nodlg -url=x?nam=%00&kla=" + untitled.ClassName() + search),
                  kResultCancelled);
        EXPECT_EQ(Run(std::wstring(L" -nodlg -url=x?kla=HOST&nam=%00") + search),
                  NothingReceived(kResultWindowNotFound));
        EXPECT_EQ(Run(std::wstring(L" -nodlg -url=x?nam=TITLE&kla=%00") + search),
                  NothingReceived(kResultWindowNotFound));
    }
    EXPECT_EQ(untitled.ReceivedSoFar().size(), 2u);
}

TEST_F(UrlRun, QuotesDecideWhereTheUrlEnds)
{
    const struct
    {
        const wchar_t* arguments;
        Outcome outcome;
    } kRows[] = {
        {L" -url=\"x?msg=2&kla=HOST\" -nodlg", Notified(2)},
        // A blank ends the query, even inside a quoted value: the message is lost.
        {L" -kla=HOST -url=\"x?nam=\"TITLE B\"&msg=2\" -nodlg", Notified(0)},
        {L" -kla=HOST -url=\"x?nam=\"TITLE\"&msg=2\" -nodlg", Notified(2)},
        // Without a closing quote the URL takes in the switches after it, which count all the
        // same.
        {L" -url=\"x?kla=HOST&msg=2 -nodlg -msg=3", Notified(2)},
        // An escaped quote is none.
        {L" -url=\"x?copydata=%22a%22&kla=HOST\" -nodlg", Sent(L"a")},
    };
    for (const auto& [arguments, outcome] : kRows)
    {
        EXPECT_EQ(Run(arguments), outcome) << testing::PrintToString(std::wstring(arguments));
    }
}

// A link can hold anything, and a registered command puts it between quotes as it is. Switches are
// found in the whole line: known, documented and kept. What a link cannot do is break the tool.
TEST_F(UrlRun, ALinkCanCarrySwitchesButOnlyWithLiteralBlanks)
{
    const struct
    {
        const wchar_t* link;
        Outcome outcome;
    } kRows[] = {
        // A literal blank and dash make a switch, inside the quotes, too.
        {L"x?kla=HOST -nodlg", Notified(0)},
        {L"x?kla=HOST -nodlg -msg=9", Notified(9)},
        // A quote ends the URL; what follows is read as switches, unless the URL has said it first.
        {L"x?msg=1\" -kla=HOST -nodlg -msg=9 \"", Notified(1)},
        {L"x\" -kla=HOST -nodlg -msg=9 \"", Notified(9)},
        // Escaped ones do neither.
        {L"x?nodlg&kla=HOST&msg=1&copydata=%22a%20-msg=9%20-nam=b%22", Sent(L"a -msg=9 -nam=b")},
        {L"x?nodlg&kla=HOST%22%20-msg=9", NothingReceived(kResultWindowNotFound)},
        // Nor does anything without a blank before the dash.
        {L"x?nodlg&kla=HOST&nam=TITLE-msg=9", NothingReceived(kResultWindowNotFound)},
        {L"\"\"\"\"\"\" -nodlg", NothingReceived(kResultCancelled)},
        {L"=\"=\"=\"=\" -nodlg", NothingReceived(kResultCancelled)},
    };
    for (const auto& [link, outcome] : kRows)
    {
        EXPECT_EQ(Run(L" -url=\"" + std::wstring(link) + L"\""), outcome)
            << testing::PrintToString(std::wstring(link));
    }
}

// Each fills the command line to its last unit.
TEST_F(UrlRun, UrlsAsLongAsACommandLineGiveTheRightResult)
{
    const std::wstring head = WithNames(L"x?nodlg&kla=HOST&copydata=");
    const size_t room = RoomForUrl() - head.size();

    const std::wstring value(room, L'v');
    EXPECT_EQ(Run(L" -url=" + head + value), Sent(value));

    // An odd rest of the line takes plain units.
    const std::wstring rest(room % 6, L'r');
    EXPECT_EQ(Run(L" -url=" + head + rest + Repeated(L"%C3%A4", room / 6)),
              Sent(rest + std::wstring(room / 6, L'\u00E4')));

    // Alone an escaped letter stays as it was written; two escapes in a row are taken for a pair.
    const std::wstring letters = Repeated(L"%41", room / 3);
    EXPECT_EQ(Run(L" -url=" + head + letters),
              Sent(std::wstring(room / 6, L'A') + (room / 3 % 2 == 1 ? L"%41" : L"")));
    const std::wstring apart = Repeated(L"%41.", room / 4);
    EXPECT_EQ(Run(L" -url=" + head + apart), Sent(apart));
}

TEST_F(UrlRun, ThousandsOfParametersAreReadToTheLast)
{
    const std::wstring tail = WithNames(L"nodlg&kla=HOST&msg=5");
    const size_t room = RoomForUrl() - tail.size() - 2;
    EXPECT_EQ(Run(L" -url=x?" + Repeated(L"a&", room / 2) + tail), Notified(5));
    EXPECT_EQ(Run(L" -url=x?" + Repeated(L"p=1;", room / 4) + tail), Notified(5));

    std::wstring different;
    for (int i = 0; different.size() + 10 < room; ++i)
    {
        different += L"k" + std::to_wstring(i) + L"=1&";
    }
    EXPECT_EQ(Run(L" -url=x?" + different + tail), Notified(5));
}

TEST_F(UrlRun, NothingButSeparatorsOrUnusableItemsChangesNothing)
{
    const std::wstring switches = WithNames(L" -nodlg -kla=HOST -msg=4");
    const size_t room = RoomForUrl() - switches.size() - 2;
    for (const auto* unit : {L"&", L";", L"?", L"=", L"-", L"\u00E4", L"%"})
    {
        EXPECT_EQ(Run(switches + L" -url=x?" + Repeated(unit, room)), Notified(4))
            << testing::PrintToString(std::wstring(unit));
    }
    // No query at all, and quotes that never close a URL.
    EXPECT_EQ(Run(switches + L" -url=" + std::wstring(room, L'x')), Notified(4));
    EXPECT_EQ(Run(switches + L" -url=\"x" + Repeated(L"=\"", room / 2)), Notified(4));
}

// The string's failure is not caught on purpose. What counts is that nobody takes the end for a
// result, and that no window is left.
TEST_F(UrlRun, ATextThatEndsInsideAnEscapeEndsTheRunAbnormally)
{
    for (const auto* text : {L"50%", L"%", L"%41%", L"%%", L"%25%", L"a%zz%"})
    {
        for (const auto* key : {L"copydata=", L"unknown=", L"msg="})
        {
            const auto outcome = Run(std::wstring(L" -kla=HOST -url=x?") + key + text);
            EXPECT_EQ(outcome, NothingReceived(static_cast<int>(kAbnormalEndExitCode)))
                << testing::PrintToString(std::wstring(text));
        }
    }
    EXPECT_EQ(::FindWindowW(nullptr, kWaitDialogCaption), nullptr);
}

/// A URL scheme that starts the built program, for as long as the object lives. It is registered
/// for the user on Windows, which takes no administrator, and for the machine under Wine, which
/// looks nowhere else.
class RegisteredScheme
{
public:
    explicit RegisteredScheme(std::wstring name) : m_name(std::move(name))
    {
        const std::wstring command = QuilletRun::CommandLine(L" -url=\"%1\"");
        m_registered = Set(m_name, L"", L"URL:" + m_name) && Set(m_name, L"URL Protocol", L"") &&
                       Set(m_name + L"\\shell\\open\\command", L"", command);
    }
    ~RegisteredScheme() { ::RegDeleteTreeW(m_root, (m_classes + m_name).c_str()); }
    RegisteredScheme(const RegisteredScheme&) = delete;
    RegisteredScheme& operator=(const RegisteredScheme&) = delete;

    bool IsRegistered() const { return m_registered; }

private:
    bool Set(const std::wstring& key, const wchar_t* name, const std::wstring& value) const
    {
        const auto size = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
        return ::RegSetKeyValueW(m_root, (m_classes + key).c_str(), name, REG_SZ, value.c_str(),
                                 size) == ERROR_SUCCESS;
    }

    const bool m_forMachine = SchemesAreOfTheMachineOnly();
    const HKEY m_root = m_forMachine ? HKEY_CLASSES_ROOT : HKEY_CURRENT_USER;
    const std::wstring m_classes = m_forMachine ? L"" : LR"(Software\Classes\)";
    std::wstring m_name;
    bool m_registered;
};

TEST(UrlRunOfALink, AClickedLinkReachesTheHostAndItsAnswerEndsTheRun)
{
    const std::wstring scheme = UniqueName(L"quillettest");
    const RegisteredScheme registered(scheme);
    if (!registered.IsRegistered())
    {
        GTEST_SKIP() << "no right to register a scheme";
    }
    const ScriptedHost host(UniqueHost(), AnswerWith(42));
    EXPECT_EQ(OpenByShell(scheme + L"://open/record?kla=" + host.ClassName() +
                          L"&wparam=7&copydata=%22Sch%C3%B6ne%20Gr%C3%BC%C3%9Fe%3A%201%262%22#top"),
              42);
    const auto received = host.Received();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].data, 7u);
    EXPECT_EQ(received[0].Text(), L"Sch\u00F6ne Gr\u00FC\u00DFe: 1&2");
}

TEST(UrlRunOfALink, AQuoteInAClickedLinkSmugglesSwitches)
{
    const std::wstring scheme = UniqueName(L"quillettest");
    const RegisteredScheme registered(scheme);
    if (!registered.IsRegistered())
    {
        GTEST_SKIP() << "no right to register a scheme";
    }
    const ScriptedHost host(UniqueHost());
    const auto exitCode =
        OpenByShell(scheme + L":x\" -nodlg -msg=9 -kla=" + host.ClassName() + L" \"");
    const auto received = host.ReceivedSoFar();
    const bool smuggled = !received.empty();
    if (ExpectsAsUnderWine("quote-in-a-link", "is passed on as it is",
                           smuggled ? "is passed on as it is" : "is refused or escaped") ||
        smuggled)
    {
        EXPECT_EQ(exitCode, kResultCancelled);
        ASSERT_EQ(received.size(), 1u);
        EXPECT_EQ(received[0].message, WM_USER + 9u);
    }
}

} // namespace
