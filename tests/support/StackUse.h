#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <functional>
#include <utility>

/// How much stack, in bytes, a job takes: it runs in a thread of its own, whose stack is painted
/// before and looked at afterwards. The job must not throw.
class StackUse
{
public:
    static std::size_t Of(std::function<void()> job)
    {
        StackUse use(std::move(job));
        const HANDLE thread = ::CreateThread(nullptr, kReserve, &Run, &use,
                                             STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
        if (thread == nullptr)
        {
            std::terminate();
        }
        ::WaitForSingleObject(thread, INFINITE);
        ::CloseHandle(thread);
        return use.m_used;
    }

private:
    static constexpr std::size_t kReserve = std::size_t{48} << 20;
    /// Left to the system at the stack's end, which it needs to notice that a stack is full.
    static constexpr std::size_t kEnd = std::size_t{1} << 20;
    /// Left to the functions here.
    static constexpr std::size_t kBeginning = std::size_t{16} << 10;
    static constexpr std::uint64_t kPaint = 0xC0DE'D00D'FEED'5EED;

    explicit StackUse(std::function<void()> job) : m_job(std::move(job)) {}

    static DWORD WINAPI Run(void* parameter)
    {
        static_cast<StackUse*>(parameter)->Measure();
        return 0;
    }

    void Measure()
    {
        ULONG_PTR low = 0;
        ULONG_PTR high = 0;
        ::GetCurrentThreadStackLimits(&low, &high);
        auto* const first = reinterpret_cast<volatile std::uint64_t*>(low + kEnd);
        auto* const last = reinterpret_cast<volatile std::uint64_t*>(high - kBeginning);

        // Downwards, as the system makes room page by page.
        for (auto* place = last; place != first;)
        {
            *--place = kPaint;
        }
        m_job();
        const auto* place = first;
        while (place != last && *place == kPaint)
        {
            ++place;
        }
        m_used = high - reinterpret_cast<ULONG_PTR>(place);
    }

    std::function<void()> m_job;
    std::size_t m_used = 0;
};
