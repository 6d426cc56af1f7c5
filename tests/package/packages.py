"""What the tests of the packages share: where the packages are, what they should hold, and copies to play with.

The first three arguments of every test program: ROOT PACKAGES VERSION.
"""
import re
import sys
import tempfile
import unittest
import zipfile
from datetime import datetime, timezone
from pathlib import Path

ROOT, PACKAGES, VERSION = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve(), sys.argv[3]
NAME = f"Quillet-{VERSION}-x64"
SELFTEST_NAME = f"Quillet-{VERSION}-selftest-x64"
SELFTEST = PACKAGES / f"{SELFTEST_NAME}.zip"
ZIP, MSI = PACKAGES / f"{NAME}.zip", PACKAGES / f"{NAME}.msi"

sys.path.insert(0, str(ROOT / "packaging"))


def expected_files(examples=True):
    """Names of all files, as they should be. The MSI leaves most examples out unless they are asked for."""
    pages = ["docs/CHANGELOG.html", "docs/freigabe.html", "docs/handbuch.html", "docs/host-guide.html",
             "docs/host-leitfaden.html", "docs/security.html", "docs/sicherheit.html"]
    always = ["quillet.exe", "examples/host/example_host.exe", "examples/call-builder/call-builder.html"]
    sources = [path.relative_to(ROOT).as_posix() for path in (ROOT / "examples").rglob("*")
               if path.is_file() and path.name not in ("CMakeLists.txt", "README.md")
               and (path.parent.name != "call-builder" or path.suffix == ".html")]
    more = ["examples/caller/example_caller.exe", "examples/url-scheme/README.html", *sources] if examples else []
    return sorted(["LIESMICH.txt", "SHA256SUMS", "THIRD-PARTY-NOTICES.txt", *pages, *{*always, *more}])


def code_blocks(path, heading=""):
    """The lines of each indented or fenced block of commands of a text, from a heading to the next."""
    text = path.read_text(encoding="utf-8").partition(heading)[2] if heading else path.read_text(encoding="utf-8")
    blocks = re.findall(r"^```bat\n(.*?)^```|((?:^    [^\n]*\n)+)", text.partition("\n### ")[0], re.MULTILINE | re.DOTALL)
    return [[line.strip() for line in (fenced or indented).splitlines()] for fenced, indented in blocks]


def switches():
    """All that the program looks for in its command line, as the handbook's table lists them."""
    return re.findall(r"(?m)^\| `(-[?\w]+=?)` \|", (ROOT / "docs/handbuch.md").read_text(encoding="utf-8"))


def date_of_zip():
    with zipfile.ZipFile(ZIP) as package:
        return datetime(*package.infolist()[0].date_time, tzinfo=timezone.utc).strftime("%Y-%m-%d")


class WithFolder(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def content(self, name):
        """What the packages carry, in a folder of its own."""
        with zipfile.ZipFile(ZIP) as package:
            package.extractall(self.folder / name)
        return self.folder / name / NAME

    def make(self, content, version, output):
        """Makes packages of a folder's content; returns the MSI."""
        import make_packages
        date = date_of_zip() if version == VERSION else "2025-12-01"
        make_packages.main(str(content), version, date, *(f"{self.folder / output}.{kind}" for kind in ("zip", "msi")))
        return self.folder / f"{output}.msi"


def main():
    unittest.main(module="__main__", argv=[sys.argv[0], *sys.argv[4:]])
