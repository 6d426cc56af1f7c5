#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

/// Gives back what the platform has given, by the platform's function for that.
template <auto kRelease>
struct Release
{
    template <typename Handle>
    void operator()(Handle handle) const
    {
        kRelease(handle);
    }
};

/// Owns what the platform calls by a handle, and releases it at the end of its own life. Null owns
/// nothing; INVALID_HANDLE_VALUE is not known here and must not get in.
template <typename Handle, auto kRelease>
using UniqueHandle = std::unique_ptr<std::remove_pointer_t<Handle>, Release<kRelease>>;

/// Of a file, a process, an event, a token …
using KernelHandle = UniqueHandle<HANDLE, &::CloseHandle>;
