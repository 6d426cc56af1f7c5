"""What package managers are told: manifests_test.py ROOT PACKAGES VERSION

No Debian package has their schemas; the fields stand in packaging/make_manifests.py as their public documentation asks for
them, and here is what would be wrong with another package.
"""
import hashlib
import json
import subprocess
import sys
from datetime import date
from xml.etree import ElementTree

import yaml

from packages import MSI, PACKAGES, ROOT, VERSION, ZIP, WithFolder, date_of_zip, main

ADDRESS = "https://download.example/quillet"
URL = f"{ADDRESS}/{MSI.name}"


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

    def test_winget_speaks_of_this_msi(self):
        manifests = {path.name: yaml.safe_load(path.read_text(encoding="utf-8")) for path in (self.folder / "winget").iterdir()}
        self.assertEqual({name: manifest["ManifestType"] for name, manifest in manifests.items()}, {
            "Orvane.Quillet.yaml": "version", "Orvane.Quillet.locale.de-DE.yaml": "defaultLocale",
            "Orvane.Quillet.installer.yaml": "installer"})
        self.assertEqual({(manifest["PackageIdentifier"], manifest["PackageVersion"]) for manifest in manifests.values()},
                         {("Orvane.Quillet", VERSION)})
        manifest = manifests["Orvane.Quillet.installer.yaml"]
        self.assertEqual(manifest["Installers"], [{"Architecture": "x64", "InstallerUrl": URL,
                                                   "InstallerSha256": sha256(MSI).upper()}])
        self.assertEqual(manifest["ProductCode"], self.property("ProductCode"))
        self.assertEqual(manifest["AppsAndFeaturesEntries"], [{
            "DisplayName": self.property("ProductName"), "DisplayVersion": self.property("ProductVersion"),
            "Publisher": "Orvane", "ProductCode": self.property("ProductCode"),
            "UpgradeCode": self.property("UpgradeCode")}])
        date.fromisoformat(manifest["ReleaseDate"])

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
