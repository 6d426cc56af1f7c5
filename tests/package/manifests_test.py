#!/usr/bin/env python3
"""What package managers are told: manifests_test.py ROOT PACKAGES VERSION

No package has winget's JSON schema; what it asks of the fields that we use is written here from its public documentation
(version 1.6). Chocolatey's and Scoop's are checked the same way.
"""
import hashlib
import json
import re
import subprocess
import sys
from datetime import date
from xml.etree import ElementTree

import yaml

from packages import MSI, PACKAGES, ROOT, VERSION, ZIP, WithFolder, date_of_zip, main

ADDRESS = "https://download.example/quillet"
URL = f"{ADDRESS}/{MSI.name}"

VERSION_TEXT = re.compile(r'[^\\/:*?"<>|\x01-\x1f]{1,128}')
LOCALE = re.compile(r"[a-zA-Z]{2,3}(-[a-zA-Z]{1,8})*")
WEB = re.compile(r"https?://.{1,2040}")
SHA256 = re.compile(r"[A-Fa-f0-9]{64}")
# For each field a pattern for the whole text, a set of texts, or a check of its own.
COMMON = {"PackageIdentifier": re.compile(r'([^.\s\\/:*?"<>|\x01-\x1f]{1,32}\.){1,7}[^.\s\\/:*?"<>|\x01-\x1f]{1,32}'),
          "PackageVersion": VERSION_TEXT, "ManifestVersion": {"1.6.0"}}
WINGET = {
    "version": {**COMMON, "DefaultLocale": LOCALE, "ManifestType": {"version"}},
    "defaultLocale": {**COMMON, "ManifestType": {"defaultLocale"}, "PackageLocale": LOCALE,
                      "Publisher": re.compile(r".{2,256}"), "PackageName": re.compile(r".{2,256}"),
                      "License": re.compile(r".{3,512}"), "Copyright": re.compile(r".{3,512}"),
                      "ShortDescription": re.compile(r".{3,256}"), "Description": re.compile(r"(?s).{3,10000}")},
    "installer": {**COMMON, "ManifestType": {"installer"}, "Platform": [{"Windows.Desktop"}],
                  "MinimumOSVersion": re.compile(r"\d{1,5}(\.\d{1,5}){0,3}"), "InstallerType": {"msi", "wix"},
                  "Scope": {"machine"}, "InstallModes": [{"interactive", "silent", "silentWithProgress"}],
                  "InstallerSwitches": {"InstallLocation": re.compile(r".{1,512}")},
                  "UpgradeBehavior": {"install", "uninstallPrevious"}, "Commands": [re.compile(r".{1,40}")],
                  "ReleaseDate": re.compile(r"\d{4}-\d\d-\d\d"), "ProductCode": re.compile(r".{1,255}"),
                  "AppsAndFeaturesEntries": [{name: re.compile(r".{1,128}") for name in (
                      "DisplayName", "DisplayVersion", "Publisher", "ProductCode", "UpgradeCode")}],
                  "Installers": [{"Architecture": {"x64"}, "InstallerUrl": WEB, "InstallerSha256": SHA256}]},
}


def faults(rule, content, where="manifest"):
    """What in the content is not as the rule wants it. Every field of ours has a rule, and every rule a field."""
    if isinstance(rule, dict):
        if not isinstance(content, dict) or set(rule) != set(content):
            return [f"{where}: {content}"]
        return [fault for name in rule for fault in faults(rule[name], content[name], f"{where}.{name}")]
    if isinstance(rule, list):
        if not isinstance(content, list) or not content or len(set(map(str, content))) != len(content):
            return [f"{where}: {content}"]
        return [fault for item in content for fault in faults(rule[0], item, where)]
    good = isinstance(content, str) and (content in rule if isinstance(rule, set) else rule.fullmatch(content))
    return [] if good else [f"{where}: {content!r}"]


