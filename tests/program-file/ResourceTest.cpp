// Every resource of the built program but the icon, read from its raw bytes. What is compared is
// written out as lines of text, so that a difference shows where it lies.
#include "res/resource.h"

#include "tests/program-file/ByteReader.h"
#include "tests/program-file/ProgramResources.h"

#include <array>

namespace
{

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
