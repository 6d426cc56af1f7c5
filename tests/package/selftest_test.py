"""The self-test kit, unpacked far from any build and run: selftest_test.py ROOT PACKAGES VERSION, on a desktop.

The whole kit takes minutes, and its tests run in this build anyway: here each program runs a share of its tests.
"""
import os
import re
import shutil
import subprocess
import unittest
import zipfile
from pathlib import Path

from packages import PACKAGES, SELFTEST, SELFTEST_NAME, VERSION, WithFolder, main

WINDOWS = Path(os.environ["WINEPREFIX"]) / "drive_c"
LIMIT = 400  # seconds, for one run of the kit
SHARE = "Class"  # is in the names of some tests of every level
LEVELS = ("unit", "scripted", "program_file", "recipes", "system")
FACTS = ("Foreground lock timeout", "Windows", "Mark of the Web", "Code pages", "Screen")


class Content(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with zipfile.ZipFile(SELFTEST) as package:
            cls.files = {name.removeprefix(SELFTEST_NAME + "/"): package.read(name) for name in package.namelist()}

    def test_holds_the_programs_and_what_they_need(self):
        recipes = {f"recipes/{path.relative_to(PACKAGES.parent / 'recipes').as_posix()}"
                   for path in (PACKAGES.parent / "recipes").rglob("*") if path.is_file()}
        programs = {name for name in self.files if "/" not in name and name.endswith((".exe", ".dll"))}
        self.assertEqual(set(self.files), {*programs, *recipes, "selftest.cmd", "LIESMICH.txt",
                                           "THIRD-PARTY-NOTICES.txt", "SHA256SUMS"})
        for name in programs:
            self.assertEqual(self.files[name], (PACKAGES.parent / name).read_bytes(), name)

    def test_texts_are_as_windows_reads_them(self):
        for name in ("selftest.cmd", "LIESMICH.txt", "THIRD-PARTY-NOTICES.txt"):
            self.assertEqual(re.findall(rb"(?<!\r)\n", self.files[name]), [], name)
        self.assertTrue(self.files["selftest.cmd"].isascii())  # read in whatever code page the console has

    def test_notices_are_those_of_the_tests_too(self):
        notices = self.files["THIRD-PARTY-NOTICES.txt"].decode().replace("\r\n", "\n")
        self.assertIn(Path("/usr/share/doc/googletest/copyright").read_text(encoding="utf-8").rstrip("\n"), notices)


class Run(WithFolder):
    def setUp(self):
        super().setUp()
        place = self.folder / "Für Prüfer & Co"
        with zipfile.ZipFile(SELFTEST) as package:
            package.extractall(place)
        self.kit = place / SELFTEST_NAME
        self.program = self.kit / "selftest.exe"

    def selftest(self, *words):
        """The lower eight bits of the exit code. Output goes to a file, since Wine's services hold a pipe open."""
        with open(self.folder / "output.txt", "wb") as output:
            return subprocess.run(["wine", "cmd", "/c", "selftest.cmd", *words], cwd=self.kit, stdin=subprocess.DEVNULL,
                                  stdout=output, stderr=subprocess.STDOUT, timeout=LIMIT).returncode

    def output(self):
        return (self.folder / "output.txt").read_text(encoding="utf-8", errors="replace")

    def report(self, folder=None):
        text = ((folder or self.kit) / "selftest-report.txt").read_text(encoding="utf-8")
        print(text)  # is shown when the test fails
        return text.splitlines()

    def waits(self):
        """How often it waits for a key."""
        return self.output().count("Press any key to continue... ")

    def test_checksums_are_those_of_all_other_files(self):
        names = [line.split("  ")[1] for line in (self.kit / "SHA256SUMS").read_text().splitlines()]
        self.assertEqual({*names, "SHA256SUMS"},
                         {path.relative_to(self.kit).as_posix() for path in self.kit.rglob("*") if path.is_file()})
        self.assertEqual(subprocess.run(["sha256sum", "--check", "--quiet", "SHA256SUMS"], cwd=self.kit).returncode, 0)

    def test_a_share_of_every_level_passes(self):
        code = self.selftest("/quiet", f"/only:{SHARE}")
        report = self.report()
        passed = re.fullmatch(rf"Self-test of Quillet {VERSION}: PASSED, 0 failed, (\d+) passed, \d+ skipped", report[0])
        self.assertEqual((code, bool(passed)), (0, True))
        self.assertGreater(int(passed[1]), 10)
        for fact in FACTS:
            self.assertRegex("\n".join(report[:10]), rf"(?m)^{fact}: +\S")
        for level in LEVELS:
            self.assertRegex(self.output(), rf"(?m)^{level}: 0 failed, [1-9]\d* passed, ")
        self.assertIn("Tastatur und Maus ruhen lassen", self.output().partition("unit:")[0])
        self.assertEqual(self.waits(), 0)

    def test_a_missing_program_is_a_failure(self):
        (self.kit / "quillet.exe").unlink()
        (self.kit / "unit_tests.exe").write_bytes(b"")
        (self.kit / "scripted_tests.exe").unlink()
        self.assertEqual(self.selftest("/quiet", "/only:unit."), 1)
        self.assertRegex("\n".join(self.report()), re.compile(
            r"""^Self-test of Quillet \S+: FAILED, 3 failed, 0 passed, 0 skipped
Failed: quillet\.exe: is missing
Failed: scripted_tests\.exe: is missing
Failed: unit_tests\.exe: cannot be started: error \d+
"""))

    def test_failures_crashes_and_hangs_are_told_and_cost_nothing_else(self):
        shutil.copy(PACKAGES.parent / "selftest_probe.exe", self.kit / "scripted_tests.exe")
        (self.kit / "selftest-report.txt").mkdir()  # where nobody can write
        self.assertEqual(self.selftest("/only:scripted.", "/limit:5"), 1)
        found = next(WINDOWS.glob("**/selftest-report.txt"))
        self.addCleanup(found.unlink)
        self.assertRegex("\n".join(self.report(found.parent)), re.compile(
            r"""^Self-test of Quillet \S+: FAILED, 3 failed, 2 passed, 1 skipped
Failed: scripted\.Probe\.Crashes: ended with 0xC0000005\s
Failed: scripted\.ProbeThatHangs\.Hangs: took more than 5 seconds and was ended a host is there\s
Failed: scripted\.Probe\.Fails: \S*ProbeTest\.cpp:\d+: Failure Expected equality of these values: 1 2 as it should on two lines\s
Skipped: 1 \(no reason\)
(?s:.*)
FAILED scripted\.Probe\.Fails
    \S*ProbeTest\.cpp:\d+: Failure
    Expected equality of these values:
      1
      2
    as it should
    on two lines\s+
EXPECTED DIFFERENCE probe: under Wine
    scripted\.Probe\.Passes

SKIPPED no reason
    scripted\.Probe\.IsSkipped$"""))
        self.assertEqual(self.waits(), 2)

    def test_unknown_words_start_nothing(self):
        for word in ("/help", "/limit:soon"):
            self.assertEqual(self.selftest(word), 2, word)
            self.assertIn("[/only:TEXT]", self.output())
            self.assertFalse((self.kit / "selftest-report.txt").exists())

    def test_a_start_that_fails_says_why(self):
        self.program.unlink()
        self.assertEqual(self.selftest(), 3)
        self.assertIn("Das ZIP erst ganz entpacken", self.output())
        self.assertEqual(self.waits(), 1)
        self.program.write_bytes(b"")
        self.selftest()
        self.assertRegex(self.output(), r"nicht gestartet .*: Fehler \d+")
        self.assertEqual(self.waits(), 2)
        # Of Windows' own errors cmd tells in the same way; this stand-in does here.
        shutil.copy(WINDOWS / "windows/system32/cmd.exe", self.program)
        for error, reason in ((225, "Der Virenschutz"), (226, "Der Virenschutz"), (1260, "Eine Richtlinie"),
                              (4551, "Smart App Control")):
            self.assertEqual(self.selftest("/c", "exit", str(error)), error % 256)
            self.assertEqual(re.findall("(.*) laesst es nicht zu", self.output()), [reason])


if __name__ == "__main__":
    main()
