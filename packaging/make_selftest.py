#!/usr/bin/env python3
"""Packs the self-test kit from a finished build: make_selftest.py ROOT BUILD DATE OUTPUT

ROOT is the repository, BUILD the folder of the build. OUTPUT.zip gets one folder with all that the tests need, every file
with the time DATE (YYYY-MM-DD) and with its checksum in SHA256SUMS: the same content gives the same bytes.
"""
import datetime
import shutil
import sys
import tempfile
from pathlib import Path

from make_packages import write_checksums, write_zip

# The program, what runs the tests, the tests, and what these start or load. Not in it: link_tests, which read links that node
# writes; selftest_probe, which is no test of the program.
PROGRAMS = ("quillet.exe", "selftest.exe",
            "unit_tests.exe", "scripted_tests.exe", "program_file_tests.exe", "system_tests.exe", "recipe_tests.exe",
            "test_host.exe", "planted_library.dll", "example_host.exe", "example_caller.exe", "small_host.exe")


def gather(root, build, folder):
    for name in PROGRAMS:
        shutil.copy(build / name, folder)
    shutil.copytree(build / "recipes", folder / "recipes")
    shutil.copy(build / "tests/kit/THIRD-PARTY-NOTICES.txt", folder)
    for name in ("selftest.cmd", "LIESMICH.txt"):
        text = (root / "tests/kit" / name).read_text(encoding="utf-8")
        (folder / name).write_text(text, encoding="utf-8", newline="\r\n")


def main(root, build, date, output):
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        gather(Path(root), Path(build), folder)
        write_checksums(folder)
        write_zip(folder, datetime.datetime.fromisoformat(date), Path(output + ".zip"))


if __name__ == "__main__":
    main(*sys.argv[1:])
