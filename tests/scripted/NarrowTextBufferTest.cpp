#include "delivery/NarrowTextBuffer.h"

#include "tests/scripted/ScriptedPlatform.h"
#include "tests/scripted/Thrown.h"

#include <cstring>

namespace
{

/// Texts that fit into the inline store and that do not.
const std::wstring kShort(31, L'a');
const std::wstring kLong(32, L'a');

const ScriptedConversion kTooSmall{0, ERROR_INSUFFICIENT_BUFFER};

ScriptedConversion Failing(DWORD error)
{
    return {0, error};
}

ScriptedConversion Giving(int bytes)
{
    return {bytes, ERROR_SUCCESS};
}

std::string Conversion(int units, const char* store, int capacity)
{
    return "WideCharToMultiByte(65001, 0, " + std::to_string(units) + " units, " + store + ", " +
           std::to_string(capacity) + ")";
}

class NarrowTextBufferTest : public testing::Test
{
protected:
    /// Converts and releases.
    static void Convert(const std::wstring& text, UINT codePage = CP_UTF8)
    {
        const NarrowTextBuffer buffer(text.c_str(), codePage);
    }

    ScriptedPlatform m_platform;
};

TEST_F(NarrowTextBufferTest, ThirtyOneUnitsLiveInside)
{
    {
        const NarrowTextBuffer buffer(kShort.c_str(), CP_UTF8);
        EXPECT_STREQ(buffer.Bytes(), std::string(31, 'a').c_str());
    }
    EXPECT_TRUE(m_platform.Made({Conversion(32, "inline store", 128)}));
}

TEST_F(NarrowTextBufferTest, ThirtyTwoUnitsLiveInABlock)
{
    {
        const NarrowTextBuffer buffer(kLong.c_str(), CP_UTF8);
        EXPECT_STREQ(buffer.Bytes(), std::string(32, 'a').c_str());
    }
    EXPECT_TRUE(m_platform.Made(
        {"calloc(132, 1) = block 1", Conversion(33, "block 1", 132), "free(block 1)"}));
}

TEST_F(NarrowTextBufferTest, EmptyTextIsItsTerminator)
{
    const NarrowTextBuffer buffer(L"", CP_UTF8);
    EXPECT_STREQ(buffer.Bytes(), "");
    EXPECT_TRUE(m_platform.Made({Conversion(1, "inline store", 4)}));
}

TEST_F(NarrowTextBufferTest, CodePageIsPassedOn)
{
    Convert(L"a", CP_ACP);
    EXPECT_TRUE(m_platform.Made({"WideCharToMultiByte(0, 0, 2 units, inline store, 8)"}));
}

TEST_F(NarrowTextBufferTest, FirstCapacityHoldsTheLongestSequences)
{
    const std::wstring euros(31, L'\u20AC');
    const NarrowTextBuffer buffer(euros.c_str(), CP_UTF8);
    EXPECT_EQ(std::strlen(buffer.Bytes()), 93u);
}

TEST_F(NarrowTextBufferTest, TooSmallInlineStoreGivesWayToABlock)
{
    m_platform.conversions = {kTooSmall, Giving(129), Giving(129)};
    Convert(kShort);
    EXPECT_TRUE(m_platform.Made({Conversion(32, "inline store", 128), Conversion(32, "no store", 0),
                                 "calloc(129, 1) = block 1", Conversion(32, "block 1", 129),
                                 "free(block 1)"}));
}

TEST_F(NarrowTextBufferTest, TooSmallInlineStoreStaysWhenItSuffices)
{
    m_platform.conversions = {kTooSmall, Giving(128), Giving(128)};
    Convert(kShort);
    EXPECT_TRUE(m_platform.Made({Conversion(32, "inline store", 128), Conversion(32, "no store", 0),
                                 Conversion(32, "inline store", 128)}));
}

TEST_F(NarrowTextBufferTest, TooSmallBlockIsResized)
{
    m_platform.conversions = {kTooSmall, Giving(500), Giving(500)};
    Convert(kLong);
    EXPECT_TRUE(m_platform.Made(
        {"calloc(132, 1) = block 1", Conversion(33, "block 1", 132), Conversion(33, "no store", 0),
         "_recalloc(block 1, 500, 1) = block 2", Conversion(33, "block 2", 500), "free(block 2)"}));
}

TEST_F(NarrowTextBufferTest, BlockIsResizedDownToo)
{
    m_platform.conversions = {kTooSmall, Giving(129), Giving(129)};
    Convert(kLong);
    EXPECT_TRUE(m_platform.Made(
        {"calloc(132, 1) = block 1", Conversion(33, "block 1", 132), Conversion(33, "no store", 0),
         "_recalloc(block 1, 129, 1) = block 2", Conversion(33, "block 2", 129), "free(block 2)"}));
}

TEST_F(NarrowTextBufferTest, BlockIsGivenUpWhenTheInlineStoreSuffices)
{
    m_platform.conversions = {kTooSmall, Giving(128), Giving(128)};
    Convert(kLong);
    EXPECT_TRUE(m_platform.Made({"calloc(132, 1) = block 1", Conversion(33, "block 1", 132),
                                 Conversion(33, "no store", 0), "free(block 1)",
                                 Conversion(33, "inline store", 128)}));
}

TEST_F(NarrowTextBufferTest, SecondRefusalIsAFailure)
{
    m_platform.conversions = {kTooSmall, Giving(500), kTooSmall};
    EXPECT_EQ(ThrownCode([] { Convert(kLong); }), HRESULT_FROM_WIN32(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_TRUE(m_platform.Made(
        {"calloc(132, 1) = block 1", Conversion(33, "block 1", 132), Conversion(33, "no store", 0),
         "_recalloc(block 1, 500, 1) = block 2", Conversion(33, "block 2", 500), "free(block 2)"}));
}

// Nothing special: the conversion into no bytes fails, and that failure counts.
TEST_F(NarrowTextBufferTest, FailedMeasurementEndsInTheFailureOfTheSecondAttempt)
{
    m_platform.conversions = {kTooSmall, Failing(ERROR_INVALID_FLAGS),
                              Failing(ERROR_INVALID_PARAMETER)};
    EXPECT_EQ(ThrownCode([] { Convert(kLong); }), HRESULT_FROM_WIN32(ERROR_INVALID_PARAMETER));
    EXPECT_TRUE(m_platform.Made({"calloc(132, 1) = block 1", Conversion(33, "block 1", 132),
                                 Conversion(33, "no store", 0), "free(block 1)",
                                 Conversion(33, "inline store", 0)}));
}

TEST_F(NarrowTextBufferTest, NegativeMeasurementIsAnInvalidArgument)
{
    m_platform.conversions = {kTooSmall, Giving(-1)};
    EXPECT_EQ(ThrownCode([] { Convert(kLong); }), E_INVALIDARG);
    EXPECT_TRUE(m_platform.Made({"calloc(132, 1) = block 1", Conversion(33, "block 1", 132),
                                 Conversion(33, "no store", 0), "free(block 1)"}));
}

TEST_F(NarrowTextBufferTest, OtherFailureIsNotTriedAgain)
{
    const struct
    {
        DWORD error;
        HRESULT code;
    } rows[] = {
        {ERROR_INVALID_PARAMETER, static_cast<HRESULT>(0x80070057)},
        {ERROR_NO_UNICODE_TRANSLATION, static_cast<HRESULT>(0x80070459)},
        {0x12345, static_cast<HRESULT>(0x80072345)}, // the low 16 bits
        {0, 0},                                      // zero and negative codes as they are
        {0x80070005, E_ACCESSDENIED},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.error);
        m_platform.ForgetCalls();
        m_platform.conversions = {Failing(row.error)};
        EXPECT_EQ(ThrownCode([] { Convert(kShort); }), row.code);
        EXPECT_TRUE(m_platform.Made({Conversion(32, "inline store", 128)}));
    }
}

TEST_F(NarrowTextBufferTest, FailureFreesTheBlock)
{
    m_platform.conversions = {Failing(ERROR_INVALID_PARAMETER)};
    EXPECT_EQ(ThrownCode([] { Convert(kLong); }), E_INVALIDARG);
    EXPECT_TRUE(m_platform.Made(
        {"calloc(132, 1) = block 1", Conversion(33, "block 1", 132), "free(block 1)"}));
}

TEST_F(NarrowTextBufferTest, UnknownCodePageFails)
{
    EXPECT_EQ(ThrownCode([] { Convert(L"a", 12345); }), E_INVALIDARG);
}

TEST_F(NarrowTextBufferTest, NoMemoryForTheFirstBlock)
{
    m_platform.memoryFailsAfter = 0;
    EXPECT_TRUE(RunsOutOfMemory([] { Convert(kLong); }));
    EXPECT_TRUE(m_platform.Made({"calloc(132, 1) = NULL"}));
}

TEST_F(NarrowTextBufferTest, NoMemoryForTheBlockAfterTheInlineStore)
{
    m_platform.memoryFailsAfter = 0;
    m_platform.conversions = {kTooSmall, Giving(129)};
    EXPECT_TRUE(RunsOutOfMemory([] { Convert(kShort); }));
    EXPECT_TRUE(m_platform.Made({Conversion(32, "inline store", 128), Conversion(32, "no store", 0),
                                 "calloc(129, 1) = NULL"}));
}

TEST_F(NarrowTextBufferTest, NoMemoryForTheResizedBlockFreesTheOldOne)
{
    m_platform.memoryFailsAfter = 1;
    m_platform.conversions = {kTooSmall, Giving(500)};
    EXPECT_TRUE(RunsOutOfMemory([] { Convert(kLong); }));
    EXPECT_TRUE(m_platform.Made({"calloc(132, 1) = block 1", Conversion(33, "block 1", 132),
                                 Conversion(33, "no store", 0), "_recalloc(block 1, 500, 1) = NULL",
                                 "free(block 1)"}));
}

// A text whose fourfold size no longer fits into 31 bits; only its length is pretended.
TEST_F(NarrowTextBufferTest, TooLongATextIsAnInvalidArgument)
{
    m_platform.textLength = 0x1FFFFFFF;
    EXPECT_EQ(ThrownCode([] { NarrowTextBuffer(L"", CP_UTF8); }), E_INVALIDARG);
    EXPECT_TRUE(m_platform.Made({}));
}

TEST_F(NarrowTextBufferTest, LongestTextAsksForItsFourfoldSize)
{
    m_platform.textLength = 0x1FFFFFFE;
    m_platform.memoryFailsAfter = 0;
    EXPECT_TRUE(RunsOutOfMemory([] { NarrowTextBuffer(L"", CP_UTF8); }));
    EXPECT_TRUE(m_platform.Made({"calloc(2147483644, 1) = NULL"}));
}

} // namespace
