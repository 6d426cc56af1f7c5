#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

/// What the command line of the self-test asks for.
struct Options
{
    /// /quiet: nobody is there to press a key.
    bool quiet = false;
    /// /suite:NAME, as often as one likes; none: all.
    std::vector<std::string> suites;
    /// /patience:SECONDS, after which a test that tells nothing is taken for hanging.
    std::chrono::seconds patience{180};
};

/// Nothing when there is a word that is none of these.
std::optional<Options> ReadOptions(const std::vector<std::wstring>& words);
