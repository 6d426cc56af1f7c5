"""Makes the MSI: wixl compiles quillet.wxs, Libmsi finishes what wixl cannot say.

Libmsi through Debian's gir1.2-libmsi-1.0 rather than the command msibuild, which cannot set the times; and the list of files is
made here rather than by wixl-heat, which gives folders another id each time.
"""
import datetime
import os
import re
import shutil
import subprocess
import tempfile
import uuid
from pathlib import Path
from xml.etree import ElementTree

import gi

gi.require_version("Libmsi", "1.0")
from gi.repository import Libmsi  # noqa: E402

HERE = Path(__file__).resolve().parent
ICON = HERE.parent / "res" / "quillet.ico"
WIX = "{http://schemas.microsoft.com/wix/2006/wi}"
ElementTree.register_namespace("", WIX[1:-1])

# Whatever the installer has to recognise again gets an id that follows from its name. Never change this number.
NAMES = uuid.UUID("e6304ead-4d73-47a5-b9f6-54128203fad5")

# Of the examples that quillet.wxs does not name, what comes without being asked for, because the handbook begins with it.
ALWAYS = ("examples/host/example_host.exe", "examples/call-builder/call-builder.html")
# The code page in which the tables' texts are stored: that of German.
CODE_PAGE = 1252
STATEMENTS = (
    # Without a version, the installer would rather keep an old program file than replace it.
    "UPDATE `File` SET `Version` = '{version}.0', `Language` = '1031' WHERE `File` = 'quillet.exe'",
    # What may be given on the command line reaches the part of the installer that has the rights.
    "UPDATE `Property` SET `Value` = 'WIX_DOWNGRADE_DETECTED;WIX_UPGRADE_DETECTED;INSTALLDIR;REMEMBEREDDIR;URLSCHEME;"
    "WINDOWSBUILD' WHERE `Property` = 'SecureCustomProperties'")


def guid(name):
    return str(uuid.uuid5(NAMES, name)).upper()


def identifier(path):
    """A row's key in the installer's tables."""
    return re.sub(r"[^\w.]", "_", path)


def product_code(version):
    return guid("product " + version)


def upgrade_code():
    return ElementTree.parse(HERE / "quillet.wxs").find(WIX + "Product").get("UpgradeCode")


def installer_version(version):
    """The installer compares 255.255.65535 at most."""
    year, number, patch = map(int, version.split("."))
    return f"{year - 2000}.{number}.{patch}"


def files_in(folder):
    return sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*") if path.is_file())


def add_files(product, files):
    """A component for each file that quillet.wxs does not name; the installer recognises it by the path in every version."""
    def find(kind, name):
        return product.find(f".//{WIX}{kind}[@Id='{name}']")

    def directory(path):
        parent, _, name = path.rpartition("/")
        found = find("Directory", identifier(path) if path else "INSTALLDIR")
        return found if found is not None else ElementTree.SubElement(
            directory(parent), WIX + "Directory", Id=identifier(path), Name=name)

    for path in files:
        name = identifier(path)
        if find("Component", name) is None:
            component = ElementTree.SubElement(directory(path.rpartition("/")[0]), WIX + "Component", Id=name, Guid="*",
                                               Win64="yes")
            ElementTree.SubElement(component, WIX + "File", Id=name, KeyPath="yes", Source=f"files/{path}")
            feature = find("Feature", "Examples" if path.startswith("examples/") and path not in ALWAYS else "Quillet")
            ElementTree.SubElement(feature, WIX + "ComponentRef", Id=name)


def compile_tables(folder, version, date, work):
    """wixl's part; returns the MSI, which is not finished."""
    shutil.copy(ICON, work)
    shutil.copytree(folder, work / "files")  # wixl takes relative paths only
    document = ElementTree.parse(HERE / "quillet.wxs")
    add_files(document.find(WIX + "Product"), files_in(folder))
    document.write(work / "quillet.wxs", encoding="utf-8", xml_declaration=True)
    for path in work.rglob("*"):
        os.utime(path, (date.timestamp(), date.timestamp()))
    variables = {"Version": version, "InstallerVersion": installer_version(version), "ProductCode": product_code(version)}
    definitions = [word for name, value in variables.items() for word in ("--define", f"{name}={value}")]
    subprocess.run(["wixl", "--arch", "x64", "--output", "quillet.msi", *definitions, "quillet.wxs"],
                   cwd=work, env={**os.environ, "TZ": "UTC"}, check=True)
    return work / "quillet.msi"


def finish(msi, version, date, package_code):
    database = Libmsi.Database.new(str(msi), Libmsi.DbFlags.TRANSACT, None)
    code_page = msi.with_name("code-page.idt")
    code_page.write_text(f"\r\n\r\n{CODE_PAGE}\t_ForceCodepage\r\n", newline="")
    database.import_(str(code_page))
    for statement in STATEMENTS:
        Libmsi.Query.new(database, statement.format(version=version)).execute(None)

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
