// The settings as the switches give them, and as the URL gives them over those.
#include "app/GatherRequest.h"

#include "app/CommandLine.h"
#include "app/SendRequest.h"
#include "tests/support/LongTexts.h"
#include "tests/support/RequestOf.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

struct Row
{
    const wchar_t* line;
    SendRequest request;
};

void ExpectRequests(const std::vector<Row>& rows)
{
    for (const Row& row : rows)
    {
        EXPECT_EQ(TextOf(RequestOf(row.line)), TextOf(row.request))
            << "line: " << std::wstring(row.line);
    }
}

TEST(GatherRequestHelp, IsAskedForAnywhereInTheLine)
{
    const auto asks = [](const wchar_t* line) { return AsksForHelp(CommandLine(line)); };
    EXPECT_TRUE(asks(L"q -?"));
    EXPECT_TRUE(asks(L"q -? -kla=X"));
    EXPECT_TRUE(asks(L"q -kla=X -nodlg -?abc"));
    EXPECT_TRUE(asks(L"q -nam=\"was -? ist\""));
    EXPECT_FALSE(asks(L"q -kla=-?"));
    EXPECT_FALSE(asks(L"q\t-?"));
    EXPECT_FALSE(asks(L"-?"));
    EXPECT_FALSE(asks(L"q /? - ?"));
    EXPECT_FALSE(asks(L""));
}

TEST(GatherRequestSwitches, NothingIsSetWithoutSwitches)
{
    ExpectRequests({
        {L"", {}},
        {L"quillet.exe", {}},
        {L"quillet.exe ", {}},
        {L"quillet.exe nodlg /nodlg --nodlg -unknown=5 stray", {}},
    });
}

TEST(GatherRequestSwitches, EachSwitchFillsItsField)
{
    // clang-format off
    ExpectRequests({
        {L"q -nodlg", {.noDialog = true}},
        {L"q -activatewindow", {.activateWindow = true}},
        {L"q -seaglob", {.globSearch = true}},
        {L"q -msg=5", {.messageOffset = 5}},
        {L"q -lparam=5", {.lParam = 5}},
        {L"q -wparam=5", {.wParam = 5}},
        {L"q -kla=x", {.windowClass = L"x"}},
        {L"q -nam=x", {.windowText = L"x"}},
        {L"q -copydata=x", {.copyData = L"x"}},
        {L"q -copydataencoding=x", {.copyDataEncoding = L"x"}}, // and not the copy data, for want of a "="
        {L"q -seaglob -activatewindow -nodlg -copydataencoding=e -copydata=c -nam=t -kla=k -wparam=3 -lparam=2 -msg=1",
         {.windowClass = L"k", .windowText = L"t", .copyData = L"c", .copyDataEncoding = L"e", .messageOffset = 1,
          .wParam = 3, .lParam = 2, .noDialog = true, .activateWindow = true, .globSearch = true}},
    });
    // clang-format on
}

TEST(GatherRequestSwitches, LetterCaseCountsInValuesOnly)
{
    ExpectRequests({
        {L"prog -KLA=MyClass -Nam=\"Mein Fenster\"",
         {.windowClass = L"MyClass", .windowText = L"Mein Fenster"}},
        {L"Q -NODLG -ActivateWindow -sEaGlOb",
         {.noDialog = true, .activateWindow = true, .globSearch = true}},
        {L"q -MSG=0XFF -LParam=0Xa -WPARAM=-0XB",
         {.messageOffset = 255, .wParam = -11, .lParam = 10}},
        {L"q -CopyData=\u00C4\u00E4 -COPYDATAENCODING=Utf-8",
         {.copyData = L"\u00C4\u00E4", .copyDataEncoding = L"Utf-8"}},
        {L"q -\u212Ala=x", {}}, // the Kelvin sign is no K
    });
}

TEST(GatherRequestSwitches, FirstOccurrenceCounts)
{
    ExpectRequests({
        {L"q -kla=A -kla=B", {.windowClass = L"A"}},
        {L"q -kla= -kla=B", {}},
        {L"q -msg=1 -msg=2", {.messageOffset = 1}},
        {L"q -msg=x -msg=2", {}},
        {L"q -NAM=a -nam=b", {.windowText = L"a"}},
        {L"q -nodlg -nodlg", {.noDialog = true}},
    });
}

