#include "app/CommandLineSwitches.h"

#include "app/CommandLine.h"
#include "app/SendRequest.h"

#include <gtest/gtest.h>

namespace
{

constexpr size_t kLongestCommandLine = 32'766;

SendRequest Read(const std::wstring& line)
{
    SendRequest request;
    ReadSwitches(CommandLine(line.c_str()), request);
    return request;
}

// The fields that differ from an untouched request's, in the order of the record.
std::wstring Describe(const SendRequest& request)
{
    std::wstring result;
    const auto add = [&result](const wchar_t* name, const std::wstring& value) {
        result += (result.empty() ? L"" : L" ") + std::wstring(name) + value;
    };
    const auto addText = [&add](const wchar_t* name, const std::wstring& value) {
        if (!value.empty())
        {
            add(name, L"<" + value + L">");
        }
    };
    const auto addNumber = [&add](const wchar_t* name, std::int64_t value) {
        if (value != 0)
        {
            add(name, std::to_wstring(value));
        }
    };
    const auto addFlag = [&add](const wchar_t* name, bool value) {
        if (value)
        {
            add(name, L"");
        }
    };
    addText(L"class=", request.windowClass);
    addText(L"text=", request.windowText);
    addText(L"copy=", request.copyData);
    addText(L"encoding=", request.copyDataEncoding);
    addNumber(L"offset=", request.messageOffset);
    addNumber(L"wparam=", request.wParam);
    addNumber(L"lparam=", request.lParam);
    addFlag(L"nodialog", request.noDialog);
    addFlag(L"activate", request.activateWindow);
    addFlag(L"glob", request.globSearch);
    return result;
}

struct Row
{
    const wchar_t* line;
    const wchar_t* fields;
};

template <size_t N>
void ExpectRows(const Row (&rows)[N])
{
    for (const Row& row : rows)
    {
        EXPECT_EQ(row.fields, Describe(Read(row.line))) << "line: " << row.line;
    }
}

TEST(CommandLineSwitches, NothingIsSetWithoutSwitches)
{
    ExpectRows({
        {L"", L""},
        {L"quillet.exe", L""},
        {L"quillet.exe ", L""},
        {L"quillet.exe nodlg /nodlg --nodlg -unknown=5 stray", L""},
    });
}

TEST(CommandLineSwitches, EachSwitchFillsItsField)
{
    ExpectRows({
        {L"q -nodlg", L"nodialog"},
        {L"q -activatewindow", L"activate"},
        {L"q -seaglob", L"glob"},
        {L"q -msg=5", L"offset=5"},
        {L"q -lparam=5", L"lparam=5"},
        {L"q -wparam=5", L"wparam=5"},
        {L"q -kla=x", L"class=<x>"},
        {L"q -nam=x", L"text=<x>"},
        {L"q -copydata=x", L"copy=<x>"},
        {L"q -copydataencoding=x", L"encoding=<x>"}, // and not the copy data, for want of a "="
        {L"q -seaglob -activatewindow -nodlg -copydataencoding=e -copydata=c -nam=t -kla=k "
         L"-wparam=3 "
         L"-lparam=2 -msg=1",
         L"class=<k> text=<t> copy=<c> encoding=<e> offset=1 wparam=3 lparam=2 nodialog activate "
         L"glob"},
    });
}

TEST(CommandLineSwitches, LetterCaseCountsInValuesOnly)
{
    ExpectRows({
        {L"prog -KLA=MyClass -Nam=\"Mein Fenster\"", L"class=<MyClass> text=<Mein Fenster>"},
        {L"Q -NODLG -ActivateWindow -sEaGlOb", L"nodialog activate glob"},
        {L"q -MSG=0XFF -LParam=0Xa -WPARAM=-0XB", L"offset=255 wparam=-11 lparam=10"},
        {L"q -CopyData=\u00C4\u00E4 -COPYDATAENCODING=Utf-8",
         L"copy=<\u00C4\u00E4> encoding=<Utf-8>"},
        {L"q -\u212Ala=x", L""}, // the Kelvin sign is no K
    });
}

TEST(CommandLineSwitches, FirstOccurrenceCounts)
{
    ExpectRows({
        {L"q -kla=A -kla=B", L"class=<A>"},
        {L"q -kla= -kla=B", L""},
        {L"q -msg=1 -msg=2", L"offset=1"},
        {L"q -msg=x -msg=2", L""},
        {L"q -NAM=a -nam=b", L"text=<a>"},
        {L"q -nodlg -nodlg", L"nodialog"},
    });
}

TEST(CommandLineSwitches, SwitchesAreFoundAnywhereInTheLine)
{
    ExpectRows({
        {L"q -nam=\"x -nodlg\"", L"text=<x -nodlg> nodialog"},
        {L"q -nam=\"x -kla=y z\" -kla=w", L"class=<y> text=<x -kla=y z>"},
        {L"q -copydata=\"a -msg=5\"", L"copy=<a -msg=5> offset=5"},
        {L"\"C:\\Meine -seaglob Tools\\q.exe\" -kla=x", L"class=<x> glob"},
        {L"\"C:\\a -kla=b\\q.exe\" -kla=x", L"class=<b\\q.exe\">"},
        {L"q stray -nodlg stray", L"nodialog"},
        {L"q   -nodlg", L"nodialog"},
        {L" -nodlg", L"nodialog"}, // without any program path
    });
}

TEST(CommandLineSwitches, ABlankBeforeTheDashIsRequired)
{
    ExpectRows({
        {L"-nodlg", L""},
        {L"q\t-nodlg", L""},
        {L"q\t-kla=A -nam=B", L"text=<B>"},
        {L"q\n-nodlg", L""},
        {L"q \"-nodlg\" \"-kla=x\"", L""}, // as callers write it that quote every argument
        {L"q -nodlg-seaglob", L"nodialog"},
        {L"q - nodlg", L""},
    });
}

TEST(CommandLineSwitches, FlagsNeedNothingBehindThem)
{
    ExpectRows({
        {L"q -nodlgxyz", L"nodialog"},
        {L"q -seaglobal", L"glob"},
        {L"q -activatewindows=0", L"activate"},
        {L"q -nodlg=0", L"nodialog"},
        {L"q -nodl", L""},
        {L"q -activate", L""},
    });
}

TEST(CommandLineSwitches, ValueSwitchesNeedTheEqualsSign)
{
    ExpectRows({
        {L"q -kla x", L""},
        {L"q -kla", L""},
        {L"q -kla =x", L""},
        {L"q -msg 5", L""},
        {L"q -msgs=5", L""},
        {L"q -copydat=5", L""},
    });
}

TEST(CommandLineSwitches, NumbersAreScanned)
{
    ExpectRows({
        {L"q -msg=0x10", L"offset=16"},
        {L"q -msg=010", L"offset=8"},
        {L"q -msg=-3", L"offset=-3"},
        {L"q -msg=+3", L"offset=3"},
        {L"q -msg=7abc", L"offset=7"},
        {L"q -msg= 9", L"offset=9"},
        {L"q -msg=\t\t9", L"offset=9"},
        {L"q -msg=\"5\"", L""}, // the quote stops the scan
        {L"q -msg=", L""},
        {L"q -msg=abc", L""},
        {L"q -msg= -lparam=4", L"lparam=4"},
        {L"q -msg=5-lparam=4", L"offset=5"},
        {L"q -wparam=-1 -lparam=0x7fffffffffffffff", L"wparam=-1 lparam=9223372036854775807"},
        {L"q -lparam=-9223372036854775808", L"lparam=-9223372036854775808"},
    });
}

TEST(CommandLineSwitches, TextsAreCut)
{
    ExpectRows({
        {L"q -copydata=abc def", L"copy=<abc>"},
        {L"q -kla=\"\" -nam=x", L"text=<x>"},
        {L"q -kla= -nam=x", L"text=<x>"},
        {L"q -kla=", L""},
        {L"q -nam=\"abc -msg=5", L"text=<abc -msg=5> offset=5"}, // no closing quote
        {L"q -nam=\"", L""},
        {L"q -nam=\"a\"b -nodlg", L"text=<a> nodialog"},
        {L"q -nam=a\"b -nodlg", L"text=<a\"b> nodialog"},
        {L"q -nam=a\t-nodlg", L"text=<a\t-nodlg>"},
        {L"q -nam=\u20AC\U0001F600 x", L"text=<\u20AC\U0001F600>"},
    });
}

TEST(CommandLineSwitches, LongestLineIsReadToItsEnd)
{
    const std::wstring head = L"q -copydata=\"";
    const std::wstring tail = L"\" -msg=0x7f -nam=\"E";
    const std::wstring filler(kLongestCommandLine - head.size() - tail.size(), L'F');
    const SendRequest request = Read(head + filler + tail);
    EXPECT_EQ(filler, request.copyData);
    EXPECT_EQ(0x7f, request.messageOffset);
    EXPECT_EQ(L"E", request.windowText);
}

TEST(CommandLineSwitches, LongNumberIsNoTrouble)
{
    const std::wstring head = L"q -msg=";
    const std::wstring blanks(kLongestCommandLine - head.size() - 1, L' ');
    EXPECT_EQ(7, Read(head + blanks + L"7").messageOffset);
    const std::wstring zeros(kLongestCommandLine - head.size() - 1, L'0');
    EXPECT_EQ(7, Read(head + zeros + L"7").messageOffset);
}

TEST(CommandLineSwitches, HelpIsAskedForAnywhereInTheLine)
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

} // namespace
