"""What the linker put into the programs from the toolchain's libraries, and the Debian packages that these come from.

The linker's map tells which members of which library are in; the package's copyright file tells on which terms.
"""
import dataclasses
import re
import subprocess
from collections import defaultdict
from pathlib import Path

from debian.copyright import Copyright

# Of the C run-time library's package, the sources of what can be linked, and what is not, by the words of its copyright file.
LINKED = ("mingw-w64-crt/", "mingw-w64-libraries/winpthreads/")
NOT_LINKED = ("mingw-w64-libraries/winpthreads/tests_pthread/", "mingw-w64-crt/profile/")
# A library that this build makes itself has no package's path in the map, but its sources have one.
BUILT_HERE = {"libgtest": Path("/usr/src/googletest/googletest/CMakeLists.txt")}

# The names that copyright files use, where SPDX has one. What has no name in SPDX stays as it is.
SPDX = {"ZPL-2.1": "ZPL-2.1", "expat": "MIT", "BSD-3-clause": "BSD-3-Clause", "BSD-3-clause-Lockless": "BSD-3-Clause",
        "ISC": "ISC"}
COMPILER_LICENCE = "GPL-3.0-or-later WITH GCC-exception-3.1"
COMPILER_EXCEPTION = "GCC RUNTIME LIBRARY EXCEPTION"


@dataclasses.dataclass(frozen=True, order=True)
class Package:
    name: str
    version: str
    architecture: str

    @property
    def copyright(self):
        return (Path("/usr/share/doc") / self.name / "copyright").read_text(encoding="utf-8")

    def licences(self):
        """SPDX expressions, or plain names where SPDX has none, of what can be linked from it."""
        if "gcc-" in self.name or "g++-" in self.name:
            if COMPILER_EXCEPTION not in self.copyright:
                raise ValueError(f"the copyright of {self.name} does not have the exception for run-time libraries")
            return [COMPILER_LICENCE]
        names = {paragraph.license.synopsis
                 for paragraph in Copyright(self.copyright.splitlines(True), strict=False).all_files_paragraphs()
                 if any(pattern == "*" or pattern.startswith(LINKED) and not pattern.startswith(NOT_LINKED)
                        for pattern in paragraph.files)}
        return sorted({SPDX.get(name, name) for name in names})


def package_of(path):
    """The package that installed this file. Ends the build when there is none: its terms would be unknown."""
    owner = subprocess.run(["dpkg-query", "--search", path], check=True, capture_output=True, text=True).stdout
    fields = subprocess.run(["dpkg-query", "--show", "--showformat=${Package} ${Version} ${Architecture}",
                             owner.partition(": ")[0]], check=True, capture_output=True, text=True).stdout
    return Package(*fields.split())


def linked_files(link_map):
    """The archives of which something is in the program, and the objects: full paths, and the names of BUILT_HERE, but
    nothing else of the project's own."""
    text = Path(link_map).read_text(encoding="utf-8", errors="replace")
    members = re.findall(r"^(\S+\.a)\(\S+\)$", text.partition("\nDiscarded input sections")[0], re.MULTILINE)
    objects = re.findall(r"^LOAD (/\S+\.o)$", text, re.MULTILINE)
    return {Path(name).resolve() for name in members + objects if name.startswith("/")} | {
        Path(name) for name in members if Path(name).stem in BUILT_HERE}


def linked_packages(link_maps):
    """The packages, and the names of what is linked from each."""
    found = defaultdict(list)
    for path in sorted(set().union(*map(linked_files, link_maps)), key=lambda path: path.stem):
        found[package_of(BUILT_HERE.get(path.stem, path))].append(path.stem)
    return dict(sorted(found.items()))
