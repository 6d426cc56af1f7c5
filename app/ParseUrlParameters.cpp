#include "app/QuilletApp.h"

#include <regex>

namespace
{

std::wstring Decode(const std::wstring& text)
{
    const CString decoded =
        CQuilletApp::UrlDecode(CString(text.data(), static_cast<int>(text.size())));
    return {decoded.GetString(), static_cast<size_t>(decoded.GetLength())};
}

} // namespace

UrlParameters CQuilletApp::ParseUrlParameters(const wchar_t* url)
{
    // The option changes nothing for this expression and is kept.
    const std::wregex queryExpression(L"[?]([^ #]+)", std::regex::ECMAScript | std::regex::icase);
    const std::wregex pairExpression(L"^(\\w+)(=(.*))?$");
    const std::wregex separatorExpression(L"[&;]+");

    UrlParameters parameters;
    std::wcmatch queryMatch;
    if (!std::regex_search(url, queryMatch, queryExpression))
    {
        return parameters;
    }
    const std::wstring query = queryMatch[1];
    for (std::wsregex_token_iterator item(query.begin(), query.end(), separatorExpression, -1), end;
         item != end; ++item)
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
