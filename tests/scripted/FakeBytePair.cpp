// The conversion of two bytes of a URL to one unit.
#include "tests/scripted/Recording.h"
#include "tests/support/BytesAsText.h"

#include <cstdint>
#include <span>

// Without a script, for the test program's own purposes, the real one.
int WINAPI FakeMultiByteToWideChar(UINT codePage, DWORD flags, LPCCH bytes, int byteCount,
                                   LPWSTR units, int unitCount)
{
    static const auto real =
        reinterpret_cast<decltype(&::MultiByteToWideChar)>(reinterpret_cast<void*>(
            ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "MultiByteToWideChar")));
    if (ScriptedPlatform::Current() != nullptr)
    {
        const auto source = std::as_bytes(std::span(bytes, static_cast<std::size_t>(byteCount)));
        Record("MultiByteToWideChar", std::int64_t{codePage}, std::int64_t{flags},
               std::to_string(byteCount) + " bytes: " + BytesAsText(source),
               "room for " + std::to_string(unitCount));
        if (!Platform().bytePairsConvert)
        {
            return 0;
        }
    }
    return real(codePage, flags, bytes, byteCount, units, unitCount);
}
