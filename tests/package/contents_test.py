"""What the packages hold, and what is told of it: contents_test.py ROOT PACKAGES VERSION"""
import functools
import hashlib
import json
import os
import re
import subprocess
import unittest
import zipfile
from pathlib import Path, PurePosixPath
from urllib.parse import unquote, urlsplit

import lxml.html

from packages import NAME, PACKAGES, ROOT, VERSION, ZIP, code_blocks, date_of_zip, expected_files, main

# Libraries of the toolchain of which every program has something.
ALWAYS_LINKED = ("libgcc.a", "libgcc_eh.a", "libstdc++.a", "libmingw32.a", "libmingwex.a", "libmsvcrt.a", "crt2u.o")
COMPILER = "x86_64-w64-mingw32-g++-posix"


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


@functools.cache
def package_of(library):
    """(package, version) of a library of the toolchain, as its own package manager tells."""
    path = Path(output_of(COMPILER, f"-print-file-name={library}").strip()).resolve()
    package = output_of("dpkg-query", "--search", str(path)).partition(":")[0]
    return package, output_of("dpkg-query", "--show", "--showformat=${Version}", package)


class Zip(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with zipfile.ZipFile(ZIP) as package:
            cls.names = package.namelist()
            cls.files = {name.removeprefix(NAME + "/"): package.read(name) for name in cls.names}
        cls.pages = {name: lxml.html.document_fromstring(content) for name, content in cls.files.items()
                     if name.endswith(".html")}

    def test_holds_what_it_should_in_one_folder(self):
        self.assertEqual(sorted(self.files), expected_files())
        self.assertEqual([name for name in self.names if not name.startswith(NAME + "/")], [])

    def test_first_comes_what_to_read_first(self):
        self.assertEqual(self.names[0], f"{NAME}/LIESMICH.txt")
        self.assertEqual(min((name for name in self.files if "/" not in name), key=str.lower), "LIESMICH.txt")
        text = self.files["LIESMICH.txt"].decode()
        self.assertEqual((text.count("\r\n"), text.count("\n")), (10, 10))
        self.assertIn(f"Quillet {VERSION} ", text)
        for name in re.findall(r"docs\\\w+\.html", text):
            self.assertIn(name.replace("\\", "/"), self.files)
        handbook = code_blocks(ROOT / "docs/handbuch.md", "## Der erste Aufruf")
        self.assertEqual(code_blocks(ROOT / "packaging/LIESMICH.txt"), handbook[:1])

    def test_checksums_are_those_of_all_other_files(self):
        sums = {name: hashlib.sha256(content).hexdigest()
                for name, content in self.files.items() if name != "SHA256SUMS"}
        noted = dict(reversed(line.split("  ")) for line in self.files["SHA256SUMS"].decode().splitlines())
        self.assertEqual(noted, sums)

    def test_program_is_the_one_that_was_tested(self):
        self.assertEqual(self.files["quillet.exe"], (PACKAGES.parent / "quillet.exe").read_bytes())

    @staticmethod
    def links(page, loaded=False):
        """Addresses of links, or of all that a page loads, its style's included."""
        return [address for element, _, address, _ in page.iterlinks() if (element.tag == "a") != loaded]

    def test_pages_load_nothing_from_outside(self):
        for name, page in self.pages.items():
            with self.subTest(name):
                self.assertEqual([target[:80] for target in self.links(page, loaded=True) if not target.startswith("data:")], [])

    def test_handbook_carries_its_pictures(self):
        pictures = self.pages["docs/handbuch.html"].xpath("//img[starts-with(@src, 'data:image/png;base64,')]")
        self.assertEqual(len(pictures), (ROOT / "docs/handbuch.md").read_text(encoding="utf-8").count("](images/"))
        self.assertGreater(len(pictures), 0)

    def test_pages_tell_their_language_and_version(self):
        english = {"docs/CHANGELOG.html", "docs/host-guide.html", "docs/security.html"}
        for name in filter(lambda name: name.startswith("docs/"), self.pages):
            page = self.pages[name]
            self.assertEqual((page.get("lang"), len(page.xpath("//h1"))), ("en" if name in english else "de", 1), name)
            self.assertIn(f"Quillet {VERSION}<", self.files[name].decode(), name)

    def test_every_link_leads_to_something_in_the_package(self):
        for name, page in self.pages.items():
            for parts in filter(lambda parts: not parts.scheme, map(urlsplit, self.links(page))):
                with self.subTest(page=name, link=parts):
                    target = os.path.normpath(PurePosixPath(name).parent / unquote(parts.path)) if parts.path else name
                    self.assertIn(target, self.files)
                    if parts.fragment:
                        self.assertIn(unquote(parts.fragment), self.pages[target].xpath("//@id"))

    def test_table_of_contents_names_every_chapter(self):
        page = self.pages["docs/handbuch.html"]
        chapters = page.xpath("//h2/@id")
        self.assertGreater(len(chapters), 10)
        links = [unquote(link) for link in self.links(page) if link.startswith("#")]
        first = links.index("#" + chapters[0])  # before it is what people come for most
        self.assertEqual(links[first:first + len(chapters)], ["#" + chapter for chapter in chapters])

    def test_notices_are_the_whole_copyright_files_of_what_is_linked(self):
        notices = self.files["THIRD-PARTY-NOTICES.txt"].decode().replace("\r\n", "\n")
        for library in ALWAYS_LINKED:
            package, version = package_of(library)
            with self.subTest(library):
                self.assertRegex(notices, rf"[-,] {re.escape(Path(library).stem)}(,|\n)")
                self.assertIn(f"package {package}, version {version}\n", notices)
                self.assertIn(Path(f"/usr/share/doc/{package}/copyright").read_text().rstrip("\n"), notices)

    def test_notices_name_every_library_of_every_program(self):
        notices = self.files["THIRD-PARTY-NOTICES.txt"].decode()
        for link_map in ("quillet.map", "example_host.map", "example_caller.map"):
            members = (PACKAGES.parent / link_map).read_text().partition("\nDiscarded")[0]
            for library in set(re.findall(r"^/.*/([^/]+)\.a\(", members, re.MULTILINE)):
                self.assertRegex(notices, rf"[-,] {re.escape(library)}[,\r]", link_map)

    def test_owner_has_chosen_no_licence(self):
        sentence = "© 2026 Orvane, all rights reserved until the owner chooses a licence"
        self.assertIn(sentence, self.files["THIRD-PARTY-NOTICES.txt"].decode())
        self.assertIn(sentence, (ROOT / "README.md").read_text(encoding="utf-8"))
        self.assertEqual([name for name in self.files if re.match(r"(?i)licen[cs]e|copying", name)], [])


class Bill(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.bill = json.loads((PACKAGES / f"{NAME}.cdx.json").read_text(encoding="utf-8"))
        cls.components = {component["bom-ref"]: component for component in cls.bill["components"]}

    def test_names_version_hash_and_day(self):
        program = self.bill["metadata"]["component"]
        self.assertEqual((program["name"], program["version"]), ("quillet.exe", VERSION))
        self.assertEqual(self.bill["metadata"]["timestamp"], date_of_zip() + "T00:00:00Z")
        with zipfile.ZipFile(ZIP) as package:
            for component in (program, *(c for c in self.components.values() if "hashes" in c)):
                content = package.read(f"{NAME}/{component['name']}")
                self.assertEqual(component["hashes"], [{"alg": "SHA-256",
                                                        "content": hashlib.sha256(content).hexdigest()}])

    def test_libraries_have_their_packages_versions_and_licences(self):
        linked = next(entry["dependsOn"] for entry in self.bill["dependencies"] if entry["ref"] == "quillet.exe")
        self.assertEqual(set(linked), {f"library {package_of(library)[0]}" for library in ALWAYS_LINKED})
        for library in ALWAYS_LINKED:
            package, version = package_of(library)
            component = self.components[f"library {package}"]
            self.assertEqual((component["name"], component["version"]), (package, version))
            self.assertRegex(component["description"], rf"[ :]{re.escape(Path(library).stem)}(,|$)")
            licences = json.dumps(component["licenses"])
            expected = "GPL-3.0-or-later WITH GCC-exception-3.1" if re.match("g(cc|[+][+])-", package) else "ZPL-2.1"
            self.assertIn(expected, licences, library)

    def test_compiler_is_named_as_no_part_of_the_program(self):
        compilers = [component for component in self.components.values() if component.get("scope") == "excluded"]
        self.assertEqual([compiler["name"] for compiler in compilers], ["g++-mingw-w64-x86-64-posix"])
        self.assertEqual(compilers[0]["version"], package_of("libstdc++.a")[1])

    def test_every_reference_leads_to_a_component(self):
        known = {"quillet.exe", *self.components}
        self.assertEqual(len(known), len(self.bill["components"]) + 1)
        for dependency in self.bill["dependencies"]:
            self.assertLessEqual({dependency["ref"], *dependency["dependsOn"]}, known)


if __name__ == "__main__":
    main()
