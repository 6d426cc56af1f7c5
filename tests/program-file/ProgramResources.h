#pragma once

#include <windows.h>

#include "tests/support/ProgramPath.h"
#include "tests/support/UniqueHandle.h"
#include "tests/support/Utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

using Bytes = std::span<const std::byte>;
using Lines = std::vector<std::string>;

inline constexpr WORD kGerman = MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN);
inline constexpr WORD kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);

// The platform's constants for these are pointers, not numbers.
inline constexpr WORD kIconType = 3;
inline constexpr WORD kDialogType = 5;
inline constexpr WORD kStringType = 6;
inline constexpr WORD kIconGroupType = 14;
inline constexpr WORD kVersionType = 16;
inline constexpr WORD kManifestType = 24;

inline std::string Hex(std::uint32_t value, int digits = 8)
{
    std::ostringstream text;
    text << std::hex << std::uppercase << std::setfill('0') << std::setw(digits) << value;
    return text.str();
}

inline std::string Joined(const Lines& lines)
{
    std::string text;
    for (const std::string& line : lines)
    {
        text += line + '\n';
    }
    return text;
}

/// The program, opened as data.
class ProgramResources
{
public:
    ProgramResources()
        : m_module(::LoadLibraryExW(BuiltProgram(L"quillet.exe").c_str(), nullptr,
                                    LOAD_LIBRARY_AS_DATAFILE))
    {
        if (m_module == nullptr)
        {
            throw std::runtime_error("quillet.exe is not beside this program");
        }
    }

    /// The resource's bytes, which live as long as this object.
    Bytes Get(WORD type, WORD name, WORD language) const
    {
        HRSRC resource = ::FindResourceExW(m_module.get(), MAKEINTRESOURCEW(type),
                                           MAKEINTRESOURCEW(name), language);
        if (resource == nullptr)
        {
            throw std::runtime_error("missing resource");
        }
        const void* bytes = ::LockResource(::LoadResource(m_module.get(), resource));
        return {static_cast<const std::byte*>(bytes), ::SizeofResource(m_module.get(), resource)};
    }

    /// "type/name/language" of every resource, sorted.
    Lines All() const
    {
        Lines found;
        ::EnumResourceTypesW(m_module.get(), &OnType, reinterpret_cast<LONG_PTR>(&found));
        std::sort(found.begin(), found.end());
        return found;
    }

private:
    static std::string Identifier(const wchar_t* name)
    {
        return IS_INTRESOURCE(name) ? std::to_string(reinterpret_cast<ULONG_PTR>(name))
                                    : Utf8(name);
    }

    static BOOL CALLBACK OnType(HMODULE module, wchar_t* type, LONG_PTR found) noexcept
    {
        return ::EnumResourceNamesW(module, type, &OnName, found);
    }

    static BOOL CALLBACK OnName(HMODULE module, const wchar_t* type, wchar_t* name,
                                LONG_PTR found) noexcept
    {
        return ::EnumResourceLanguagesW(module, type, name, &OnLanguage, found);
    }

    static BOOL CALLBACK OnLanguage(HMODULE, const wchar_t* type, const wchar_t* name,
                                    WORD language, LONG_PTR found) noexcept
    {
        reinterpret_cast<Lines*>(found)->push_back(Identifier(type) + '/' + Identifier(name) + '/' +
                                                   std::to_string(language));
        return TRUE;
    }

    UniqueHandle<HMODULE, &::FreeLibrary> m_module;
};

/// A test that looks at them.
class Resource : public testing::Test
{
protected:
    ProgramResources m_program;
};