def sha256(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


class Manifests(WithFolder):
    def setUp(self):
        super().setUp()
        self.make_manifests(ADDRESS + "/").check_returncode()

    def make_manifests(self, address):
        return subprocess.run([sys.executable, "-B", ROOT / "packaging/make_manifests.py", PACKAGES, VERSION, date_of_zip(),
                               address, self.folder], capture_output=True, text=True)

    def property(self, name):
        rows = subprocess.run(["msiinfo", "export", MSI, "Property"], check=True, capture_output=True).stdout.decode()
        return next(line.split("\t")[1] for line in rows.split("\r\n") if line.startswith(name + "\t"))

    def test_winget_has_three_files_as_its_schema_wants_them(self):
        names = {"Orvane.Quillet.yaml": "version", "Orvane.Quillet.locale.de-DE.yaml": "defaultLocale",
                 "Orvane.Quillet.installer.yaml": "installer"}
        self.assertEqual({path.name for path in (self.folder / "winget").iterdir()}, set(names))
        for name, kind in names.items():
            manifest = yaml.safe_load((self.folder / "winget" / name).read_text(encoding="utf-8"))
            self.assertEqual(manifest["ManifestType"], kind)
            self.assertEqual(faults(WINGET[kind], manifest), [], name)
            self.assertEqual((manifest["PackageIdentifier"], manifest["PackageVersion"]), ("Orvane.Quillet", VERSION))

    def test_winget_speaks_of_this_msi(self):
        manifest = yaml.safe_load((self.folder / "winget/Orvane.Quillet.installer.yaml").read_text(encoding="utf-8"))
        self.assertEqual(manifest["Installers"], [{"Architecture": "x64", "InstallerUrl": URL,
                                                   "InstallerSha256": sha256(MSI).upper()}])
        self.assertEqual(manifest["ProductCode"], self.property("ProductCode"))
        self.assertEqual(manifest["AppsAndFeaturesEntries"], [{
            "DisplayName": self.property("ProductName"), "DisplayVersion": self.property("ProductVersion"),
            "Publisher": "Orvane", "ProductCode": self.property("ProductCode"),
            "UpgradeCode": self.property("UpgradeCode")}])
        date.fromisoformat(manifest["ReleaseDate"])

    def test_rules_find_what_is_wrong(self):
        manifest = yaml.safe_load((self.folder / "winget/Orvane.Quillet.installer.yaml").read_text(encoding="utf-8"))
        for name, wrong in (("PackageIdentifier", "Quillet"), ("Scope", "computer"), ("Installers", []), ("Extra", "x"),
                            ("InstallModes", ["silent", "silent"]), ("ReleaseDate", 20261121)):
            self.assertNotEqual(faults(WINGET["installer"], {**manifest, name: wrong}), [], name)

    def test_chocolatey_installs_this_msi(self):
        package = ElementTree.parse(self.folder / "chocolatey/quillet.nuspec").getroot()
        fields = {field.tag.partition("}")[2]: field.text for field in package[0]}
        self.assertEqual((fields["id"], fields["version"], fields["authors"]), ("quillet", VERSION, "Orvane"))
        self.assertTrue(all(fields.values()), fields)
        script = (self.folder / "chocolatey/tools/chocolateyinstall.ps1").read_text(encoding="utf-8")
        self.assertIn(f"url64bit       = '{URL}'", script)
        self.assertIn(f"checksum64     = '{sha256(MSI)}'", script)
        self.assertIn("Install-ChocolateyPackage @package", script)

    def test_scoop_unpacks_this_zip(self):
        manifest = json.loads((self.folder / "scoop/quillet.json").read_text(encoding="utf-8"))
        self.assertEqual(set(manifest), {"version", "description", "homepage", "license", "architecture", "extract_dir",
                                         "env_add_path"})
        self.assertEqual(manifest["architecture"], {"64bit": {"url": f"{ADDRESS}/{ZIP.name}", "hash": sha256(ZIP)}})
        self.assertEqual((manifest["version"], manifest["extract_dir"]), (VERSION, ZIP.stem))

    def test_without_an_address_there_are_none(self):
        self.assertNotEqual(self.make_manifests("").returncode, 0)
        self.assertNotEqual(self.make_manifests("C:/quillet").returncode, 0)


if __name__ == "__main__":
    main()
