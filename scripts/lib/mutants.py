"""Small deliberate defects of C++ sources, found among their tokens.

No package of Debian's makes mutants of C++, and tools that work on the compiler's own representation need clang's; the
product is built with g++. It relies on the house's format (.clang-format): blanks stand around a comparison or an addition and not around a
template's brackets or a sign, and every controlled statement has braces.
"""

import bisect
import collections
import re

# Replaces text[start:end] by `new`. Line and column count from 1.
Mutant = collections.namedtuple("Mutant", "line column operator start end new")
Token = collections.namedtuple("Token", "kind text start end")

TOKEN = re.compile(r"""
    (?P<skipped> //[^\n]* | /\*.*?\*/ | ^[ \t]*\#(?:[^\n]*\\\n)*[^\n]* | \[\[.*?\]\] | __attribute__[ ]?\(\(.*?\)\)[ ])
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
}
BRACKETS = {"(": ")", "[": "]", "{": "}"}
NO_EXPRESSION = set("return if else for while do switch case default using static constexpr const auto class struct enum "
                    "template typedef namespace throw public private protected }".split())
NO_TYPE = set("static virtual inline constexpr explicit const extern".split())
TRUTHS = {"bool", "BOOL"}
NUMBERS = {"int", "unsigned", "UINT", "INT_PTR", "LRESULT", "size_t", "wchar_t"}
HANDLES = {"HWND", "HICON", "HCURSOR", "HINSTANCE"}


class Source:
    """A file's tokens, and what belongs together among them. Positions are indices of tokens."""

    def __init__(self, text):
        self.text = text
        self.tokens = [Token(found.lastgroup, found[0], *found.span())
                       for found in TOKEN.finditer(text) if found.lastgroup != "skipped"]
        self.fixed = set()
        self.mark_templates()
        self.mark_static_assertions()
        self.partner = self.match_brackets()
        self.bodies = self.find_bodies()

    def text_at(self, index):
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ""

    def stands_free(self, index):
        """With a blank on either side, as a sign between two operands has it."""
        token = self.tokens[index]
        return self.text[token.start - 1].isspace() and self.text[token.end].isspace()

    def mark_templates(self):
        """Arguments of templates are types or decide about them: no place for a defect."""
        index = 0
        while index < len(self.tokens):
            if self.text_at(index) == "<" and not self.stands_free(index):
                first, depth = index, 0
                while True:
                    depth += {"<": 1, ">": -1, ">>": -2}.get(self.text_at(index), 0)
                    if depth <= 0:
                        break
                    index += 1
                self.fixed.update(range(first, index + 1))
            index += 1

    def mark_static_assertions(self):
        for first, token in enumerate(self.tokens):
            if token.text == "static_assert":
                last = next(i for i in range(first, len(self.tokens)) if self.text_at(i) == ";")
                self.fixed.update(range(first, last))

    def match_brackets(self):
        partner, opened = {}, []
        for index, token in enumerate(self.tokens):
            if token.kind == "sign" and token.text in BRACKETS:
                opened.append(index)
            elif token.kind == "sign" and token.text in BRACKETS.values():
                partner[index] = opened.pop()
                partner[partner[index]] = index
        return partner

    def find_bodies(self):
        """The braces of functions and of the blocks in them, as a set of the opening ones."""
        bodies, around = set(), []
        for index, token in enumerate(self.tokens):
            if token.text == "{":
                if (around and around[-1] in bodies) or self.text_at(index - 1) in (")", "const", "noexcept", "override"):
                    bodies.add(index)
                around.append(index)
            elif token.text == "}":
                around.pop()
        return bodies

    def top_level(self, first, end):
        """The tokens from first to before end, without what stands in brackets between them."""
        index = first
        while index < end:
            yield index
            index = self.partner[index] if self.text_at(index) in BRACKETS and self.partner[index] > index else index + 1

    def conditions(self):
        """Of if, while and for, and what stands before the question mark: pairs of its first token and the one after it."""
        for index, token in enumerate(self.tokens):
            if token.text in ("if", "while") and self.text_at(index + 1) == "(":
                yield index + 2, self.partner[index + 1]
            elif token.text == "for":
                ends = [i for i in self.top_level(index + 2, self.partner[index + 1]) if self.text_at(i) == ";"]
                if ends:
                    yield ends[0] + 1, ends[1]
            elif token.text == "?":
                yield self.start_of_operand(index), index

    def start_of_operand(self, index):
        """Where the condition before the question mark at `index` begins."""
        while True:
            before = self.text_at(index - 1)
            if before in (")", "]"):
                index = self.partner[index - 1]
            elif before in ("(", "[", "{", "}", ",", ";", ":", "=", "return"):
                return index
            else:
                index -= 1

    def is_one_test(self, first, end):
        """One comparison or one negation, which other operators turn round already."""
        signs = {self.text_at(i) for i in self.top_level(first, end) if i not in self.fixed}
        return not signs & {"&&", "||", "?"} and bool(signs & set(SWAPS["comparison"]) or self.text_at(first) == "!")

    def statements(self):
        """Those that are an expression, `break` or `continue`: pairs of first and the semicolon."""
        for body in self.bodies:
            starts = [body + 1]
            for index in self.top_level(body + 1, self.partner[body]):
                label = self.text_at(index) == ":" and (self.text_at(index - 1) == "default" or self.text_at(index - 2) == "case")
                if self.text_at(index) in (";", "}") or label:
                    starts.append(index + 1)
            for first in starts:
                end = next((i for i in self.top_level(first, self.partner[body]) if self.text_at(i) in (";", "{")), None)
                if end and end > first and self.text_at(end) == ";" and self.is_expression(first, end):
                    yield first, end

    def is_expression(self, first, end):
        """Not a declaration, which begins with two words: a type and a name."""
        words = 0
        for index in range(first, end):
            if self.text_at(index) in ("(", "=", ".", "->", "[", "{", "++", "--", "+=", "-="):
                break
            if self.tokens[index].kind == "word" and index not in self.fixed and self.text_at(index - 1) != "::":
                words += 1
        # A name that begins with "::" is one word as well.
        return words <= 1 and self.text_at(first) not in NO_EXPRESSION

    def returns(self):
        """Triples of the value's first token, the semicolon and the type that the function says it returns."""
        for body in sorted(self.bodies):
            header = self.header_of(body)
            if header is None:
                continue
            for index in range(body, self.partner[body]):
                if self.text_at(index) == "return" and self.text_at(index + 1) != ";":
                    end = next(i for i in self.top_level(index + 1, self.partner[body]) if self.text_at(i) == ";")
                    yield index + 1, end, header

    def header_of(self, body):
        """The return type of the function with this body, a "*" after a pointer's; None for a block in a function."""
        first = body
        while first > 0 and self.text_at(first - 1) not in (";", "{", "}") and not (
                self.text_at(first - 1) == ":" and self.text_at(first - 2) in ("public", "protected", "private")):
            first -= 1
        if any(around < body < self.partner[around] for around in self.bodies):
            return None
        words = [i for i in range(first, body) if i not in self.fixed and self.text_at(i) not in NO_TYPE | {"template"}]
        return self.text_at(words[0]) + ("*" if self.text_at(words[1]) == "*" else "")


def neighbours(number):
    """The integers beside the one that is written; for 0 only 1."""
    digits, suffix = INTEGER.fullmatch(number).group("digits", "suffix")
    value = int(digits.replace("'", ""), 0 if digits[:2] in ("0x", "0X") else 10)
    written = "0x{:X}" if digits[:2] in ("0x", "0X") else "{}"
    return [written.format(other) + suffix for other in ((value + 1, value - 1) if value else (1,))]


def swapped_tokens(source):
    for index, token in enumerate(source.tokens):
        if index in source.fixed or source.text_at(index - 1) == "operator":
            continue
        if token.kind == "number" and INTEGER.fullmatch(token.text):
            for new in neighbours(token.text):
                yield "constant", token.start, token.end, new
        for operator, swaps in SWAPS.items():
            if token.text in swaps and (token.kind == "word" or source.stands_free(index)):
                for new in swaps[token.text]:
                    yield operator, token.start, token.end, new
        if token.text == "!":
            yield "negation", token.start, token.end, ""


def turned_conditions(source):
    for first, end in source.conditions():
        inside = list(source.top_level(first, end))
        assigned = next((i for i in inside if source.text_at(i) == "="), None)
        if assigned is None and source.text_at(end - 1) == "}":
            assigned = source.partner[end - 1]
        start, after = source.tokens[first].start, source.tokens[end - 1].end
        if assigned:
            yield "condition", after, after, f"; !{source.text_at(assigned - 1)}"
        elif not source.is_one_test(first, end):
            yield "condition", start, after, f"!({source.text[start:after]})"


def dropped_statements(source):
    for first, end in source.statements():
        yield "statement", source.tokens[first].start, source.tokens[end].end, ";"


def changed_returns(source):
    for first, end, kind in source.returns():
        start, after = source.tokens[first].start, source.tokens[end - 1].end
        value = source.text[start:after]
        if value in ("true", "false", "TRUE", "FALSE", "nullptr") or INTEGER.fullmatch(value.lstrip("-")):
            continue
        if kind in TRUTHS and not source.is_one_test(first, end):
            yield "return", start, after, f"!({value})"
        elif kind in NUMBERS:
            yield "return", start, after, f"({value}) + 1"
        elif kind in HANDLES or kind.endswith("*"):
            yield "return", start, after, "nullptr"


def mutants_of(text):
    """All mutants of a source text, in the text's order."""
    source = Source(text)
    lines = [0] + [found.end() for found in re.finditer("\n", text)]
    mutants = []
    for find in (swapped_tokens, turned_conditions, dropped_statements, changed_returns):
        for operator, start, end, new in find(source):
            line = bisect.bisect_right(lines, start)
            mutants.append(Mutant(line, start - lines[line - 1] + 1, operator, start, end, new))
    return sorted(mutants, key=lambda mutant: (mutant.start, mutant.end, mutant.new))
