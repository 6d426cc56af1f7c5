// What the built program's file promises: read from its headers, sections and code, not from the
// options of the build.
#include <windows.h>

#include "tests/program-file/ByteReader.h"
#include "tests/support/ProgramPath.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace
{

using Bytes = std::span<const std::byte>;

/// The program file, and its parts by the addresses they will have in memory (relative to the image
/// base).
class ProgramFile
{
public:
    ProgramFile() : m_file(Read())
    {
        const auto dosHeader = At<IMAGE_DOS_HEADER>(0);
        const auto headersAt = static_cast<std::size_t>(dosHeader.e_lfanew);
        headers = At<IMAGE_NT_HEADERS64>(headersAt);
        const std::size_t sectionsAt = headersAt + offsetof(IMAGE_NT_HEADERS64, OptionalHeader) +
                                       headers.FileHeader.SizeOfOptionalHeader;
        for (std::size_t index = 0; index < headers.FileHeader.NumberOfSections; ++index)
        {
            sections.push_back(
                At<IMAGE_SECTION_HEADER>(sectionsAt + index * sizeof(IMAGE_SECTION_HEADER)));
        }
    }

    IMAGE_DATA_DIRECTORY Directory(int index) const
    {
        return headers.OptionalHeader.DataDirectory[index];
    }

    /// What the file holds of a section.
    Bytes Content(const IMAGE_SECTION_HEADER& section) const
    {
        return Bytes(m_file).subspan(section.PointerToRawData, section.SizeOfRawData);
    }

    /// What the file holds from an address to the end of its section.
    Bytes From(DWORD address) const
    {
        for (const IMAGE_SECTION_HEADER& section : sections)
        {
            if (address - section.VirtualAddress < section.SizeOfRawData)
            {
                return Content(section).subspan(address - section.VirtualAddress);
            }
        }
        throw std::out_of_range("no section holds this address");
    }

    IMAGE_NT_HEADERS64 headers;
    std::vector<IMAGE_SECTION_HEADER> sections;

private:
    static std::vector<std::byte> Read()
    {
        const std::filesystem::path path = BuiltProgram(L"quillet.exe");
        std::vector<std::byte> bytes(std::filesystem::file_size(path));
        std::ifstream(path, std::ios::binary)
            .read(reinterpret_cast<char*>(bytes.data()),
                  static_cast<std::streamsize>(bytes.size()));
        return bytes;
    }

    template <typename Structure>
    Structure At(std::size_t offset) const
    {
        ByteReader reader(m_file);
        reader.ReadBytes(offset);
        return reader.Read<Structure>();
    }

    std::vector<std::byte> m_file;
};

std::string Name(const IMAGE_SECTION_HEADER& section)
{
    const auto* name = reinterpret_cast<const char*>(section.Name);
    return {name, std::find(name, name + IMAGE_SIZEOF_SHORT_NAME, '\0')};
}

TEST(ProgramFile, IsA64BitGuiProgram)
{
    const ProgramFile file;
    EXPECT_EQ(file.headers.Signature, static_cast<DWORD>(IMAGE_NT_SIGNATURE));
    EXPECT_EQ(file.headers.FileHeader.Machine, IMAGE_FILE_MACHINE_AMD64);
    EXPECT_EQ(file.headers.OptionalHeader.Magic, IMAGE_NT_OPTIONAL_HDR64_MAGIC);
    EXPECT_EQ(file.headers.OptionalHeader.Subsystem, IMAGE_SUBSYSTEM_WINDOWS_GUI);
}

TEST(ProgramFile, AsksForRandomAddressesAndNoExecutableData)
{
    constexpr WORD kWanted = IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE |
                             IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA |
                             IMAGE_DLLCHARACTERISTICS_NX_COMPAT;
    EXPECT_EQ(ProgramFile().headers.OptionalHeader.DllCharacteristics & kWanted, kWanted);
}

// The flags alone move nothing: without relocations the system keeps the image where it is, and
// with an image base below 4 GiB it gives away most of the entropy.
TEST(ProgramFile, CanBeMovedAnywhere)
{
    const ProgramFile file;
    EXPECT_EQ(file.headers.FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED, 0);
    EXPECT_GT(file.headers.OptionalHeader.ImageBase, std::uint64_t{0xFFFFFFFF});

    const IMAGE_DATA_DIRECTORY relocations = file.Directory(IMAGE_DIRECTORY_ENTRY_BASERELOC);
    ASSERT_GT(relocations.Size, sizeof(IMAGE_BASE_RELOCATION));
    ByteReader reader(file.From(relocations.VirtualAddress));
    EXPECT_GT(reader.Read<IMAGE_BASE_RELOCATION>().SizeOfBlock, sizeof(IMAGE_BASE_RELOCATION));
}

TEST(ProgramFile, HasNoSectionBothWritableAndExecutable)
{
    constexpr DWORD kBoth = IMAGE_SCN_MEM_WRITE | IMAGE_SCN_MEM_EXECUTE;
    const ProgramFile file;
    ASSERT_FALSE(file.sections.empty());
    for (const IMAGE_SECTION_HEADER& section : file.sections)
    {
        EXPECT_NE(section.Characteristics & kBoth, kBoth) << Name(section);
    }
}

// The checked build keeps its symbols, for whoever looks for a fault in it.
#ifndef QUILLET_CHECKED
TEST(ProgramFile, IsStripped)
{
    const ProgramFile file;
    EXPECT_EQ(file.headers.FileHeader.PointerToSymbolTable, 0u);
    EXPECT_EQ(file.headers.FileHeader.NumberOfSymbols, 0u);
    EXPECT_EQ(file.Directory(IMAGE_DIRECTORY_ENTRY_DEBUG).Size, 0u);
    for (const IMAGE_SECTION_HEADER& section : file.sections)
    {
        // A slash begins the number of a longer name in the symbol table, as .debug_info has it.
        EXPECT_FALSE(Name(section).starts_with(".debug") || Name(section).starts_with("/"))
            << Name(section);
    }
}
#endif

// The rest holds for the build that brings its own dialog framework and run-time library.
#ifndef _MSC_VER

std::set<std::string> ImportedLibraries(const ProgramFile& file)
{
    std::set<std::string> libraries;
    ByteReader reader(file.From(file.Directory(IMAGE_DIRECTORY_ENTRY_IMPORT).VirtualAddress));
    for (auto entry = reader.Read<IMAGE_IMPORT_DESCRIPTOR>(); entry.Name != 0;
         entry = reader.Read<IMAGE_IMPORT_DESCRIPTOR>())
    {
        const Bytes name = file.From(entry.Name);
        const auto end = std::find(name.begin(), name.end(), std::byte{0});
        libraries.emplace(reinterpret_cast<const char*>(name.data()),
                          static_cast<std::size_t>(end - name.begin()));
    }
    return libraries;
}

// All three are part of every Windows. A further one would cost every start, so it should be
// wanted.
TEST(ProgramFile, ImportsOnlyWhatWindowsBrings)
{
    const ProgramFile file;
    EXPECT_EQ(ImportedLibraries(file),
              (std::set<std::string>{"KERNEL32.dll", "USER32.dll", "msvcrt.dll"}));
    EXPECT_EQ(file.Directory(IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT).Size, 0u);
}

TEST(ProgramFile, CarriesNoTimeStamp)
{
    EXPECT_EQ(ProgramFile().headers.FileHeader.TimeDateStamp, 0u);
}

/// Calls function(address, value) for the eight-byte values at eight-byte boundaries of sections
/// that have this characteristic.
template <typename Function>
void ForEachValue(const ProgramFile& file, DWORD characteristic, Function function)
{
    for (const IMAGE_SECTION_HEADER& section : file.sections)
    {
        if ((section.Characteristics & characteristic) == 0)
        {
            continue;
        }
        ByteReader reader(file.Content(section));
        for (DWORD offset = 0; offset + sizeof(std::uint64_t) <= section.SizeOfRawData;
             offset += sizeof(std::uint64_t))
        {
            function(section.VirtualAddress + offset, reader.Read<std::uint64_t>());
        }
    }
}

/// Calls function(address) for each byte of the code, with the address whose distance would end
/// there, as it does in every instruction that uses a variable. Chance hits are one in four
/// thousand million per byte.
template <typename Function>
void ForEachReference(const ProgramFile& file, Function function)
{
    for (const IMAGE_SECTION_HEADER& section : file.sections)
    {
        const Bytes code = file.Content(section);
        const bool isCode = (section.Characteristics & IMAGE_SCN_CNT_CODE) != 0;
        for (std::size_t end = sizeof(DWORD); isCode && end <= code.size(); ++end)
        {
            ByteReader reader(code.subspan(end - sizeof(DWORD)));
            function(reader.Read<DWORD>() + section.VirtualAddress + static_cast<DWORD>(end));
        }
    }
}

// A guarded function loads the guard when it begins and again before it returns, mostly through a
// pointer that the linker shares. The static libraries of the toolchain are not guarded, so the
// loads are those of the tool's own sources. Other variables begin with all bits set as well, but
// none is used nearly as often. That every function with a buffer is guarded is not shown.
TEST(ProgramFile, CodeComparesTheStackGuard)
{
    constexpr std::uint64_t kGuardInFile = UINT64_MAX; // runtime/StackProtector.cpp
    constexpr std::size_t kReferencesOfTenFunctions = 20;
    const ProgramFile file;
    std::unordered_map<DWORD, DWORD> variables;
    ForEachValue(file, IMAGE_SCN_MEM_WRITE, [&](DWORD address, std::uint64_t value) {
        if (value == kGuardInFile)
        {
            variables.emplace(address, address);
        }
    });
    auto variablesAndPointers = variables;
    ForEachValue(file, IMAGE_SCN_CNT_INITIALIZED_DATA, [&](DWORD address, std::uint64_t value) {
        const std::uint64_t distance = value - file.headers.OptionalHeader.ImageBase;
        const auto variable = variables.find(static_cast<DWORD>(distance));
        if (distance <= MAXDWORD && variable != variables.end())
        {
            variablesAndPointers.emplace(address, variable->first);
        }
    });
    std::unordered_map<DWORD, std::size_t> references;
    std::size_t mostReferences = 0;
    ForEachReference(file, [&](DWORD address) {
        if (const auto found = variablesAndPointers.find(address);
            found != variablesAndPointers.end())
        {
            mostReferences = std::max(mostReferences, ++references[found->second]);
        }
    });
    EXPECT_GE(mostReferences, kReferencesOfTenFunctions);
}

#endif

} // namespace
