// Every resource of the built program, read from its raw bytes. What is compared is written out as
// lines of text, so that a difference shows where it lies.
#include "res/resource.h"

#include <windows.h>

#include "tests/support/ByteReader.h"
#include "tests/support/ProgramPath.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iomanip>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using Bytes = std::span<const std::byte>;
using Lines = std::vector<std::string>;

constexpr WORD kGerman = MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN);
constexpr WORD kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);

// The platform's constants for these are pointers, not numbers.
constexpr WORD kIconType = 3;
constexpr WORD kDialogType = 5;
constexpr WORD kStringType = 6;
constexpr WORD kIconGroupType = 14;
constexpr WORD kVersionType = 16;
constexpr WORD kManifestType = 24;

std::string Utf8(std::wstring_view text)
{
    const int units = static_cast<int>(text.size());
    const int bytes =
        ::WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(bytes), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), units, result.data(), bytes, nullptr, nullptr);
    return result;
}

std::string Hex(std::uint32_t value, int digits = 8)
{
    std::ostringstream text;
    text << std::hex << std::uppercase << std::setfill('0') << std::setw(digits) << value;
    return text.str();
}

std::string Joined(const Lines& lines)
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

    ~ProgramResources() { ::FreeLibrary(m_module); }

    ProgramResources(const ProgramResources&) = delete;
    ProgramResources& operator=(const ProgramResources&) = delete;

    /// The resource's bytes, which live as long as this object.
    Bytes Get(WORD type, WORD name, WORD language) const
    {
        HRSRC resource =
            ::FindResourceExW(m_module, MAKEINTRESOURCEW(type), MAKEINTRESOURCEW(name), language);
        if (resource == nullptr)
        {
            throw std::runtime_error("missing resource");
        }
        const void* bytes = ::LockResource(::LoadResource(m_module, resource));
        return {static_cast<const std::byte*>(bytes), ::SizeofResource(m_module, resource)};
    }

    /// "type/name/language" of every resource, sorted.
    Lines All() const
    {
        Lines found;
        ::EnumResourceTypesW(m_module, &OnType, reinterpret_cast<LONG_PTR>(&found));
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

    HMODULE m_module;
};

class Resource : public testing::Test
{
protected:
    ProgramResources m_program;
};

TEST_F(Resource, NoneBesidesTheProgramsOwn)
{
    EXPECT_EQ(m_program.All(),
              (Lines{"14/128/1031", "16/1/1031", "24/1/1033", "3/1/1031", "3/2/1031", "3/3/1031",
                     "3/4/1031", "3/5/1031", "3/6/1031", "5/100/1031", "5/102/1031", "6/7/1031"}));
}

// --- dialog templates --------------------------------------------------------------------------

/// Menu, window class or text of a template: nothing, an ordinal or a text.
std::string ReadName(ByteReader& reader)
{
    constexpr WORD kOrdinalFollows = 0xFFFF;
    const auto first = reader.Read<wchar_t>();
    if (first == 0)
    {
        return "none";
    }
    if (first == kOrdinalFollows)
    {
        return '#' + std::to_string(reader.Read<WORD>());
    }
    return '"' + Utf8(first + reader.ReadText()) + '"';
}

std::string ReadRectangle(ByteReader& reader)
{
    std::array<std::int16_t, 4> edges;
    for (std::int16_t& edge : edges)
    {
        edge = reader.Read<std::int16_t>();
    }
    const auto [x, y, width, height] = edges;
    return std::to_string(x) + ", " + std::to_string(y) + "; " + std::to_string(width) + " x " +
           std::to_string(height);
}

std::string ReadTemplateNames(ByteReader& reader)
{
    const std::string menu = ReadName(reader);
    const std::string windowClass = ReadName(reader);
    return "menu " + menu + ", class " + windowClass + ", caption " + ReadName(reader);
}

void ReadClassicControl(ByteReader& reader, Lines& lines)
{
    reader.Align();
    const auto style = reader.Read<DWORD>();
    const auto extendedStyle = reader.Read<DWORD>();
    const std::string place = ReadRectangle(reader);
    const auto id = reader.Read<std::int16_t>();
    const std::string windowClass = ReadName(reader);
    const std::string text = ReadName(reader);
    const auto extraBytes = reader.Read<WORD>();
    lines.push_back("id " + std::to_string(id) + ", class " + windowClass + ", text " + text);
    lines.push_back("  style " + Hex(style) + ", extended " + Hex(extendedStyle) + ", at " + place +
                    ", extra " + std::to_string(extraBytes));
}

