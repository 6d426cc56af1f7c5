"""Writes what package managers want to know of the packages: make_manifests.py PACKAGES VERSION DATE ADDRESS OUTPUT

PACKAGES has the finished ZIP and MSI, signed if they are to be: their hashes go into the manifests. ADDRESS is the
folder of the web from which both can be had, the one thing that no build can know. The manifests come into
OUTPUT/winget, OUTPUT/chocolatey and OUTPUT/scoop.
"""
import json
import sys
from pathlib import Path
from xml.etree import ElementTree

import yaml

from make_msi import installer_version, product_code, upgrade_code
from make_notices import OWNER
from make_packages import sha256

WINGET_NAME = "Orvane.Quillet"
WINGET_SCHEMA = "1.6.0"
NUSPEC = "http://schemas.microsoft.com/packaging/2015/06/nuspec.xsd"

SUMMARY = "Übergibt einer laufenden Anwendung eine Nachricht und meldet deren Antwort als Exitcode"
DESCRIPTION = (SUMMARY + ". Ein Skript, eine Verknüpfung, ein Programm oder ein Link startet quillet.exe; es sucht das "
               "Fenster der Anwendung, holt es auf Wunsch nach vorn, übergibt eine Benachrichtigung oder einen Text und "
               "wartet auf die Antwort.")
# The first Windows 10, as the MSI's own condition says.
OLDEST_WINDOWS = "10.0.10240.0"
INSTALL_SCRIPT = """$ErrorActionPreference = 'Stop'
$package = @{{
    packageName    = 'quillet'
    fileType       = 'msi'
    url64bit       = '{url}'
    checksum64     = '{sha256}'
    checksumType64 = 'sha256'
    silentArgs     = '/qn /norestart'
    validExitCodes = @(0, 3010)
}}
Install-ChocolateyPackage @package
"""


def write(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text, encoding="utf-8", newline="\n")


def winget(msi, version, date, url):
    """The three files that make one version, by the end of the file's name."""
    code = f"{{{product_code(version)}}}"
    manifests = {
        "": {"DefaultLocale": "de-DE", "ManifestType": "version"},
        ".locale.de-DE": {
            "PackageLocale": "de-DE", "Publisher": "Orvane", "PackageName": "Quillet", "License": OWNER,
            "Copyright": "Copyright © 2026 Orvane", "ShortDescription": SUMMARY, "Description": DESCRIPTION,
            "ManifestType": "defaultLocale"},
        ".installer": {
            "Platform": ["Windows.Desktop"], "MinimumOSVersion": OLDEST_WINDOWS, "InstallerType": "msi", "Scope": "machine",
            "InstallModes": ["silent", "silentWithProgress"],
            "InstallerSwitches": {"InstallLocation": 'INSTALLDIR="<INSTALLPATH>"'},
            "UpgradeBehavior": "install", "Commands": ["quillet"], "ReleaseDate": date, "ProductCode": code,
            # The list of programs has another number than the file.
            "AppsAndFeaturesEntries": [{"DisplayName": f"Quillet {version}", "DisplayVersion": installer_version(version),
                                        "Publisher": "Orvane", "ProductCode": code, "UpgradeCode": f"{{{upgrade_code()}}}"}],
            "Installers": [{"Architecture": "x64", "InstallerUrl": url, "InstallerSha256": sha256(msi).upper()}],
            "ManifestType": "installer"}}
    return {suffix: {"PackageIdentifier": WINGET_NAME, "PackageVersion": version, **manifest, "ManifestVersion": WINGET_SCHEMA}
            for suffix, manifest in manifests.items()}


def nuspec(version, address):
    package = ElementTree.Element("package", xmlns=NUSPEC)
    metadata = ElementTree.SubElement(package, "metadata")
    for name, text in {"id": "quillet", "version": version, "title": "Quillet", "authors": "Orvane", "owners": "Orvane",
                       "projectUrl": address, "copyright": OWNER, "requireLicenseAcceptance": "false",
                       "summary": SUMMARY, "description": DESCRIPTION, "tags": "quillet wm_copydata url"}.items():
        ElementTree.SubElement(metadata, name).text = text
    files = ElementTree.SubElement(package, "files")
    ElementTree.SubElement(files, "file", src="tools\\**", target="tools")
    ElementTree.indent(package)
    return '<?xml version="1.0" encoding="utf-8"?>\n' + ElementTree.tostring(package, encoding="unicode") + "\n"


def scoop(archive, version, address):
    return {"version": version, "description": SUMMARY, "homepage": address, "license": OWNER,
            "architecture": {"64bit": {"url": f"{address}/{archive.name}", "hash": sha256(archive)}},
            "extract_dir": archive.stem,
            # No "bin": its launcher would stand between the caller and the program's raw command line.
            "env_add_path": "."}


def main(packages, version, date, address, output):
    if not address.startswith(("https://", "http://")):
        sys.exit(f"make_manifests: {address} is no address of the web")
    packages, output, address = Path(packages), Path(output), address.rstrip("/")
    msi, archive = (packages / f"Quillet-{version}-x64.{kind}" for kind in ("msi", "zip"))
    url = f"{address}/{msi.name}"
    for suffix, manifest in winget(msi, version, date, url).items():
        write(output / f"winget/{WINGET_NAME}{suffix}.yaml",
              yaml.safe_dump(manifest, sort_keys=False, allow_unicode=True, width=1000))
    write(output / "chocolatey/quillet.nuspec", nuspec(version, address))
    write(output / "chocolatey/tools/chocolateyinstall.ps1", INSTALL_SCRIPT.format(url=url, sha256=sha256(msi)))
    write(output / "scoop/quillet.json", json.dumps(scoop(archive, version, address), indent=4, ensure_ascii=False) + "\n")


if __name__ == "__main__":
    main(*sys.argv[1:])
