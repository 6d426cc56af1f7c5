// _recalloc: the platform vendor's run-time library has it, this toolchain's import library lacks
// it, and so do the headers of its later releases (see malloc.h). Contract: resizes a block from
// calloc to `count` × `size` bytes (null: a new block); bytes beyond the old size are zero; null,
// with the old block untouched, when memory runs out or the product overflows.
#include <malloc.h>

#include <cstdlib>
#include <cstring>

namespace
{

void* Recalloc(void* block, std::size_t count, std::size_t size)
{
    std::size_t newBytes;
    if (__builtin_mul_overflow(count, size, &newBytes))
    {
        return nullptr;
    }
    const std::size_t oldBytes = block == nullptr ? 0 : ::_msize(block);
    void* resized = std::realloc(block, newBytes);
    if (resized != nullptr && newBytes > oldBytes)
    {
        std::memset(static_cast<char*>(resized) + oldBytes, 0, newBytes - oldBytes);
    }
    return resized;
}

} // namespace

/// It is declared as an imported function, so callers go through the import's pointer: this one.
extern "C" {
void* (*__imp__recalloc)(void*, std::size_t, std::size_t) = &Recalloc;
}
