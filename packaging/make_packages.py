#!/usr/bin/env python3
"""Makes the packages from a folder with what they carry:

    make_packages.py FOLDER VERSION DATE OUTPUT

FOLDER gets the file SHA256SUMS; then OUTPUT.zip and OUTPUT.msi hold the same files. VERSION is year.number.patch, DATE
(YYYY-MM-DD) the time of every file: the same content gives the same bytes, whenever and wherever it is packed.

The MSI is made by wixl from quillet.wxs and finished by msibuild, both from Debian's packages wixl and msitools.
"""
import datetime
import hashlib
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import uuid
import zipfile
from pathlib import Path
from xml.etree import ElementTree

HERE = Path(__file__).resolve().parent
ICON = HERE.parent / "res" / "quillet.ico"

# Whatever the installer has to recognise again gets an id that follows from its name. Never change this number.
NAMES = uuid.UUID("e6304ead-4d73-47a5-b9f6-54128203fad5")

# Files that appear in the start menu, and as what.
START_MENU = {"docs/handbuch.html": "Quillet-Handbuch"}


def guid(name):
    return str(uuid.uuid5(NAMES, name)).upper()


def identifier(name):
    """A row's key in the installer's tables."""
    return "x" + hashlib.sha256(name.encode()).hexdigest()[:32]


def files_in(folder):
    return sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*") if path.is_file())


def write_checksums(folder):
    """As sha256sum writes them, and `sha256sum -c` reads them."""
    sums = folder / "SHA256SUMS"
    sums.unlink(missing_ok=True)
    lines = [f"{hashlib.sha256((folder / name).read_bytes()).hexdigest()}  {name}\n" for name in files_in(folder)]
    sums.write_text("".join(lines), encoding="utf-8", newline="\n")


def write_zip(folder, date, output):
    with zipfile.ZipFile(output, "w", zipfile.ZIP_DEFLATED) as package:
        for name in files_in(folder):
            entry = zipfile.ZipInfo(f"{output.stem}/{name}", (date.year, date.month, date.day, 0, 0, 0))
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = 0o100644 << 16
            package.writestr(entry, (folder / name).read_bytes())


def write_file_list(folder, output):
    """The files as wixl wants them: a component each, which the installer recognises by the path in every version."""
    root = ElementTree.Element("Wix", xmlns="http://schemas.microsoft.com/wix/2006/wi")
    fragment = ElementTree.SubElement(root, "Fragment")
    group = ElementTree.SubElement(fragment, "ComponentGroup", Id="Files")
    directories = {"": ElementTree.SubElement(fragment, "DirectoryRef", Id="INSTALLDIR")}

    def directory(path):
        if path not in directories:
            parent, _, name = path.rpartition("/")
            directories[path] = ElementTree.SubElement(directory(parent), "Directory", Id=identifier(path), Name=name)
        return directories[path]

    for path in files_in(folder):
        parent, _, name = path.rpartition("/")
        component = ElementTree.SubElement(directory(parent), "Component", Id=identifier(path), Guid=guid(path),
                                           Win64="yes")
        file = ElementTree.SubElement(component, "File", Id=identifier(path), Name=name, KeyPath="yes",
                                      Source=f"files/{path}")
        if path in START_MENU:
            ElementTree.SubElement(file, "Shortcut", Id=identifier("link to " + path), Directory="ProgramMenuFolder",
                                   Name=START_MENU[path], Target=f"[#{identifier(path)}]")
        ElementTree.SubElement(group, "ComponentRef", Id=identifier(path))
    ElementTree.ElementTree(root).write(output, encoding="utf-8", xml_declaration=True)


def set_times(msi, date):
    """wixl notes the present time as that of the package's creation and last change."""
    content = bytearray(msi.read_bytes())
    format_id = bytes.fromhex("e0859ff2f94f6810ab9108002b27b3d9")
    start = content.index(format_id) - 28
    section = start + struct.unpack_from("<I", content, start + 44)[0]
    since_1601 = date - datetime.datetime(1601, 1, 1, tzinfo=datetime.timezone.utc)
    created, saved, time_type = 12, 13, 64
    for index in range(struct.unpack_from("<I", content, section + 4)[0]):
        number, offset = struct.unpack_from("<II", content, section + 8 + 8 * index)
        if number in (created, saved):
            assert struct.unpack_from("<I", content, section + offset) == (time_type,)
            struct.pack_into("<Q", content, section + offset + 4, int(since_1601.total_seconds()) * 10**7)
    msi.write_bytes(content)


def write_msi(folder, version, date, output):
    year, number, patch = map(int, version.split("."))
    variables = {
        "Version": version,
        # The installer compares 255.255.65535 at most.
        "InstallerVersion": f"{year - 2000}.{number}.{patch}",
        "ProductCode": guid("product " + version),
    }
    with tempfile.TemporaryDirectory() as work:
        work = Path(work)
        shutil.copy(HERE / "quillet.wxs", work)
        shutil.copy(ICON, work)
        shutil.copytree(folder, work / "files")  # wixl takes relative paths only
        write_file_list(folder, work / "files.wxs")
        for path in work.rglob("*"):
            os.utime(path, (date.timestamp(), date.timestamp()))

        def run(*command):
            subprocess.run(command, cwd=work, env={**os.environ, "TZ": "UTC"}, check=True)

        definitions = [word for name, value in variables.items() for word in ("--define", f"{name}={value}")]
        run("wixl", "--arch", "x64", "--output", "quillet.msi", *definitions, "quillet.wxs", "files.wxs")

        # What wixl cannot say. Without a version, the installer would rather keep an old program file than replace it.
        run("msibuild", "quillet.msi", "-q",
            f"UPDATE `File` SET `Version` = '{version}.0', `Language` = '1031' WHERE `FileName` = 'quillet.exe'")
        # Another content is another package, also under the same version.
        package_code = guid(f"package {version} " + (folder / "SHA256SUMS").read_text(encoding="utf-8"))
        run("msibuild", "quillet.msi", "-s", f"Quillet {version}", "Orvane", "x64;1031", f"{{{package_code}}}")
        set_times(work / "quillet.msi", date)
        shutil.copy(work / "quillet.msi", output)


def main(folder, version, date, output):
    folder = Path(folder).resolve()
    date = datetime.datetime.fromisoformat(date).replace(tzinfo=datetime.timezone.utc)
    write_checksums(folder)
    write_zip(folder, date, Path(output + ".zip"))
    write_msi(folder, version, date, Path(output + ".msi"))


if __name__ == "__main__":
    main(*sys.argv[1:])
