"""Writes what the programs consist of, as CycloneDX JSON: make_sbom.py FOLDER VERSION DATE COMPILER OUTPUT MAP…

FOLDER has the programs as they are packed; MAP is a linker's map. The programs with their hashes, the Debian packages of which
libraries are linked into them, with version and licences, and the compiler. The same content gives the same bytes.
"""
import json
import sys
import uuid
from pathlib import Path

import linked_libraries
from make_notices import OWNER
from make_packages import sha256

NAMES = uuid.UUID("5dd59b95-5d6c-4ee5-a04e-0b37e66e5f0b")
CYCLONEDX = "1.6"


def program(path, name, version):
    return {"type": "application", "bom-ref": name, "name": name, "version": version,
            "supplier": {"name": "Orvane"}, "copyright": OWNER,
            "hashes": [{"alg": "SHA-256", "content": sha256(path)}]}


def debian(package, kind, **more):
    # A plus sign has to be escaped in a package URL.
    name, version = (text.replace("+", "%2B") for text in (package.name, package.version))
    return {"type": kind, "bom-ref": f"{kind} {package.name}", "name": package.name, "version": package.version,
            "supplier": {"name": "Debian"}, **more, "purl": f"pkg:deb/debian/{name}@{version}?arch={package.architecture}"}


def licence(name):
    if " WITH " in name:
        return {"expression": name}
    known = name in linked_libraries.SPDX.values()
    return {"license": {"id" if known else "name": name}}


def bill(folder, version, date, compiler_command, link_maps):
    main_program = program(folder / "quillet.exe", "quillet.exe", version)
    samples = [program(path, path.relative_to(folder).as_posix(), version)
               for path in sorted(folder.glob("examples/**/*.exe"))]
    maps = {Path(name).stem: name for name in link_maps}
    linked = {item["bom-ref"]: linked_libraries.linked_packages([maps[Path(item["name"]).stem]])
              for item in (main_program, *samples)}
    libraries = [debian(package, "library", description="linked: " + ", ".join(names),
                        licenses=[licence(name) for name in package.licences()])
                 for package, names in linked_libraries.linked_packages(link_maps).items()]
    compiler = debian(linked_libraries.package_of(Path(compiler_command).resolve()), "application", scope="excluded",
                      description="the compiler, which is not part of the program")
    return {
        "bomFormat": "CycloneDX", "specVersion": CYCLONEDX, "version": 1,
        "metadata": {"timestamp": f"{date}T00:00:00Z", "component": main_program},
        "components": [*samples, *libraries, compiler],
        "dependencies": [{"ref": name, "dependsOn": [f"library {package.name}" for package in packages]}
                         for name, packages in linked.items()],
    }


def main(folder, version, date, compiler_command, output, *link_maps):
    content = bill(Path(folder), version, date, compiler_command, link_maps)
    content["serialNumber"] = uuid.uuid5(NAMES, json.dumps(content)).urn
    Path(output).write_text(json.dumps(content, indent=2, ensure_ascii=False) + "\n", encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main(*sys.argv[1:])
