#pragma once

#include <cstdlib>
#include <random>

/// The seed of random tests. The environment variable QUILLET_TEST_SEED, a decimal number, sets it;
/// a test program that fails tells it (see TestMain.cpp).
inline std::mt19937::result_type NewRandomSeed()
{
    const char* const given = std::getenv("QUILLET_TEST_SEED");
    return given == nullptr
               ? std::random_device()()
               : static_cast<std::mt19937::result_type>(std::strtoul(given, nullptr, 10));
}

/// The same for all tests of one run through them; a program that repeats them renews it.
inline std::mt19937::result_type randomSeed = NewRandomSeed();

inline std::mt19937::result_type RandomSeed()
{
    return randomSeed;
}
