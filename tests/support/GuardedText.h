#pragma once

#ifdef _WIN32
#include <windows.h>
#else
#include <unistd.h>

#include <sys/mman.h>
#endif

#include <algorithm>
#include <cstddef>
#include <new>
#include <string_view>

/// A null-terminated copy of UTF-16 code units whose terminator lies directly before an
/// inaccessible page, so that reading one unit too far ends the test instead of going unnoticed.
/// Owns its pages.
class GuardedText
{
    static_assert(sizeof(wchar_t) == sizeof(char16_t));

public:
    explicit GuardedText(std::u16string_view units)
    {
        const std::size_t bytes = (units.size() + 1) * sizeof(wchar_t);
        const std::size_t pageSize = PageSize();
        const std::size_t readable = (bytes + pageSize - 1) / pageSize * pageSize;
        m_size = readable + pageSize;
        m_pages = Reserve(m_size);
        Forbid(m_pages + readable, pageSize);
        m_text = reinterpret_cast<wchar_t*>(m_pages + readable - bytes);
        *std::copy(units.begin(), units.end(), m_text) = L'\0';
    }

    ~GuardedText()
    {
#ifdef _WIN32
        VirtualFree(m_pages, 0, MEM_RELEASE);
#else
        munmap(m_pages, m_size);
#endif
    }

    GuardedText(const GuardedText&) = delete;
    GuardedText& operator=(const GuardedText&) = delete;

    const wchar_t* Get() const { return m_text; }

private:
    static std::size_t PageSize()
    {
#ifdef _WIN32
        SYSTEM_INFO info;
        GetSystemInfo(&info);
        return info.dwPageSize;
#else
        return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
#endif
    }

    static char* Reserve(std::size_t size)
    {
#ifdef _WIN32
        void* const pages = VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
        const bool failed = pages == nullptr;
#else
        void* const pages =
            mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        const bool failed = pages == MAP_FAILED;
#endif
        if (failed)
        {
            throw std::bad_alloc();
        }
        return static_cast<char*>(pages);
    }

    static void Forbid(char* page, std::size_t size)
    {
#ifdef _WIN32
        DWORD before;
        const bool failed = VirtualProtect(page, size, PAGE_NOACCESS, &before) == FALSE;
#else
        const bool failed = mprotect(page, size, PROT_NONE) != 0;
#endif
        if (failed)
        {
            throw std::bad_alloc();
        }
    }

    char* m_pages;
    std::size_t m_size;
    wchar_t* m_text;
};
