#include "app/UrlArgument.h"

#include "app/CommandLine.h"

namespace
{

/// Where a quote can first open a value inside the URL: after the opening quote, one unit and "=".
constexpr std::size_t kFirstInnerQuote = 3;

/// `quoted` begins with the opening quote.
std::wstring_view CutQuotedUrl(std::wstring_view quoted)
{
    std::size_t start = 1;
    for (std::size_t quote = quoted.find(L'"', start); quote != quoted.npos;
         quote = quoted.find(L'"', start))
    {
        const bool opensValue = quote >= kFirstInnerQuote && quoted[quote - 1] == L'=';
        if (!opensValue)
        {
            return quoted.substr(1, quote - 1);
        }
        const std::size_t closing = quoted.find(L'"', quote + 1);
        start = (closing == quoted.npos ? quote : closing) + 1;
    }
    return quoted.substr(1);
}

} // namespace

std::wstring CutUrlArgument(const CommandLine& commandLine)
{
    const auto value = commandLine.After(L" -url=");
    if (!value)
    {
        return {};
    }
    return std::wstring(value->starts_with(L'"') ? CutQuotedUrl(*value)
                                                 : value->substr(0, value->find(L' ')));
}
