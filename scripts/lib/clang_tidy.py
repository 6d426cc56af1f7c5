#!/usr/bin/env python3
"""Checks the style of every C++ source with clang-tidy: clang_tidy.py CACHE-FOLDER BUILD-FOLDER...

The sources and how they are compiled come from the build folders; of a source in several, the first one holds.
Most of the time goes into headers, so the tests of one folder are read together. What passed is not checked again
until it, a header of this repository that it includes, its compile command, the rules or the tool change. Ends
with 1 when a source does not pass.
"""

import collections
import concurrent.futures
import functools
import hashlib
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
TOOL = "clang-tidy-19"

# Options of the cross compiler that clang does not know or that mean nothing to a check.
FOREIGN_OPTIONS = re.compile(r"-(ffile-prefix-map|fsanitize|fstack-protector|Wl,|static|municode|O|g|MD|W|c$)")


@functools.cache
def cross_compiler_options(compiler):
    """What clang needs to read sources as the cross compiler does: the target and the library's folders."""
    machine = subprocess.run([compiler, "-dumpmachine"], capture_output=True, text=True, check=True).stdout.strip()
    if "mingw32" not in machine:
        return []
    told = subprocess.run([compiler, "-E", "-v", "-x", "c++", os.devnull],
                          capture_output=True, text=True, check=True).stderr
    listed = told.split("search starts here:")[-1].split("End of search list")[0]
    folders = [line.strip() for line in listed.splitlines() if "/c++" in line]
    return ["--target=x86_64-w64-windows-gnu"] + [word for folder in folders for word in ("-isystem", folder)]


def clang_arguments(command):
    """One compile command's arguments as clang takes them, without compiler, input and output."""
    words = iter(command)
    compiler = next(word for word in words if "++" in pathlib.Path(word).name)
    kept = []
    for word in words:
        if word in ("-o", "-MF", "-MT", "-include"):
            next(words)
        elif word in ("-isystem", "-I"):
            kept += [word, next(words)]
        elif word.startswith("-") and not FOREIGN_OPTIONS.match(word):
            kept.append(word)
    return kept + cross_compiler_options(compiler)


def clang_commands(build):
    """How clang reads this repository's sources in one build: path -> arguments."""
    commands = build / "compile_commands.json"
    sources = {}
    for command in json.loads(commands.read_text()) if commands.exists() else []:
        path = pathlib.Path(command["directory"], command["file"]).resolve()
        own = path.is_relative_to(ROOT) and not path.is_relative_to(build)
        if own and path.suffix == ".cpp":
            sources[path] = clang_arguments(shlex.split(command["command"]))
    return sources


@functools.cache
def includes(file):
    """What one file includes, brackets or quotes included."""
    return re.findall(r'^\s*#\s*include\s*(["<][^">]+[">])', file.read_text(encoding="utf-8"), re.MULTILINE)


def own_files_read(sources):
    """The sources and the headers of this repository that they include, directly or not."""
    read = set(sources)
    to_look_at = list(sources)
    while to_look_at:
        file = to_look_at.pop()
        for name in includes(file):
            for folder in (ROOT, ROOT / "framework", ROOT / "runtime", file.parent):
                header = (folder / name[1:-1]).resolve()
                if header.is_file() and header not in read:
                    read.add(header)
                    to_look_at.append(header)
    return sorted(read)


def digest(sources, arguments, ground):
    """Names everything that a check's outcome depends on, wherever the repository lies."""
    known = hashlib.sha256(ground)
    known.update("\0".join(arguments).replace(str(ROOT), "").encode())
    for file in own_files_read(sources):
        known.update(str(file.relative_to(ROOT)).encode() + b"\0" + file.read_bytes())
    return known.hexdigest()


def groups(sources):
    """What is checked in one go: the tests of a folder that are compiled alike, and every other source alone."""
    together = collections.defaultdict(list)
    for path, arguments in sorted(sources.items()):
        is_test = path.name.endswith("Test.cpp") and not path.with_suffix(".h").exists()
        together[path.parent if is_test else path, tuple(arguments)].append(path)
    for (_, arguments), paths in sorted(together.items(), key=lambda group: -len(group[1])):
        yield paths, arguments


def tidy(path, arguments, *options):
    """The complaints about one source; empty when it passes."""
    told = subprocess.run([TOOL, "--quiet", *options, str(path), "--", *arguments],
                          cwd=ROOT, capture_output=True, text=True)
    return (told.stdout or told.stderr) if told.returncode else ""


def tidy_together(sources, arguments):
    """The same for several: their headers once, then each source in a namespace of its own, where its names meet no others."""
    headers = dict.fromkeys(header for source in sources for header in includes(source))
    lines = [f"#include {header}" for header in headers]
    for number, source in enumerate(sources):
        lines += [f"namespace source_{number}", "{", f'#include "{source}" // NOLINT(bugprone-suspicious-include)', "}"]
    with tempfile.TemporaryDirectory() as folder:
        text, overlay = (pathlib.Path(folder, name) for name in ("text", "overlay"))
        text.write_text("\n".join(lines) + "\n", encoding="utf-8")
        # For the tool it lies beside the sources, so that their folder's rules hold.
        whole = {"name": "whole.cpp", "type": "file", "external-contents": str(text)}
        root = {"name": str(sources[0].parent), "type": "directory", "contents": [whole]}
        overlay.write_text(json.dumps({"version": 0, "roots": [root]}), encoding="utf-8")
        return tidy(sources[0].parent / "whole.cpp", arguments, f"--vfsoverlay={overlay}")


def check(sources, arguments, ground, cache):
    """The complaints about sources that are compiled alike; empty when all pass."""
    passed = cache / digest(sources, arguments, ground)
    if passed.exists():
        return ""
    if len(sources) == 1:
        complaints = tidy(sources[0], arguments)
    elif complaints := tidy_together(sources, arguments):
        # Perhaps only because they were read together: what counts is each by itself.
        complaints = "".join(check([source], arguments, ground, cache) for source in sources)
    if not complaints:
        passed.touch()
    return complaints


def main():
    cache, *builds = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    cache.mkdir(parents=True, exist_ok=True)
    sources = {}
    for build in builds:
        sources = clang_commands(build) | sources
    version = subprocess.run([TOOL, "--version"], capture_output=True, check=True).stdout
    rules = [path for depth in (".", "*", "*/*") for path in sorted(ROOT.glob(f"{depth}/.clang-tidy"))]
    ground = version + b"".join(path.read_bytes() for path in rules)

    failed = False
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for complaints in pool.map(lambda group: check(*group, ground, cache), groups(sources)):
            if complaints:
                failed = True
                print(complaints, flush=True)
    print(f"clang-tidy: {len(sources)} sources, {'with complaints' if failed else 'all pass'}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
