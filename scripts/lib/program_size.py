"""Prints which library brings how many bytes into a program, from the linker's map of the link: program_size.py MAP"""
import collections
import re
import sys
from pathlib import Path

# Fewer bytes tell nothing.
SMALLEST = 100
# A contribution: section (a long name has a line of its own), address, size, and object file or archive(member).
CONTRIBUTION = re.compile(r"^ \.(?!bss|debug)\S+\s+0x[0-9a-f]+\s+0x([0-9a-f]+) (\S.*)$", re.MULTILINE)
# What counts under another name than its file's. An archive's is what stands before its ending.
CAUSES = (
    (r"dll stuff", "relocations"),
    (r"libstdc\+\+\.a\(.*(locale|facets|codecvt|ctype|monetary|time_members)", "libstdc++: locales"),
    (r"libstdc\+\+\.a", "libstdc++: the rest"),
    (r"libquillet_app\.a\(ParseUrlParameters", "regular expressions (compiled into ParseUrlParameters)"))


def cause(source):
    named = (name for pattern, name in CAUSES if re.search(pattern, source))
    return next(named, Path(re.sub(r"\.a\(.*", "", source)).name)


bytes_of = collections.Counter()
link_map = Path(sys.argv[1]).read_text(encoding="utf-8").partition("\nLinker script and memory map\n")[2]
for size, source in CONTRIBUTION.findall(link_map):
    bytes_of[cause(source)] += int(size, 16)
for name, size in bytes_of.most_common():
    if size >= SMALLEST:
        print(f"{size:9,}  {name}")
