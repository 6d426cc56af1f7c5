"""Checks who includes whom: check_rooms.py ROOT

- A folder includes of the project's files only those that docs/architecture.md allows it: the third column of its table under
  "The rooms" names folders, and single files, which are leaves and include nothing of the project themselves.
- Nobody includes <windows.h> before a header of the dialog framework: the vendor's wants to do so itself.

Prints one line per fault, and ends with 1 if there is any.
"""
import re
import sys
from pathlib import Path

ROOT = Path(sys.argv[1]).resolve()
ROOM = re.compile(r"^\| (`\w+/`(?:, `\w+/`)*) \|.*\| (.*) \|$", re.MULTILINE)
PLACE = re.compile(r"`(\w+/[\w.]*)`")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)


def sources(place):
    paths = [ROOT / place, *(ROOT / place).rglob("*")]
    return sorted(path for path in paths if path.suffix in {".cpp", ".h", ".rc"})


def includes(path):
    """Yields (name, the project's own file of that name or None), in order."""
    for mark, name in INCLUDE.findall(path.read_text(encoding="utf-8")):
        # In angle brackets, the dialog framework's headers are found in our own subset of it.
        places = [path.parent / name, ROOT / name] if mark == '"' else [ROOT / "framework" / name]
        yield name, next((place.resolve() for place in places if place.is_file()), None)


def platform_headers(path, seen):
    """<windows.h> and the dialog framework's headers, in the order in which a compiler gets to them."""
    for name, file in includes(path):
        if name == "windows.h" or name.startswith("afx"):
            yield name
        elif file and file not in seen:
            seen.add(file)
            yield from platform_headers(file, seen)


def main():
    table = (ROOT / "docs/architecture.md").read_text(encoding="utf-8").partition("## The rooms\n")[2].partition("\n## ")[0]
    rooms = {room: used for names, used in ROOM.findall(table) for room in PLACE.findall(names)}
    leaves = {name: "" for used in rooms.values() for name in PLACE.findall(used) if not name.endswith("/")}
    faults = [] if leaves else ["docs/architecture.md has no table of rooms, or one without leaves"]
    for room, used in {**rooms, **leaves}.items():
        for path in sources(room):
            name = path.relative_to(ROOT).as_posix()
            others = [file.relative_to(ROOT).as_posix() for _, file in includes(path) if file]
            faults += [f"{name} includes {other}" for other in others
                       if used != "everything" and not other.startswith((room, *PLACE.findall(used)))]
            first, *more = [*platform_headers(path, set()), None]
            if room != "framework/" and first == "windows.h" and any(header not in (first, None) for header in more):
                faults.append(f"{name} gets to <windows.h> before the dialog framework's headers")
    print("\n".join(faults) if faults else f"{len(rooms)} rooms include what their table allows")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
