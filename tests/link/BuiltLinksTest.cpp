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
    constexpr std::size_t kRuns = 50; // of the real program: the test above reads every link
    const std::vector<Link> links = ReadLinks();
    ASSERT_GE(links.size(), kRuns);
    const ScriptedHost host({kHostClass});
    std::size_t runs = 0;
    for (std::size_t index = 0; index < links.size(); index += links.size() / kRuns)
    {
        const Link& link = links[index];
        ASSERT_EQ(RunQuillet(Arguments(link)), 0) << link.link;
        const auto received = host.WaitForMessages(++runs);
        ASSERT_EQ(received.size(), runs);
        ASSERT_EQ(Understood(link, received.back().Text()), link.text) << link.link;
    }
}

} // namespace
