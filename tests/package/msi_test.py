"""Installs the MSI under Wine, uses it, and takes it away: msi_test.py ROOT PACKAGES VERSION, on a desktop"""
import hashlib
import os
import re
import struct

from packages import MSI, ROOT, VERSION, code_blocks, expected_files, main, switches
from wine_case import WineCase

from make_msi import ALWAYS, files_in

OLDER = "2025.4.0"
PRODUCTS = r"Software\Microsoft\Windows\CurrentVersion\Uninstall"
CLASSES = r"HKLM\Software\Classes"
SCHEME = CLASSES + r"\orvane-demo"
FAILED = 1603 % 256


def version_words(version):
    """As they stand in a program's version block."""
    year, number, patch = map(int, version.split("."))
    return struct.pack("<4H", number, year, 0, patch)


class Msi(WineCase):
    installed = WineCase.drive / "Program Files/Quillet"

    def expect_installed(self, folder, examples):
        self.assertEqual(files_in(folder), expected_files(examples))
        for line in (folder / "SHA256SUMS").read_text().splitlines():
            checksum, name = line.split("  ")
            if (folder / name).exists():
                self.assertEqual(hashlib.sha256((folder / name).read_bytes()).hexdigest(), checksum, name)
        place = self.windows_path(folder)
        [entry] = self.listed()
        self.assertLessEqual({"DisplayName": f"Quillet {VERSION}", "Publisher": "Orvane", "DisplayVersion": VERSION[2:],
                              "InstallLocation": place + "\\", "ReadMe": place + "\\docs\\handbuch.html"}.items(),
                             entry.items())
        self.assertIn("meldet deren Antwort", entry["Comments"])
        self.assertEqual([path.name for path in self.drive.rglob("Quillet*.lnk")], ["Quillet-Handbuch.lnk"])

    def listed(self):
        """What the list of installed programs says of each."""
        self.wine("reg", "query", "HKLM\\" + PRODUCTS, "/s")
        entries = [dict(re.findall(r"(?m)^ +(\w+) +REG_SZ *(.*?)\r?$", entry)) for entry in self.output().split("\nHKEY_")]
        return [entry for entry in entries if "DisplayName" in entry]

    def programs(self):
        return [entry["DisplayName"] for entry in self.listed()]

    def windows_path(self, path):
        return "C:\\" + path.relative_to(self.drive).as_posix().replace("/", "\\")

    def test_default_place(self):
        self.live_and_go(self.installed)

    def test_own_place_with_examples(self):
        above = self.drive / "Werkzeuge -neu - für alle"  # not the installer's; no switch begins so
        above.mkdir()
        folder = above / "Größe 5"
        self.live_and_go(folder, f"INSTALLDIR={self.windows_path(folder)}", examples=True)

    def live_and_go(self, folder, *properties, examples=False):
        """The whole life of an installation, from an older version on, after which all is as before."""
        # Windows keeps the features at an upgrade; Wine wants to be told.
        features = ("ADDLOCAL=ALL",) if examples else ()
        older = self.older()
        self.assertEqual(self.msiexec("/i", older, *features, *properties), 0)
        self.assertEqual(self.programs(), [f"Quillet {OLDER}"])
        self.assertTrue((folder / "docs/only-in-older.html").exists())

        self.assertEqual(self.msiexec("/i", MSI, *features), 0)
        self.expect_installed(folder, examples)
        self.assertGreater((self.folder / "msi.log").stat().st_size, 1000)
        self.expect_answers(folder)
        self.assertNotEqual(self.msiexec("/i", older), 0)
        self.assertEqual(self.programs(), [f"Quillet {VERSION}"])

        (folder / "quillet.exe").unlink()
        (folder / "docs/handbuch.html").write_text("damaged")
        self.assertEqual(self.msiexec("/i", MSI, "REINSTALL=ALL", "REINSTALLMODE=amus"), 0)
        self.expect_installed(folder, examples)

        for choice, examples in (("ADDLOCAL=ALL", True), ("REMOVE=Examples", False)):
            self.assertEqual(self.msiexec("/i", MSI, choice, *properties), 0, choice)
            self.expect_installed(folder, examples)
        self.expect_refused(r"INSTALLDIR=C:\elsewhere")
        self.expect_installed(folder, examples)

        # What is refused at an installation is no reason to keep what is installed.
        self.assertEqual(self.msiexec("/x", MSI, r"INSTALLDIR=C:\elsewhere -nodlg", "URLSCHEME=orvane"), 0)
        if folder != self.installed:
            folder.parent.rmdir()
        self.expect_no_file_left()

    def test_an_upgrade_can_move_it(self):
        self.assertEqual(self.msiexec("/i", self.older()), 0)
        folder = self.installed.with_name("Anderswo")
        self.assertEqual(self.msiexec("/i", MSI, f"INSTALLDIR={self.windows_path(folder)}"), 0)
        self.expect_installed(folder, examples=False)
        self.assertFalse(self.installed.exists())
        self.assertEqual(self.msiexec("/x", MSI), 0)
        self.expect_no_file_left()

    def older(self):
        content = self.content("older")
        # The file's own version, too: the installer leaves a file that is newer than its package says.
        program = content / "quillet.exe"
        self.assertIn(version_words(VERSION), program.read_bytes())
        program.write_bytes(program.read_bytes().replace(version_words(VERSION), version_words(OLDER)))
        (content / "docs/CHANGELOG.html").write_text("older")
        (content / "docs/only-in-older.html").write_text("older")
        return self.make(content, OLDER, "older-package")

    def expect_answers(self, folder):
        """Requests by the program's name alone, by a recipe and by a link are answered by the host that is installed."""
        start, call, *_ = code_blocks(folder / "LIESMICH.txt")[0]
        host = folder / start.split()[1].replace("\\", "/")
        self.assertEqual(host, folder / ALWAYS[0])
        self.assertEqual(self.run_recipe(folder), 256 - 2)
        self.assertEqual(self.output().strip(), "Der Host ist nicht gestartet.")
        end_host = self.start_host(host, *start.split()[2:])
        self.assertEqual(self.wine("cmd", "/c", call), 7)
        self.assertIn("Vorgang-4711", self.host_log())
        self.assertEqual(self.run_recipe(folder), 7)
        self.assertEqual(self.output().strip(), "Der Host hat mit 7 geantwortet.")
        self.expect_scheme_comes_and_goes()
        end_host()

    def expect_scheme_comes_and_goes(self):
        """By the handbook's lines; the files name the default place."""
        register, unregister = code_blocks(ROOT / "docs/handbuch.md", "### Ein Schema für alle Benutzer")
        before = self.classes()
        folder = ROOT / "examples/url-scheme"
        self.batch(register, folder)
        if (self.installed / "quillet.exe").exists():
            self.assertEqual(self.wine("start", "orvane-demo:x?kla=QuilletBeispielHost&copydata=%22durch%20den%20Link%22"), 0)
            self.wait_for("the link's text", lambda: "durch den Link" in self.host_log())
            self.wait_for("the answer to the link", lambda: self.host_log().count("Antwort: WM_USER") == 3)
        self.assertEqual(self.value(SCHEME + r"\shell\open\command"), r'"C:\Program Files\Quillet\quillet.exe" -url="%1"')
        self.batch(unregister, folder)
        self.assertEqual(self.classes(), before)

        # What belongs to somebody else neither comes to us nor goes with us.
        self.wine("reg", "add", SCHEME + r"\shell\open\command", "/ve", "/d", "other.exe", "/f")
        others = self.classes()
        for lines in (register, unregister):
            self.batch(lines, folder)
            self.assertEqual(self.classes(), others, lines)
        self.wine("reg", "delete", SCHEME, "/f")

    def classes(self):
        """The names of all, and all of the scheme."""
        self.wine("reg", "query", CLASSES)
        names = self.output()
        self.wine("reg", "query", SCHEME, "/s")
        return names, self.output()

    def run_recipe(self, folder):
        """The recipe looks in the default place, unless told otherwise."""
        os.environ.pop("QUILLET", None)
        if folder != self.installed:
            os.environ["QUILLET"] = self.windows_path(folder / "quillet.exe")
        return self.wine("cmd", "/c", "send-text.cmd", "Vorgang 4711", folder=ROOT / "examples/batch")

    def test_refusals_change_nothing(self):
        paths = [f"C:\\Werkzeuge {switch.upper()}x\\Quillet" for switch in switches()] + ["C:\\100%\\Quillet", "C:\\a\\..\\b"]
        self.assertEqual(len(paths), 12 + 2)
        for refused in ("URLSCHEME=orvane-demo", "REMEMBEREDDIR=C:\\a -nodlg", *(f"INSTALLDIR={path}" for path in paths)):
            self.expect_refused(refused)
        self.expect_refused("URLSCHEME=orvane-demo", "REINSTALL=ALL", "REMOVE=ALL")

        self.wine("reg", "add", r"HKLM\Software\Orvane\Quillet", "/v", "InstallDir", "/d", "C:\\a -nodlg\\", "/f")
        self.expect_refused()
        self.wine("reg", "delete", r"HKLM\Software\Orvane", "/f")

        self.wine("winecfg", "-v", "win81")
        self.addCleanup(self.wine, "winecfg", "-v", "win10")
        self.expect_refused()
        self.wine("winecfg", "-v", "win10")
        self.expect_no_file_left()

    def expect_refused(self, *properties):
        with self.subTest(properties):
            self.assertEqual(self.msiexec("/i", MSI, *properties), FAILED)
            self.assertRegex(self.log(), r"Action start [\d:]+: LaunchConditions\.(?!(.|\n)*Action start)")


class Registry(WineCase):
    """Read twice only, since that takes seconds: before all tests and after them. (Classes run in the order of their names.)"""

    def test_is_left_as_it_was(self):
        self.expect_same(self.registry_before, self.registry())


if __name__ == "__main__":
    main()
