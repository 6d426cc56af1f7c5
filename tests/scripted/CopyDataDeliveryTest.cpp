#include "delivery/CopyDataDelivery.h"

#include "app/SendRequest.h"
#include "tests/scripted/ScriptedPlatform.h"
#include "tests/scripted/Thrown.h"

namespace
{

class CopyDataDelivery : public testing::Test
{
protected:
    CopyDataDelivery() { m_request.copyData = L"abc"; }

    ResultCode Deliver() { return DeliverCopyData(m_target, m_request, nullptr); }

    ScriptedPlatform m_platform;
    HWND m_target = m_platform.AddWindow({.name = "target"});
    SendRequest m_request;
};

std::string Sent(const char* bytes)
{
    return std::string("SendMessageW(target, WM_COPYDATA, NULL, dwData 0, ") + bytes + ")";
}

struct EncodingRow
{
    const wchar_t* name;
    Calls calls;
};

TEST_F(CopyDataDelivery, EncodingIsChosenByItsName)
{
    const Calls ansi = {"WideCharToMultiByte(0, 0, 4 units, inline store, 16)",
                        Sent("3 bytes: 61 62 63")};
    const Calls utf8 = {"WideCharToMultiByte(65001, 0, 4 units, inline store, 16)",
                        Sent("3 bytes: 61 62 63")};
    const Calls utf16 = {Sent("6 bytes: 61 00 62 00 63 00")};
    // clang-format off
    const EncodingRow rows[] = {
        {L"ANSI", ansi},
        {L"ansi", ansi},
        {L"aNsI", ansi},
        {L"UTF-8", utf8},
        {L"utf-8", utf8},
        {L"Utf-8", utf8},
        {L"UTF8", utf8},
        {L"utf8", utf8},
        {L"uTf8", utf8},
        {L"", utf16},
        {L"UNICODE", utf16},
        {L"unicode", utf16},
        {L"UTF-16", utf16},
        {L" ANSI", utf16}, // the name is compared whole
        {L"ANSI ", utf16},
        {L" UTF-8", utf16},
        {L"UTF-8 ", utf16},
        {L"UTF_8", utf16},
        {L"UTF-", utf16},
        {L"UTF-88", utf16},
        {L"ANS", utf16},
        {L"ANSII", utf16},
        {L"Latin1", utf16},
        {L"65001", utf16},
    };
    // clang-format on
    for (const EncodingRow& row : rows)
    {
        SCOPED_TRACE(row.name);
        m_platform.ForgetCalls();
        m_request.copyDataEncoding = row.name;
        EXPECT_EQ(Deliver(), kResultAccepted);
        EXPECT_TRUE(m_platform.Made(row.calls));
    }
}

TEST_F(CopyDataDelivery, UmlautTakesTwoBytesInUtf8)
{
    m_request.copyData = L"\u00E4";
    m_request.copyDataEncoding = L"UTF-8";
    Deliver();
    EXPECT_TRUE(m_platform.Made(
        {"WideCharToMultiByte(65001, 0, 2 units, inline store, 8)", Sent("2 bytes: C3 A4")}));
}

TEST_F(CopyDataDelivery, Utf16IsSentFromTheRequestItself)
{
    m_request.copyData = std::wstring(1'000, L'x');
    const void* sent = nullptr;
    m_platform.duringCopyData = [&sent](const COPYDATASTRUCT& data) { sent = data.lpData; };
    Deliver();
    EXPECT_EQ(sent, m_request.copyData.data());
}

TEST_F(CopyDataDelivery, WParamTravelsAsDwDataAndTheRestDoesNot)
{
    m_request.wParam = -5;
    m_request.lParam = 6;
    m_request.messageOffset = 7;
    Deliver();
    EXPECT_TRUE(m_platform.Made(
        {"SendMessageW(target, WM_COPYDATA, NULL, dwData -5, 6 bytes: 61 00 62 00 63 00)"}));
}

TEST_F(CopyDataDelivery, WaitDialogTravelsAlong)
{
    const HWND dialog = m_platform.AddWindow({.name = "dialog"});
    DeliverCopyData(m_target, m_request, dialog);
    EXPECT_TRUE(m_platform.Made(
        {"SendMessageW(target, WM_COPYDATA, dialog, dwData 0, 6 bytes: 61 00 62 00 63 00)"}));
}

TEST_F(CopyDataDelivery, HostsWholeAnswerCounts)
{
    const struct
    {
        LRESULT answer;
        // clang-format off
        ResultCode result;
    } rows[] = {
        {1, kResultAccepted},
        {-1, kResultAccepted},
        {0x100000000, kResultAccepted}, // its low 32 bits are zero
        {INT64_MIN, kResultAccepted},
        {0, kResultSendFailed},
    };
    // clang-format on
    for (const auto& row : rows)
    {
        m_platform.copyDataResult = row.answer;
        EXPECT_EQ(Deliver(), row.result) << row.answer;
    }
}

TEST_F(CopyDataDelivery, ConvertedTextIsReleasedRightAfterTheSend)
{
    m_request.copyData = std::wstring(32, L'a');
    m_request.copyDataEncoding = L"UTF8";
    for (const LRESULT answer : {1, 0})
    {
        m_platform.ForgetCalls();
        m_platform.copyDataResult = answer;
        Deliver();
        const std::string block = answer == 1 ? "block 1" : "block 2";
        EXPECT_TRUE(
            m_platform.Made({"calloc(132, 1) = " + block,
                             "WideCharToMultiByte(65001, 0, 33 units, " + block + ", 132)",
                             Sent("32 bytes: 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 ..."),
                             "free(" + block + ")"}));
    }
}

TEST_F(CopyDataDelivery, FailedConversionSendsNothing)
{
    m_request.copyDataEncoding = L"ANSI";
    m_platform.conversions = {{0, ERROR_INVALID_PARAMETER}};
    EXPECT_EQ(ThrownCode([this] { Deliver(); }), E_INVALIDARG);
    EXPECT_TRUE(m_platform.Made({"WideCharToMultiByte(0, 0, 4 units, inline store, 16)"}));
}

} // namespace
