#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <random>

/// The seed of all random tests of this process: what the environment variable QUILLET_TEST_SEED
/// says, a decimal number, or else one that is drawn. It is printed when it is first asked for, so
/// that it is known whatever way the test ends.
inline std::mt19937::result_type RandomSeed()
{
    static const std::mt19937::result_type seed = [] {
        const char* const given = std::getenv("QUILLET_TEST_SEED");
        const auto chosen =
            given == nullptr
                ? std::random_device()()
                : static_cast<std::mt19937::result_type>(std::strtoul(given, nullptr, 10));
        const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
        std::cout << "To repeat " << test.test_suite_name() << "." << test.name()
                  << " as it was: QUILLET_TEST_SEED=" << chosen << " before the command"
                  << std::endl;
        return chosen;
    }();
    return seed;
}
