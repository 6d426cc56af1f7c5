// Links of the link builder (examples/url-scheme/quillet-link.js) as the program reads them: what
// was put in is what the host receives. make_links.js has written them, thousands of random texts.
#include "app/SendRequest.h"
#include "examples/host/Base64Url.h"
#include "tests/support/HexUnits.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/RequestOf.h"
#include "tests/support/ScriptedHost.h"

#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <sstream>
#include <vector>

namespace
{

constexpr wchar_t kHostClass[] = L"QuilletLinkTest"; // as the links name it

/// One line of the file: see make_links.js.
struct Link
{
    std::wstring link;
    bool isBase64Url = false;
    std::wstring text;
};

std::vector<Link> ReadLinks()
{
    std::vector<Link> links;
    std::ifstream file(BuiltProgram(L"links.txt"));
    std::string link;
    std::string kind;
    std::string text;
    while (file >> link >> kind >> text)
    {
        links.push_back({{link.begin(), link.end()}, kind == "base64url", TextOfHexUnits(text)});
    }
    return links;
}

/// The arguments as the registration of a scheme has them, with the link in the place of %1.
std::wstring Arguments(const Link& link)
{
    return L" -url=\"" + link.link + L'"';
}

/// What a host makes of the text that it received.
std::optional<std::wstring> Understood(const Link& link, const std::wstring& received)
{
    return link.isBase64Url ? DecodeBase64Url(received) : received;
}

TEST(BuiltLinks, AreReadAsTheyWereMeant)
{
    const std::vector<Link> links = ReadLinks();
    ASSERT_GE(links.size(), 4000u) << "make_links.js writes them";
    for (const Link& link : links)
    {
        const SendRequest request = RequestOf(L"\"C:\\quillet.exe\"" + Arguments(link));
        SendRequest expected;
        expected.windowClass = kHostClass;
        expected.copyData = request.copyData;
        expected.noDialog = true;
        ASSERT_EQ(TextOf(request), TextOf(expected)) << link.link;
        ASSERT_EQ(Understood(link, request.copyData), link.text) << link.link;
    }
}

TEST(BuiltLinks, ArriveAtTheHostOfTheRealProgram)
{
    constexpr size_t kRuns = 50; // of the real program: the test above reads every link
    const std::vector<Link> links = ReadLinks();
    ASSERT_GE(links.size(), kRuns);
    const ScriptedHost host({kHostClass});
    size_t runs = 0;
    for (size_t index = 0; index < links.size(); index += links.size() / kRuns)
    {
        const Link& link = links[index];
        ASSERT_EQ(RunQuillet(Arguments(link)), 0) << link.link;
        const auto received = host.WaitForMessages(++runs);
        ASSERT_EQ(received.size(), runs);
        ASSERT_EQ(Understood(link, received.back().Text()), link.text) << link.link;
    }
}

// The handbook's table of escapes, and what it says cannot arrive.
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
