"""Small deliberate defects of C++ sources, found among their tokens.

No package of Debian's makes mutants of C++, and tools that work on the compiler's own representation need clang's; the
product is built with g++. It relies on the house's format (.clang-format): blanks stand around a comparison or an addition
and not around a template's brackets or a sign, and every controlled statement has braces.
"""

import itertools
import re

# The arguments of templates and static assertions are types or decide about them: no place for a defect.
TOKEN = re.compile(r"""
    (?P<skipped> //[^\n]* | /\*.*?\*/ | ^[ \t]*\#(?:[^\n]*\\\n)*[^\n]* | \[\[.*?\]\] | __attribute__[ ]?\(\(.*?\)\)[ ]
               | <(?=[\w:>])(?:[^<>]|<[^<>]*>)*> | static_assert\b[^;]*; | (?:public|protected|private):)
  | (?P<quoted>  (?:u8|[LuU])?"(?:\\.|[^"\\])*" | (?:u8|[LuU])?'(?:\\.|[^'\\])*')
  | (?P<number>  \d(?:'?[\w.])*)
  | (?P<word>    [A-Za-z_]\w*)
  | (?P<sign>    \.\.\. | <<= | >>= | :: | -> | \+\+ | -- | << | >> | && | \|\| | [-+*/%&|^<>=!]= | [^\s\w])
    """, re.VERBOSE | re.MULTILINE | re.DOTALL)
INTEGER = re.compile(r"(?P<digits>0[xX][\da-fA-F']+|\d[\d']*)(?P<suffix>[uUlLzZ]*)")

SWAPS = {
    "comparison": {"<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",), "!=": ("==",)},
    "logic": {"&&": ("||",), "||": ("&&",)},
    "arithmetic": {"+": ("-",), "-": ("+",), "+=": ("-=",), "-=": ("+=",), "<<": (">>",), ">>": ("<<",)},
    "truth": {"true": ("false",), "false": ("true",), "TRUE": ("FALSE",), "FALSE": ("TRUE",)},
    "negation": {"!": ("",)},
}
BRACKETS = {"(": ")", "[": "]", "{": "}"}
BEFORE_BODY = {")", "const", "noexcept", "override"}
BEFORE_OPERAND = {"(", "[", "{", "}", ",", ";", ":", "=", "return"}
AFTER_TYPE_AND_NAME = {"(", "=", ".", "->", "[", "{", "++", "--", "+=", "-="}
NO_EXPRESSION = set("return if else for while do switch case default using static constexpr const auto class struct enum "
                    "template typedef namespace throw }".split())
NO_TYPE = set("static virtual inline constexpr explicit const extern template".split())
TRUTHS = {"bool", "BOOL"}
NUMBERS = {"int", "unsigned", "UINT", "INT_PTR", "LRESULT", "size_t", "wchar_t"}
HANDLES = {"HWND", "HICON", "HCURSOR", "HINSTANCE"}


def neighbours(word):
    """The integers beside the one that is written, if one is; for 0 only 1."""
    number = INTEGER.fullmatch(word)
    if number:
        base, written = (16, "0x{:X}{}") if number["digits"][:2] in ("0x", "0X") else (10, "{}{}")
        value = int(number["digits"].replace("'", ""), base)
        for other in (value + 1, value - 1) if value else (1,):
            yield written.format(other, number["suffix"])


