#!/usr/bin/env python3
"""The self-test kit, unpacked far from any build and run on a Windows that knows nothing of it: selftest_test.py ROOT PACKAGES VERSION,
on a desktop.

The whole kit takes minutes, and its tests run in this build anyway: here each program runs a share of its tests.
"""
import hashlib
import os
import re
import shutil
import subprocess
import tempfile
import unittest
import zipfile
from datetime import date
from pathlib import Path

from packages import PACKAGES, ROOT, SELFTEST, SELFTEST_NAME, WithFolder, date_of_zip, main

import make_selftest

LIMIT = 400  # seconds, for one run of the kit
SHARES = 10
SUITES = ("unit", "scripted", "program", "system", "recipes", "load")
FACTS = ("Windows", "Code pages", "Language", "Scaling and screen", "Integrity level", "Foreground lock timeout")


class Content(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with zipfile.ZipFile(SELFTEST) as package:
            cls.files = {name.removeprefix(SELFTEST_NAME + "/"): package.read(name) for name in package.namelist()}
            cls.dates = {entry.date_time[:3] for entry in package.infolist()}

    def test_holds_the_programs_and_what_they_need(self):
        recipes = {f"recipes/{path.relative_to(PACKAGES.parent / 'recipes').as_posix()}"
                   for path in (PACKAGES.parent / "recipes").rglob("*") if path.is_file()}
        self.assertEqual(set(self.files), {*make_selftest.PROGRAMS, *recipes, "selftest.cmd", "LIESMICH.txt",
                                           "THIRD-PARTY-NOTICES.txt", "SHA256SUMS"})
        for name in make_selftest.PROGRAMS:
            self.assertEqual(self.files[name], (PACKAGES.parent / name).read_bytes(), name)

    def test_checksums_are_those_of_all_other_files(self):
        sums = {name: hashlib.sha256(content).hexdigest()
                for name, content in self.files.items() if name != "SHA256SUMS"}
        self.assertEqual(dict(reversed(line.split("  ")) for line in self.files["SHA256SUMS"].decode().splitlines()),
                         sums)

    def test_texts_are_as_windows_reads_them(self):
        for name in ("selftest.cmd", "LIESMICH.txt", "THIRD-PARTY-NOTICES.txt"):
            self.assertEqual(re.findall(rb"(?<!\r)\n", self.files[name]), [], name)
        self.assertTrue(self.files["selftest.cmd"].isascii())  # read in whatever code page the console has

    def test_notices_name_every_library(self):
        notices = self.files["THIRD-PARTY-NOTICES.txt"].decode()
        for package in ("googletest", "mingw-w64-x86-64-dev"):
            copyright_file = Path(f"/usr/share/doc/{package}/copyright").read_text(encoding="utf-8")
            self.assertIn(copyright_file.rstrip("\n"), notices.replace("\r\n", "\n"), package)
        self.assertRegex(notices, r"- libgtest\r\n  from Debian's package googletest, version ")

    def test_programs_tell_no_day(self):
        """The linker would otherwise write the time of the build into each."""
        for name in make_selftest.PROGRAMS:
            header = int.from_bytes(self.files[name][0x3C:0x40], "little")
            self.assertEqual(self.files[name][header + 8:header + 12], bytes(4), name)
        self.assertEqual(self.dates, {tuple(date.fromisoformat(date_of_zip()).timetuple()[:3])})


class Packing(WithFolder):
    def test_gives_the_same_bytes_again(self):
        make_selftest.main(ROOT, PACKAGES.parent, date_of_zip(), str(self.folder / SELFTEST_NAME))
        self.assertEqual((self.folder / f"{SELFTEST_NAME}.zip").read_bytes(), SELFTEST.read_bytes())


class Run(WithFolder):
    """A fresh Windows, and a fresh kit for each test."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.prefix = Path(folder.name) / "windows"
        cls.environment = {name: text for name, text in os.environ.items() if not name.startswith("GTEST_")}
        cls.environment["WINEPREFIX"] = str(cls.prefix)
        cls.addClassCleanup(cls.end_windows)

    @classmethod
    def end_windows(cls):
        for word in ("--kill", "--wait"):
            subprocess.run(["wineserver", word], env=cls.environment, timeout=60)
        # Debian's Wine leaves its server's folder behind, whose name is in this file.
        name = cls.prefix / "wineserver"
        if name.is_file() and re.fullmatch("wine-.{6}", folder := name.read_text().strip()):
            shutil.rmtree(Path("/tmp") / folder, ignore_errors=True)

    def setUp(self):
        super().setUp()
        place = self.folder / "Für Prüfer & Co"
        with zipfile.ZipFile(SELFTEST) as package:
            package.extractall(place)
        self.kit = place / SELFTEST_NAME

    def selftest(self, *words, **environment):
        """The exit code. Output goes to a file, since Wine's services hold a pipe open."""
        with open(self.folder / "output.txt", "wb") as output:
            return subprocess.run(["wine", "cmd", "/c", "selftest.cmd", *words], cwd=self.kit,
                                  env={**self.environment, **environment}, stdin=subprocess.DEVNULL, stdout=output,
                                  stderr=subprocess.STDOUT, timeout=LIMIT).returncode

    def output(self):
        return (self.folder / "output.txt").read_text(encoding="utf-8")

    def report(self, folder=None):
        text = ((folder or self.kit) / "selftest-report.txt").read_text(encoding="utf-8")
        print(text)  # is shown when the test fails
        return text.splitlines()

    def test_a_share_of_every_suite_passes(self):
        code = self.selftest("/quiet", GTEST_TOTAL_SHARDS=str(SHARES), GTEST_SHARD_INDEX="3")
        report = self.report()
        self.assertEqual((code, [line for line in report if "FAILED" in line]), (0, []))
        for fact in FACTS:
            self.assertRegex("\n".join(report), rf"(?m)^{fact}: +\S")
        sums = [0, 0]
        for suite in SUITES:
            told = [re.fullmatch(rf"{suite}: (\d+) passed, 0 failed, (\d+) skipped \(\d+ s\)", line) for line in report]
            told = next(filter(None, told))
            sums = [sums[0] + int(told[1]), sums[1] + int(told[2])]
            self.assertRegex(self.output(), rf"(?m)^{suite} +{told[1]} bestanden, 0 fehlgeschlagen, ")
        self.assertGreater(sums[0], 50)
        self.assertEqual(report[-1], f"{sums[0]} passed, 0 failed, {sums[1]} skipped")
        self.assertNotIn("Eingabetaste", self.output())
        self.assertIn("Tastatur und Maus ruhen lassen", self.output().partition("unit")[0])

    def test_a_missing_program_is_a_failure(self):
        (self.kit / "quillet.exe").unlink()
        (self.kit / "scripted_tests.exe").unlink()
        self.assertEqual(self.selftest("/quiet", "/suite:scripted", "/suite:system"), 1)
        report = self.report()
        self.assertIn("    quillet.exe is missing", report)
        self.assertIn("    scripted_tests.exe is missing", report)
        self.assertEqual(report[-1], "0 passed, 2 failed, 0 skipped")

    def test_failures_crashes_and_hangs_are_told_and_do_not_end_it(self):
        shutil.copy(PACKAGES.parent / "selftest_probe.exe", self.kit / "scripted_tests.exe")
        (self.kit / "selftest-report.txt").mkdir()  # where nobody can write
        self.assertEqual(self.selftest("/suite:scripted", "/patience:5"), 1)
        report = self.report(next(self.prefix.glob("drive_c/**/selftest-report.txt")).parent)
        begin = next(i for i, line in enumerate(report) if line.startswith("scripted:"))
        self.assertRegex(report[begin], r"scripted: 3 passed, 3 failed, 1 skipped \(\d+ s\)")
        self.assertRegex("\n".join(report[begin + 1:]), re.compile(
            r"""  FAILED Probe\.Fails
    \S*ProbeTest\.cpp:\d+: Expected equality of these values:
      1
      2
    as it should
    on two lines
  FAILED, AND DID NOT END Probe\.Crashes
    the program ended with 0xC0000005
  FAILED, AND DID NOT END ProbeThatHangs\.Hangs
    told nothing for 5 seconds and was ended
  SKIPPED Probe\.IsSkipped
    \S*ProbeTest\.cpp:\d+: no reason
  EXPECTED DIFFERENCE Probe\.Passes
    probe: under Wine

3 passed, 3 failed, 1 skipped"""))
        self.assertIn("Eingabetaste", self.output())

    def test_unknown_words_start_nothing(self):
        for word in ("/help", "/suite:none", "/patience:soon"):
            self.assertEqual(self.selftest(word), 2, word)
            self.assertIn("/suite:NAME", self.output())
            self.assertFalse((self.kit / "selftest-report.txt").exists())


if __name__ == "__main__":
    main()
