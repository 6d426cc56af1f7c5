#!/usr/bin/env python3
"""That check_rooms.py finds what it looks for, and nothing else."""
import tempfile
import unittest
from pathlib import Path

import check_rooms

TABLE = """# A tour

## The rooms

| folder | what lives there | may use |
|---|---|---|
| `app/` | the run | `delivery/`, `framework/` |
| `delivery/` | sending | `app/Leaf.h`, `framework/` |
| `framework/` | `app/` is not meant here | the platform |
| `tests/`, `bench/` | judges | everything |

## Another table

| `app/` | x | `tests/` |
"""


class CheckRooms(unittest.TestCase):
    def faults(self, files, table=TABLE):
        with tempfile.TemporaryDirectory() as folder:
            root = Path(folder).resolve()
            for name, content in {"docs/architecture.md": table, "app/Leaf.h": "", **files}.items():
                (root / name).parent.mkdir(parents=True, exist_ok=True)
                (root / name).write_text(content, encoding="utf-8")
            return check_rooms.check(root)

    def test_downwards_and_to_oneself(self):
        self.assertEqual(self.faults({
            "app/Run.cpp": '#include "app/Run.h"\n#include "delivery/Send.h"\n#include <afxwin.h>\n#include <vector>\n',
            "app/Run.h": "", "delivery/Send.h": '#include "app/Leaf.h"\n', "framework/afxwin.h": '#include "CWnd.h"\n',
            "framework/CWnd.h": "#include <windows.h>\n", "tests/RunTest.cpp": '#include "app/Run.h"\n'}), [])

    def test_upwards(self):
        self.assertEqual(self.faults({"app/Run.h": "", "delivery/Send.cpp": 'int x;\n#  include "app/Run.h" // why\n'}),
                         ["delivery/Send.cpp includes app/Run.h"])

    def test_upwards_by_a_relative_path(self):
        self.assertEqual(self.faults({"app/Run.h": "", "framework/CWnd.h": '#include "../app/Run.h"\n'}),
                         ["framework/CWnd.h includes app/Run.h"])

    def test_upwards_from_a_folder_further_down(self):
        self.assertEqual(self.faults({"app/Run.h": "", "delivery/text/Send.h": '#include "app/Run.h"\n'}),
                         ["delivery/text/Send.h includes app/Run.h"])

    def test_leaf_elsewhere_is_for_those_who_name_it(self):
        self.assertEqual(self.faults({"framework/CWnd.h": '#include "app/Leaf.h"\n'}),
                         ["framework/CWnd.h includes app/Leaf.h"])

    def test_leaf_with_an_include(self):
        self.assertEqual(self.faults({"app/Leaf.h": '#include <string>\n#include "app/Run.h"\n', "app/Run.h": ""}),
                         ["app/Leaf.h is a leaf and includes app/Run.h"])

    def test_framework_in_angle_brackets_counts(self):
        table = TABLE.replace("`app/Leaf.h`, `framework/`", "the platform")
        self.assertEqual(self.faults({"delivery/Send.h": "#include <afxwin.h>\n", "framework/afxwin.h": ""}, table),
                         ["delivery/Send.h includes framework/afxwin.h"])

    def test_windows_before_the_framework(self):
        files = {"delivery/Send.cpp": '#include "delivery/Send.h"\n#include <afxwin.h>\n',
                 "framework/afxwin.h": "#include <windows.h>\n"}
        self.assertEqual(self.faults({**files, "delivery/Send.h": "#include <windows.h>\n"}),
                         ["delivery/Send.cpp gets to <windows.h> before the dialog framework's headers"])
        self.assertEqual(self.faults({**files, "delivery/Send.h": "#include <afxdisp.h>\n#include <windows.h>\n"}), [])

    def test_table_that_allows_a_step_up(self):
        table = TABLE.replace("the platform", "`delivery/`")
        self.assertEqual(self.faults({}, table), ["framework/ may use delivery/, which does not stand below it"])

    def test_room_outside_of_the_table(self):
        self.assertEqual(self.faults({"attic/Old.cpp": ""}), ["attic/ is not among the rooms"])

    def test_no_table(self):
        self.assertEqual(self.faults({}, "# A tour\n"), ["docs/architecture.md has no table of rooms"])


if __name__ == "__main__":
    unittest.main()
