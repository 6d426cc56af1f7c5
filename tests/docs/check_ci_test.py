#!/usr/bin/env python3
"""That check_ci.py finds what it looks for, and nothing else."""
import json
import tempfile
import unittest
from pathlib import Path

import check_ci

WORKFLOW = """# Not yet run: for a test.
permissions:
  contents: read
jobs:
  build:
    steps:
      - uses: actions/checkout@v5
      - run: ./scripts/test
      - run: |
          cmake --preset release
          cmake --build --preset release --target package
          ctest --preset release
      - uses: actions/upload-artifact@v6
        with:
          name: kit
          path: build/release/kit-*.zip
  use:
    needs: build
    steps:
      - uses: actions/download-artifact@v7
        with:
          name: kit
      - run: call "%%k\\selftest.cmd" /quiet
      - uses: actions/upload-artifact@v6
        with:
          name: report
          path: |
            kit-selftest-x64/selftest-report.txt
            kit-selftest-x64/*-output.txt
"""

KIT = {"packaging/CMakeLists.txt": "set(NAME ${PROJECT_NAME}-selftest-x64)",
       "packaging/make.py": 'NAMES = ("selftest.cmd",)',
       "tests/kit/Report.cpp": 'L"selftest-report.txt"; name + "-output.txt"; // /quiet'}

PRESETS = {"configurePresets": [{"name": "base", "hidden": True}, {"name": "release"}, {"name": "other"}],
           "buildPresets": [{"name": "release"}], "testPresets": [{"name": "release"}]}


class CheckCi(unittest.TestCase):
    def faults(self, old="", new="", executable=True):
        """What is said of the workflow above with one place of it replaced."""
        self.assertIn(old, WORKFLOW)
        with tempfile.TemporaryDirectory() as folder:
            root = Path(folder).resolve()
            for name, content in {check_ci.WORKFLOW: WORKFLOW.replace(old, new), "scripts/test": "",
                                  "CMakePresets.json": json.dumps(PRESETS), **KIT}.items():
                (root / name).parent.mkdir(parents=True, exist_ok=True)
                (root / name).write_text(content, encoding="utf-8")
            (root / "scripts/test").chmod(0o755 if executable else 0o644)
            return check_ci.check(root)

    def test_right(self):
        self.assertEqual(self.faults(), [])

    def test_no_yaml(self):
        self.assertIn("is no YAML", self.faults("jobs:", "jobs: [")[0])

    def test_first_line(self):
        self.assertEqual(self.faults("# Not yet run: for a test.\n"), ["does not begin with '# Not yet run: …'"])

    def test_missing_script(self):
        self.assertEqual(self.faults("./scripts/test", "./scripts/tests"),
                         ["names ./scripts/tests, which does not exist", "./scripts/tests cannot be started"])

    def test_script_that_cannot_be_started(self):
        self.assertEqual(self.faults(executable=False), ["./scripts/test cannot be started"])

    def test_missing_path_in_a_comment(self):
        self.assertEqual(self.faults("for a test", "see tests/docs/none.py"),
                         ["names tests/docs/none.py, which does not exist"])

    def test_presets_of_each_kind(self):
        for command in ("cmake --preset", "cmake --build --preset", "ctest --preset"):
            self.assertEqual(self.faults(f"{command} release", f"{command} base"),
                             [f"{command} base: there is no such preset"])
        self.assertEqual(self.faults("ctest --preset release", "ctest --preset other"),
                         ["ctest --preset other: there is no such preset"])

    def test_folder_of_no_preset(self):
        self.assertEqual(self.faults("build/release/", "build/releases/"), ["build/releases/ is the folder of no preset"])

    def test_what_the_kit_does_not_have(self):
        for old, new in (('selftest.cmd" /quiet', 'selftest.cmd" /silent'), ("selftest.cmd", "test.cmd"),
                         ("selftest-report.txt", "report.txt"), ("*-output.txt", "*-log.txt")):
            self.assertEqual(self.faults(old, new), [f"the self-test kit has no {new.split()[-1].strip('*')}"])

    def test_job_that_is_none(self):
        self.assertEqual(self.faults("needs: build", "needs: builds")[0], "use needs builds, which is no job")

    def test_artifact_that_nobody_uploads(self):
        fault = "use downloads kit, which no job that it needs has uploaded"
        self.assertEqual(self.faults("    needs: build\n"), [fault])
        self.assertEqual(self.faults("          name: kit\n          path", "          name: kits\n          path"), [fault])

    def test_permissions(self):
        for more in ("contents: write", "contents: read\n  packages: write"):
            self.assertEqual(self.faults("contents: read", more), ["the workflow may do more than read"])

    def test_action_without_a_version(self):
        for name in ("actions/checkout", "actions/checkout@main"):
            self.assertEqual(self.faults("actions/checkout@v5", name), [f"{name} has no version"])


if __name__ == "__main__":
    unittest.main()
