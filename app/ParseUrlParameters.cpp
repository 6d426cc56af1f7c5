#include "app/QuilletApp.h"

#include <regex>

namespace
{

/// The library's own way to read a number in an expression, such as the 2 of {2}, brings its
/// streams along and makes the program a fifth larger. The expressions below have no numbers.
struct NumberlessTraits : std::regex_traits<wchar_t>
{
    static int value(wchar_t, int) { return -1; }
};

using Regex = std::basic_regex<wchar_t, NumberlessTraits>;

// libstdc++'s default executor recurses once per character: a URL of 32,000 characters would take
// 21 MiB of stack. The other one takes the same stack for any text.
#ifdef __GLIBCXX__
constexpr auto kSyntax = std::regex::ECMAScript | std::regex_constants::__polynomial;
#else
constexpr auto kSyntax = std::regex::ECMAScript;
#endif

using ItemIterator =
    std::regex_token_iterator<std::wstring::const_iterator, wchar_t, NumberlessTraits>;

std::wstring Decode(const std::wstring& text)
{
    const CString decoded =
        CQuilletApp::UrlDecode(CString(text.data(), static_cast<int>(text.size())));
    return {decoded.GetString(), static_cast<std::size_t>(decoded.GetLength())};
}

} // namespace

UrlParameters CQuilletApp::ParseUrlParameters(const wchar_t* url)
{
    // The option changes nothing for this expression and is kept.
    const Regex queryExpression(L"[?]([^ #]+)", kSyntax | std::regex::icase);
    const Regex pairExpression(L"^(\\w+)(=(.*))?$", kSyntax);
    const Regex separatorExpression(L"[&;]+", kSyntax);

    UrlParameters parameters;
    std::wcmatch queryMatch;
    if (!std::regex_search(url, queryMatch, queryExpression))
    {
        return parameters;
    }
    const std::wstring query = queryMatch[1];
    for (ItemIterator item(query.begin(), query.end(), separatorExpression, -1), end; item != end;
         ++item)
    {
        const std::wstring text = *item;
        std::wsmatch pair;
        if (std::regex_match(text, pair, pairExpression))
        {
            parameters.emplace(Decode(pair[1]), Decode(pair[3]));
        }
    }
    return parameters;
}