TEST(GatherRequestSwitches, SwitchesAreFoundAnywhereInTheLine)
{
    ExpectRequests({
        {L"q -nam=\"x -nodlg\"", {.windowText = L"x -nodlg", .noDialog = true}},
        {L"q -nam=\"x -kla=y z\" -kla=w", {.windowClass = L"y", .windowText = L"x -kla=y z"}},
        {L"q -copydata=\"a -msg=5\"", {.copyData = L"a -msg=5", .messageOffset = 5}},
        {L"\"C:\\Meine -seaglob Tools\\q.exe\" -kla=x", {.windowClass = L"x", .globSearch = true}},
        {L"\"C:\\a -kla=b\\q.exe\" -kla=x", {.windowClass = L"b\\q.exe\""}},
        {L"q stray -nodlg stray", {.noDialog = true}},
        {L"q   -nodlg", {.noDialog = true}},
        {L" -nodlg", {.noDialog = true}}, // without any program path
    });
}

TEST(GatherRequestSwitches, ABlankBeforeTheDashIsRequired)
{
    ExpectRequests({
        {L"-nodlg", {}},
        {L"q\t-nodlg", {}},
        {L"q\t-kla=A -nam=B", {.windowText = L"B"}},
        {L"q\n-nodlg", {}},
        {L"q \"-nodlg\" \"-kla=x\"", {}}, // as callers write it that quote every argument
        {L"q -nodlg-seaglob", {.noDialog = true}},
        {L"q - nodlg", {}},
    });
}

TEST(GatherRequestSwitches, TextOfAFlagMayGoOn)
{
    ExpectRequests({
        {L"q -nodlgxyz", {.noDialog = true}},
        {L"q -seaglobal", {.globSearch = true}},
        {L"q -activatewindows=0", {.activateWindow = true}},
        {L"q -nodlg=0", {.noDialog = true}},
        {L"q -nodl", {}},
        {L"q -activate", {}},
    });
}

TEST(GatherRequestSwitches, ValueSwitchesNeedTheEqualsSign)
{
    ExpectRequests({
        {L"q -kla x", {}},
        {L"q -kla", {}},
        {L"q -kla =x", {}},
        {L"q -msg 5", {}},
        {L"q -msgs=5", {}},
        {L"q -copydat=5", {}},
    });
}