Lines ReadClassicTemplate(Bytes bytes)
{
    ByteReader reader(bytes);
    Lines lines;
    const auto style = reader.Read<DWORD>();
    const auto extendedStyle = reader.Read<DWORD>();
    lines.push_back("style " + Hex(style) + ", extended " + Hex(extendedStyle));
    const auto controls = reader.Read<WORD>();
    lines.push_back("at " + ReadRectangle(reader));
    lines.push_back(ReadTemplateNames(reader));
    const auto points = reader.Read<WORD>();
    lines.push_back("font " + std::to_string(points) + " point " + ReadName(reader));
    for (int control = 0; control < controls; ++control)
    {
        ReadClassicControl(reader, lines);
    }
    lines.push_back(reader.AtEnd() ? "end" : "more bytes");
    return lines;
}

void ReadExtendedControl(ByteReader& reader, Lines& lines)
{
    reader.Align();
    const auto helpId = reader.Read<DWORD>();
    const auto extendedStyle = reader.Read<DWORD>();
    const auto style = reader.Read<DWORD>();
    const std::string place = ReadRectangle(reader);
    const auto id = reader.Read<std::int32_t>();
    const std::string windowClass = ReadName(reader);
    const std::string text = ReadName(reader);
    const auto extraBytes = reader.Read<WORD>();
    lines.push_back("id " + std::to_string(id) + ", class " + windowClass + ", text " + text);
    lines.push_back("  style " + Hex(style) + ", extended " + Hex(extendedStyle) + ", help " +
                    std::to_string(helpId) + ", at " + place + ", extra " +
                    std::to_string(extraBytes));
}

std::string ReadExtendedFont(ByteReader& reader)
{
    const auto points = reader.Read<WORD>();
    const auto weight = reader.Read<WORD>();
    const auto italic = reader.Read<BYTE>();
    const auto characterSet = reader.Read<BYTE>();
    return "font " + std::to_string(points) + " point " + ReadName(reader) + ", weight " +
           std::to_string(weight) + ", italic " + std::to_string(italic) + ", character set " +
           std::to_string(characterSet);
}

Lines ReadExtendedTemplate(Bytes bytes)
{
    ByteReader reader(bytes);
    Lines lines;
    const auto version = reader.Read<WORD>();
    const auto signature = reader.Read<WORD>();
    lines.push_back("version " + std::to_string(version) + ", signature " + Hex(signature, 4));
    const auto helpId = reader.Read<DWORD>();
    const auto extendedStyle = reader.Read<DWORD>();
    const auto style = reader.Read<DWORD>();
    lines.push_back("style " + Hex(style) + ", extended " + Hex(extendedStyle) + ", help " +
                    std::to_string(helpId));
    const auto controls = reader.Read<WORD>();
    lines.push_back("at " + ReadRectangle(reader));
    lines.push_back(ReadTemplateNames(reader));
    lines.push_back(ReadExtendedFont(reader));
    for (int control = 0; control < controls; ++control)
    {
        ReadExtendedControl(reader, lines);
    }
    lines.push_back(reader.AtEnd() ? "end" : "more bytes");
    return lines;
}

// Class ordinals: 128 is the system's button class, 130 its static class.

TEST_F(Resource, AboutBoxIsAClassicTemplate)
{
    const Lines expected{
        "style 80C800C0, extended 00000000",
        "at 0, 0; 217 x 55",
        "menu none, class none, caption \"Info über Quillet\"",
        "font 8 point \"MS Sans Serif\"",
        "id -1, class #130, text #128",
        "  style 50000003, extended 00000000, at 11, 17; 20 x 20, extra 0",
        "id -1, class #130, text \"Quillet, Version 1.0\"",
        "  style 50020080, extended 00000000, at 40, 10; 119 x 8, extra 0",
        "id -1, class #130, text \"Copyright © 2026 Orvane\"",
        "  style 50020000, extended 00000000, at 40, 25; 119 x 8, extra 0",
        "id 1, class #128, text \"OK\"",
        "  style 50030001, extended 00000000, at 178, 7; 32 x 14, extra 0",
        "end",
    };
    EXPECT_EQ(Joined(ReadClassicTemplate(m_program.Get(kDialogType, IDD_ABOUTBOX, kGerman))),
              Joined(expected));
}

