"""Writes the notices that have to go with the programs: make_notices.py OUTPUT MAP…

MAP is a linker's map. OUTPUT gets, for each Debian package of which something is in one of the programs, its libraries
and its whole copyright file, word by word; and the licence to which the compiler's refers.
"""
import sys
from collections import defaultdict
from pathlib import Path

from linked_libraries import linked_packages

OWNER = "© 2026 Orvane, all rights reserved until the owner chooses a licence"
COMMON_LICENCES = (Path("/usr/share/common-licenses/GPL-3"),)
RULE = "=" * 78


def section(heading, text):
    return [RULE, heading, RULE, "", text.rstrip("\n"), ""]


def main(output, *link_maps):
    lines = [f"Quillet: {OWNER}.", "",
             "The programs of this package contain parts of the following libraries, each under its own terms.", ""]
    packages_of = defaultdict(list)
    for package, libraries in linked_packages(link_maps).items():
        lines += [f"- {', '.join(libraries)}", f"  from Debian's package {package.name}, version {package.version}"]
        packages_of[package.copyright].append(package.name)
    parts = []
    for text, packages in packages_of.items():  # packages from one source have the same file
        parts += section(f"The copyright file of {', '.join(packages)}", text)
    for licence in COMMON_LICENCES:
        parts += section(f"{licence.name}, to which these refer", licence.read_text(encoding="utf-8"))
    text = "\n".join([*lines, "", *parts])
    Path(output).write_text(text, encoding="utf-8", newline="\r\n")


if __name__ == "__main__":
    main(*sys.argv[1:])
