// What whoever runs tests has to cope with: never part of a kit, it takes the place of a test
// program when the kit, or the limit of a test, is tested itself.
#include "tests/support/ExpectedDifference.h"
#include "tests/support/HostProcess.h"

#include <gtest/gtest.h>

#include <iostream>

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

TEST(ProbeThatHangs, Hangs)
{
    const HostProcess host(L"ProbeHost", L"Probe");
    std::cout << (host.Window() == nullptr ? "no host" : "a host is there") << std::endl;
    ::Sleep(INFINITE);
}

TEST(ProbeThatHangs, ComesAfterTheHang) {}

} // namespace
