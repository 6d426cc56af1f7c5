// The guard and the alarm that the compiler's checks of the stack use.
#include "tests/unit/DeathTest.h"

#include <cstdint>
#include <cstdlib>
#include <set>

extern "C" {
extern std::uintptr_t __stack_chk_guard;
[[noreturn]] void __stack_chk_fail();
}

namespace
{

using StackProtectorDeathTest = DeathTest;

TEST_F(StackProtectorDeathTest, GuardDiffersFromStartToStartAndEndsInAZeroByte)
{
    constexpr int kStarts = 8;
    std::set<int> guards; // their low halves
    for (int start = 0; start < kStarts; ++start)
    {
        EXPECT_EXIT(
            std::_Exit(static_cast<int>(__stack_chk_guard)),
            [&guards](int guard) {
                guards.insert(guard);
                return (guard & 0xFF) == 0;
            },
            "");
    }
    EXPECT_LT(kStarts / 2, static_cast<int>(guards.size()));
}

TEST_F(StackProtectorDeathTest, AlarmEndsTheProcessWithThePlatformsCode)
{
    constexpr auto kStackBufferOverrun = static_cast<int>(0xC0000409);
    EXPECT_EXIT(__stack_chk_fail(), testing::ExitedWithCode(kStackBufferOverrun), "");
}

} // namespace
