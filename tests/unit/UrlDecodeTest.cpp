#include "app/QuilletApp.h"
#include "tests/unit/StringFailure.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace
{

std::wstring Decode(const std::wstring& text)
{
    const CString decoded =
        CQuilletApp::UrlDecode(CString(text.data(), static_cast<int>(text.size())));
    return {decoded.GetString(), static_cast<std::size_t>(decoded.GetLength())};
}

bool ReadsBeyondTheEnd(const std::wstring& text)
{
    try
    {
        Decode(text);
        return false;
    }
    catch (StringFailure* exception)
    {
        exception->Delete();
        return true;
    }
}

std::wstring Escape(unsigned byte, const wchar_t* highDigits = L"0123456789ABCDEF",
                    const wchar_t* lowDigits = nullptr)
{
    lowDigits = lowDigits == nullptr ? highDigits : lowDigits;
    return {L'%', highDigits[byte >> 4], lowDigits[byte & 0xF]};
}

struct DecodeRow
{
    const wchar_t* text;
    const wchar_t* decoded;
};

template <std::size_t N>
void ExpectDecoded(const DecodeRow (&rows)[N])
{
    for (const DecodeRow& row : rows)
    {
        EXPECT_EQ(Decode(row.text), row.decoded) << "text: " << std::wstring(row.text);
    }
}

/// The bytes whose escape alone is replaced by their character: a row for each high digit, a column
/// for each low one, "R" restored, "." left as written.
constexpr const wchar_t* kRestored[16] = {
    L"RRRRRRRRRRRRRRRR", // control characters
    L"RRRRRRRRRRRRRRR.", // all but 0x1F
    L"RRRRR.RRRRRRRRRR", // blank and signs up to "/", without "%"
    L"..........RRRRRR", // digits stay; : ; < = > ?
    L"R...............", // @, letters stay
    L"...........RRRRR", // [ \ ] ^ _
    L"R...............", // backquote
    L"...........RRRRR", // { | } ~ and 0x7F
    L"................", L"................", L"................", L"................",
    L"................", L"................", L"................", L"................",
};

TEST(UrlDecode, RestoresEachSingleEscapeOrLeavesItAsWritten)
{
    constexpr const wchar_t* kUpper = L"0123456789ABCDEF";
    constexpr const wchar_t* kLower = L"0123456789abcdef";
    for (unsigned byte = 0; byte < 256; ++byte)
    {
        for (const auto& escape : {Escape(byte, kUpper, kUpper), Escape(byte, kLower, kLower),
                                   Escape(byte, kUpper, kLower), Escape(byte, kLower, kUpper)})
        {
            const bool restored = kRestored[byte >> 4][byte & 0xF] == L'R';
            const std::wstring expected =
                restored ? std::wstring(1, static_cast<wchar_t>(byte)) : escape;
            EXPECT_EQ(Decode(escape), expected);
            EXPECT_EQ(Decode(L"x" + escape + L"y"), L"x" + expected + L"y");
            if (restored)
            {
                EXPECT_EQ(Decode(escape + escape), expected + expected);
            }
        }
    }
}

TEST(UrlDecode, LeavesTextWithoutEscapesAlone)
{
    ExpectDecoded({
        {L"", L""},
        {L"abc", L"abc"},
        {L"a+b", L"a+b"}, // a "+" never becomes a blank
        {L"a=b&c d#?\"", L"a=b&c d#?\""},
        {L"\u00E4\u20AC\xD83D\xDE00", L"\u00E4\u20AC\xD83D\xDE00"},
        {L"\r\n\t", L"\r\n\t"},
    });
}

TEST(UrlDecode, RestoresCharactersOfBothTablesAndControls)
{
    ExpectDecoded({
        {L"%3D", L"="},
        {L"%20", L" "},
        {L"%0A", L"\n"},
        {L"%7F", L"\x7F"},
        {L"%1E", L"\x1E"},
        {L"%22Mein%20Fenster%22", L"\"Mein Fenster\""},
        {L"%24%26%2B%2C%2E%2F%3A%3B%3D%3F%40%2D%5F%21%2A%28%29%27", L"$&+,./:;=?@-_!*()'"},
        {L"%20%22%3C%3E%23%7B%7D%7C%5C%5E%7E%5B%5D%60", L" \"<>#{}|\\^~[]`"},
    });
}

TEST(UrlDecode, LeavesLettersDigitsPercentAndHighBytesAsWritten)
{
    ExpectDecoded({
        {L"%41", L"%41"},
        {L"%25", L"%25"},
        {L"%1F", L"%1F"}, // a control character, but kept
        {L"%30", L"%30"},
        {L"%80", L"%80"},
        {L"%FF", L"%FF"},
        {L"%e4x", L"%e4x"},
        {L"%C3-%A4", L"%C3-%A4"}, // the second escape must follow at once
    });
}

TEST(UrlDecode, LeavesWhatIsNoEscapeAsWritten)
{
    ExpectDecoded({
        {L"%GG", L"%GG"},
        {L"%4G", L"%4G"},
        {L"%G4", L"%G4"},
        {L"% 20", L"% 20"},
        {L"%0x20", L"%0x20"},
        {L"%u0041", L"%u0041"},
        {L"%-1", L"%-1"},
        {L"%%20", L"% "}, // the first "%" stays, the search goes on after it
        {L"%2%20", L"%2 "},
        {L"%\uFF12\uFF10", L"%\uFF12\uFF10"}, // digits of another alphabet are none
        {L"%@0", L"%@0"},                     // neighbours of the digits' ranges
        {L"%/0", L"%/0"},
        {L"%:0", L"%:0"},
        {L"%`0", L"%`0"},
        {L"%0g", L"%0g"},
    });
}

TEST(UrlDecode, NeverExaminesAnInsertedCharacterAgain)
{
    ExpectDecoded({
        {L"%25%32%30", L"%%30"}, // the pair gives "%", which begins no escape
        {L"%25%34%31%32", L"%1"},
        {L"%2520", L"%2520"},
        {L"%3D3D", L"=3D"},
    });
}

// An escape that stays and is followed by any other one takes that one with it: the pair goes
// through the conversion, whose first unit is the first byte itself when that is ASCII.
TEST(UrlDecode, TakesTwoEscapesTogetherWhenTheFirstIsNotRestored)
{
    ExpectDecoded({
        {L"%41%42", L"A"},
        {L"%41%20", L"A"},
        {L"%41%42%43", L"A%43"},
        {L"%41%42%43%44", L"AC"},
        {L"%1F%41", L"\x1F"},
        {L"%20%41", L" %41"},
        {L"%41%4G", L"%41%4G"},
        {L"%41%G4%20", L"%41%G4 "},
        {L"%C3%A4", L"\u00E4"},
        {L"%c3%a4", L"\u00E4"},
        {L"%C3%a4%c3%B6", L"\u00E4\u00F6"},
        {L"%C3%A4%20%C3%9F", L"\u00E4 \u00DF"},
        {L"%41%C3%A4", L"A%A4"}, // the letter takes the first half
    });
}

TEST(UrlDecode, RestoresEveryTwoByteUtf8Sequence)
{
    constexpr const wchar_t* kLower = L"0123456789abcdef";
    for (unsigned code = 0x80; code <= 0x7FF; ++code)
    {
        const unsigned first = 0xC0 | code >> 6;
        const unsigned second = 0x80 | (code & 0x3F);
        const std::wstring expected(1, static_cast<wchar_t>(code));
        EXPECT_EQ(Decode(Escape(first) + Escape(second)), expected) << code;
        EXPECT_EQ(Decode(Escape(first, kLower) + Escape(second, kLower)), expected) << code;
        EXPECT_EQ(CQuilletApp::DecodeUtf8Pair(static_cast<std::uint16_t>(first << 8 | second)),
                  code);
    }
}

// All 65,536 pairs of bytes, malformed ones included.
TEST(UrlDecode, GivesTheFirstUnitOfThePlatformsConversionForEveryPair)
{
    for (unsigned pair = 0; pair <= 0xFFFF; ++pair)
    {
        const char bytes[] = {static_cast<char>(pair >> 8), static_cast<char>(pair & 0xFF), '\0'};
        wchar_t units[8] = {}; // more than three bytes can give
        ::MultiByteToWideChar(CP_UTF8, 0, bytes, sizeof(bytes), units, 8);
        ASSERT_EQ(CQuilletApp::DecodeUtf8Pair(static_cast<std::uint16_t>(pair)), units[0])
            << "pair: " << std::hex << pair;

        if (kRestored[pair >> 12][pair >> 8 & 0xF] == L'.')
        {
            ASSERT_EQ(Decode(Escape(pair >> 8) + Escape(pair & 0xFF) + L"x"),
                      std::wstring(1, units[0]) + L"x")
                << "pair: " << std::hex << pair;
        }
    }
}

TEST(UrlDecode, KeepsEmbeddedZeros)
{
    using namespace std::string_literals;
    EXPECT_EQ(Decode(L"%00"), L"\0"s);
    EXPECT_EQ(Decode(L"a%00b%20c%00"), L"a\0b c\0"s);
    EXPECT_EQ(Decode(L"\0"s), L"\0"s);
    EXPECT_EQ(Decode(L"a\0%20"s), L"a\0 "s);
    EXPECT_EQ(Decode(L"%\0"s), L"%\0"s);
    EXPECT_EQ(Decode(L"%4\0"s), L"%4\0"s);
}

TEST(UrlDecode, ReadsBeyondTheEndOnlyWhenAPercentSignIsTheLastUnitLookedAt)
{
    for (const wchar_t* text : {L"%", L"abc%", L"%%", L"%20%", L"%41%", L"%41%42%43%", L"%C3%A4%",
                                L"%C3%", L"%1F%", L"%G%", L"%GG%"})
    {
        EXPECT_TRUE(ReadsBeyondTheEnd(text)) << std::wstring(text);
    }
    ExpectDecoded({
        {L"%4", L"%4"}, // reads the terminating zero
        {L"%G", L"%G"},
        {L"abc%2", L"abc%2"},
        {L"%20%2", L" %2"},
        {L"%41%4", L"%41%4"},
        {L"%C3%A", L"%C3%A"},
        {L"%41", L"%41"},
        {L"%41x", L"%41x"},
    });
}

} // namespace
