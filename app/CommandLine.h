#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The process's whole command line, program path included, in which switches are found by plain
/// search instead of being split into arguments. Kept on purpose, with all that follows from it: a
/// switch is found wherever a blank stands before its dash, also inside another switch's quoted
/// value; only its first occurrence counts; a flag's text may go on after it.
class CommandLine
{
public:
    explicit CommandLine(const wchar_t* raw);

    /// The line in the letter case as typed.
    const std::wstring& Raw() const { return m_raw; }

    /// Whether the line holds the switch, in any letter case. `switchText` is lower case and begins
    /// with the blank.
    bool Has(std::wstring_view switchText) const;

    /// Everything after the first occurrence of the switch to the end of the line, in the letter
    /// case as typed; nothing when the line does not hold the switch. Refers into this object.
    std::optional<std::wstring_view> After(std::wstring_view switchText) const;

    /// The same in lower case, null-terminated; null when the line does not hold the switch.
    const wchar_t* LowerAfter(std::wstring_view switchText) const;

private:
    std::wstring m_raw;
    /// Unit for unit the raw line in lower case, so that positions in one are positions in the
    /// other.
    std::wstring m_lower;
};
