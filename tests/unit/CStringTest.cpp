#include <afxwin.h>

#include "tests/unit/TestResource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <clocale>
#include <string>

namespace
{

void ExpectInvalidPosition(const CString& text, int index)
{
    try
    {
        text.GetAt(index);
        ADD_FAILURE() << "position " << index << " was accepted";
    }
    catch (CInvalidArgException* exception)
    {
        exception->Delete();
    }
}

std::wstring Units(const CString& text)
{
    return {text.GetString(), static_cast<std::size_t>(text.GetLength())};
}

TEST(CString, IsEmptyFromNothing)
{
    for (const CString& text : {CString(), CString(nullptr), CString(L""), CString(L"abc", 0)})
    {
        EXPECT_TRUE(text.IsEmpty());
        EXPECT_EQ(text.GetLength(), 0);
        EXPECT_STREQ(text.GetString(), L"");
    }
}

TEST(CString, CopiesUpToTheTerminator)
{
    const CString text(L"abc\0def");
    EXPECT_FALSE(text.IsEmpty());
    EXPECT_EQ(text.GetLength(), 3);
    EXPECT_STREQ(text, L"abc");
}

TEST(CString, HoldsEmbeddedZeros)
{
    CString text(L"a\0b", 3);
    EXPECT_EQ(text.GetLength(), 3);
    EXPECT_EQ(text.GetAt(1), L'\0');
    EXPECT_EQ(text.GetAt(2), L'b');
    EXPECT_EQ(text.Find(L'b'), 2);
    EXPECT_EQ(text.Find(L'\0'), 1);
    text += L'\0';
    text.Append(L"C\0D", 3);
    text.MakeLower();
    EXPECT_EQ(Units(text), std::wstring(L"a\0b\0c\0d", 7));
    const CString copy = text;
    EXPECT_EQ(copy.GetLength(), 7);
}

TEST(CString, AppendsNothingFromAnEmptyPart)
{
    CString text(L"ab");
    text.Append(L"cd", 0);
    EXPECT_STREQ(text, L"ab");
}

TEST(CString, GetAtReadsUpToTheTerminator)
{
    const CString text(L"ab");
    EXPECT_EQ(text.GetAt(0), L'a');
    EXPECT_EQ(text.GetAt(1), L'b');
    EXPECT_EQ(text.GetAt(2), L'\0');
    EXPECT_EQ(CString().GetAt(0), L'\0');
}

TEST(CString, GetAtThrowsOutsideTheText)
{
    ExpectInvalidPosition(L"ab", 3);
    ExpectInvalidPosition(L"ab", -1);
    ExpectInvalidPosition(L"ab", INT_MAX);
    ExpectInvalidPosition(L"ab", INT_MIN);
    ExpectInvalidPosition(CString(), 1);
}

TEST(CString, FindsAUnitFromAPosition)
{
    const CString text(L"abcabc");
    EXPECT_EQ(text.Find(L'b'), 1);
    EXPECT_EQ(text.Find(L'b', 1), 1);
    EXPECT_EQ(text.Find(L'b', 2), 4);
    EXPECT_EQ(text.Find(L'b', 5), -1);
    EXPECT_EQ(text.Find(L'b', 6), -1);
    EXPECT_EQ(text.Find(L'x'), -1);
    EXPECT_EQ(CString().Find(L'x'), -1);
}

TEST(CString, MakeLowerChangesAToZUnitForUnit)
{
    CString text(L"AZaz@[\u00C4\u00E4\u0130\u212A\u1E9E\U00010400");
    EXPECT_EQ(&text.MakeLower(), &text);
    EXPECT_STREQ(text, L"azaz@[\u00C4\u00E4\u0130\u212A\u1E9E\U00010400");
}

/// The C run-time library in the user's locale, in which it lower-cases more letters.
class UsersLocale
{
public:
    UsersLocale() { std::setlocale(LC_ALL, ""); }
    ~UsersLocale() { std::setlocale(LC_ALL, "C"); }
    UsersLocale(const UsersLocale&) = delete;
    UsersLocale& operator=(const UsersLocale&) = delete;
};

TEST(CString, MakeLowerLeavesEveryOtherUnitAloneInAnyLocale)
{
    std::wstring all;
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit)
    {
        all += static_cast<wchar_t>(unit);
    }
    std::wstring expected = all;
    std::copy_n(L"abcdefghijklmnopqrstuvwxyz", 26, expected.begin() + L'A');
    const UsersLocale locale;
    CString text(all.data(), static_cast<int>(all.size()));
    EXPECT_TRUE(Units(text.MakeLower()) == expected);
}

TEST(CString, LoadsAStringOfTheStringTable)
{
    CString text(L"before");
    EXPECT_TRUE(text.LoadString(IDS_TEST));
    EXPECT_STREQ(text, L"Gr\u00FC\u00DFe");
}

TEST(CString, IsEmptyAfterLoadingAMissingString)
{
    CString text(L"before");
    EXPECT_FALSE(text.LoadString(IDS_TEST + 1)); // of the same block
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_FALSE(text.LoadString(60'000)); // of no block
    EXPECT_TRUE(text.IsEmpty());
}

} // namespace
