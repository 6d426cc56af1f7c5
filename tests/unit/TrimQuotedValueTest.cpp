#include "app/TrimQuotedValue.h"

#include <gtest/gtest.h>

namespace
{

struct TrimRow
{
    const wchar_t* text;
    const wchar_t* value;
};

template <std::size_t N>
void ExpectTrimmed(const TrimRow (&rows)[N])
{
    for (const TrimRow& row : rows)
    {
        EXPECT_EQ(std::wstring(TrimQuotedValue(row.text)), row.value) << "text: " << row.text;
    }
}

TEST(TrimQuotedValue, QuotedValueRunsToTheNextQuote)
{
    ExpectTrimmed({
        {L"\"abc\"", L"abc"},
        {L"\"Mein Fenster\" -nodlg", L"Mein Fenster"},
        {L"\"\"", L""},
        {L"\"\"abc\"", L""},
        {L"\" \"", L" "},
        {L"\"a\\\"b\"", L"a\\"}, // there is no escape
        {L"\"a\"b c", L"a"},     // what follows the closing quote is not part of it
        {L"\"a\tb\"", L"a\tb"},
    });
}

TEST(TrimQuotedValue, UnclosedQuoteTakesTheRest)
{
    ExpectTrimmed({
        {L"\"abc -msg=5", L"abc -msg=5"},
        {L"\"", L""},
        {L"\" ", L" "},
    });
}

TEST(TrimQuotedValue, UnquotedValueEndsBeforeTheFirstBlank)
{
    ExpectTrimmed({
        {L"", L""},
        {L" ", L""},
        {L" abc", L""},
        {L"abc", L"abc"},
        {L"abc def", L"abc"},
        {L"abc\tdef ghi", L"abc\tdef"},     // only the blank ends it
        {L"abc\u00A0def", L"abc\u00A0def"}, // ... and no other kind of space
        {L"a\"b c\"", L"a\"b"},             // a quote inside is kept
        {L" \"abc\"", L""},                 // the quote does not come first
        {L"\t\"a b\"", L"\t\"a"},
    });
}

TEST(TrimQuotedValue, ResultIsAPartOfTheText)
{
    const std::wstring_view text = L"\"abc\" def";
    EXPECT_EQ(TrimQuotedValue(text).data(), text.data() + 1);
}

} // namespace
