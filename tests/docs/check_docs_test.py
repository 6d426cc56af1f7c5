#!/usr/bin/env python3
"""That check_docs.py finds what it looks for, and nothing else."""
import tempfile
import unittest
from pathlib import Path

import check_docs


class CheckDocs(unittest.TestCase):
    def written(self, folder, files):
        root = Path(folder).resolve()
        for name, content in files.items():
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            (root / name).write_bytes(content.encode())
        return root

    def faults(self, text, files=None):
        with tempfile.TemporaryDirectory() as folder:
            root = self.written(folder, files or {})
            document = root / "guide.md"
            document.write_text(text, encoding="utf-8")
            return list(check_docs.check(root, document))

    def test_marked_block_shows_the_file(self):
        text = "<!-- file: examples/a.cmd -->\n```bat\necho 1\n```\n"
        self.assertEqual(self.faults(text, {"examples/a.cmd": "echo 1\r\n"}), [])

    def test_marked_block_differs_from_the_file(self):
        text = "<!-- file: examples/a.cmd -->\n```bat\necho 2\n```\n"
        self.assertEqual(self.faults(text, {"examples/a.cmd": "echo 1\r\n"}),
                         ["guide.md:2: does not show examples/a.cmd as it is"])

    def test_marked_block_lacks_the_last_line(self):
        text = "<!-- file: examples/a.cmd -->\n```bat\necho 1\n```\n"
        self.assertEqual(len(self.faults(text, {"examples/a.cmd": "echo 1\necho 2\n"})), 1)

    def test_marked_lines_follow_each_other_in_the_file(self):
        files = {"examples/a.cmd": "echo 1\r\necho 2\r\necho 3\r\n"}
        for lines, faults in (("echo 1\necho 2", 0), ("echo 2\necho 3", 0), ("echo 1\necho 3", 1), ("echo", 1), ("", 1)):
            text = f"<!-- lines of: examples/a.cmd -->\n```bat\n{lines}\n```\n"
            self.assertEqual(len(self.faults(text, files)), faults, lines)
        self.assertEqual(len(self.faults("<!-- lines of: examples/a.cmd -->\n```bat\n```\n", files)), 1)

    def test_marked_file_is_missing(self):
        text = "<!-- file: examples/a.cmd -->\n```bat\necho 1\n```\n"
        self.assertEqual(len(self.faults(text)), 1)

    def test_mark_without_block(self):
        self.assertEqual(len(self.faults("<!-- file: examples/a.cmd -->", {"examples/a.cmd": ""})), 1)

    def test_links(self):
        files = {"docs/other.md": "# Wie es geht: `-msg`\n", "docs/images/a.png": ""}
        right = "[a](docs/other.md) ![b](docs/images/a.png) [c](docs/other.md#wie-es-geht--msg) [d](https://a.example/x)"
        self.assertEqual(self.faults(right, files), [])
        self.assertEqual(len(self.faults("[a](docs/missing.md)", files)), 1)
        self.assertEqual(len(self.faults("![a](docs/images/missing.png)", files)), 1)
        self.assertEqual(len(self.faults("[a](docs/other.md#missing)", files)), 1)
        self.assertEqual(len(self.faults("[a](../..)", files)), 1)

    def test_links_in_code_are_text(self):
        self.assertEqual(self.faults("`[a](missing)`\n\n```\n[a](missing)\n```\n"), [])

    def test_paths(self):
        files = {"scripts/test": "", "app/A.cpp": ""}
        self.assertEqual(self.faults("`scripts/test` `app/` `app/*.cpp` `./scripts/test x`", files), [])
        self.assertEqual(len(self.faults("`app/B.cpp`", files)), 1)
        self.assertEqual(len(self.faults("```sh\n./scripts/missing now\n```\n", files)), 1)

    def test_workflow(self):
        right = "# scripts/gone\n- run: ./scripts/test\n- run: ctest --preset release\n  path: build/release/*.zip\n"
        files = {"scripts/test": "", "CMakePresets.json": """{"configurePresets": [{"name": "release"}],
                 "buildPresets": [], "testPresets": [{"name": "release"}, {"name": "base", "hidden": true}]}"""}
        for text, faults in ((right, 0), (right.replace("scripts/test", "scripts/tests"), 1), (right.replace("preset release", "preset base"), 1),
                             (right.replace("ctest", "cmake --build"), 1), (right.replace("build/release", "build/releases"), 1)):
            with tempfile.TemporaryDirectory() as folder:
                root = self.written(folder, {check_docs.WORKFLOW: text, **files})
                self.assertEqual(len(list(check_docs.check_workflow(root))), faults, text)


if __name__ == "__main__":
    unittest.main()