class Source:
    """A file's tokens, what belongs together among them, and the operators. Positions are indices of tokens."""

    def __init__(self, text):
        self.text = text
        self.tokens = [found for found in TOKEN.finditer(text) if found.lastgroup != "skipped"]
        self.words = [token[0] for token in self.tokens] + [""]  # the one after the last, and with -1 the one before the first
        self.partner = {}  # of each bracket
        self.functions = []  # the opening braces of their bodies
        self.bodies = []  # these, and those of the blocks in them
        opened = []
        for index, word in enumerate(self.words):
            if word in BRACKETS:
                inside = any(around in self.bodies for around in opened)
                if word == "{" and (inside or self.words[index - 1] in BEFORE_BODY):
                    self.bodies.append(index)
                    self.functions += [] if inside else [index]
                opened.append(index)
            elif word in BRACKETS.values():
                self.partner[index] = opened.pop()
                self.partner[self.partner[index]] = index

    def span(self, first, end):
        """Where the tokens from first to before end stand in the text."""
        return self.tokens[first].start(), self.tokens[end - 1].end()

    def stands_free(self, index):
        """With a blank on either side, as a sign between two operands has it."""
        start, end = self.span(index, index + 1)
        return self.text[start - 1].isspace() and self.text[end].isspace()

    def top_level(self, first, end):
        """The tokens from first to before end, without what stands in brackets between them."""
        while first < end:
            yield first
            first = max(first + 1, self.partner.get(first, 0))

    def conditions(self):
        """Of if, while and for, and what stands before the question mark: pairs of its first token and the one after it."""
        for index, word in enumerate(self.words):
            if word in ("if", "while") and self.words[index + 1] == "(":
                yield index + 2, self.partner[index + 1]
            elif word == "for":
                ends = [i for i in self.top_level(index + 2, self.partner[index + 1]) if self.words[i] == ";"]
                if ends:
                    yield ends[0] + 1, ends[1]
            elif word == "?":
                first = index
                while self.words[first - 1] not in BEFORE_OPERAND:
                    first = self.partner.get(first - 1, first - 1)
                yield first, index

    def is_one_test(self, first, end):
        """One comparison or one negation, which other operators turn round already."""
        signs = {self.words[i] for i in self.top_level(first, end)}
        return not signs & {"&&", "||", "?"} and (bool(signs & SWAPS["comparison"].keys()) or self.words[first] == "!")

    def is_expression(self, first, end):
        """Not a declaration, which begins with two words: a type and a name. A name that begins with "::" is one word as well."""
        begin = itertools.takewhile(lambda i: self.words[i] not in AFTER_TYPE_AND_NAME, range(first, end))
        words = [i for i in begin if self.tokens[i].lastgroup == "word" and self.words[i - 1] != "::"]
        return len(words) <= 1 and self.words[first] not in NO_EXPRESSION

    def type_of(self, body):
        """The return type of the function with this body, a "*" after a pointer's."""
        first = next(i for i in range(body, -1, -1) if self.words[i - 1] in ("", ";", "{", "}"))
        words = [word for word in self.words[first:body] if word not in NO_TYPE]
        return words[0] + ("*" if words[1] == "*" else "")

    def swapped_tokens(self):
        for index, word in enumerate(self.words):
            if self.words[index - 1] == "operator":
                continue
            for new in neighbours(word):
                yield "constant", *self.span(index, index + 1), new
            for operator, swaps in SWAPS.items():
                for new in swaps.get(word, ()):
                    if operator in ("truth", "negation") or self.stands_free(index):
                        yield operator, *self.span(index, index + 1), new

    def turned_conditions(self):
        for first, end in self.conditions():
            start, after = self.span(first, end)
            assigned = next((i for i in self.top_level(first, end) if self.words[i] == "="), None)
            if assigned is None and self.words[end - 1] == "}":
                assigned = self.partner[end - 1]
            if assigned:
                yield "condition", after, after, f"; !{self.words[assigned - 1]}"
            elif not self.is_one_test(first, end):
                yield "condition", start, after, f"!({self.text[start:after]})"

    def dropped_statements(self):
        for body in self.bodies:
            first = body + 1
            for index in self.top_level(first, self.partner[body]):
                before, word = self.words[index - 2:index], self.words[index]
                if word == ";" and index > first and self.is_expression(first, index):
                    yield "statement", *self.span(first, index + 1), ";"
                if word in (";", "}") or word == ":" and (before[0] == "case" or before[1] == "default"):
                    first = index + 1

    def changed_returns(self):
        for body in self.functions:
            kind, within = self.type_of(body), self.partner[body]
            for first in (i + 1 for i in range(body, within) if self.words[i] == "return" and self.words[i + 1] != ";"):
                end = next(i for i in self.top_level(first, within) if self.words[i] == ";")
                start, after = self.span(first, end)
                value = self.text[start:after]
                if value in SWAPS["truth"] or value == "nullptr" or INTEGER.fullmatch(value.lstrip("-")):
                    continue
                if kind in TRUTHS and not self.is_one_test(first, end):
                    yield "return", start, after, f"!({value})"
                elif kind in NUMBERS:
                    yield "return", start, after, f"({value}) + 1"
                elif kind in HANDLES or kind.endswith("*"):
                    yield "return", start, after, "nullptr"


def mutants_of(text):
    """All mutants of a source text, in the text's order: operator, start, end, and what replaces text[start:end]."""
    source = Source(text)
    operators = (source.swapped_tokens, source.turned_conditions, source.dropped_statements, source.changed_returns)
    return sorted(itertools.chain.from_iterable(find() for find in operators), key=lambda mutant: mutant[1:])
