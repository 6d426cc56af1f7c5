// The delivery by WM_COPYDATA, seen by hosts that check what arrives and behave in every way a host
// can.
#include "app/ResultCode.h"
#include "res/resource.h"
#include "tests/support/BytesAsText.h"
#include "tests/support/DialogProbe.h"
#include "tests/support/HostProcess.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

/// The switch that names an encoding; without a name there is none.
std::wstring EncodingSwitch(std::wstring_view name)
{
    return name.empty() ? L"" : L" -copydataencoding=\"" + std::wstring(name) + L"\"";
}

/// The arguments that send `text` to the host without waiting for an answer.
std::wstring Send(const ScriptedHost& host, std::wstring_view text)
{
    return L" -nodlg -kla=" + host.ClassName() + L" -copydata=\"" + std::wstring(text) + L"\"";
}

/// The bytes that a host receives when the text is sent in this encoding.
std::string Arriving(std::wstring_view text, std::wstring_view encoding)
{
    const ScriptedHost host({UniqueName(L"Host"), L"Host", WS_OVERLAPPEDWINDOW});
    EXPECT_EQ(RunQuillet(Send(host, text) + EncodingSwitch(encoding)), kResultAccepted);
    const auto received = host.Received();
    EXPECT_EQ(received.size(), 1u);
    return received.empty() ? "nothing" : BytesAsText(received[0].bytes);
}

/// The wait dialog that a copy-data message names.
HWND DialogOf(const ReceivedMessage& message)
{
    return reinterpret_cast<HWND>(message.wParam);
}

/// The window's text as its own thread tells it, which it can only do while it handles messages.
std::wstring AskForText(HWND window)
{
    constexpr auto kLimit = std::chrono::milliseconds(kWaitLimit).count();
    wchar_t text[100] = {};
    ::SendMessageTimeoutW(window, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text),
                          SMTO_NORMAL, static_cast<UINT>(kLimit), nullptr);
    return text;
}

/// What ANSI means is the machine's choice. These expectations are worked out for one code page.
class CopyDataEncoding : public testing::Test
{
protected:
    void SetUp() override
    {
        constexpr UINT kWorkedOutFor = 1252;
        if (::GetACP() != kWorkedOutFor)
        {
            GTEST_SKIP() << "the ANSI code page here is " << ::GetACP();
        }
    }
};

TEST(CopyData, AnExplicitlyEmptyEncodingNameSendsUtf16)
{
    const ScriptedHost host(UniqueHost());
    EXPECT_EQ(RunQuillet(Send(host, L"\u00E4") + L" -copydataencoding=\"\""), kResultAccepted);
    ASSERT_EQ(host.Received().size(), 1u);
    EXPECT_EQ(BytesAsText(host.Received()[0].bytes), "E4 00");
}

TEST_F(CopyDataEncoding, TextsArriveByteForByte)
{
    constexpr struct
    {
        const wchar_t* text;
        const char* utf16;
        const char* utf8;
        const char* ansi;
    } kRows[] = {
        {L"abc", "61 00 62 00 63 00", "61 62 63", "61 62 63"},
        {L" a b ", "20 00 61 00 20 00 62 00 20 00", "20 61 20 62 20", "20 61 20 62 20"},
        {L"\u00E4", "E4 00", "C3 A4", "E4"},
        {L"\u20AC", "AC 20", "E2 82 AC", "80"},
        // Outside the code page: the system's default character.
        {L"\u0416", "16 04", "D0 96", "3F"},
        {L"\u4E2D", "2D 4E", "E4 B8 AD", "3F"},
        // Outside, but with a near relative that the platform chooses.
        {L"\u0100", "00 01", "C4 80", "41"},
        // A surrogate pair is one character in UTF-8 and two units that ANSI lacks.
        {L"\xD83D\xDE00", "3D D8 00 DE", "F0 9F 98 80", "3F 3F"},
        // A lone surrogate stands for no character: UTF-8 gets the replacement character.
        {L"a\xD83Dz", "61 00 3D D8 7A 00", "61 EF BF BD 7A", "61 3F 7A"},
        {L"\xDE00", "00 DE", "EF BF BD", "3F"},
        {L"\xDE00\xD83D", "00 DE 3D D8", "EF BF BD EF BF BD", "3F 3F"},
        // A non-character is a code point like any other.
        {L"\xFFFF", "FF FF", "EF BF BF", "3F"},
    };
    // All in one text, with a bar before each.
    std::wstring all;
    std::string allUtf16;
    std::string allUtf8;
    std::string allAnsi;
    for (const auto& [text, utf16, utf8, ansi] : kRows)
    {
        all += L"|" + std::wstring(text);
        const char* const gap = allUtf8.empty() ? "" : " ";
        allUtf16 += gap + std::string("7C 00 ") + utf16;
        allUtf8 += gap + std::string("7C ") + utf8;
        allAnsi += gap + std::string("7C ") + ansi;
    }
    EXPECT_EQ(Arriving(all, L""), allUtf16);
    EXPECT_EQ(Arriving(all, L"Utf8"), allUtf8);
    EXPECT_EQ(Arriving(all, L"ansi"), allAnsi);
}

