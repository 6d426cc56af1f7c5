"""What the linker put into the programs from the toolchain's libraries, and the Debian packages that these come from.

The linker's map tells which members of which library are in; the package's copyright file tells on which terms.
"""
import dataclasses
import re
import subprocess
from pathlib import Path

from debian.copyright import Copyright

# Where the sources of a library lie, by the words of its package's copyright file; a library that is not named here is
# one of the C run-time library.
SOURCES = {"libpthread": "mingw-w64-libraries/winpthreads/", "libwinpthread": "mingw-w64-libraries/winpthreads/"}
C_RUNTIME = "mingw-w64-crt/"
# A library that this build makes itself has no package's path in the map, but its sources have one.
BUILT_HERE = {"libgtest": Path("/usr/src/googletest/googletest/CMakeLists.txt")}
NOT_IN_LIBRARIES = ("tests_pthread/", "profile/")

# The names that copyright files use, where SPDX has another one. What has no name in SPDX stays as it is.
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
    def copyright_file(self):
        return Path("/usr/share/doc") / self.name / "copyright"


@dataclasses.dataclass(frozen=True, order=True)
class Library:
    """One library, or one object that the compiler adds by itself."""
    name: str
    package: Package
    licences: tuple  # SPDX expressions, or plain names where SPDX has none


def linked_files(link_map):
    """The archives of which something is in the program, and the objects: full paths, and the names of BUILT_HERE, but
    nothing else of the project's own."""
    text = Path(link_map).read_text(encoding="utf-8", errors="replace")
    members = re.findall(r"^(\S+\.a)\(\S+\)$", text.partition("\nDiscarded input sections")[0], re.MULTILINE)
    objects = re.findall(r"^LOAD (/\S+\.o)$", text, re.MULTILINE)
    return {Path(name).resolve() for name in members + objects if name.startswith("/")} | {
        Path(name) for name in members if Path(name).stem in BUILT_HERE}


def package_of(path):
    """The package that installed this file. Ends the build when there is none: its terms would be unknown."""
    owner = subprocess.run(["dpkg-query", "--search", path], check=True, capture_output=True, text=True).stdout
    return described(owner.partition(": ")[0])


def described(package):
    fields = subprocess.run(["dpkg-query", "--show", "--showformat=${Package} ${Version} ${Architecture}", package],
                            check=True, capture_output=True, text=True).stdout
    return Package(*fields.split())


def compiler(command):
    """The package of a compiler command, such as x86_64-w64-mingw32-g++-posix."""
    return package_of(Path(command).resolve())


def licences(library, package):
    text = package.copyright_file.read_text(encoding="utf-8")
    if "gcc-" in package.name or "g++-" in package.name:
        if COMPILER_EXCEPTION not in text:
            raise ValueError(f"{package.copyright_file} no longer has the exception for run-time libraries")
        return (COMPILER_LICENCE,)
    sources = SOURCES.get(library, C_RUNTIME)
    names = {SPDX.get(paragraph.license.synopsis, paragraph.license.synopsis)
             for paragraph in Copyright(text.splitlines(True), strict=False).all_files_paragraphs()
             if any(pattern == "*" or pattern.startswith(sources) and not pattern.startswith(
                 tuple(sources + part for part in NOT_IN_LIBRARIES)) for pattern in paragraph.files)}
    return tuple(sorted(names))


def linked_libraries(link_maps):
    found = set()
    for path in sorted(set().union(*map(linked_files, link_maps))):
        package = package_of(BUILT_HERE.get(path.stem, path))
        found.add(Library(path.stem, package, licences(path.stem, package)))
    return sorted(found)
