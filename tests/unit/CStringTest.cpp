#include <afxwin.h>

#include "tests/unit/TestResource.h"

#include <gtest/gtest.h>

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
    return {text.GetString(), static_cast<size_t>(text.GetLength())};
}

TEST(CString, IsEmptyFromNothing)
{
    for (const CString& text : {CString(), CString(nullptr), CString(L""), CString(L"abc", 0)})
    {
        EXPECT_TRUE(text.IsEmpty());
        EXPECT_EQ(0, text.GetLength());
        EXPECT_STREQ(L"", text.GetString());
    }
}

TEST(CString, CopiesUpToTheTerminator)
{
    const CString text(L"abc\0def");
    EXPECT_FALSE(text.IsEmpty());
    EXPECT_EQ(3, text.GetLength());
    EXPECT_STREQ(L"abc", text);
}

TEST(CString, HoldsEmbeddedZeros)
{
    CString text(L"a\0b", 3);
    EXPECT_EQ(3, text.GetLength());
    EXPECT_EQ(L'\0', text.GetAt(1));
    EXPECT_EQ(L'b', text.GetAt(2));
    EXPECT_EQ(2, text.Find(L'b'));
    EXPECT_EQ(1, text.Find(L'\0'));
    text += L'\0';
    text.Append(L"C\0D", 3);
    text.MakeLower();
    EXPECT_EQ(std::wstring(L"a\0b\0c\0d", 7), Units(text));
    const CString copy = text;
    EXPECT_EQ(7, copy.GetLength());
}

TEST(CString, AppendsNothingFromAnEmptyPart)
{
    CString text(L"ab");
    text.Append(L"cd", 0);
    EXPECT_STREQ(L"ab", text);
}

TEST(CString, GetAtReadsUpToTheTerminator)
{
    const CString text(L"ab");
    EXPECT_EQ(L'a', text.GetAt(0));
    EXPECT_EQ(L'b', text.GetAt(1));
    EXPECT_EQ(L'\0', text.GetAt(2));
    EXPECT_EQ(L'\0', CString().GetAt(0));
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
    EXPECT_EQ(1, text.Find(L'b'));
    EXPECT_EQ(1, text.Find(L'b', 1));
    EXPECT_EQ(4, text.Find(L'b', 2));
    EXPECT_EQ(-1, text.Find(L'b', 5));
    EXPECT_EQ(-1, text.Find(L'b', 6));
    EXPECT_EQ(-1, text.Find(L'x'));
    EXPECT_EQ(-1, CString().Find(L'x'));
}

TEST(CString, MakeLowerChangesAToZUnitForUnit)
{
    CString text(L"AZaz@[\u00C4\u00E4\u0130\u212A\u1E9E\U00010400");
    EXPECT_EQ(&text, &text.MakeLower());
    EXPECT_STREQ(L"azaz@[\u00C4\u00E4\u0130\u212A\u1E9E\U00010400", text);
}

TEST(CString, LoadsAStringOfTheStringTable)
{
    CString text(L"before");
    EXPECT_TRUE(text.LoadString(IDS_TEST));
    EXPECT_STREQ(L"Gr\u00FC\u00DFe", text);
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