TEST_F(Resource, WaitDialogIsAnExtendedTemplate)
{
    const Lines expected{
        "version 1, signature FFFF",
        "style 90C800C4, extended 00040000, help 0",
        "at 0, 0; 185 x 78",
        "menu none, class none, caption \"Orvane Anwendungsweiterleitung\"",
        "font 8 point \"MS Sans Serif\", weight 0, italic 0, character set 1",
        "id 2, class #128, text \"Abbrechen\"",
        "  style 50010000, extended 00000000, help 0, at 65, 54; 50 x 17, extra 0",
        "id -1, class #130, text \"Warte auf Rückmeldung von Hostanwendung\"",
        "  style 50020201, extended 00000000, help 0, at 7, 23; 171 x 13, extra 0",
        "end",
    };
    EXPECT_EQ(Joined(ReadExtendedTemplate(m_program.Get(kDialogType, IDD_QUILLET_DIALOG, kGerman))),
              Joined(expected));
}

// --- string table ------------------------------------------------------------------------------

TEST_F(Resource, StringBlockHoldsTheMenuEntryOnly)
{
    constexpr int kStringsPerBlock = 16;
    constexpr WORD kBlock = IDS_ABOUTBOX / kStringsPerBlock + 1;
    static_assert(kBlock == 7);
    ByteReader reader(m_program.Get(kStringType, kBlock, kGerman));
    for (int entry = 0; entry < kStringsPerBlock; ++entry)
    {
        std::wstring text(reader.Read<WORD>(), L'\0');
        std::generate(text.begin(), text.end(), [&] { return reader.Read<wchar_t>(); });
        const bool isAbout = entry == IDS_ABOUTBOX % kStringsPerBlock;
        EXPECT_EQ(Utf8(text), isAbout ? "Inf&o über Quillet..." : "") << "entry " << entry;
    }
    EXPECT_TRUE(reader.AtEnd());
}

// --- icon --------------------------------------------------------------------------------------

struct IconImage
{
    WORD id;
    int size;
    std::size_t bytes;
};

constexpr IconImage kBitmaps[] = {
    {1, 16, 1128}, {2, 32, 4264}, {3, 48, 9640}, {4, 64, 16936}, {5, 128, 67624},
};
constexpr IconImage kPng = {6, 256, 21106};

std::vector<IconImage> AllImages()
{
    std::vector<IconImage> images(std::begin(kBitmaps), std::end(kBitmaps));
    images.push_back(kPng);
    return images;
}

std::string GroupEntry(int width, int height, int colours, int reserved, int planes, int bits,
                       std::size_t bytes, int id)
{
    std::ostringstream line;
    line << width << " x " << height << ", colours " << colours << ", reserved " << reserved
         << ", planes " << planes << ", bits " << bits << ", bytes " << bytes << ", icon " << id;
    return line.str();
}

TEST_F(Resource, IconGroupListsSixImages)
{
    constexpr WORD kIconDirectory = 1;
    ByteReader reader(m_program.Get(kIconGroupType, IDR_MAINFRAME, kGerman));
    EXPECT_EQ(reader.Read<WORD>(), 0);
    EXPECT_EQ(reader.Read<WORD>(), kIconDirectory);
    const auto count = reader.Read<WORD>();
    Lines entries;
    for (int entry = 0; entry < count; ++entry)
    {
        const auto width = reader.Read<BYTE>();
        const auto height = reader.Read<BYTE>();
        const auto colours = reader.Read<BYTE>();
        const auto reserved = reader.Read<BYTE>();
        const auto planes = reader.Read<WORD>();
        const auto bits = reader.Read<WORD>();
        const auto bytes = reader.Read<DWORD>();
        const auto id = reader.Read<WORD>();
        entries.push_back(GroupEntry(width, height, colours, reserved, planes, bits, bytes, id));
    }
    EXPECT_TRUE(reader.AtEnd());

    Lines expected;
    for (const auto& [id, size, bytes] : AllImages())
    {
        const int side = size % 256; // one byte: 256 is written as 0
        expected.push_back(GroupEntry(side, side, 0, 0, 1, 32, bytes, id));
    }
    EXPECT_EQ(Joined(entries), Joined(expected));
}

