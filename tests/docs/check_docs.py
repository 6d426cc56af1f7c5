#!/usr/bin/env python3
"""Checks what the documents promise about this repository: check_docs.py ROOT

- A code block under a line `<!-- file: PATH -->` shows that file, whole and verbatim (line ends do not count); one under
  `<!-- lines of: PATH -->` shows consecutive lines of it.
- Every relative link and picture leads to a file, and its #anchor to a heading.
- Every path into this repository in `code` or in a block of commands exists.
- So does every path and every preset that CI's workflow names, but for its comments.

Prints one line per fault, and ends with 1 if there is any.
"""
import json
import re
import sys
from pathlib import Path

FENCE = re.compile(r"^(```+)")
FILE_MARK = re.compile(r"^<!-- (file|lines of): (\S+) -->$")
LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")
CODE = re.compile(r"`([^`]+)`")
HEADING = re.compile(r"^#+ +(.*?) *$")
PATH = re.compile(r"(?:\./)?((?:\.ci|app|bench|cmake|delivery|docs|examples|framework|packaging|res|runtime|scripts|"
                  r"target|tests)/[\w./*-]*[\w/*-])")
WORKFLOW = ".github/workflows/ci.yml"
PRESET = re.compile(r"(cmake --preset |cmake --build --preset |ctest --preset |\bbuild/)([\w-]+)")
PRESETS = {"cmake --preset ": "configurePresets", "cmake --build --preset ": "buildPresets",
           "ctest --preset ": "testPresets", "build/": "configurePresets"}


def documents(root):
    for path in sorted(root.rglob("*.md")):
        parts = path.relative_to(root).parts
        if parts[0] != "build" and not any(part.startswith(".") for part in parts):
            yield path


def split(lines):
    """Yields (line number, line or None, block or None): a block is (mark, list of lines), a mark (how much, path)."""
    mark, index = None, 0
    while index < len(lines):
        line = lines[index]
        fence = FENCE.match(line)
        if fence:
            end = next((i for i in range(index + 1, len(lines)) if lines[i].startswith(fence[1])), len(lines))
            yield index + 1, None, (mark, lines[index + 1:end])
            mark, index = None, end + 1
            continue
        found = FILE_MARK.match(line)
        mark = found.groups() if found else None
        yield index + 1, line, None
        index += 1
    if mark:
        yield len(lines), None, (mark, None)


def anchor(heading):
    """The anchor that the usual viewers give a heading."""
    text = re.sub(r"[^\w\- ]", "", heading.replace("`", "").lower())
    return text.replace(" ", "-")


def anchors(path):
    lines = path.read_text(encoding="utf-8").splitlines()
    return {anchor(found[1]) for _, line, _ in split(lines) if line and (found := HEADING.match(line))}


def shows(block, lines, whole):
    """Whether a block shows these lines, or some of them that follow each other."""
    if not block or whole:
        return block == lines
    return any(lines[start:start + len(block)] == block for start in range(len(lines)))


def check_block(root, mark, block):
    if mark:
        extent, name = mark
        path = root / name
        if not path.is_file():
            yield f"shows {name}, which does not exist"
        elif not shows(block, path.read_text(encoding="utf-8").splitlines(), extent == "file"):
            yield f"does not show {name} as it is"
    else:
        for line in block:
            yield from check_paths(root, re.findall(r"(?:^|\s)(\./\S+)", line))


def check_link(root, document, target):
    if re.match(r"[a-z]+:", target):
        return
    name, _, fragment = target.partition("#")
    path = document.parent / name if name else document
    if not path.exists():
        yield f"links to {target}, which does not exist"
    elif root.resolve() not in [path.resolve(), *path.resolve().parents]:
        yield f"links to {target}, outside of the repository"
    elif fragment and fragment not in anchors(path):
        yield f"links to {target}, where there is no such heading"


def check_paths(root, words):
    for word in words:
        found = PATH.fullmatch(word)
        if found and not any(root.glob(found[1].rstrip("/"))):
            yield f"names {word}, which does not exist"


def check_workflow(root):
    text = re.sub("#.*", "", (root / WORKFLOW).read_text(encoding="utf-8"))
    presets = json.loads((root / "CMakePresets.json").read_text(encoding="utf-8"))
    for place, name in PRESET.findall(text):
        if not any(preset["name"] == name and not preset.get("hidden") for preset in presets[PRESETS[place]]):
            yield f"{WORKFLOW}: {place}{name}: there is no such preset"
    for fault in check_paths(root, re.findall(r"[\w./*-]+", text)):
        yield f"{WORKFLOW}: {fault}"


def check(root, document):
    for number, line, block in split(document.read_text(encoding="utf-8").splitlines()):
        if block:
            faults = check_block(root, *block)
        else:
            words = [word for code in CODE.findall(line) for word in code.split()]
            faults = [fault for target in LINK.findall(CODE.sub("", line))
                      for fault in check_link(root, document, target)]
            faults += check_paths(root, words)
        for fault in faults:
            yield f"{document.relative_to(root)}:{number}: {fault}"


def main(root):
    found = list(documents(root))
    faults = [fault for document in found for fault in check(root, document)] + list(check_workflow(root))
    print("\n".join(faults) if faults else f"{len(found)} documents and the workflow are right")
    return 1 if faults or not found else 0


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1]).resolve()))
