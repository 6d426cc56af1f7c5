"""Prints what a program file consists of, by section and by cause: program_size.py PROGRAM MAP

MAP is the linker's map of the same link. Bytes of an object file count for the library that it comes from.
"""
import collections
import re
import subprocess
import sys
from pathlib import Path

# Rows below this many bytes tell nothing.
SMALLEST = 100
# The sections that are in the file; .bss takes no room in it.
SECTION = re.compile(r"^ +\d+ (\S+) +([0-9a-f]{8}) ")
# A contribution: address, size, and the object file or archive(member) that it comes from. A long section name
# has a line of its own before.
CONTRIBUTION = re.compile(r"^ (\S+)?\s+0x([0-9a-f]+)\s+0x([0-9a-f]+) (\S.*)$")


def sections(program):
    listing = subprocess.run(["x86_64-w64-mingw32-objdump", "--section-headers", program],
                             check=True, capture_output=True, text=True).stdout
    found = (SECTION.match(line) for line in listing.splitlines())
    return {match[1]: int(match[2], 16) for match in found if match and match[1] != ".bss"}


def cause(source):
    if source == "dll stuff":
        return "relocations"
    archive = re.search(r"([^/]+)\.a\((.*)\)$", source)
    if not archive:
        return Path(source).name
    library, member = archive.groups()
    if library == "libstdc++":
        return "libstdc++: locales" if re.search("locale|facets|codecvt|ctype|monetary|time_members", member) \
            else "libstdc++: the rest"
    if library == "libquillet_app" and member.startswith("ParseUrlParameters"):
        return "regular expressions (compiled into ParseUrlParameters)"
    return library


def causes(link_map):
    text = Path(link_map).read_text(encoding="utf-8", errors="replace")
    bytes_of = collections.Counter()
    section = ""
    for line in text[text.index("Linker script and memory map"):].splitlines():
        if name := re.match(r"^ (\.\S+)", line):
            section = name[1]
        elif re.match(r"^\S", line):
            section = ""
        match = CONTRIBUTION.match(line)
        if match and section and not section.startswith((".bss", ".debug")) and int(match[2], 16):
            bytes_of[cause(match[4])] += int(match[3], 16)
    return bytes_of


def table(heading, rows, total):
    print(f"| {heading} | bytes | share |\n|---|---:|---:|")
    for name, size in (row for row in rows if row[1] >= SMALLEST):
        print(f"| {name} | {size:,} | {100 * size / total:.1f} % |")
    print()


def main():
    program, link_map = sys.argv[1:]
    total = Path(program).stat().st_size
    print(f"{program}: {total:,} bytes\n")
    table("section", sections(program).items(), total)
    table("cause", causes(link_map).most_common(), total)


main()
