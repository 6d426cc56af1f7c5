#pragma once

#include <cstdio>
#include <cstdlib>
#include <random>

/// The seed of a random test, printed so that a run can be repeated: the environment variable
/// QUILLET_TEST_SEED, a decimal number, sets it.
inline std::mt19937::result_type RandomSeed()
{
    const char* const given = std::getenv("QUILLET_TEST_SEED");
    const std::mt19937::result_type seed =
        given == nullptr ? std::random_device()()
                         : static_cast<std::mt19937::result_type>(std::strtoul(given, nullptr, 10));
    std::printf("QUILLET_TEST_SEED=%lu\n", static_cast<unsigned long>(seed));
    return seed;
}
