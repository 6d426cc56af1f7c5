#!/usr/bin/env python3
"""Installs the MSI under Wine, uses it, and takes it away: msi_test.py ROOT PACKAGES VERSION, on a desktop"""
import hashlib
import os
import re

from packages import MSI, PACKAGES, ROOT, VERSION, expected_files, main
from wine_case import WineCase

from make_msi import files_in

OLDER = "2025.4.0"
SCHEME = "orvane-probe"
PRODUCTS = r"Software\Microsoft\Windows\CurrentVersion\Uninstall"


class Msi(WineCase):
    installed = WineCase.drive / "Program Files/Quillet"

    def expect_installed(self, folder, examples, scheme):
        self.assertEqual(files_in(folder), expected_files(examples))
        for line in (folder / "SHA256SUMS").read_text().splitlines():
            checksum, name = line.split("  ")
            if examples or not name.startswith("examples/"):
                self.assertEqual(hashlib.sha256((folder / name).read_bytes()).hexdigest(), checksum, name)
        place = self.windows_path(folder)
        [entry] = self.listed()
        self.assertLessEqual({"DisplayName": f"Quillet {VERSION}", "Publisher": "Orvane", "DisplayVersion": VERSION[2:],
                              "InstallLocation": place + "\\", "ReadMe": place + "\\docs\\handbuch.html"}.items(),
                             entry.items())
        self.assertIn("meldet deren Antwort", entry["Comments"])
        self.assertEqual([path.name for path in self.drive.rglob("Quillet*.lnk")], ["Quillet-Handbuch.lnk"])
        self.expect_scheme(folder, scheme)

    def listed(self):
        """What the list of installed programs says of each."""
        self.wine("reg", "query", "HKLM\\" + PRODUCTS, "/s")
        entries = [dict(re.findall(r"(?m)^ +(\w+) +REG_SZ *(.*?)\r?$", entry)) for entry in self.output().split("\nHKEY_")]
        return [entry for entry in entries if "DisplayName" in entry]

    def programs(self):
        return [entry["DisplayName"] for entry in self.listed()]

    def windows_path(self, path):
        return "C:\\" + path.relative_to(self.drive).as_posix().replace("/", "\\")

    def test_default_place_without_examples(self):
        self.live_and_go(self.installed)

    def test_own_place_with_examples_and_scheme(self):
        above = self.drive / "Werkzeuge für alle"  # not the installer's
        above.mkdir()
        folder = above / "Größe 5"
        self.live_and_go(folder, f"INSTALLDIR={self.windows_path(folder)}", scheme=SCHEME, examples=True)

    def live_and_go(self, folder, *properties, scheme=None, examples=False):
        """The whole life of an installation, from an older version on, after which all is as before."""
        # Windows keeps the features at an upgrade; Wine wants to be told.
        features = ("ADDLOCAL=ALL",) if examples else ()
        properties += (f"URLSCHEME={scheme}",) if scheme else ()
        older = self.older()
        self.assertEqual(self.msiexec("/i", older, *features, *properties), 0)
        self.assertEqual(self.programs(), [f"Quillet {OLDER}"])
        self.assertTrue((folder / "docs/only-in-older.html").exists())

        self.assertEqual(self.msiexec("/i", MSI, *features), 0)
        self.expect_installed(folder, examples, scheme)
        self.assertGreater((self.folder / "msi.log").stat().st_size, 1000)
        self.expect_answers(folder, scheme)
        self.assertNotEqual(self.msiexec("/i", older), 0)
        self.assertEqual(self.programs(), [f"Quillet {VERSION}"])

        (folder / "quillet.exe").unlink()
        (folder / "docs/handbuch.html").write_text("damaged")
        self.wine("reg", "delete", f"HKLM\\Software\\Classes\\{SCHEME}", "/f")
        self.assertEqual(self.msiexec("/i", MSI, "REINSTALL=ALL", "REINSTALLMODE=amus"), 0)
        self.expect_installed(folder, examples, scheme)

        self.assertEqual(self.msiexec("/x", MSI), 0)
        self.unregister_by_file()
        if folder != self.installed:
            folder.parent.rmdir()
        self.expect_nothing_left()

    def older(self):
        content = self.content("older")
        (content / "CHANGELOG.html").write_text("older")
        (content / "docs/only-in-older.html").write_text("older")
        return self.make(content, OLDER, "older-package")

    def expect_scheme(self, folder, scheme):
        """Registered as docs/security.md says, or not at all."""
        key = f"Software\\Classes\\{SCHEME}"
        if not scheme:
            self.assertIsNone(self.value(key))
            return
        text = (ROOT / "docs/security.md").read_text(encoding="utf-8")
        command = next(line.strip() for line in text.splitlines() if line.strip().endswith('-url="%1"'))
        command = command.replace("C:\\Program Files\\Quillet", self.windows_path(folder))
        self.assertEqual(self.value(key), f"URL:{SCHEME}")
        self.assertEqual(self.value(key, "URL Protocol"), "")
        self.assertEqual(self.value(key + r"\shell\open\command"), command)

    def expect_answers(self, folder, scheme):
        """Requests by a recipe, by the program's name alone, and by link are answered by the example host."""
        self.assertEqual(self.run_recipe(folder), 256 - 2)
        self.assertEqual(self.output().strip(), "Der Host ist nicht gestartet.")
        end_host = self.start_host(PACKAGES.parent / "example_host.exe", "--answer=42")
        self.assertEqual(self.run_recipe(folder), 42)
        self.assertEqual(self.output().strip(), "Der Host hat mit 42 geantwortet.")
        command = 'start "" /wait quillet.exe -kla=QuilletBeispielHost -copydata="nur mit Namen"'
        self.assertEqual(self.wine("cmd", "/c", command), 42)
        self.expect_link_answered(scheme or self.registered_by_file())
        end_host()

    def expect_link_answered(self, scheme):
        link = f"{scheme}:open?kla=QuilletBeispielHost&copydata=%22durch%20den%20Link%22"
        self.assertEqual(self.wine("start", link), 0)
        self.wait_for("the link's text", lambda: "durch den Link" in self.host_log())
        self.wait_for("the answer to the link", lambda: self.host_log().count("Antwort: WM_USER") == 3)

    def registered_by_file(self):
        """The scheme of the files for all users, which name the default place; it goes again before the program does."""
        self.assertEqual(self.wine("regedit", "/S", ROOT / "examples/url-scheme/register-all-users.reg"), 0)
        return "orvane-demo"

    def unregister_by_file(self):
        self.assertEqual(self.wine("regedit", "/S", ROOT / "examples/url-scheme/unregister-all-users.reg"), 0)

    def run_recipe(self, folder):
        """The recipe looks in the default place, unless told otherwise."""
        os.environ.pop("QUILLET", None)
        if folder != self.installed:
            os.environ["QUILLET"] = self.windows_path(folder / "quillet.exe")
        return self.wine("cmd", "/c", "send-text.cmd", "Vorgang 4711", folder=ROOT / "examples/batch")

    def test_refusals_change_nothing(self):
        for scheme in ("JavaScript", "größe", "a b", "exefile"):
            with self.subTest(scheme):
                self.assertEqual(self.msiexec("/i", MSI, f"URLSCHEME={scheme}"), 1603 % 256)
                self.assertIn("LaunchConditions", self.log())
        self.wine("winecfg", "-v", "win81")
        self.addCleanup(self.wine, "winecfg", "-v", "win10")
        self.assertEqual(self.msiexec("/i", MSI), 1603 % 256)
        self.wine("winecfg", "-v", "win10")
        self.expect_nothing_left()


if __name__ == "__main__":
    main()
