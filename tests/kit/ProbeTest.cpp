// What a self-test has to cope with: never part of a kit, it takes the place of a test program when
// the kit itself is tested.
#include "tests/support/ExpectedDifference.h"

#include <gtest/gtest.h>

namespace
{

TEST(Probe, Passes)
{
    EXPECT_TRUE(ExpectsAsUnderWine("probe", "under Wine", "under Windows") == RunsUnderWine());
}

TEST(Probe, Fails)
{
    EXPECT_EQ(1, 2) << "as it should\non two lines";
}

TEST(Probe, IsSkipped)
{
    GTEST_SKIP() << "no reason";
}

TEST(Probe, Crashes)
{
    ::TerminateProcess(::GetCurrentProcess(), 0xC0000005);
}

TEST(Probe, ComesAfterTheCrash) {}

TEST(ProbeThatHangs, Hangs)
{
    ::Sleep(INFINITE);
}

TEST(ProbeThatHangs, ComesAfterTheHang) {}

} // namespace
