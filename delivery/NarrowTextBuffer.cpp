#include "delivery/NarrowTextBuffer.h"

#include <afxdisp.h>

#include <malloc.h>

#include <cwchar>

namespace
{

/// Enough for every UTF-16 code unit in both the ANSI code page and UTF-8.
constexpr unsigned kBytesPerUnit = 4;

/// In 32-bit arithmetic; an overflow shows as a negative size, which ProvideStore refuses.
int FirstCapacity(int units)
{
    return static_cast<int>(kBytesPerUnit * static_cast<unsigned>(units));
}

int Convert(UINT codePage, const wchar_t* text, int units, char* store, int capacity)
{
    return ::WideCharToMultiByte(codePage, 0, text, units, store, capacity, nullptr, nullptr);
}

} // namespace

NarrowTextBuffer::NarrowTextBuffer(const wchar_t* text, UINT codePage)
{
    const int units = static_cast<int>(std::wcslen(text)) + 1;
    const int capacity = FirstCapacity(units);
    ProvideStore(capacity);
    int written = Convert(codePage, text, units, Store(), capacity);
    if (written == 0 && ::GetLastError() == ERROR_INSUFFICIENT_BUFFER)
    {
        // The first capacity always suffices; this is a safety net.
        const int needed = Convert(codePage, text, units, nullptr, 0);
        ProvideStore(needed);
        written = Convert(codePage, text, units, Store(), needed);
    }
    if (written == 0)
    {
        AfxThrowOleException(HRESULT_FROM_WIN32(::GetLastError()));
    }
}

// Also for a store that is there already: a block is resized, or given up for the inline store when
// that suffices.
void NarrowTextBuffer::ProvideStore(int bytes)
{
    if (bytes < 0)
    {
        AfxThrowOleException(E_INVALIDARG);
    }
    if (bytes <= kInlineBytes)
    {
        m_block.reset();
        return;
    }
    const auto size = static_cast<std::size_t>(bytes);
    void* block = m_block ? ::_recalloc(m_block.get(), size, 1) : std::calloc(size, 1);
    if (block == nullptr)
    {
        AfxThrowMemoryException();
    }
    // Resizing has already released the old block.
    static_cast<void>(m_block.release());
    m_block.reset(static_cast<char*>(block));
}
