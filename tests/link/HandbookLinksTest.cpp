// The handbook's table of escapes, and what it says cannot arrive.
#include "app/SendRequest.h"
#include "tests/support/RequestOf.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

TEST(HandbookLinks, AreReadAsTheHandbookSays)
{
    struct Row
    {
        const wchar_t* value;
        const wchar_t* text;
    };
    const Row rows[] = {
        {L"%22%20%22", L" "},
        {L"%23%26%2B%2F%3B%3D%3F", L"#&+/;=?"},
        {L"a%0D%0Ab", L"a\r\nb"},
        {L"%C3%A4", L"\u00E4"},
        {L"%E2%82%AC", L"\uFFFD%AC"},
        {L"%225%20%E2%82%AC%20netto%22", L"5 \uFFFD\uFFFDnetto"},
        {L"%41", L"%41"},
        {L"%25", L"%25"},
        {L"%41%42", L"A"},
        {L"a+b", L"a+b"},
        {L"%22a%20%22b%22%20c%22", L"a "},
        {L"12\u20AC", L"12\u20AC"}, // raw, as no browser hands it over
    };
    for (const Row& row : rows)
    {
        EXPECT_EQ(RequestOf(std::wstring(L"q -url=\"x:?copydata=") + row.value + L'"').copyData,
                  row.text);
    }
}

} // namespace
