#!/usr/bin/env python3
"""Checks the style of every C++ source with clang-tidy: clang_tidy.py CACHE-FOLDER BUILD-FOLDER...

The sources and how they are compiled come from the build folders; of a source in several, the first one holds.
A source that passed is not checked again until it, a header of this repository that it includes, its compile
command, the rules or the tool change. Ends with 1 when a source does not pass.
"""

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

ROOT = pathlib.Path(__file__).resolve().parents[2]

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
        if word in ("-o", "-MF", "-MT"):
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
    """The names that one file includes, in either kind of brackets."""
    return re.findall(rb'^\s*#\s*include\s*["<]([^">]+)[">]', file.read_bytes(), re.MULTILINE)


def own_files_read(source):
    """The source and the headers of this repository that it includes, directly or not."""
    read = {source}
    to_look_at = [source]
    while to_look_at:
        file = to_look_at.pop()
        for name in includes(file):
            for folder in (ROOT, ROOT / "framework", file.parent):
                header = (folder / name.decode()).resolve()
                if header.is_file() and header not in read:
                    read.add(header)
                    to_look_at.append(header)
    return sorted(read)


def digest(path, arguments, ground):
    """Names everything that a check's outcome depends on, wherever the repository lies."""
    known = hashlib.sha256(ground)
    known.update("\0".join(arguments).replace(str(ROOT), "").encode())
    for file in own_files_read(path):
        known.update(str(file.relative_to(ROOT)).encode() + b"\0" + file.read_bytes())
    return known.hexdigest()


def check(path, arguments, ground, cache):
    """The complaints about one source; empty when it passes."""
    passed = cache / digest(path, arguments, ground)
    if passed.exists():
        return ""
    told = subprocess.run(["clang-tidy-19", "--quiet", str(path), "--", *arguments],
                          cwd=ROOT, capture_output=True, text=True)
    if told.returncode == 0:
        passed.touch()
        return ""
    return told.stdout + (told.stderr if not told.stdout else "")


def main():
    cache, *builds = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    cache.mkdir(parents=True, exist_ok=True)
    sources = {}
    for build in builds:
        sources = clang_commands(build) | sources
    version = subprocess.run(["clang-tidy-19", "--version"], capture_output=True, check=True).stdout
    rules = [path for depth in (".", "*", "*/*") for path in sorted(ROOT.glob(f"{depth}/.clang-tidy"))]
    ground = version + b"".join(path.read_bytes() for path in rules)

    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        checks = {path: pool.submit(check, path, arguments, ground, cache)
                  for path, arguments in sorted(sources.items())}
        for path, pending in checks.items():
            complaints = pending.result()
            if complaints:
                failed += 1
                print(complaints, flush=True)
    print(f"clang-tidy: {len(sources)} sources, {failed} with complaints")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
