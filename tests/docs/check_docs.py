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

MARK = re.compile(r"<!-- (file|lines of): (\S+) -->$")
BLOCK = re.compile(rf"^(?:{MARK.pattern}\n)?^(```+).*\n((?s:.*?))^\3", re.MULTILINE)
LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")
CODE = re.compile(r"`([^`]+)`")
HEADING = re.compile(r"^#+ +(.*?) *$", re.MULTILINE)
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


def prose(text):
    """The text with an empty line for each line of its blocks."""
    return BLOCK.sub(lambda block: "\n" * block[0].count("\n"), text)


def anchor(heading):
    """The anchor that the usual viewers give a heading."""
    text = re.sub(r"[^\w\- ]", "", heading.replace("`", "").lower())
    return text.replace(" ", "-")


def anchors(path):
    return set(map(anchor, HEADING.findall(prose(path.read_text(encoding="utf-8")))))


def check_block(root, extent, name, block):
    if not extent:
        yield from check_paths(root, re.findall(r"(?:^|\s)(\./\S+)", block))
    elif not (root / name).is_file():
        yield f"shows {name}, which does not exist"
    else:
        lines = "\n".join(["", *(root / name).read_text(encoding="utf-8").splitlines(), ""])
        if not block or (f"\n{block}" != lines if extent == "file" else f"\n{block}" not in lines):
            yield f"does not show {name} as it is"


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


def check_line(root, document, line):
    if MARK.match(line):
        yield "has a mark without a block"
    for target in LINK.findall(CODE.sub("", line)):
        yield from check_link(root, document, target)
    yield from check_paths(root, " ".join(CODE.findall(line)).split())


def check(root, document):
    text = document.read_text(encoding="utf-8")
    faults = [(text.count("\n", 0, block.start(3)) + 1, fault)
              for block in BLOCK.finditer(text) for fault in check_block(root, *block.group(1, 2, 4))]
    faults += [(number, fault) for number, line in enumerate(prose(text).splitlines(), 1)
               for fault in check_line(root, document, line)]
    return [f"{document.relative_to(root)}:{number}: {fault}" for number, fault in sorted(faults)]


def main(root):
    found = list(documents(root))
    faults = [fault for document in found for fault in check(root, document)] + list(check_workflow(root))
    print("\n".join(faults) if faults else f"{len(found)} documents and the workflow are right")
    return 1 if faults or not found else 0


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1]).resolve()))