TEST_F(Resource, SmallImagesAreBitmapsWithAlphaAndMask)
{
    for (const auto& [id, size, byteCount] : kBitmaps)
    {
        SCOPED_TRACE(size);
        const Bytes bytes = m_program.Get(kIconType, id, kGerman);
        ASSERT_EQ(bytes.size(), byteCount);
        ByteReader reader(bytes);
        const auto header = reader.Read<BITMAPINFOHEADER>();
        EXPECT_EQ(header.biSize, 40u);
        EXPECT_EQ(header.biWidth, size);
        EXPECT_EQ(header.biHeight, 2 * size); // colours and mask
        EXPECT_EQ(header.biPlanes, 1);
        EXPECT_EQ(header.biBitCount, 32);
        EXPECT_EQ(header.biCompression, static_cast<DWORD>(BI_RGB));
        EXPECT_EQ(header.biClrUsed, 0u);

        const auto side = static_cast<std::size_t>(size);
        const Bytes pixels = reader.ReadBytes(side * side * 4);
        const std::size_t maskStride = (side + 31) / 32 * 4;
        const Bytes mask = reader.ReadBytes(side * maskStride);
        EXPECT_TRUE(reader.AtEnd());

        std::size_t opaque = 0;
        std::size_t transparent = 0;
        std::size_t maskDiffers = 0;
        for (std::size_t row = 0; row < side; ++row)
        {
            for (std::size_t column = 0; column < side; ++column)
            {
                const int alpha = std::to_integer<int>(pixels[(row * side + column) * 4 + 3]);
                const int masks = std::to_integer<int>(mask[row * maskStride + column / 8]);
                const bool masked = (masks >> (7 - column % 8) & 1) != 0;
                opaque += alpha == 255;
                transparent += alpha == 0;
                maskDiffers += masked != (alpha < 128);
            }
        }
        EXPECT_GT(opaque, side * side / 4);
        EXPECT_GT(transparent, side * side / 8);
        EXPECT_EQ(maskDiffers, 0u);
    }
}

std::uint32_t BigEndian(Bytes bytes)
{
    std::uint32_t value = 0;
    for (const std::byte byte : bytes)
    {
        value = value << 8 | std::to_integer<std::uint32_t>(byte);
    }
    return value;
}

std::uint32_t Crc32(Bytes bytes)
{
    std::uint32_t crc = ~0u;
    for (const std::byte byte : bytes)
    {
        crc ^= std::to_integer<std::uint32_t>(byte);
        for (int bit = 0; bit < 8; ++bit)
        {
            crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
        }
    }
    return ~crc;
}

struct PngChunk
{
    std::string kind;
    Bytes content;
};

std::vector<PngChunk> ReadPngChunks(Bytes bytes)
{
    constexpr std::uint64_t kSignature = 0x0A1A0A0D474E5089; // as little-endian number
    ByteReader reader(bytes);
    EXPECT_EQ(reader.Read<std::uint64_t>(), kSignature);
    std::vector<PngChunk> chunks;
    while (!reader.AtEnd())
    {
        const std::uint32_t length = BigEndian(reader.ReadBytes(4));
        const Bytes checked = bytes.subspan(reader.Position(), 4 + std::size_t{length});
        const Bytes kind = reader.ReadBytes(4);
        const Bytes content = reader.ReadBytes(length);
        chunks.push_back({{reinterpret_cast<const char*>(kind.data()), kind.size()}, content});
        EXPECT_EQ(BigEndian(reader.ReadBytes(4)), Crc32(checked)) << chunks.back().kind;
    }
    return chunks;
}

TEST_F(Resource, LargestImageIsAPng)
{
    const Bytes bytes = m_program.Get(kIconType, kPng.id, kGerman);
    ASSERT_EQ(bytes.size(), kPng.bytes);
    const std::vector<PngChunk> chunks = ReadPngChunks(bytes);

    Lines kinds;
    for (const PngChunk& chunk : chunks)
    {
        kinds.push_back(chunk.kind);
    }
    EXPECT_EQ(kinds, (Lines{"IHDR", "tEXt", "IDAT", "IEND"}));

    constexpr std::byte kBitsPerChannel{8};
    constexpr std::byte kRedGreenBlueAlpha{6};
    const Bytes header = chunks.at(0).content;
    ASSERT_EQ(header.size(), 13u);
    EXPECT_EQ(BigEndian(header.subspan(0, 4)), 256u);
    EXPECT_EQ(BigEndian(header.subspan(4, 4)), 256u);
    EXPECT_EQ(header[8], kBitsPerChannel);
    EXPECT_EQ(header[9], kRedGreenBlueAlpha);
    EXPECT_EQ(header[10], std::byte{0}); // compression: deflate
    EXPECT_EQ(header[11], std::byte{0}); // filter method: the one there is
    EXPECT_EQ(header[12], std::byte{0}); // not interlaced
}

