// Runs on Windows and, with sanitizers, natively, where `wchar_t` is made narrower than the C
// library's. So texts are `char16_t` here, and no library function sees a `wchar_t`.

#include "target/GlobMatch.h"

#include "tests/support/GuardedText.h"
#include "tests/support/LongTexts.h"
#include "tests/support/NaiveGlobMatch.h"
#include "tests/support/RandomSeed.h"
#include "tests/support/ReadableUnits.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>

namespace
{

/// Text and pattern end directly before inaccessible pages, so that every test of this file also
/// shows that nothing past a terminator is read.
int Match(std::u16string_view text, std::u16string_view pattern)
{
    const GuardedText guardedText(text);
    const GuardedText guardedPattern(pattern);
    return GlobMatch(guardedText.Get(), guardedPattern.Get());
}

struct MatchRow
{
    const char16_t* text;
    const char16_t* pattern;
    int result;
};

template <std::size_t N>
void ExpectMatches(const MatchRow (&rows)[N])
{
    for (const MatchRow& row : rows)
    {
        EXPECT_EQ(Match(row.text, row.pattern), row.result)
            << "text: " << Readable(row.text) << "  pattern: " << Readable(row.pattern);
    }
}

TEST(GlobMatch, LiteralsMatchTheWholeTextOnly)
{
    ExpectMatches({
        {u"", u"", 1},
        {u"a", u"", 0},
        {u"", u"a", 0},
        {u"abc", u"abc", 1},
        {u"abc", u"ABC", 0},
        {u"abcd", u"abc", 0},
        {u"abc", u"abcd", 0},
        {u"a]-b", u"a]-b", 1}, // both are ordinary outside a set
        {u"!^", u"!^", 1},
        {u"a/b.c", u"a/b.c", 1},
        {u".a", u"*a", 1}, // neither a leading dot nor a slash is special
        {u"a/b", u"a*b", 1},
        {u"a/b", u"a?b", 1},
    });
}

TEST(GlobMatch, QuestionMarkTakesOneUnit)
{
    ExpectMatches({
        {u"", u"?", 0},
        {u"", u"*?", 0},
        {u"a", u"?", 1},
        {u"ab", u"?", 0},
        {u"?", u"?", 1},
        {u"abc", u"a?c", 1},
        {u"ab", u"a?c", 0},
        {u"abc", u"abc?", 0},
        {u"a", u"*?", 1},
        {u"a", u"?*", 1},
        {u"", u"?*", 0}, // an untitled window has nothing for it
        {u"ab", u"*?*?*", 1},
        {u"a", u"*?*?*", 0},
    });
}

TEST(GlobMatch, StarTakesAnyRun)
{
    ExpectMatches({
        {u"", u"*", 1},
        {u"", u"**", 1},
        {u"", u"*a", 0},
        {u"abc", u"*", 1},
        {u"abc", u"***", 1},
        {u"abc", u"a*", 1},
        {u"abc", u"*c", 1},
        {u"abc", u"*b*", 1},
        {u"abc", u"a**c", 1},
        {u"abc", u"abc*", 1},
        {u"abc", u"*abc", 1},
        {u"abc", u"*b", 0},
        {u"abc", u"b*", 0},
        {u"abc", u"*d*", 0},
        {u"aab", u"*ab", 1}, // the first "a" must be given up again
        {u"abab", u"*ab", 1},
        {u"abcabd", u"*ab?", 1},
        {u"mississippi", u"m*iss*p?", 1},
        {u"mississippi", u"m*iss*iss*iss*", 0},
        {u"abc", u"*\\c", 1},
        {u"abc", u"*[b-c]", 1},
        {u"abc", u"a*[]c", 0},
        {u"Fenster 12", u"Fenster [0-9]", 0},
        {u"Fenster 12", u"Fenster [0-9]*", 1},
        {u"Editor - 1", u"editor*", 0},
    });
}

TEST(GlobMatch, SetTakesOneOfItsMembers)
{
    // clang-format off
    ExpectMatches({
        {u"b", u"[abc]", 1},
        {u"d", u"[abc]", 0},
        {u"", u"[abc]", 0},
        {u"ab", u"[a]b", 1},
        {u"a", u"[a]b", 0},
        {u"b", u"[a-c]", 1},
        {u"a", u"[a-c]", 1},
        {u"c", u"[a-c]", 1},
        {u"d", u"[a-c]", 0},
        {u"b", u"[c-a]", 1}, // downwards is the same range
        {u"d", u"[c-a]", 0},
        {u"a", u"[a-a]", 1},
        {u"-", u"[a-c]", 0},
        {u"-", u"[-a]", 1}, // first in the set it is a member
        {u"a", u"[-a]", 1},
        {u"-", u"[--a]", 1}, // the range from "-" to "a"
        {u"A", u"[--a]", 1},
        {u"-", u"[a-c-e]", 1}, // after a range the "-" is a member again
        {u"d", u"[a-c-e]", 0}, // ... and begins none, for "e" follows it, not another "-"
        {u"-", u"[---]", 1},
        {u".", u"[---]", 0},
        {u"x", u"[a-cx-z]", 1},
        {u"d", u"[a-cx-z]", 0},
        {u"*", u"[*]", 1}, // stars, question marks and brackets are members
        {u"?", u"[?]", 1},
        {u"a", u"[*?]", 0},
        {u"[", u"[[]", 1},
        {u"[", u"[a[]", 1},
    });
    // clang-format on
}

TEST(GlobMatch, SetKnowsNoNegation)
{
    ExpectMatches({
        {u"!", u"[!a]", 1},
        {u"a", u"[!a]", 1},
        {u"b", u"[!a]", 0},
        {u"^", u"[^a]", 1},
        {u"b", u"[^a]", 0},
    });
}

TEST(GlobMatch, SetKnowsNoEscape)
{
    ExpectMatches({
        {u"\\", u"[\\]", 1},
        {u"]", u"[\\]", 0},
        {u"a", u"[\\a]", 1},
        {u"]", u"[\\]]", 0}, // the first "]" closes the set, the second wants a unit
        {u"\\]", u"[\\]]", 1},
        {u"]", u"[\\-^]", 1},  // the range from "\" to "^"
        {u"\\", u"[a\\-]", 1}, // the range from "\" to "]", which also closes the set
    });
}

TEST(GlobMatch, ClosingBracketIsNoMember)
{
    ExpectMatches({
        {u"a", u"[]", 0},
        {u"", u"[]", 0},
        {u"a", u"[]a]", 0}, // closed at once, without a member
        {u"]", u"[]]", 0},
        {u"]", u"[Z-a]", 1}, // only a range covers it
        {u"]a", u"[Z-a]a", 1},
    });
}

TEST(GlobMatch, ClosingBracketAsBoundClosesOnlyWhenItsRangeMatches)
{
    ExpectMatches({
        {u"-", u"[a-]", 0}, // the range from "]" to "a", and no "-"
        {u"^", u"[a-]", 1},
        {u"]", u"[a-]", 1},
        {u"`", u"[a-]", 1},
        {u"a", u"[a-]", 1},
        {u"b", u"[a-]", 0},   // goes on after the "]" and finds the end
        {u"b", u"[a-]b]", 1}, // ... or more members
        {u"x", u"[a-]x]", 1},
        {u"a", u"[a-]b]", 0}, // for "a" the first "]" closes, and "b]" is left
        {u"ab]", u"[a-]b]", 1},
        {u"bb]", u"[a-]b]", 0},
        {u"_b]", u"[a-]b]", 1},
        {u"c", u"[a-]b-]c]", 1},
        {u"ac]", u"[xa-]c]", 1},
        {u"xc]", u"[xa-]c]", 1}, // a plain member skips to the same "]" as the range would
        {u"c", u"[xa-]c]", 1},
        {u"-", u"[]-a]", 0},
        {u"a", u"[Z-]a]", 1},
    });
}

TEST(GlobMatch, WhatFollowsTheMatchingMemberIsSkippedUnread)
{
    ExpectMatches({
        {u"a", u"[a\\]", 1},
        {u"a", u"[a[]", 1},
        {u"ab", u"[ac-]b", 1}, // "a" matched, so "c-]" is no range any more
        {u"c", u"[ac-]b]", 0}, // "c" begins the range up to "]" and leaves "b]"
        {u"cb]", u"[ac-]b]", 1},
        {u"d", u"[ac-]d]", 1},
        {u"b", u"[a-c-]", 1},
    });
}

TEST(GlobMatch, UnclosedSetReachesToTheEndOfThePattern)
{
    // clang-format off
    ExpectMatches({
        {u"[", u"[", 0},
        {u"", u"[", 0},
        {u"b", u"[a", 0},
        {u"b", u"[a-", 0},
        {u"-", u"[a-", 0}, // a range without a bound fails before its "-" is looked at
        {u"a", u"[a", 1},
        {u"a", u"[ab", 1},
        {u"b", u"[ab", 1},
        {u"ab", u"[ab", 0},
        {u"a", u"[a-", 1},
        {u"b", u"[a-c", 1},
        {u"x", u"[a-]x", 1},
        {u"xx", u"[a-]x", 0},
        {u"ax", u"[a-]x", 1},
        {u"a", u"[a*", 1}, // the star belongs to the set
        {u"ab", u"[a*", 0},
        {u"a", u"[a\\", 1},
        {u"bca", u"*[a", 1},
        {u"bcab", u"*[a", 0},
    });
    // clang-format on
}

TEST(GlobMatch, BackslashMakesTheNextUnitOrdinary)
{
    ExpectMatches({
        {u"[", u"\\[", 1},
        {u"*", u"\\*", 1},
        {u"a", u"\\*", 0},
        {u"", u"\\*", 0},
        {u"?", u"\\?", 1},
        {u"a", u"\\?", 0},
        {u"a*c", u"a\\*c", 1},
        {u"abc", u"a\\*c", 0},
        {u"ab", u"a\\b", 1},
        {u"\\", u"\\\\", 1},
        {u"a\\b", u"a\\\\b", 1},
        {u"[a]", u"\\[a]", 1},
        {u"[a]", u"\\[a\\]", 1},
        {u"x*y", u"*\\**", 1},
        {u"xy", u"*\\**", 0},
    });
}

TEST(GlobMatch, TrailingBackslashNeverMatches)
{
    ExpectMatches({
        {u"\\", u"\\", 0},
        {u"", u"\\", 0},
        {u"ab\\", u"ab\\", 0},
        {u"ab", u"ab\\", 0},
        {u"ab", u"*\\", 0},
        {u"ab\\", u"*\\", 0},
    });
}

TEST(GlobMatch, GoingBackToTheLastStarOnlyWouldBeWrongForVaryingSets)
{
    ExpectMatches({
        {u"abc", u"*[a-]*b]c", 1}, // "a" takes the set to its first "]", "b" to its second
        {u"abc", u"*[a-]*b]d", 0},
        {u"aab]c", u"*[a-]*b]c", 1},
        {u"abac", u"*[a-]*b]c", 0},
        {u"abab", u"*[a-]*b]*[a-]*b]", 1},
        {u"abab", u"*[a-]*b]*[a-]*b]c", 0},
        {u"zzazb", u"*[a-]z*]?", 1},
        {u"", u"*[a-]**", 0},
        {u"a", u"*[a-]**", 1},
        {u"b", u"*[a-]b", 1},      // unclosed for "b"
        {u"b*", u"**[a-]*\\*", 1}, // the first star after the "]" as a member
        {u"a*", u"**[a-]*\\*", 1},
        {u"a", u"**[a-]*\\", 0},
        {u"x-]y", u"*[0-9-]]y", 1}, // after a range "-" is a member, so this end does not vary
        {u"aab]", u"*\\[a-]*", 0},  // neither does this: there is no set
        {u"a[a-]b", u"*\\[a-]*", 1},
        {u"[a[*c", u"*\\[[-x-]*b]c", 1}, // the escaped "[" begins no range with the one after it
    });
}

TEST(GlobMatch, UnitsAreUnsignedAndCharactersAreNotDecoded)
{
    ExpectMatches({
        {u"\u00E4\u20AC", u"\u00E4?", 1},
        {u"\u00E4", u"\u00C4", 0},
        {u"e\u0301", u"\u00E9", 0}, // no normalisation
        {u"\U0001F600", u"?", 0},   // a surrogate pair is two units
        {u"\U0001F600", u"??", 1},
        {u"\U0001F600", u"\U0001F600", 1},
        {u"\U0001F600", u"[\U0001F600]", 0}, // a set of two members takes one unit
        {u"\U0001F600", u"[\U0001F600]?", 1},
        {u"\uFF21", u"[a-\uFFFF]", 1},
        {u"\uFF21", u"[\uFFFF-a]", 1},
        {u"\u7FFF", u"[a-\uFFFF]", 1},
        {u"A", u"[a-\uFFFF]", 0}, // not negative, so not below "a"
        {u"\uFFFF", u"\uFFFF", 1},
        {u"\u0141", u"A", 0}, // the low bytes alone are equal
    });
    constexpr char16_t kLoneSurrogates[] = {0xDC00, 0xD800, 0};
    EXPECT_EQ(Match(kLoneSurrogates, u"??"), 1);
    EXPECT_EQ(Match(kLoneSurrogates, u"[\uD7FF-\uE000]*"), 1);
    EXPECT_EQ(Match(kLoneSurrogates, kLoneSurrogates), 1);
}

/// `part` repeated as often as `units` units have room for it.
std::u16string Filled(const char16_t* part, std::size_t units)
{
    return Repeated(part, units / std::u16string_view(part).size());
}

constexpr std::size_t kLongestWindowText = 4'095;

// Each of these costs the plain rules exponential time, or a power of the text's length. They are
// done with when the test program ends within its time limit at all.
TEST(GlobMatch, HostilePatternsEndSoon)
{
    constexpr std::size_t kText = kLongestWindowText;
    constexpr std::size_t kPattern = kLongestCommandLine;
    constexpr std::size_t kPart = kPattern / 8; // enough for these, and quick without optimisation
    // Longer than any, and passed once: each unit of the pattern once for each would take minutes.
    constexpr std::size_t kPassedOnce = 4'000'000;
    const struct
    {
        std::u16string text;
        std::u16string pattern;
        int result;
    } rows[] = {
        {Filled(u"a", kText), Repeated(u"*a", 16) + u"*c", 0},
        {Filled(u"a", kText), Filled(u"*a", kPattern - 2) + u"*c", 0},
        {Filled(u"a", kText), Repeated(u"*a", kText) + u"*", 1},
        {Filled(u"a", kText), u"*" + Filled(u"a", kText / 2) + u"b", 0},
        {Filled(u"a", kText), Filled(u"*", kPattern), 1},
        {Filled(u"a", kText), Filled(u"*", kPattern - 1) + u"b", 0},
        {Filled(u"a", kText), Filled(u"*?", kPattern), 0},
        {Filled(u"a", kText), u"*" + Filled(u"[bcdefgha]", kPattern - 2) + u"b", 0},
        {Filled(u"az", kText), Filled(u"*[a-]", kPattern), 0},
        {Filled(u"az", kText), Filled(u"*[a-]", kPart) + u"z]", 1}, // "z" goes to the last "]"
        {Filled(u"ab", kText), Filled(u"*[a-]*b]", kPart), 1},      // one turn for each "b"
        {Filled(u"ab", kText), Filled(u"*[a-]*b]", kPart) + u"c", 0},
        {Filled(u"b", kText), u"*" + Filled(u"[a-]", kPart), 0},
        {Filled(u"b", kText), u"*" + Filled(u"[a-]b]", kPart) + u"c", 0},
        {Filled(u"b", kText), u"*" + Filled(u"[", kPart) + u"a-]", 0},
        {Filled(u"b", kText), Filled(u"*", kPart) + u"[a-]", 0},
        {Filled(u"a", kPassedOnce), u"*b" + Filled(u"c", kPattern - 2), 0},
        {Filled(u"a", kPassedOnce), u"*b" + Filled(u"c", kPattern - 9) + u"*[a-]b]", 0},
        {Filled(u"a", kPassedOnce), u"*a[1-]2]" + Filled(u"x", kPattern - 8), 0},
    };
    for (const auto& row : rows)
    {
        EXPECT_EQ(Match(row.text, row.pattern), row.result) << Readable(row.pattern.substr(0, 40));
    }
}

// Around the length up to which the time is bounded the results stay the same.
TEST(GlobMatch, PatternsLongerThanAnyCommandLineFollowTheSameRules)
{
    for (std::size_t length = kLongestCommandLine - 2; length < kLongestCommandLine + 5; ++length)
    {
        // Nothing asks for "x", and "abc" needs both ends of the set.
        constexpr std::u16string_view kEnd = u"a-]*b]c";
        const std::u16string filler = Repeated(u"x", length - kEnd.size() - 2);
        EXPECT_EQ(Match(u"abc", u"*[" + filler + std::u16string(kEnd)), 1) << length;
        EXPECT_EQ(Match(u"abd", u"*[" + filler + std::u16string(kEnd)), 0) << length;
    }
    EXPECT_EQ(Match(u"abc", Repeated(u"*", 40'000) + u"[a-]*b]c"), 1);
}

/// Few different units, so that odd sets are common and short texts often match. "-]" is what makes
/// the end of a set vary.
constexpr std::u16string_view kTextParts[] = {u"a", u"a", u"b",  u"^", u"]",
                                              u"-", u"[", u"\\", u"*"};
constexpr std::u16string_view kPatternParts[] = {u"*", u"*",  u"?", u"[", u"[", u"]", u"-",
                                                 u"-", u"-]", u"a", u"b", u"^", u"\\"};

template <std::size_t N>
std::u16string RandomUnits(std::mt19937& random, const std::u16string_view (&parts)[N],
                           std::size_t mostParts)
{
    std::u16string result;
    for (std::size_t left = random() % (mostParts + 1); left > 0; --left)
    {
        result += parts[random() % N];
    }
    return result;
}

TEST(GlobMatchAtRandom, AgreesWithTheNaiveRulesOnRandomPairs)
{
    constexpr int kPairs = 1'500'000;
    std::mt19937 random(RandomSeed());

    int matches = 0;
    int matchesOfVaryingSets = 0;
    for (int pair = 0; pair < kPairs; ++pair)
    {
        const std::u16string text = RandomUnits(random, kTextParts, 6);
        const std::u16string pattern = RandomUnits(random, kPatternParts, 10);
        const bool expected = naive::GlobMatch(text, pattern);
        ASSERT_EQ(GlobMatch(reinterpret_cast<const wchar_t*>(text.c_str()),
                            reinterpret_cast<const wchar_t*>(pattern.c_str())),
                  expected ? 1 : 0)
            << "text: " << text.size() << " " << Readable(text)
            << "  pattern: " << Readable(pattern);
        const std::size_t star = pattern.find(u'*');
        matches += expected;
        matchesOfVaryingSets +=
            expected && star != pattern.npos && pattern.find(u"-]", star) != pattern.npos;
    }
    std::printf("%d matches, %d of them with sets that may end in two places\n", matches,
                matchesOfVaryingSets);
    // Otherwise the parts are poorly chosen and the agreement says little.
    EXPECT_GT(matches, kPairs / 100);
    EXPECT_GT(matchesOfVaryingSets, kPairs / 1'000);
}

} // namespace
