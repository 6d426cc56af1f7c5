"""Makes packages from a folder with what they carry:

    make_packages.py FOLDER VERSION DATE OUTPUT…

FOLDER gets the file SHA256SUMS; then each OUTPUT, a .zip or an .msi, holds the same files. VERSION is year.number.patch, DATE
(YYYY-MM-DD) the time of every file: the same content gives the same bytes, whenever and wherever it is packed.
"""
import datetime
import hashlib
import sys
import zipfile
from pathlib import Path

from make_msi import files_in, write_msi


def sha256(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


def write_checksums(folder):
    """As sha256sum writes them, and `sha256sum -c` reads them."""
    sums = folder / "SHA256SUMS"
    sums.unlink(missing_ok=True)
    lines = [f"{sha256(folder / name)}  {name}\n" for name in files_in(folder)]
    sums.write_text("".join(lines), encoding="utf-8", newline="\n")


def write_zip(folder, date, output):
    with zipfile.ZipFile(output, "w", zipfile.ZIP_DEFLATED) as package:
        for name in sorted(files_in(folder), key=lambda name: name != "LIESMICH.txt"):
            entry = zipfile.ZipInfo(f"{output.stem}/{name}", (date.year, date.month, date.day, 0, 0, 0))
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = 0o100644 << 16
            package.writestr(entry, (folder / name).read_bytes())


def main(folder, version, date, *outputs):
    folder = Path(folder).resolve()
    time = datetime.datetime.fromisoformat(date).replace(tzinfo=datetime.timezone.utc)
    write_checksums(folder)
    for output in map(Path, outputs):
        if output.suffix == ".msi":
            write_msi(folder, version, time, output)
        else:
            write_zip(folder, time, output)


if __name__ == "__main__":
    main(*sys.argv[1:])