TEST_F(CopyDataEncoding, LongTextsArriveWhole)
{
    constexpr struct
    {
        wchar_t unit;
        const char* utf16;
        const char* utf8;
        const char* ansi;
    } kUnits[] = {{L'a', "61 00", "61", "61"},
                  {L'\u00E4', "E4 00", "C3 A4", "E4"},
                  {L'\u20AC', "AC 20", "E2 82 AC", "80"}};

    constexpr std::size_t kLength = 32'000;
    std::wstring text;
    std::string utf16;
    std::string utf8;
    std::string ansi;
    for (std::size_t i = 0; i < kLength; ++i)
    {
        const auto& unit = kUnits[i % std::size(kUnits)];
        const std::string gap = i == 0 ? "" : " ";
        text += unit.unit;
        utf16 += gap + unit.utf16;
        utf8 += gap + unit.utf8;
        ansi += gap + unit.ansi;
    }
    // Not EXPECT_EQ: a failure would print pages.
    EXPECT_TRUE(Arriving(text, L"") == utf16);
    EXPECT_TRUE(Arriving(text, L"UTF-8") == utf8);
    EXPECT_TRUE(Arriving(text, L"ANSI") == ansi);
}

TEST(CopyData, DataCarriesAllBitsOfTheWParam)
{
    for (const auto* encoding : {L"", L"UTF-8"})
    {
        const ScriptedHost host(UniqueHost());
        EXPECT_EQ(RunQuillet(Send(host, L"x") + L" -wparam=-0x123456789ABCDEF" +
                             EncodingSwitch(encoding)),
                  kResultAccepted);
        ASSERT_EQ(host.Received().size(), 1u);
        EXPECT_EQ(host.Received()[0].data, 0xFEDC'BA98'7654'3211u);
    }
}

TEST(CopyData, MessageOffsetAndLParamHaveNoEffect)
{
    const ScriptedHost host(UniqueHost());
    EXPECT_EQ(RunQuillet(Send(host, L"abc") + L" -msg=7 -lparam=9"), kResultAccepted);
    const auto received = host.ReceivedSoFar();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, UINT{WM_COPYDATA});
    EXPECT_EQ(received[0].data, 0u);
    EXPECT_EQ(BytesAsText(received[0].bytes), "61 00 62 00 63 00");
}

TEST(CopyData, AnExplicitlyEmptyTextSendsTheNotificationInstead)
{
    const ScriptedHost host(UniqueHost());
    EXPECT_EQ(RunQuillet(Send(host, L"") + L" -msg=7"), kResultCancelled);
    const auto received = host.WaitForMessages(1);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, WM_USER + 7u);
}

TEST(CopyData, AReturnValueAcceptsThatIsZeroInItsLowerHalfOnly)
{
    const ScriptedHost host(UniqueHost(), ReturnFromCopyData(0x1'0000'0000));
    EXPECT_EQ(RunQuillet(Send(host, L"abc")), kResultAccepted);
}

TEST(CopyData, AWindowThatDoesNotKnowTheMessageRefuses)
{
    const ScriptedHost host(
        UniqueHost(), [](HWND window, const ReceivedMessage& message) -> std::optional<LRESULT> {
            return ::DefWindowProcW(window, message.message, message.wParam, message.lParam);
        });
    EXPECT_EQ(RunQuillet(Send(host, L"abc")), kResultSendFailed);
}

TEST(CopyData, RefusalEndsTheRunWithoutWaiting)
{
    const ScriptedHost host(UniqueHost(), ReturnFromCopyData(0));
    EXPECT_EQ(RunQuillet(L" -copydata=abc -kla=" + host.ClassName()), kResultSendFailed);
    ASSERT_EQ(host.Received().size(), 1u);
    EXPECT_NE(host.Received()[0].wParam, 0u);
}

