"""That check_docs.py finds what it looks for, and nothing else."""
import tempfile
import unittest
from pathlib import Path

import check_docs

FILES = {
    "examples/a.cmd": "echo 1\r\necho 2\r\necho 3\r\n", "scripts/test": "", "app/A.cpp": "",
    "docs/other.md": "# Wie es geht: `-msg`\n", "docs/images/a.png": "",
    "CMakePresets.json": """{"configurePresets": [{"name": "release"}], "buildPresets": [],
                             "testPresets": [{"name": "release"}, {"name": "base", "hidden": true}]}"""}
BLOCK = "<!-- file: examples/a.cmd -->\n```bat\necho 1\necho 2\necho 3\n```\n"
LINES = BLOCK.replace("file:", "lines of:")
WORKFLOW = "# scripts/gone\n- run: ./scripts/test\n- run: ctest --preset release\n  path: build/release/*.zip\n"

RIGHT = (
    BLOCK, LINES, LINES.replace("echo 1\n", ""), LINES.replace("echo 3\n", ""),
    "[a](docs/other.md) ![b](docs/images/a.png) [c](docs/other.md#wie-es-geht--msg) [d](https://a.example/x)",
    "`[a](missing)`\n\n```\n[a](missing)\n```\n",
    "`scripts/test` `app/` `app/*.cpp` `./scripts/test x`")
WRONG = (
    BLOCK.replace("echo 1", "echo 4"), BLOCK.replace("echo 3\n", ""), BLOCK.replace("a.cmd", "b.cmd"), BLOCK.partition("\n")[0],
    LINES.replace("echo 2\n", ""), LINES.replace("echo 1", "echo"), LINES.partition("echo")[0] + "```\n",
    "[a](docs/missing.md)", "![a](docs/images/missing.png)", "[a](docs/other.md#missing)", "[a](../..)",
    "`app/B.cpp`", "```sh\n./scripts/missing now\n```\n")
WRONG_WORKFLOWS = (
    WORKFLOW.replace("scripts/test", "scripts/tests"), WORKFLOW.replace("preset release", "preset base"),
    WORKFLOW.replace("ctest", "cmake --build"), WORKFLOW.replace("build/release", "build/releases"))


class CheckDocs(unittest.TestCase):
    def test_faults_of_documents_and_workflows(self):
        cases = [*((text, WORKFLOW, 0) for text in RIGHT), *((text, WORKFLOW, 1) for text in WRONG),
                 *(("", workflow, 1) for workflow in WRONG_WORKFLOWS)]
        for text, workflow, faults in cases:
            with self.subTest(text=text, workflow=workflow), tempfile.TemporaryDirectory() as folder:
                root = Path(folder).resolve()
                for name, content in {**FILES, "guide.md": text, check_docs.WORKFLOW: workflow}.items():
                    (root / name).parent.mkdir(parents=True, exist_ok=True)
                    (root / name).write_bytes(content.encode())
                found = [*check_docs.check(root, root / "guide.md"), *check_docs.check_workflow(root)]
                self.assertEqual(len(found), faults, found)


if __name__ == "__main__":
    unittest.main()
