#!/usr/bin/env python3
"""Looks at the packages and installs the MSI under Wine: package_test.py ROOT PACKAGES VERSION, on a desktop."""
import hashlib
import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
import zipfile
from datetime import datetime, timezone
from html.parser import HTMLParser
from pathlib import Path, PurePosixPath
from urllib.parse import unquote, urlsplit

ROOT, PACKAGES, VERSION = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve(), sys.argv[3]
NAME = f"Quillet-{VERSION}-x64"
OLDER = "2025.4.0"
LIMIT = 120  # seconds, for whatever is waited for

sys.path.insert(0, str(ROOT / "packaging"))
import make_packages  # noqa: E402


def expected_files():
    pages = ["CHANGELOG.html", "docs/handbuch.html", "docs/host-guide.html", "docs/host-leitfaden.html",
             "docs/security.html", "docs/sicherheit.html", "examples/url-scheme/README.html"]
    programs = ["quillet.exe", "examples/caller/example_caller.exe", "examples/host/example_host.exe"]
    sources = [path.relative_to(ROOT).as_posix() for path in (ROOT / "examples").rglob("*")
               if path.is_file() and path.name not in ("CMakeLists.txt", "README.md")]
    return sorted(["SHA256SUMS", *pages, *programs, *sources])


class Page(HTMLParser):
    """What a page refers to, and what can be referred to in it."""

    def __init__(self, text):
        super().__init__()
        self.language, self.headings, self.chapters = None, 0, []
        self.anchors, self.links, self.loaded = set(), [], []
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        if tag == "html":
            self.language = attributes.get("lang")
        if tag == "h1":
            self.headings += 1
        if tag == "h2":
            self.chapters.append(attributes["id"])
        if "id" in attributes:
            self.anchors.add(attributes["id"])
        if tag == "a":
            self.links.append(attributes["href"])
        elif "href" in attributes:
            self.loaded.append(attributes["href"])
        self.loaded += [attributes[name] for name in ("src", "srcset", "data", "poster") if name in attributes]


