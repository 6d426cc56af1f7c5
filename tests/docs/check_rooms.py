#!/usr/bin/env python3
"""Checks that the folders include from each other as docs/architecture.md says: check_rooms.py ROOT

Its table under "The rooms" is the rule. The third column names, in `code`, the folders that a folder may include from, all of
them further down in the table, and the single files elsewhere that it may include: leaves, which include nothing of the project
themselves. A folder whose third column says "everything" is not looked at; one with sources has to be in the table.

And that nobody includes <windows.h> before a header of the dialog framework: the vendor's wants to do so itself.

Prints one line per fault, and ends with 1 if there is any.
"""
import re
import sys
from pathlib import Path

HEADING = "## The rooms"
CODE = re.compile(r"`([\w./]+)`")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
SUFFIXES = {".cpp", ".h", ".rc"}


def rooms(document):
    """Yields (folder, what it may use, or None for everything), in the order of the table."""
    section = document.partition(f"{HEADING}\n")[2].partition("\n## ")[0]
    for line in section.splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if line.startswith("|") and len(cells) == 3:
            used = None if cells[2] == "everything" else CODE.findall(cells[2])
            for folder in CODE.findall(cells[0]):
                yield folder, used


def sources(root, folder):
    return sorted(path for path in (root / folder).rglob("*") if path.suffix in SUFFIXES)


def includes(root, path):
    """Yields (name, the project's own file of that name or None) for each file that `path` includes, in order."""
    for mark, name in INCLUDE.findall(path.read_text(encoding="utf-8")):
        # In angle brackets, the dialog framework's headers are found in our own subset of it.
        places = [path.parent / name, root / name] if mark == '"' else [root / "framework" / name]
        yield name, next((place.resolve() for place in places if place.is_file()), None)


def included(root, path):
    """The project's own files among those that `path` includes, each as a path from the root."""
    return [file.relative_to(root).as_posix() for _, file in includes(root, path) if file]


def platform_headers(root, path, seen):
    """<windows.h> and the dialog framework's headers, in the order in which a compiler gets to them."""
    for name, file in includes(root, path):
        if name == "windows.h" or name.startswith("afx"):
            yield name
        elif file and file not in seen:
            seen.add(file)
            yield from platform_headers(root, file, seen)


def check_order(table):
    """Folders are used from above only."""
    order = [folder for folder, _ in table]
    for folder, used in table:
        for other in used or []:
            if other.endswith("/") and other not in order[order.index(folder) + 1:]:
                yield f"{folder} may use {other}, which does not stand below it"


def check_leaves(root, table):
    leaves = {name for _, used in table for name in used or [] if not name.endswith("/")}
    for leaf in sorted(leaves):
        for other in included(root, root / leaf):
            yield f"{leaf} is a leaf and includes {other}"


def check_includes(root, table):
    for folder, used in table:
        for path in sources(root, folder) if used is not None else []:
            for other in included(root, path):
                if not any(other == name or (name.endswith("/") and other.startswith(name)) for name in [folder, *used]):
                    yield f"{path.relative_to(root)} includes {other}"


def check_windows(root, table):
    for path in [path for folder, _ in table if folder != "framework/" for path in sources(root, folder)]:
        first, *others = [*platform_headers(root, path, set()), None]
        if first == "windows.h" and any(name and name != first for name in others):
            yield f"{path.relative_to(root)} gets to <windows.h> before the dialog framework's headers"


def check_complete(root, table):
    known = {folder for folder, _ in table}
    for path in sorted(root.iterdir()):
        name = f"{path.name}/"
        hidden = name.startswith(".") or name == "build/"
        if path.is_dir() and not hidden and name not in known and sources(root, name):
            yield f"{name} is not among the rooms"


def check(root):
    table = list(rooms((root / "docs/architecture.md").read_text(encoding="utf-8")))
    if not table:
        return ["docs/architecture.md has no table of rooms"]
    return [*check_order(table), *check_leaves(root, table), *check_includes(root, table), *check_windows(root, table),
            *check_complete(root, table)]


def main(root):
    faults = check(root)
    print("\n".join(faults) if faults else "the rooms are as their table says")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1]).resolve()))
