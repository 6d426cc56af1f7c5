#include "tests/kit/Options.h"

#include <cwchar>

std::optional<Options> ReadOptions(const std::vector<std::wstring>& words)
{
    constexpr std::wstring_view kSuite = L"/suite:";
    constexpr std::wstring_view kPatience = L"/patience:";
    Options options;
    for (const std::wstring& word : words)
    {
        if (word == L"/quiet")
        {
            options.quiet = true;
        }
        else if (word.starts_with(kSuite))
        {
            options.suites.emplace_back(word.begin() + kSuite.size(), word.end());
        }
        else if (const long seconds = word.starts_with(kPatience)
                                          ? std::wcstol(&word[kPatience.size()], nullptr, 10)
                                          : 0;
                 seconds > 0)
        {
            options.patience = std::chrono::seconds(seconds);
        }
        else
        {
            return std::nullopt;
        }
    }
    return options;
}
