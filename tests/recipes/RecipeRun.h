#pragma once

#include "tests/support/ScriptedHost.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

/// What the host of the recipes answers.
inline constexpr UINT kAnswer = 42;
/// The text that most recipes send.
inline constexpr wchar_t kText[] = L"Vorgang 4711";

struct Outcome
{
    /// Nothing when the recipe did not end.
    std::optional<int> exitCode;
    std::string output;
};

std::wstring Quoted(const std::wstring& text);

/// The full path of a file of examples/, as the build has copied it.
std::wstring RecipePath(const wchar_t* name);

/// The full path of a file that a test makes. Each desktop has its own, and so has no part in what
/// others make beside it.
std::wstring ScratchPath(const wchar_t* name);

std::string ContentOf(const std::filesystem::path& file);

void Replace(std::string& text, std::string_view from, std::string_view to);

/// Runs a command line as cmd does, with its output in a file.
Outcome RunInCmd(const std::wstring& commandLine);

/// The host of the recipes.
class RecipeHost : public ScriptedHost
{
public:
    explicit RecipeHost(Script script = AnswerWith(kAnswer));

    /// That exactly one message arrived, with this text.
    void ExpectText(const std::wstring& text = kText) const;
};

/// Names the built program in QUILLET, where the recipes look before they look where it is
/// installed.
class Recipe : public testing::Test
{
protected:
    Recipe();
};
