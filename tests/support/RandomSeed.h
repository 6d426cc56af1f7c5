#pragma once

#include <cstdlib>
#include <random>

/// The seed of this process's random tests. The environment variable QUILLET_TEST_SEED, a decimal
/// number, sets it; a test program that fails tells it (see TestMain.cpp).
inline std::mt19937::result_type RandomSeed()
{
    static const std::mt19937::result_type seed = [] {
        const char* const given = std::getenv("QUILLET_TEST_SEED");
        return given == nullptr
                   ? std::random_device()()
                   : static_cast<std::mt19937::result_type>(std::strtoul(given, nullptr, 10));
    }();
    return seed;
}
