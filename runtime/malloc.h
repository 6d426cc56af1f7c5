// The toolchain's <malloc.h>, found before it, and what some of its releases leave out of it.
#pragma once

#include_next <malloc.h>

#include <cstddef>

/// Declared for later run-time libraries only; see Recalloc.cpp.
extern "C" _CRTIMP void* __cdecl _recalloc(void* block, std::size_t count, std::size_t size);