TEST_F(Resource, PlatformMakesAnIconOfEveryImage)
{
    constexpr DWORD kIconFormat = 0x00030000;
    for (const auto& [id, size, byteCount] : AllImages())
    {
        SCOPED_TRACE(size);
        const Bytes bytes = m_program.Get(kIconType, id, kGerman);
        HICON icon = ::CreateIconFromResourceEx(
            reinterpret_cast<BYTE*>(const_cast<std::byte*>(bytes.data())),
            static_cast<DWORD>(bytes.size()), TRUE, kIconFormat, size, size, 0);
        ASSERT_NE(icon, nullptr);
        ::DestroyIcon(icon);
    }
}

// --- version block -----------------------------------------------------------------------------

/// Writes one node of the version block and its children as indented lines.
void ReadVersionNode(ByteReader& reader, const std::string& indent, Lines& lines)
{
    constexpr WORD kText = 1;
    const std::size_t start = reader.Position();
    const auto length = reader.Read<WORD>();
    const auto valueLength = reader.Read<WORD>();
    const auto type = reader.Read<WORD>();
    std::string line = indent + Utf8(reader.ReadText());
    reader.Align();
    if (type == kText && valueLength != 0)
    {
        const std::wstring text = reader.ReadText();
        EXPECT_EQ(valueLength, text.size() + 1) << line; // code units with the terminator
        line += " = " + Utf8(text);
    }
    else
    {
        ByteReader value(reader.ReadBytes(valueLength));
        while (!value.AtEnd())
        {
            line += ' ' + Hex(value.Read<WORD>(), 4);
        }
    }
    lines.push_back(line);
    reader.Align();
    while (reader.Position() < start + length)
    {
        ReadVersionNode(reader, indent + "  ", lines);
    }
}

TEST_F(Resource, VersionBlockHoldsItsEntriesInOrder)
{
    ByteReader reader(m_program.Get(kVersionType, VS_VERSION_INFO, kGerman));
    Lines lines;
    ReadVersionNode(reader, "", lines);
    EXPECT_TRUE(reader.AtEnd());

    const Lines expected{
        "VS_VERSION_INFO"
        " 04BD FEEF 0000 0001" // signature, structure version
        " 0001 07EA 0000 0000" // file version: 2026, 1; 0, 0, each pair's low word first
        " 0001 07EA 0000 0000" // product version
        " 003F 0000 0000 0000" // flags mask, flags
        " 0004 0000 0001 0000" // operating system, file type
        " 0000 0000"           // subtype
        " 0000 0000 0000 0000" // date
        ,
        "  StringFileInfo",
        "    040704b0",
        "      Comments = Einfache Anwendung zum Messageaustausch",
        "      CompanyName = Orvane",
        "      FileDescription = Orvane Anwendungsweiterleitung",
        "      FileVersion = 2026.1.0.0",
        "      InternalName = quillet",
        "      LegalCopyright = Copyright © 2026 Orvane",
        "      OriginalFilename = quillet.exe",
        "      ProductName = Quillet",
        "      ProductVersion = 2026.1.0.0",
        "  VarFileInfo",
        "    Translation 0407 04B0",
    };
    EXPECT_EQ(Joined(lines), Joined(expected));
}

// --- manifest ----------------------------------------------------------------------------------

/// The document without the white space between its tags.
std::string WithoutLayout(std::string_view document)
{
    std::string result;
    std::size_t position = 0;
    while (position < document.size())
    {
        result += document[position++];
        const std::size_t next = document.find_first_not_of(" \t\r\n", position);
        if (result.back() == '>' && (next == document.npos || document[next] == '<'))
        {
            position = std::min(next, document.size());
        }
    }
    return result;
}

TEST_F(Resource, ManifestDeclaresInvokerRightsAndDpiAwarenessOnly)
{
    const Bytes bytes = m_program.Get(kManifestType, 1, kEnglish);
    const std::string_view document(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    ASSERT_TRUE(document.starts_with(kByteOrderMark));
    EXPECT_EQ(
        WithoutLayout(document.substr(kByteOrderMark.size())),
        R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>)"
        R"(<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">)"
        R"(<trustInfo xmlns="urn:schemas-microsoft-com:asm.v3">)"
        R"(<security><requestedPrivileges>)"
        R"(<requestedExecutionLevel level="asInvoker" uiAccess="false"/>)"
        R"(</requestedPrivileges></security>)"
        R"(</trustInfo>)"
        R"(<application xmlns="urn:schemas-microsoft-com:asm.v3">)"
        R"(<windowsSettings>)"
        R"(<dpiAware xmlns="http://schemas.microsoft.com/SMI/2005/WindowsSettings">true</dpiAware>)"
        R"(</windowsSettings>)"
        R"(</application>)"
        R"(</assembly>)");
}

} // namespace
