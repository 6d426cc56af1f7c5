"""Makes the MSI: wixl compiles quillet.wxs, Libmsi finishes what wixl cannot say.

Libmsi through Debian's gir1.2-libmsi-1.0 rather than the command msibuild, which cannot set the times.
"""
import datetime
import hashlib
import os
import shutil
import string
import subprocess
import tempfile
import uuid
from pathlib import Path
from xml.etree import ElementTree

import gi

import url_scheme

gi.require_version("Libmsi", "1.0")
from gi.repository import Libmsi  # noqa: E402

HERE = Path(__file__).resolve().parent
ICON = HERE.parent / "res" / "quillet.ico"
WIX = "http://schemas.microsoft.com/wix/2006/wi"
ElementTree.register_namespace("", WIX)

# Whatever the installer has to recognise again gets an id that follows from its name. Never change this number.
NAMES = uuid.UUID("e6304ead-4d73-47a5-b9f6-54128203fad5")

PROGRAM = "quillet.exe"
# Files that appear in the start menu, and as what.
START_MENU = {"docs/handbuch.html": "Quillet-Handbuch"}
# The code page in which the tables' texts are stored: that of German.
CODE_PAGE = 1252


def guid(name):
    return str(uuid.uuid5(NAMES, name)).upper()


def identifier(name):
    """A row's key in the installer's tables."""
    return "x" + hashlib.sha256(name.encode()).hexdigest()[:32]


def product_code(version):
    return guid("product " + version)


def upgrade_code():
    return ElementTree.parse(HERE / "quillet.wxs").find(f"{{{WIX}}}Product").get("UpgradeCode")


def installer_version(version):
    """The installer compares 255.255.65535 at most."""
    year, number, patch = map(int, version.split("."))
    return f"{year - 2000}.{number}.{patch}"


def files_in(folder):
    return sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*") if path.is_file())


def element(parent, name, **attributes):
    return ElementTree.SubElement(parent, f"{{{WIX}}}{name}", **attributes)


def write_file_list(folder, output):
    """The files as wixl wants them: a component each, which the installer recognises by the path in every version."""
    root = ElementTree.Element(f"{{{WIX}}}Wix")
    fragment = element(root, "Fragment")
    groups = {name: element(fragment, "ComponentGroup", Id=name) for name in ("Program", "Examples")}
    directories = {"": element(fragment, "DirectoryRef", Id="INSTALLDIR")}

    def directory(path):
        if path not in directories:
            parent, _, name = path.rpartition("/")
            directories[path] = element(directory(parent), "Directory", Id=identifier(path), Name=name)
        return directories[path]

    for path in files_in(folder):
        parent, _, name = path.rpartition("/")
        component = element(directory(parent), "Component", Id=identifier(path), Guid=guid(path), Win64="yes")
        file = element(component, "File", Id=identifier(path), Name=name, KeyPath="yes", Source=f"files/{path}")
        if path in START_MENU:
            element(file, "Shortcut", Id=identifier("link to " + path), Directory="ProgramMenuFolder",
                    Name=START_MENU[path], Target=f"[#{identifier(path)}]")
        element(groups["Examples" if path.startswith("examples/") else "Program"], "ComponentRef", Id=identifier(path))
    ElementTree.ElementTree(root).write(output, encoding="utf-8", xml_declaration=True)


def write_product(output):
    """quillet.wxs with the conditions for the scheme."""
    document = ElementTree.parse(HERE / "quillet.wxs")
    product = document.find(f"{{{WIX}}}Product")
    element(product, "Property", Id=url_scheme.QUOTE, Value='"')
    for condition, sentence in url_scheme.conditions():
        element(product, "Condition", Message=sentence).text = condition.replace("$", "$$")  # one is for wixl
    document.write(output, encoding="utf-8", xml_declaration=True)


def compile_tables(folder, version, date, work):
    """wixl's part; returns the MSI, which is not finished."""
    shutil.copy(ICON, work)
    shutil.copytree(folder, work / "files")  # wixl takes relative paths only
    write_file_list(folder, work / "files.wxs")
    write_product(work / "quillet.wxs")
    for path in work.rglob("*"):
        os.utime(path, (date.timestamp(), date.timestamp()))
    variables = {"Version": version, "InstallerVersion": installer_version(version), "ProductCode": product_code(version)}
    definitions = [word for name, value in variables.items() for word in ("--define", f"{name}={value}")]
    subprocess.run(["wixl", "--arch", "x64", "--output", "quillet.msi", *definitions, "quillet.wxs", "files.wxs"],
                   cwd=work, env={**os.environ, "TZ": "UTC"}, check=True)
    return work / "quillet.msi"


def statements(version):
    text = string.Template((HERE / "quillet.sql").read_text(encoding="utf-8"))
    lines = text.substitute(program=identifier(PROGRAM), version=version).splitlines()
    return [line for line in lines if line and not line.startswith("--")]


def finish(msi, version, date, package_code):
    database = Libmsi.Database.new(str(msi), Libmsi.DbFlags.TRANSACT, None)
    code_page = msi.with_name("code-page.idt")
    code_page.write_text(f"\r\n\r\n{CODE_PAGE}\t_ForceCodepage\r\n", newline="")
    database.import_(str(code_page))
    for statement in statements(version):
        Libmsi.Query.new(database, statement).execute(None)

    information = Libmsi.SummaryInfo.new(database, 10)
    information.set_string(Libmsi.Property.SUBJECT, f"Quillet {version}")
    information.set_string(Libmsi.Property.TEMPLATE, "x64;1031")
    information.set_string(Libmsi.Property.UUID, f"{{{package_code}}}")
    since_1601 = date - datetime.datetime(1601, 1, 1, tzinfo=datetime.timezone.utc)
    for time in (Libmsi.Property.CREATED_TM, Libmsi.Property.LASTSAVED_TM):
        information.set_filetime(time, int(since_1601.total_seconds()) * 10**7)
    information.save(database)
    database.commit()


def write_msi(folder, version, date, output):
    # Another content is another package, also under the same version.
    package_code = guid(f"package {version} " + (folder / "SHA256SUMS").read_text(encoding="utf-8"))
    with tempfile.TemporaryDirectory() as work:
        msi = compile_tables(folder, version, date, Path(work))
        finish(msi, version, date, package_code)
        shutil.copy(msi, output)
