#include "app/ResultCode.h"

#include <windows.h>

#include "app/AbnormalEnd.h"

#include <gtest/gtest.h>

namespace
{

// Callers compare with numbers. All other tests use the names.
TEST(ResultCode, NumbersAreThoseThatCallersBuildOn)
{
    EXPECT_EQ(kResultAccepted, 0);
    EXPECT_EQ(kResultCancelled, -1);
    EXPECT_EQ(kResultWindowNotFound, -2);
    EXPECT_EQ(kResultSendFailed, -3);
}

TEST(ResultCode, AnswersAreTheMessagesThatHostsBuildOn)
{
    EXPECT_EQ(kFirstAnswer, static_cast<unsigned>(WM_USER));
    EXPECT_EQ(kLastAnswer, 5120u);
}

TEST(ResultCode, AbnormalEndHasThePlatformsNumber)
{
    EXPECT_EQ(kAbnormalEndExitCode, 0xE06D7363);
}

} // namespace