class Zip(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with zipfile.ZipFile(PACKAGES / f"{NAME}.zip") as package:
            cls.names = package.namelist()
            cls.files = {name.removeprefix(NAME + "/"): package.read(name) for name in cls.names}
        cls.pages = {name: Page(content.decode()) for name, content in cls.files.items() if name.endswith(".html")}

    def test_holds_what_it_should_in_one_folder(self):
        self.assertEqual(sorted(self.files), expected_files())
        self.assertEqual([name for name in self.names if not name.startswith(NAME + "/")], [])

    def test_checksums_are_those_of_all_other_files(self):
        sums = {name: hashlib.sha256(content).hexdigest()
                for name, content in self.files.items() if name != "SHA256SUMS"}
        noted = dict(reversed(line.split("  ")) for line in self.files["SHA256SUMS"].decode().splitlines())
        self.assertEqual(noted, sums)

    def test_program_is_the_one_that_was_tested(self):
        self.assertEqual(self.files["quillet.exe"], (PACKAGES.parent / "quillet.exe").read_bytes())

    def test_pages_load_nothing_from_outside(self):
        for name, page in self.pages.items():
            with self.subTest(name):
                self.assertEqual([target[:80] for target in page.loaded if not target.startswith("data:")], [])
                style = self.files[name].decode().partition("</style>")[0]
                self.assertNotIn("@import", style)
                self.assertNotIn("url(", style)

    def test_handbook_carries_its_pictures(self):
        document = (ROOT / "docs/handbuch.md").read_text(encoding="utf-8")
        pictures = [target for target in self.pages["docs/handbuch.html"].loaded
                    if target.startswith("data:image/png;base64,")]
        self.assertEqual(len(pictures), document.count("](images/"))
        self.assertGreater(len(pictures), 0)

    def test_pages_tell_their_language_and_version(self):
        for name, language in (("docs/handbuch.html", "de"), ("docs/host-leitfaden.html", "de"),
                               ("docs/host-guide.html", "en"), ("docs/security.html", "en")):
            self.assertEqual((self.pages[name].language, self.pages[name].headings), (language, 1), name)
            self.assertIn(f"Quillet {VERSION}<", self.files[name].decode(), name)

    def test_every_link_leads_to_something_in_the_package(self):
        for name, page in self.pages.items():
            for link in page.links:
                parts = urlsplit(link)
                if parts.scheme:
                    continue
                with self.subTest(page=name, link=link):
                    target = os.path.normpath(PurePosixPath(name).parent / unquote(parts.path)) if parts.path else name
                    self.assertIn(target, self.files)
                    if parts.fragment:
                        self.assertIn(unquote(parts.fragment), self.pages[target].anchors)

    def test_table_of_contents_names_every_chapter(self):
        page = self.pages["docs/handbuch.html"]
        self.assertGreater(len(page.chapters), 10)
        links = [unquote(link) for link in page.links if link.startswith("#")]
        self.assertEqual(links[:len(page.chapters)], ["#" + chapter for chapter in page.chapters])


class WithFolder(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def content(self, name):
        """What the packages carry, in a folder of its own."""
        with zipfile.ZipFile(PACKAGES / f"{NAME}.zip") as package:
            package.extractall(self.folder / name)
        return self.folder / name / NAME

    def make(self, content, version, output):
        date = self.date_of_zip() if version == VERSION else "2025-12-01"
        make_packages.main(str(content), version, date, str(self.folder / output))
        return self.folder / f"{output}.msi"

    @staticmethod
    def date_of_zip():
        with zipfile.ZipFile(PACKAGES / f"{NAME}.zip") as package:
            return datetime(*package.infolist()[0].date_time, tzinfo=timezone.utc).strftime("%Y-%m-%d")


class Reproducible(WithFolder):
    def test_same_content_gives_the_same_bytes_at_another_time_and_place(self):
        content = self.content("elsewhere")
        for number, path in enumerate(sorted(content.rglob("*"), reverse=True)):
            os.utime(path, (number, number))
        (self.folder / "again").mkdir()
        self.make(content, VERSION, f"again/{NAME}")
        for kind in ("zip", "msi"):
            made = (self.folder / f"again/{NAME}.{kind}").read_bytes()
            self.assertEqual(hashlib.sha256(made).hexdigest(),
                             hashlib.sha256((PACKAGES / f"{NAME}.{kind}").read_bytes()).hexdigest(), kind)

    def test_other_content_is_another_package_of_the_same_product(self):
        content = self.content("other")
        (content / "CHANGELOG.html").write_text("other")
        msi = self.make(content, VERSION, "other-package")
        self.assertNotEqual(self.package_code(msi), self.package_code(PACKAGES / f"{NAME}.msi"))

    @staticmethod
    def package_code(msi):
        information = subprocess.run(["msiinfo", "suminfo", msi], check=True, capture_output=True, text=True).stdout
        return next(line for line in information.splitlines() if line.startswith("Revision number"))


class Msi(WithFolder):
    """On the desktop's fresh Windows, which every test leaves as it was."""

    drive = Path(os.environ["WINEPREFIX"]) / "drive_c"
    installed = drive / "Program Files/Quillet"

    def wine(self, *arguments, folder=None):
        """The exit code, or its lower eight bits; output goes to a file, since Wine's services hold a pipe open."""
        with open(self.folder / "output.txt", "wb") as output:
            return subprocess.run(["wine", *arguments], cwd=folder, stdin=subprocess.DEVNULL, stdout=output,
                                  stderr=subprocess.STDOUT, timeout=LIMIT).returncode

    def output(self):
        return (self.folder / "output.txt").read_bytes().decode("cp1252")

    def msiexec(self, action, msi, *properties):
        """As the handbook rolls it out: silently, with a log."""
        log, msi = ("Z:" + str(path).replace("/", "\\") for path in (self.folder / "msi.log", msi))
        return self.wine("msiexec", action, msi, "/qn", "/norestart", "/l*v", log, *properties)

    def entries(self):
        """The names under which the program is in the list of installed ones."""
        names = []
        for key in (r"HKLM\Software", r"HKLM\Software\Wow6432Node", r"HKCU\Software"):
            key += r"\Microsoft\Windows\CurrentVersion\Uninstall"
            self.wine("reg", "query", key, "/s", "/v", "DisplayName")
            names += [line.split("REG_SZ")[1].strip() for line in self.output().splitlines() if "REG_SZ" in line]
        return names

    def shortcuts(self):
        return [path.name for path in self.drive.rglob("Quillet*.lnk")]

    def content_of_installation(self):
        return make_packages.files_in(self.installed)

    def expect_nothing(self):
        self.assertFalse(self.installed.exists())
        self.assertEqual(self.entries(), [])
        self.assertEqual(self.shortcuts(), [])
        self.assertEqual(list(self.drive.glob("windows/Installer/*")), [])  # the installer's own copies

    def setUp(self):
        super().setUp()
        self.expect_nothing()
        self.msi = PACKAGES / f"{NAME}.msi"

    def expect_right_checksums(self):
        for line in (self.installed / "SHA256SUMS").read_text().splitlines():
            checksum, name = line.split("  ")
            self.assertEqual(hashlib.sha256((self.installed / name).read_bytes()).hexdigest(), checksum, name)

    def start_host(self, *options):
        log = self.folder / "host.txt"
        with open(log, "wb") as output:
            host = subprocess.Popen(["wine", self.installed / "examples/host/example_host.exe", *options],
                                    stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT)
        self.addCleanup(host.wait, LIMIT)
        self.addCleanup(host.kill)
        deadline = time.monotonic() + LIMIT
        while b"Bereit" not in log.read_bytes():
            self.assertLess(time.monotonic(), deadline, "the host does not start")
            time.sleep(0.05)
        return host

    def run_recipe(self):
        return self.wine("cmd", "/c", "send-text.cmd", "Vorgang 4711", folder=self.installed / "examples/batch")

    def test_installs_runs_and_goes_away_without_a_trace(self):
        self.assertEqual(self.msiexec("/i", self.msi), 0)
        self.assertEqual(self.content_of_installation(), expected_files())
        self.expect_right_checksums()
        self.assertEqual(self.entries(), [f"Quillet {VERSION}"])
        self.assertEqual(self.shortcuts(), ["Quillet-Handbuch.lnk"])
        self.assertGreater((self.folder / "msi.log").stat().st_size, 1000)

        # The recipe looks for the program where it is installed, unless told otherwise.
        os.environ.pop("QUILLET", None)
        self.assertEqual(self.run_recipe(), 256 - 2)
        self.assertEqual(self.output().strip(), "Der Host ist nicht gestartet.")
        host = self.start_host("--answer=42")
        self.assertEqual(self.run_recipe(), 42)
        self.assertEqual(self.output().strip(), "Der Host hat mit 42 geantwortet.")
        host.kill()
        host.wait(LIMIT)

        self.assertEqual(self.msiexec("/x", self.msi), 0)
        self.expect_nothing()

    def test_mends_what_was_damaged(self):
        self.assertEqual(self.msiexec("/i", self.msi), 0)
        (self.installed / "quillet.exe").unlink()
        (self.installed / "examples/batch/send-text.cmd").write_text("damaged")
        self.assertEqual(self.msiexec("/i", self.msi, "REINSTALL=ALL", "REINSTALLMODE=amus"), 0)
        self.assertEqual(self.content_of_installation(), expected_files())
        self.expect_right_checksums()
        self.assertEqual(self.msiexec("/x", self.msi), 0)
        self.expect_nothing()

    def test_takes_the_place_of_an_older_version_and_not_of_a_newer_one(self):
        content = self.content("older")
        (content / "CHANGELOG.html").write_text("older")
        (content / "docs/only-in-older.html").write_text("older")
        older = self.make(content, OLDER, "older-package")

        self.assertEqual(self.msiexec("/i", older), 0)
        self.assertEqual(self.entries(), [f"Quillet {OLDER}"])
        self.assertIn("docs/only-in-older.html", self.content_of_installation())

        self.assertEqual(self.msiexec("/i", self.msi), 0)
        self.assertEqual(self.entries(), [f"Quillet {VERSION}"])
        self.assertEqual(self.content_of_installation(), expected_files())
        self.assertNotEqual((self.installed / "CHANGELOG.html").read_text(), "older")

        self.assertNotEqual(self.msiexec("/i", older), 0)
        self.assertEqual(self.entries(), [f"Quillet {VERSION}"])

        self.assertEqual(self.msiexec("/x", self.msi), 0)
        self.expect_nothing()


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
