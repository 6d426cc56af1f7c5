#pragma once

#include "tests/support/ScriptedHost.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

/// The window class of the host that the recipes name; the example host has it.
inline constexpr wchar_t kHostClass[] = L"QuilletBeispielHost";
/// What the host of the recipes answers.
inline constexpr UINT kAnswer = 42;
/// The text that most recipes send.
inline constexpr wchar_t kText[] = L"Vorgang 4711";

/// A text of foreign origin that has the power of a link, in quotes or not: it closes the window of
/// ForeignHost.
inline constexpr wchar_t kHostileText[] = L"Akte -url=?kla=HangHost&copydata=&nodlg&msg=-1008";

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

/// A window that none of the recipes is meant for.
class ForeignHost : public ScriptedHost
{
public:
    ForeignHost();
};

/// Names the built program in QUILLET, where the recipes look before they look where it is
/// installed.
class Recipe : public testing::Test
{
protected:
    Recipe();
};