TEST(CopyData, WithoutADialogThereIsNoHandleToAnswerTo)
{
    const ScriptedHost host(UniqueHost());
    EXPECT_EQ(RunQuillet(Send(host, L"abc")), kResultAccepted);
    ASSERT_EQ(host.Received().size(), 1u);
    EXPECT_EQ(host.Received()[0].wParam, 0u);
}

TEST(CopyData, TheHandleIsTheWaitDialogs)
{
    const ScriptedHost host(UniqueHost());
    const QuilletRun run(L" -copydata=abc -kla=" + host.ClassName());
    const auto received = host.WaitForMessages(1);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(DialogOf(received[0]), run.Dialog());
    ::PostMessageW(run.Dialog(), WM_USER + 1, 0, 0);
    EXPECT_EQ(run.WaitForExit(), 1);
}

TEST(CopyData, AnAnswerPostedAtOnceReplacesTheZero)
{
    const ScriptedHost host(UniqueHost(), AnswerWith(4096));
    EXPECT_EQ(RunQuillet(L" -copydata=abc -kla=" + host.ClassName()), 4096);
}

TEST(CopyData, AnAnswerPostedASecondLaterIsWaitedFor)
{
    constexpr UINT kSecond = 1000;
    ScriptedHostOptions options = UniqueHost();
    options.alsoRecord = {WM_TIMER};
    const ScriptedHost host(
        options, [](HWND window, const ReceivedMessage& message) -> std::optional<LRESULT> {
            if (message.message == WM_COPYDATA)
            {
                // The dialog's handle serves as the timer's name and comes back with it.
                ::SetTimer(window, message.wParam, kSecond, nullptr);
            }
            if (message.message == WM_TIMER)
            {
                ::KillTimer(window, message.wParam);
                ::PostMessageW(DialogOf(message), WM_USER + 5, 0, 0);
            }
            return std::nullopt;
        });
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(RunQuillet(L" -copydata=abc -kla=" + host.ClassName()), 5);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(kSecond));
}

