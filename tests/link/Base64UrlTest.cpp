// How the hosts of the examples decode the texts of such links.
#include "examples/host/Base64Url.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace
{

TEST(Base64Url, IsDecodedStrictly)
{
    EXPECT_EQ(DecodeBase64Url(L""), L"");
    EXPECT_EQ(DecodeBase64Url(L"Zg"), L"f");
    EXPECT_EQ(DecodeBase64Url(L"Zm8"), L"fo");
    EXPECT_EQ(DecodeBase64Url(L"Zm9v"), L"foo");
    EXPECT_EQ(DecodeBase64Url(L"Pz8_Pj4-"), L"?\x3F?>>>");
    EXPECT_EQ(DecodeBase64Url(L"8J-YgA"), L"\U0001F600");
    for (const wchar_t* text : {
             L"Z",      // completes no byte
             L"Zm9vZ",  //
             L"Zh",     // not canonical: bits after the last byte
             L"Zg==",   // padded
             L"Pz8/",   // the digits of plain base64
             L"Zm 9v",  //
             L"Zm9v\n", //
             L"w6",     // half a character
             L"_w",     // no UTF-8
             L"wIA",    // not the shortest form
             L"\u00E4", //
         })
    {
        EXPECT_EQ(DecodeBase64Url(text), std::nullopt) << text;
    }
}

} // namespace
