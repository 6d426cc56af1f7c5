"""Chooses tests by their suites: suites.py SUITE... prints GoogleTest's filter that leaves these suites out.

A suite that the tests do not have ends with a message, so that a new name changes no figures unnoticed.
"""

import pathlib
import re
import sys

TESTS = pathlib.Path(__file__).resolve().parents[2] / "tests"
DECLARED = re.compile(r"^TEST(?:_[FP])?\(\s*(\w+),", re.MULTILINE)


def filter_of(*suites):
    """GoogleTest's filter for these suites, with parameters or without."""
    known = {suite for file in TESTS.rglob("*.cpp") for suite in DECLARED.findall(file.read_text(encoding="utf-8"))}
    if missing := set(suites) - known:
        sys.exit(f"the tests have no suite called {', '.join(sorted(missing))}")
    return ":".join(f"{suite}.*:*/{suite}.*" for suite in suites)


if __name__ == "__main__":
    print("-" + filter_of(*sys.argv[1:]))
