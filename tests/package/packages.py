"""What the tests of the packages share: where the packages are, what they should hold, and copies to play with.

The first three arguments of every test program: ROOT PACKAGES VERSION.
"""
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
    """Names of all files, as they should be. The MSI leaves the examples out unless they are asked for."""
    pages = ["CHANGELOG.html", "docs/freigabe.html", "docs/handbuch.html", "docs/host-guide.html",
             "docs/host-leitfaden.html", "docs/security.html", "docs/sicherheit.html",
             "examples/url-scheme/README.html"]
    programs = ["quillet.exe", "examples/caller/example_caller.exe", "examples/host/example_host.exe"]
    sources = [path.relative_to(ROOT).as_posix() for path in (ROOT / "examples").rglob("*")
               if path.is_file() and path.name not in ("CMakeLists.txt", "README.md")
               and (path.parent.name != "call-builder" or path.suffix == ".html")]
    names = ["SHA256SUMS", "THIRD-PARTY-NOTICES.txt", *pages, *programs, *sources]
    return sorted(name for name in names if examples or not name.startswith("examples/"))


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
        make_packages.main(str(content), version, date, str(self.folder / output))
        return self.folder / f"{output}.msi"


def main():
    unittest.main(module="__main__", argv=[sys.argv[0], *sys.argv[4:]])
