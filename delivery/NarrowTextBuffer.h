#pragma once

#include <afxwin.h>

#include <cstdlib>
#include <memory>

/// A UTF-16 text converted to a code page, null-terminated. Texts of up to 31 code units live
/// inside the object, longer ones in one heap block that the object owns.
class NarrowTextBuffer
{
public:
    /// Converts a null-terminated text. Characters that the code page lacks become the system's
    /// default character. Throws the framework's memory exception, or its OLE exception with the
    /// HRESULT of any other failure.
    NarrowTextBuffer(const wchar_t* text, UINT codePage);

    /// The converted text; valid as long as the object.
    const char* Bytes() const { return m_block ? m_block.get() : m_inline; }

private:
    struct FreeBlock
    {
        void operator()(char* block) const { std::free(block); }
    };

    static constexpr int kInlineBytes = 128;

    void ProvideStore(int bytes);
    char* Store() { return m_block ? m_block.get() : m_inline; }

    /// Holds the text when the inline store is too small for it, else null.
    std::unique_ptr<char, FreeBlock> m_block;
    char m_inline[kInlineBytes]{};
};
