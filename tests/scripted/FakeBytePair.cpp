// The conversion of two bytes of a URL to one unit.
#include "tests/scripted/Recording.h"

#include <cstdint>

// Without a script, for the test program's own purposes, the real one.
int WINAPI FakeMultiByteToWideChar(UINT codePage, DWORD flags, LPCCH bytes, int byteCount,
                                   LPWSTR units, int unitCount)
{
    static const auto real =
        reinterpret_cast<decltype(&::MultiByteToWideChar)>(reinterpret_cast<void*>(
            ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "MultiByteToWideChar")));
    if (ScriptedPlatform::Current() != nullptr)
    {
        std::ostringstream source;
        source << byteCount << " bytes:" << std::hex;
        for (int i = 0; i < byteCount; ++i)
        {
            source << ' ' << static_cast<unsigned>(static_cast<std::uint8_t>(bytes[i]));
        }
        Record("MultiByteToWideChar", std::int64_t{codePage}, std::int64_t{flags}, source.str(),
               "room for " + std::to_string(unitCount));
        if (!Platform().bytePairsConvert)
        {
            return 0;
        }
    }
    return real(codePage, flags, bytes, byteCount, units, unitCount);
}
