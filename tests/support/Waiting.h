#pragma once

#include <chrono>
#include <thread>

/// Far beyond what any awaited event takes on a loaded machine; reaching it is a failure.
inline constexpr std::chrono::seconds kWaitLimit{20};

/// Waits until `isTrue()` holds; false when it still does not after `limit`. For states that the
/// platform has no event for, such as a window of another process becoming visible.
template <typename Condition>
bool WaitUntil(Condition isTrue, std::chrono::milliseconds limit = kWaitLimit)
{
    constexpr std::chrono::milliseconds kPause{2};
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!isTrue())
    {
        if (std::chrono::steady_clock::now() >= end)
        {
            return false;
        }
        std::this_thread::sleep_for(kPause);
    }
    return true;
}