TEST(CopyData, WithoutAnAnswerTheUserCancels)
{
    const ScriptedHost host(UniqueHost());
    const QuilletRun run(L" -copydata=abc -kla=" + host.ClassName());
    ASSERT_EQ(host.WaitForMessages(1).size(), 1u);
    const HWND dialog = run.WaitForWaitingDialog();
    ASSERT_NE(dialog, nullptr);
    ::PostMessageW(::GetDlgItem(dialog, IDCANCEL), BM_CLICK, 0, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

TEST(CopyData, AHangingHostIsWaitedForUntilItIsKilled)
{
    for (const auto* dialogSwitch : {L"", L" -nodlg"})
    {
        const std::wstring name = UniqueName(L"Hanging");
        HostProcess host(name, L"Host", L"hang");
        const QuilletRun run(L" -copydata=abc -kla=" + name + dialogSwitch);
        ASSERT_TRUE(host.WaitUntilReceived());
        EXPECT_TRUE(run.IsRunning());
        host.Kill();
        EXPECT_EQ(run.WaitForExit(), kResultSendFailed);
    }
}

// The dialog lives on while the send blocks: whoever sends it something is not held up by the host.
TEST(CopyData, TheDialogAnswersOthersWhileTheHostHangs)
{
    const std::wstring name = UniqueName(L"Hanging");
    HostProcess host(name, L"Host", L"hang");
    const QuilletRun run(L" -copydata=abc -kla=" + name);
    ASSERT_TRUE(host.WaitUntilReceived());
    EXPECT_EQ(AskForText(run.Dialog()), kWaitDialogCaption);
    host.Kill();
    EXPECT_EQ(run.WaitForExit(), kResultSendFailed);
}

// What the handler returns counts, even when its window is gone by then.
TEST(CopyData, AHostMayDestroyItsWindowInsideTheHandler)
{
    for (const LRESULT returned : {1, 0})
    {
        const ScriptedHost host(UniqueHost(), [returned](HWND window, const ReceivedMessage&) {
            ::DestroyWindow(window);
            return std::optional(returned);
        });
        EXPECT_EQ(RunQuillet(Send(host, L"abc")),
                  returned == 0 ? kResultSendFailed : kResultAccepted);
        EXPECT_FALSE(::IsWindow(host.Handle()));
    }
}

TEST(CopyData, TheDialogHandlesWhatTheHostSendsFromInsideTheHandler)
{
    std::wstring text;
    const ScriptedHost host(UniqueHost(),
                            [&](HWND, const ReceivedMessage& message) -> std::optional<LRESULT> {
                                const HWND dialog = DialogOf(message);
                                ::SendMessageW(dialog, WM_NULL, 0, 0);
                                text = AskForText(dialog);
                                ::PostMessageW(dialog, WM_USER + 6, 0, 0);
                                return TRUE;
                            });
    EXPECT_EQ(RunQuillet(L" -copydata=abc -kla=" + host.ClassName()), 6);
    EXPECT_EQ(text, kWaitDialogCaption);
}

// Kept on purpose: the loop that starts afterwards does not know of it, which is why hosts post
// their answer.
TEST(CopyData, AnAnswerSentFromInsideTheHandlerOnlyHidesTheDialog)
{
    bool shownBefore = false;
    bool shownAfter = true;
    const ScriptedHost host(UniqueHost(),
                            [&](HWND, const ReceivedMessage& message) -> std::optional<LRESULT> {
                                const HWND dialog = DialogOf(message);
                                shownBefore = ::IsWindowVisible(dialog);
                                ::SendMessageW(dialog, WM_USER + 7, 0, 0);
                                shownAfter = ::IsWindowVisible(dialog);
                                ::PostMessageW(dialog, WM_USER + 9, 0, 0);
                                return TRUE;
                            });
    EXPECT_EQ(RunQuillet(L" -copydata=abc -kla=" + host.ClassName()), 9);
    EXPECT_TRUE(shownBefore);
    EXPECT_FALSE(shownAfter);
}

/// The About box that this dialog has opened, once it is shown.
HWND WaitForAboutBox(HWND dialog)
{
    DWORD process = 0;
    ::GetWindowThreadProcessId(dialog, &process);
    HWND box = nullptr;
    WaitUntil([&] {
        box = FindProcessWindow(process, nullptr, kAboutBoxCaption);
        return ::IsWindowVisible(box);
    });
    return box;
}

// The box that the host opens has a loop of its own, which takes the answer before the wait has
// begun. Kept on purpose, like the answer that is sent too early.
TEST(CopyData, AnAnswerTakenByAnAboutBoxInsideTheHandlerOnlyHidesTheDialog)
{
    HWND box = nullptr;
    bool hidden = false;
    const ScriptedHost host(UniqueHost(),
                            [&](HWND, const ReceivedMessage& message) -> std::optional<LRESULT> {
                                const HWND dialog = DialogOf(message);
                                ::SendNotifyMessageW(dialog, WM_SYSCOMMAND, IDM_ABOUTBOX, 0);
                                box = WaitForAboutBox(dialog);
                                ::PostMessageW(dialog, WM_USER + 7, 0, 0);
                                hidden = WaitUntil([&] { return !::IsWindowVisible(dialog); });
                                return TRUE;
                            });
    const QuilletRun run(L" -copydata=abc -kla=" + host.ClassName());
    ASSERT_TRUE(host.WaitForAnswers(1));
    EXPECT_TRUE(hidden);
    ::PostMessageW(box, WM_COMMAND, IDOK, 0);
    ASSERT_TRUE(WaitUntil([&] { return !::IsWindow(box); }));
    // It waits, unseen, and the next answer is the one.
    const HWND dialog = run.WaitForWaitingDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(::IsWindowVisible(dialog));
    ::PostMessageW(dialog, WM_USER + 9, 0, 0);
    EXPECT_EQ(run.WaitForExit(), 9);
}

// Two runs at once with one host: each gets the answer that is meant for it.
TEST(CopyData, AHostMayCallItselfInsideTheHandler)
{
    std::optional<QuilletRun> inner;
    const std::wstring className = UniqueName(L"Host");
    const ScriptedHost host(
        {className, L"Host"}, [&](HWND, const ReceivedMessage& message) -> std::optional<LRESULT> {
            const bool isOuter = message.Text() == L"outer";
            if (isOuter)
            {
                inner.emplace(L" -copydata=inner -kla=" + className);
            }
            ::PostMessageW(DialogOf(message), WM_USER + (isOuter ? 8 : 5), 0, 0);
            return TRUE;
        });
    EXPECT_EQ(RunQuillet(L" -copydata=outer -kla=" + className), 8);
    ASSERT_TRUE(inner.has_value());
    EXPECT_EQ(inner->WaitForExit(), 5);
}

} // namespace
