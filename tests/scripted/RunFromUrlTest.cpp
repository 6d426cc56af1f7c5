// What a URL's escapes lead to at the platform: zeros inside texts, and bytes that are converted.
#include "app/QuilletApp.h"
#include "app/ResultCode.h"
#include "tests/scripted/ScriptedPlatform.h"

namespace
{

class RunFromUrl : public testing::Test
{
protected:
    /// The exit code of a run without dialog whose URL has this query string.
    int ExitCode(const std::wstring& query)
    {
        m_platform.found = m_target;
        m_platform.commandLine = L"quillet.exe -nodlg -url=x?" + query;
        CQuilletApp app;
        return AfxWinMain();
    }
    static Calls CopyDataSent(const char* bytes)
    {
        return {std::string("SendMessageW(target, WM_COPYDATA, NULL, dwData 0, ") + bytes + ")"};
    }

    ScriptedPlatform m_platform;
    const HWND m_target = m_platform.AddWindow(
        {.name = "target", .thread = 9, .text = L"Host - 1", .windowClass = L"HostFrame"});
    const Calls m_found = {"FindWindowW(\"Host\", NULL)"};
    const Calls m_notified = {"SendNotifyMessageW(target, 0x400, 0, 0)"};
};

// --- zeros ---

// A text in UTF-16 is sent as it is stored; a converted one ends at its first zero.
TEST_F(RunFromUrl, ZeroEndsAConvertedText)
{
    EXPECT_EQ(ExitCode(L"kla=Host&copydata=a%00b"), kResultAccepted);
    EXPECT_TRUE(m_platform.Made(m_found + CopyDataSent("6 bytes: 61 00 00 00 62 00")));
    for (const wchar_t* encoding : {L"UTF-8", L"utf8", L"ANSI"})
    {
        m_platform.ForgetCalls();
        EXPECT_EQ(ExitCode(std::wstring(L"kla=Host&copydata=a%00b&copydataencoding=") + encoding),
                  kResultAccepted);
        const std::string codePage = encoding == std::wstring(L"ANSI") ? "0" : "65001";
        EXPECT_TRUE(m_platform.Made(
            m_found + Calls{"WideCharToMultiByte(" + codePage + ", 0, 2 units, inline store, 8)"} +
            CopyDataSent("1 bytes: 61")));
    }
}

// It is no empty text, so it is sent; nothing of it is left.
TEST_F(RunFromUrl, TextOfNothingButAZeroIsStillATextToSend)
{
    EXPECT_EQ(ExitCode(L"kla=Host&copydata=%00&copydataencoding=UTF-8"), kResultAccepted);
    EXPECT_TRUE(m_platform.Made(m_found +
                                Calls{"WideCharToMultiByte(65001, 0, 1 units, inline store, 4)"} +
                                CopyDataSent("0 bytes: ")));
}

TEST_F(RunFromUrl, ZeroEndsClassAndText)
{
    EXPECT_EQ(ExitCode(L"kla=Host%00Frame&nam=Mein%00Fenster"), kResultCancelled);
    EXPECT_TRUE(m_platform.Made(Calls{"FindWindowW(\"Host\", \"Mein\")"} + m_notified));
}

// They count as given, and whoever reads them reads an empty text.
TEST_F(RunFromUrl, NothingButAZeroIsAnEmptyNameToLookFor)
{
    EXPECT_EQ(ExitCode(L"nam=%00"), kResultCancelled);
    EXPECT_TRUE(m_platform.Made(Calls{"FindWindowW(NULL, \"\")"} + m_notified));
    m_platform.ForgetCalls();
    EXPECT_EQ(ExitCode(L"kla=%00"), kResultCancelled);
    EXPECT_TRUE(m_platform.Made(Calls{"FindWindowW(\"\", NULL)"} + m_notified));
}

TEST_F(RunFromUrl, NothingButAZeroIsAnEmptyPattern)
{
    m_platform.Window(m_target).text.clear();
    EXPECT_EQ(ExitCode(L"seaglob&nam=%00"), kResultCancelled);
    EXPECT_TRUE(m_platform.Made(
        Calls{"EnumWindows()", "GetWindowTextW(target, zeroed buffer, 4096)"} + m_notified));
    m_platform.ForgetCalls();
    EXPECT_EQ(ExitCode(L"seaglob&kla=%00"), kResultWindowNotFound);
    EXPECT_TRUE(
        m_platform.Made({"EnumWindows()", "RealGetWindowClassW(target, zeroed buffer, 4096)"}));
}

TEST_F(RunFromUrl, ZeroEndsAPattern)
{
    EXPECT_EQ(ExitCode(L"seaglob&nam=Host*%00x"), kResultCancelled);
    EXPECT_TRUE(m_platform.Made(
        Calls{"EnumWindows()", "GetWindowTextW(target, zeroed buffer, 4096)"} + m_notified));
}

TEST_F(RunFromUrl, ZeroEndsTheEncodingsName)
{
    EXPECT_EQ(ExitCode(L"kla=Host&copydata=a&copydataencoding=UTF-8%00x"), kResultAccepted);
    EXPECT_TRUE(m_platform.Made(m_found +
                                Calls{"WideCharToMultiByte(65001, 0, 2 units, inline store, 8)"} +
                                CopyDataSent("1 bytes: 61")));
}

// --- two bytes ---

TEST_F(RunFromUrl, TwoBytesAreConvertedWithTheirTerminator)
{
    EXPECT_EQ(ExitCode(L"kla=Host&copydata=%c3%a4"), kResultAccepted);
    EXPECT_TRUE(
        m_platform.Made(Calls{"MultiByteToWideChar(65001, 0, 3 bytes: C3 A4 00, room for 2)"} +
                        m_found + CopyDataSent("2 bytes: E4 00")));
}

TEST_F(RunFromUrl, ConversionThatWritesNothingGivesAZero)
{
    m_platform.bytePairsConvert = false;
    EXPECT_EQ(ExitCode(L"kla=Host&copydata=a%c3%a4b"), kResultAccepted);
    EXPECT_TRUE(
        m_platform.Made(Calls{"MultiByteToWideChar(65001, 0, 3 bytes: C3 A4 00, room for 2)"} +
                        m_found + CopyDataSent("6 bytes: 61 00 00 00 62 00")));
}

TEST_F(RunFromUrl, EscapesThatStandAloneAreNotConverted)
{
    EXPECT_EQ(ExitCode(L"kla=%41x%c3x%a4"), kResultCancelled);
    EXPECT_TRUE(m_platform.Made(Calls{"FindWindowW(\"%41x%c3x%a4\", NULL)"} + m_notified));
}

} // namespace
