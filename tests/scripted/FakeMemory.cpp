// Fakes: the heap, and the length of a text. They come from the run-time library, calloc, free and
// wcslen by the linker's --wrap (see CMakeLists.txt), _recalloc by its import.
#include "tests/scripted/Recording.h"

#include <cstddef>
#include <cstdlib>
#include <cwchar>
#include <string>

namespace
{

bool HasMemory()
{
    return Platform().memoryFailsAfter-- > 0;
}

void* RecordedBlock(const std::string& call, void* block)
{
    if (block != nullptr)
    {
        Platform().AddBlock(block);
    }
    Platform().Record(call + " = " + (block == nullptr ? "NULL" : Platform().NameOf(block)));
    return block;
}

} // namespace

void* FakeRecalloc(void* block, std::size_t count, std::size_t size)
{
    const std::string call = "_recalloc(" + Platform().NameOf(static_cast<const void*>(block)) +
                             ", " + std::to_string(count) + ", " + std::to_string(size) + ")";
    if (!HasMemory())
    {
        return RecordedBlock(call, nullptr);
    }
    Platform().RemoveBlock(block);
    return RecordedBlock(call, std::realloc(block, count * size));
}

extern "C" {
void* __real_calloc(std::size_t count, std::size_t size);
void __real_free(void* block);
std::size_t __real_wcslen(const wchar_t* text);

/// The product asks for bytes. The run-time libraries, which come through here as well, ask for
/// objects.
void* __wrap_calloc(std::size_t count, std::size_t size)
{
    if (ScriptedPlatform::Current() == nullptr || size != 1)
    {
        return __real_calloc(count, size);
    }
    return RecordedBlock("calloc(" + std::to_string(count) + ", 1)",
                         HasMemory() ? __real_calloc(count, size) : nullptr);
}

void __wrap_free(void* block)
{
    auto* platform = ScriptedPlatform::Current();
    if (platform != nullptr && block != nullptr)
    {
        // Named before it is forgotten; blocks of others are nobody's business.
        const std::string name = platform->NameOf(static_cast<const void*>(block));
        if (platform->RemoveBlock(block))
        {
            platform->Record("free(" + name + ")");
        }
    }
    __real_free(block);
}

std::size_t __wrap_wcslen(const wchar_t* text)
{
    const auto* platform = ScriptedPlatform::Current();
    return platform != nullptr && platform->textLength ? *platform->textLength
                                                       : __real_wcslen(text);
}
}