TEST(GatherRequestSwitches, NumbersAreScanned)
{
    ExpectRequests({
        {L"q -msg=0x10", {.messageOffset = 16}},
        {L"q -msg=010", {.messageOffset = 8}},
        {L"q -msg=-3", {.messageOffset = -3}},
        {L"q -msg=+3", {.messageOffset = 3}},
        {L"q -msg=7abc", {.messageOffset = 7}},
        {L"q -msg= 9", {.messageOffset = 9}},
        {L"q -msg=\t\t9", {.messageOffset = 9}},
        {L"q -msg=\"5\"", {}}, // the quote stops the scan
        {L"q -msg=", {}},
        {L"q -msg=abc", {}},
        {L"q -msg= -lparam=4", {.lParam = 4}},
        {L"q -msg=5-lparam=4", {.messageOffset = 5}},
        {L"q -wparam=-1 -lparam=0x7fffffffffffffff",
         {.wParam = -1, .lParam = 0x7FFF'FFFF'FFFF'FFFF}},
        {L"q -lparam=-9223372036854775808", {.lParam = -0x7FFF'FFFF'FFFF'FFFF - 1}},
    });
}

TEST(GatherRequestSwitches, TextsAreCut)
{
    ExpectRequests({
        {L"q -copydata=abc def", {.copyData = L"abc"}},
        {L"q -kla=\"\" -nam=x", {.windowText = L"x"}},
        {L"q -kla= -nam=x", {.windowText = L"x"}},
        {L"q -kla=", {}},
        {L"q -nam=\"abc -msg=5",
         {.windowText = L"abc -msg=5", .messageOffset = 5}}, // no closing quote
        {L"q -nam=\"", {}},
        {L"q -nam=\"a\"b -nodlg", {.windowText = L"a", .noDialog = true}},
        {L"q -nam=a\"b -nodlg", {.windowText = L"a\"b", .noDialog = true}},
        {L"q -nam=a\t-nodlg", {.windowText = L"a\t-nodlg"}},
        {L"q -nam=\u20AC\U0001F600 x", {.windowText = L"\u20AC\U0001F600"}},
    });
}

TEST(GatherRequestSwitches, LongestLineIsReadToItsEnd)
{
    const std::wstring head = L"q -copydata=\"";
    const std::wstring tail = L"\" -msg=0x7f -nam=\"E";
    const std::wstring filler(kLongestCommandLine - head.size() - tail.size(), L'F');
    const SendRequest request = RequestOf(head + filler + tail);
    EXPECT_EQ(request.copyData, filler);
    EXPECT_EQ(request.messageOffset, 0x7f);
    EXPECT_EQ(request.windowText, L"E");
}

TEST(GatherRequestSwitches, LongNumberIsNoTrouble)
{
    const std::wstring head = L"q -msg=";
    const std::wstring blanks(kLongestCommandLine - head.size() - 1, L' ');
    EXPECT_EQ(RequestOf(head + blanks + L"7").messageOffset, 7);
    const std::wstring zeros(kLongestCommandLine - head.size() - 1, L'0');
    EXPECT_EQ(RequestOf(head + zeros + L"7").messageOffset, 7);
}

TEST(GatherRequestUrl, OverridesTheSwitchesFieldByField)
{
    // clang-format off
    ExpectRequests({
        {L"q -url=myproto://open?kla=Notepad&msg=5", {.windowClass = L"Notepad", .messageOffset = 5}},
        {L"q -kla=A -nam=B -copydata=C -copydataencoding=D -msg=1 -wparam=2 -lparam=3 -url=x?y",
         {.windowClass = L"A", .windowText = L"B", .copyData = L"C", .copyDataEncoding = L"D", .messageOffset = 1,
          .wParam = 2, .lParam = 3}},
        {L"q -kla=A -nam=B -copydata=C -copydataencoding=D -msg=1 -wparam=2 -lparam=3 -url=x?kla=a&nam=b&copydata=c&copydataencoding=d&msg=4&wparam=5&lparam=6",
         {.windowClass = L"a", .windowText = L"b", .copyData = L"c", .copyDataEncoding = L"d", .messageOffset = 4,
          .wParam = 5, .lParam = 6}},
        {L"q -url=x?kla=a -kla=A", {.windowClass = L"a"}}, // also when the switch comes later
        {L"q -kla=A -nam=B -url=x?kla=a", {.windowClass = L"a", .windowText = L"B"}},
        {L"q -kla=A -nam=B -url=x?nam=b", {.windowClass = L"A", .windowText = L"b"}},
        {L"q -copydata=C -url=x?copydataencoding=UTF-8", {.copyData = L"C", .copyDataEncoding = L"UTF-8"}},
        {L"q -msg=1 -url=x?lparam=-6", {.messageOffset = 1, .lParam = -6}},
        {L"q -wparam=1 -url=x?wparam=0", {.wParam = 0}},
        {L"q -kla=A -url=x?kla=", {}}, // an empty value empties the field
        {L"q -kla=A -url=x?kla", {}},
        {L"q -kla=A -url=x?kla=%22%22", {}},
        {L"q -kla=A -url=x?KLA=a&Kla=b&unknown=c", {.windowClass = L"A"}},
        {L"q -kla=A -url=\"\"", {.windowClass = L"A"}},
        {L"q -kla=A -url=", {.windowClass = L"A"}},
        {L"q -url=x?msg=1 -nodlg", {.messageOffset = 1, .noDialog = true}},
    });
    // clang-format on
}

TEST(GatherRequestUrl, SetsFlagsAndNeverClearsThem)
{
    ExpectRequests({
        {L"q -url=x?nodlg", {.noDialog = true}},
        {L"q -url=x?nodlg=", {.noDialog = true}},
        {L"q -url=x?nodlg=0", {.noDialog = true}},
        {L"q -url=x?activatewindow=false", {.activateWindow = true}},
        {L"q -url=x?seaglob=%30", {.globSearch = true}},
        {L"q -url=x?NODLG&nodlgx&SeaGlob=1", {}},
        {L"q -nodlg -activatewindow -seaglob -url=x?nodlg=0&activatewindow=0&seaglob=0",
         {.noDialog = true, .activateWindow = true, .globSearch = true}},
        {L"q -nodlg -activatewindow -seaglob -url=x?msg=1",
         {.messageOffset = 1, .noDialog = true, .activateWindow = true, .globSearch = true}},
        {L"q -nodlg -url=x?seaglob", {.noDialog = true, .globSearch = true}},
    });
}

TEST(GatherRequestUrl, ReadsNumbersFromTheDecodedValue)
{
    ExpectRequests({
        {L"q -url=x?msg=1&msg=2", {.messageOffset = 1}},
        {L"q -url=x?msg=0x10", {.messageOffset = 16}},
        {L"q -url=x?msg=0X1f", {.messageOffset = 31}},
        {L"q -url=x?msg=010", {.messageOffset = 8}},
        {L"q -url=x?msg=08", {.messageOffset = 0}},
        {L"q -url=x?msg=-3", {.messageOffset = -3}},
        {L"q -url=x?msg=+3", {.messageOffset = 3}},
        {L"q -url=x?msg=%2B3", {.messageOffset = 3}},
        {L"q -url=x?msg=%20%099", {.messageOffset = 9}}, // white space is skipped
        {L"q -url=x?msg=7abc", {.messageOffset = 7}},
        {L"q -url=x?msg=7%3D8", {.messageOffset = 7}},
        {L"q -url=x?msg=7%008", {.messageOffset = 7}},     // a zero ends the number
        {L"q -msg=4 -url=x?msg=0x", {.messageOffset = 4}}, // a prefix is no number
        {L"q -msg=4 -url=x?msg=abc", {.messageOffset = 4}},
        {L"q -msg=4 -url=x?msg=", {.messageOffset = 4}},
        {L"q -msg=4 -url=x?msg", {.messageOffset = 4}},
        {L"q -msg=4 -url=x?msg=%225%22", {.messageOffset = 4}}, // quotes are not for numbers
        {L"q -msg=4 -url=x?msg=%35", {.messageOffset = 4}},     // digits are not restored
        {L"q -msg=4 -url=x?msg=%00", {.messageOffset = 4}},
        {L"q -url=x?wparam=0x7fffffffffffffff&lparam=-9223372036854775808",
         {.wParam = 0x7FFF'FFFF'FFFF'FFFF, .lParam = -0x7FFF'FFFF'FFFF'FFFF - 1}},
        {L"q -url=x?msg=2147483647&wparam=4294967296",
         {.messageOffset = 2147483647, .wParam = 0x1'0000'0000}},
    });
}

TEST(GatherRequestUrl, TrimsTextsAfterDecoding)
{
    using namespace std::string_literals;
    ExpectRequests({
        {L"q -url=x?nam=Mein%20Fenster", {.windowText = L"Mein"}},
        {L"q -url=x?nam=%22Mein%20Fenster%22", {.windowText = L"Mein Fenster"}},
        {L"q -url=x?nam=%22Mein%20Fenster", {.windowText = L"Mein Fenster"}},
        {L"q -url=x?nam=%22a%22b", {.windowText = L"a"}},
        {L"q -url=x?nam=a%22b%20c%22", {.windowText = L"a\"b"}},
        {L"q -url=x?nam=a%09b%0A", {.windowText = L"a\tb\n"}},
        {L"q -nam=A -url=x?nam=%20a", {}},
        {L"q -url=\"x?nam=\"A B\"&msg=2\" -nodlg", {.windowText = L"A", .noDialog = true}},
        {L"q -url=\"x?nam=\"AB\"&msg=2\" -nodlg",
         {.windowText = L"AB", .messageOffset = 2, .noDialog = true}},
        {L"q -url=x?copydata=a%00b", {.copyData = L"a\0b"s}},
        {L"q -url=x?kla=HostFrame&copydata=open&copydataencoding=UTF-8",
         {.windowClass = L"HostFrame", .copyData = L"open", .copyDataEncoding = L"UTF-8"}},
        {L"q -url=x?copydata=M%C3%BCll", {.copyData = L"M\u00FCll"}},
        {L"q -url=x?copydata=%E2%82%AC", {.copyData = L"\xFFFD%AC"}}, // three bytes are no pair
    });
}

// What a link with a quote does to the command line that a handler's registration builds.
TEST(GatherRequestUrl, LeavesSwitchesAfterAQuoteInTheLink)
{
    ExpectRequests({
        {L"q -url=\"demo:x?msg=1\" -nodlg -kla=Other\"",
         {.windowClass = L"Other\"", .messageOffset = 1, .noDialog = true}},
        {L"q -url=\"demo:x?msg=1 -nodlg\"",
         {.messageOffset = 1, .noDialog = true}}, // a blank suffices
        {L"q -url=\"demo:x?msg=1%22%20-nodlg\"", {.messageOffset = 1}},
    });
}

} // namespace
