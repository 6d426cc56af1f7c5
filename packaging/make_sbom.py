#!/usr/bin/env python3
"""Writes what the programs consist of, as CycloneDX JSON: make_sbom.py FOLDER VERSION DATE COMPILER OUTPUT MAP…

FOLDER has the programs as they are packed; MAP is a linker's map. The programs with their hashes, the libraries linked
into them with their Debian versions and licences, and the compiler. The same content gives the same bytes.
"""
import hashlib
import json
import sys
import uuid
from pathlib import Path

import linked_libraries
from make_notices import OWNER

NAMES = uuid.UUID("5dd59b95-5d6c-4ee5-a04e-0b37e66e5f0b")
CYCLONEDX = "1.6"


def sha256(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


def program(path, name, version):
    return {"type": "application", "bom-ref": name, "name": name, "version": version,
            "supplier": {"name": "Orvane"}, "copyright": OWNER,
            "hashes": [{"alg": "SHA-256", "content": sha256(path)}]}


def debian_url(package):
    # A plus sign has to be escaped in a package URL.
    name, version = (text.replace("+", "%2B") for text in (package.name, package.version))
    return f"pkg:deb/debian/{name}@{version}?arch={package.architecture}"


def licence(name):
    if " WITH " in name:
        return {"expression": name}
    known = name in linked_libraries.SPDX.values()
    return {"license": {"id" if known else "name": name}}


def library(linked):
    return {"type": "library", "bom-ref": f"{linked.package.name}/{linked.name}", "name": linked.name,
            "version": linked.package.version, "supplier": {"name": "Debian"},
            "licenses": [licence(name) for name in linked.licences], "purl": debian_url(linked.package)}


def compiler(command):
    package = linked_libraries.compiler(command)
    return {"type": "application", "bom-ref": f"compiler {package.name}", "name": package.name,
            "version": package.version, "supplier": {"name": "Debian"}, "scope": "excluded",
            "description": "the compiler, which is not part of the program", "purl": debian_url(package)}


def bill(folder, version, date, compiler_command, link_maps):
    main_program = program(folder / "quillet.exe", "quillet.exe", version)
    samples = [program(path, path.relative_to(folder).as_posix(), version)
               for path in sorted(folder.glob("examples/**/*.exe"))]
    maps = {Path(name).stem: name for name in link_maps}
    linked = {item["bom-ref"]: linked_libraries.linked_libraries([maps[Path(item["name"]).stem]])
              for item in (main_program, *samples)}
    libraries = sorted(set().union(*linked.values()))
    return {
        "bomFormat": "CycloneDX", "specVersion": CYCLONEDX, "version": 1,
        "metadata": {"timestamp": f"{date}T00:00:00Z", "component": main_program},
        "components": [*samples, *map(library, libraries), compiler(compiler_command)],
        "dependencies": [{"ref": name, "dependsOn": [library(item)["bom-ref"] for item in items]}
                         for name, items in linked.items()],
    }


def main(folder, version, date, compiler_command, output, *link_maps):
    content = bill(Path(folder), version, date, compiler_command, link_maps)
    content["serialNumber"] = uuid.uuid5(NAMES, json.dumps(content)).urn
    Path(output).write_text(json.dumps(content, indent=2, ensure_ascii=False) + "\n", encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main(*sys.argv[1:])
