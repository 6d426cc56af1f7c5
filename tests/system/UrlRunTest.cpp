// Requests that come as a URL, from the raw command line or a clicked link to what the host
// receives.
#include "app/AbnormalEnd.h"
#include "app/ResultCode.h"
#include "tests/support/ExpectedDifference.h"
#include "tests/support/LongTexts.h"
#include "tests/support/OpenByShell.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/Replace.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

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
        Replace(text, L"HOST", m_host.ClassName());
        Replace(text, L"TITLE", m_host.Title());
        return text;
    }

    /// Runs the program with these arguments, in which HOST and TITLE stand for the host's names.
    Outcome Run(const std::wstring& arguments)
    {
        const std::size_t before = m_host.Received().size();
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
    static std::size_t RoomForUrl()
    {
        return kLongestCommandLine - QuilletRun::CommandLine(L" -url=").size();
    }

    const ScriptedHost& Host() const { return m_host; }

private:
    ScriptedHost m_host{{UniqueName(L"url"), UniqueName(L"title")}};
};

// How a URL is cut out, taken apart, decoded and laid over the switches is proven by the unit
// tests, form by form; here some forms take the way through a real command line.
TEST_F(UrlRun, ParametersTakeEffectInTheRun)
{
    const struct
    {
        const wchar_t* arguments;
        Outcome outcome;
    } kRows[] = {
        {L" -url=myproto://open?kla=HOST&msg=5&nodlg", Notified(5)},
        {L" -nodlg -kla=NoSuchClass -url=x?kla=HOST", Notified(0)},
        {L" -url=x?nodlg;seaglob;nam=*TITLE*", Notified(0)},
        {L" -nodlg -kla=HOST -url=x?copydata=%c3%a4%C3%96%41+%25+%1F+%7F",
         Sent(L"\u00E4\u00D6%41+%25+%1F+\x7F")},
        // An embedded zero is a unit like any other in UTF-16, even when nothing follows.
        {L" -nodlg -kla=HOST -url=x?copydata=a%00b", Sent(std::wstring(L"a\0b", 3))},
        {L" -nodlg -kla=HOST -url=x?copydata=%00", Sent(std::wstring(1, L'\0'))},
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

// Without a closing quote the URL takes in the switches after it, which count all the same.
TEST_F(UrlRun, QuotesDecideWhereTheUrlEnds)
{
    EXPECT_EQ(Run(L" -kla=HOST -url=\"x?nam=\"TITLE\"&msg=2\" -nodlg"), Notified(2));
    EXPECT_EQ(Run(L" -url=\"x?kla=HOST&msg=2 -nodlg -msg=3"), Notified(2));
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
        {L"x?kla=HOST -nodlg -msg=9", Notified(9)},
        // A quote ends the URL; what follows is read as switches, unless the URL has said it first.
        {L"x?msg=1\" -kla=HOST -nodlg -msg=9 \"", Notified(1)},
        // Escaped ones do neither.
        {L"x?nodlg&kla=HOST&msg=1&copydata=%22a%20-msg=9%20-nam=b%22", Sent(L"a -msg=9 -nam=b")},
    };
    for (const auto& [link, outcome] : kRows)
    {
        EXPECT_EQ(Run(L" -url=\"" + std::wstring(link) + L"\""), outcome)
            << testing::PrintToString(std::wstring(link));
    }
}

// It fills the command line to its last unit.
TEST_F(UrlRun, AUrlAsLongAsACommandLineArrivesWhole)
{
    const std::wstring head = WithNames(L"x?nodlg&kla=HOST&copydata=");
    const std::wstring value(RoomForUrl() - head.size(), L'v');
    EXPECT_EQ(Run(L" -url=" + head + value), Sent(value));
}

// In the program itself, whose stack is not the unit tests'.
TEST_F(UrlRun, ThousandsOfParametersAreReadToTheLast)
{
    const std::wstring tail = WithNames(L"nodlg&kla=HOST&msg=5");
    std::wstring different;
    for (int i = 0; different.size() + tail.size() + 12 < RoomForUrl(); ++i)
    {
        different += L"k" + std::to_wstring(i) + L"=1&";
    }
    EXPECT_EQ(Run(L" -url=x?" + different + tail), Notified(5));
}

// The string's failure is not caught on purpose. What counts is that nobody takes the end for a
// result, and that no window is left.
TEST_F(UrlRun, ATextThatEndsInsideAnEscapeEndsTheRunAbnormally)
{
    for (const auto* parameter : {L"copydata=50%", L"unknown=%41%"})
    {
        EXPECT_EQ(Run(std::wstring(L" -kla=HOST -url=x?") + parameter),
                  NothingReceived(static_cast<int>(kAbnormalEndExitCode)))
            << testing::PrintToString(parameter);
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
