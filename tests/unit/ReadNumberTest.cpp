#include "app/ReadNumber.h"

#include <gtest/gtest.h>

#include <cwctype>
#include <string>

namespace
{

constexpr int kUnchanged = 77;

struct NumberRow
{
    const wchar_t* text;
    std::int64_t number;
};

// The same rules hold for both widths.
constexpr NumberRow kNumbers[] = {
    {L"5", 5},
    {L"0", 0},
    {L"-3", -3},
    {L"+3", 3},
    {L"2147483647", 2147483647},
    {L"-2147483648", -2147483648LL},
    {L"0x10", 16},
    {L"0xff", 255},
    {L"0xFF", 255},
    {L"-0x10", -16},
    {L"+0x10", 16},
    {L"0x7fffffff", 0x7fffffff},
    {L"010", 8},
    {L"-010", -8},
    {L"08", 0}, // no octal digit
    {L"0109", 8},
    {L" 9", 9},
    {L" \t\r\n 9", 9},
    {L" -0x1F -msg=4", -31},
    {L"7abc", 7},
    {L"7\"", 7},
    {L"1.9", 1},
    {L"1e3", 1},
    {L"0b11", 0},
    {L"1'000", 1},
    {L"12 34", 12},
    {L"", kUnchanged},
    {L" ", kUnchanged},
    {L"\"5\"", kUnchanged}, // quotes are not for numbers
    {L"-", kUnchanged},
    {L"- 5", kUnchanged},
    {L"--5", kUnchanged},
    {L"+-5", kUnchanged},
    {L"abc", kUnchanged},
    {L"x10", kUnchanged},
    {L"0x", kUnchanged}, // a prefix is no number
    {L"0X", kUnchanged},
    {L" -0xg", kUnchanged},
    {L"0x -msg=4", kUnchanged},
    {L"\u0665", kUnchanged}, // a digit, but not one of the ten
    {L"\uFF15", kUnchanged},
};

template <typename Number>
Number Read(const wchar_t* text)
{
    Number field = kUnchanged;
    ReadNumber(text, field);
    return field;
}

TEST(ReadNumber, FollowsTheScanRules)
{
    for (const auto& [text, number] : kNumbers)
    {
        EXPECT_EQ(Read<std::int32_t>(text), number) << "text: <" << text << ">";
        EXPECT_EQ(Read<std::int64_t>(text), number) << "text: <" << text << ">";
    }
}

// More than ASCII has, and the same for the scan as for the platform's own question.
TEST(ReadNumber, PassesOverWhatThePlatformCallsWhiteSpace)
{
    for (const wchar_t unit : {L'\u00A0', L'\u2028', L'\u2029', L'\u3000', L'\u200B'})
    {
        const std::wstring text = unit + std::wstring(L"9");
        EXPECT_EQ(Read<std::int32_t>(text.c_str()), std::iswspace(unit) != 0 ? 9 : kUnchanged)
            << static_cast<int>(unit);
    }
}

TEST(ReadNumber, WideFieldTakesSixtyFourBits)
{
    constexpr NumberRow kWideRows[] = {
        {L"4294967296", 4294967296LL},
        {L"-4294967297", -4294967297LL},
        {L"9223372036854775807", INT64_MAX},
        {L"-9223372036854775808", INT64_MIN},
        {L"0x123456789abcdef0", 0x123456789abcdef0},
        {L"-0x100000000", -0x100000000LL},
        {L"0400000000000", 0x800000000LL},
    };
    for (const auto& [text, number] : kWideRows)
    {
        EXPECT_EQ(Read<std::int64_t>(text), number) << "text: <" << text << ">";
    }
}

TEST(ReadNumber, NarrowFieldKeepsTheLowBits)
{
    constexpr NumberRow kRowsBeyond[] = {
        {L"0xffffffff", -1},          {L"0xfffffc00", -1024}, // with WM_USER the message 0
        {L"037777777777", -1},        {L"2147483648", INT32_MIN}, {L"-2147483649", INT32_MAX},
        {L"4294967295", -1},          {L"4294967296", 0},         {L"-4294967297", -1},
        {L"0x123456789", 0x23456789},
    };
    for (const auto& [text, number] : kRowsBeyond)
    {
        EXPECT_EQ(Read<std::int32_t>(text), number) << "text: <" << text << ">";
    }
}

#ifdef __MINGW32__ // what the newer library that Visual C++ links makes of these has not been tried
TEST(ReadNumber, WideFieldKeepsTheLowBits)
{
    constexpr NumberRow kRowsBeyond[] = {
        {L"0xffffffffffffffff", -1},         {L"-0xffffffffffffffff", 1},
        {L"0xfffffffffffffc00", -1024},      {L"01777777777777777777777", -1},
        {L"9223372036854775808", INT64_MIN}, {L"18446744073709551615", -1},
        {L"18446744073709551616", 0},        {L"0x10000000000000005", 5},
        {L"-18446744073709551617", -1},
    };
    for (const auto& [text, number] : kRowsBeyond)
    {
        EXPECT_EQ(Read<std::int64_t>(text), number) << "text: <" << text << ">";
        EXPECT_EQ(Read<std::int32_t>(text), static_cast<std::int32_t>(number))
            << "text: <" << text << ">";
    }
}
#endif

} // namespace
