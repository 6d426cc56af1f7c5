"""What the tests stand on, on a desktop: desktop_test.py BUILD PROBE-PROGRAM"""
import json
import os
import pwd
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

BUILD, PROBE = Path(sys.argv[1]), sys.argv[2]
LAUNCHER = str(Path(__file__).resolve().parents[2] / "scripts/lib/on_desktop")
LIMIT = 60  # seconds, for whatever is waited for


def output_of(*command, **options):
    run = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8", errors="replace",
                         stdin=subprocess.DEVNULL, timeout=2 * LIMIT, **options)
    return run.returncode, run.stdout


def windows():
    return {f"window {number}" for number in output_of("xdotool", "search", "--onlyvisible", "--name", "")[1].split()}


def programs():
    """Of this desktop's Windows: the processes that have its prefix in their environment."""
    mark = f"\0WINEPREFIX={os.environ['WINEPREFIX']}\0".encode()
    found = set()
    for folder in Path("/proc").glob("[0-9]*"):
        try:
            if mark in b"\0" + (folder / "environ").read_bytes() and b".exe" in (folder / "cmdline").read_bytes():
                found.add(f"process {folder.name}")
        except OSError:
            pass  # has ended, or is another user's
    return found


class TimeOut(unittest.TestCase):
    def test_takes_along_what_the_test_has_started(self):
        before = programs() | windows()  # some of them may just be ending
        with tempfile.TemporaryDirectory() as folder:
            Path(folder, "CTestTestfile.cmake").write_text(
                f'add_test(hangs "{LAUNCHER}" wine "{PROBE}" --gtest_filter=ProbeThatHangs.Hangs)\n'
                'set_tests_properties(hangs PROPERTIES TIMEOUT 60 TIMEOUT_AFTER_MATCH "1;a host is there")\n')
            code, output = output_of("ctest", "--test-dir", folder, "--verbose")
        self.assertNotEqual(code, 0)
        self.assertRegex(output, r"hangs \.+\*\*\*Timeout")
        self.assertRegex(output, r"(?m)^\d+: a host is there$")
        deadline = time.monotonic() + LIMIT
        while (programs() | windows()) - before and time.monotonic() < deadline:
            time.sleep(0.05)
        self.assertEqual((programs() | windows()) - before, set())


class Properties(unittest.TestCase):
    def test_each_test_has_a_limit_and_each_on_a_desktop_takes_one(self):
        tests = json.loads(subprocess.check_output(["ctest", "--show-only=json-v1"], cwd=BUILD))["tests"]
        on_desktop = 0
        for test in tests:
            properties = {item["name"]: item["value"] for item in test["properties"]}
            with self.subTest(test["name"]):
                self.assertIn("TIMEOUT", properties)
                if LAUNCHER in [os.path.realpath(word) for word in test["command"]]:
                    on_desktop += 1
                    self.assertEqual(properties.get("RESOURCE_GROUPS"), [{"requirements": [{".type": "desktop", "slots": 1}]}])
        self.assertGreater(on_desktop, 500)
        names = [test["name"] for test in tests]
        self.assertEqual(len(names), len(set(names)))


@unittest.skipUnless(os.geteuid() == 0, "only root can try it as somebody else")
class AnotherUser(unittest.TestCase):
    def test_does_not_get_at_the_display(self):
        question = ("xdotool", "get_num_desktops")
        self.assertEqual(output_of(*question)[0], 0)
        nobody = pwd.getpwnam("nobody")
        somebody_else = {"user": nobody.pw_uid, "group": nobody.pw_gid, "extra_groups": [], "cwd": "/"}
        try:
            output_of("true", **somebody_else)
        except PermissionError:
            self.skipTest("another user can start nothing here, as in a root folder that is root's alone")
        self.assertNotEqual(output_of(*question, **somebody_else)[0], 0)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
