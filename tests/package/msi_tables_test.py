#!/usr/bin/env python3
"""What the MSI's tables say, and that they are always made alike: msi_tables_test.py ROOT PACKAGES VERSION

Wine shows much of what the installer makes of the tables, but not all: no sentence of a refused installation, for one.
"""
import hashlib
import os
import re
import subprocess

from packages import MSI, NAME, PACKAGES, VERSION, WithFolder, main

import make_msi
import url_scheme

QUOTED = r'"[^"]*"|\w+'


def table(msi, name):
    """The rows as dictionaries."""
    lines = subprocess.run(["msiinfo", "export", str(msi), name], check=True, capture_output=True).stdout
    columns, _, _, *rows = lines.decode().rstrip("\0").split("\r\n")
    return [dict(zip(columns.split("\t"), row.split("\t"))) for row in rows if row]


def holds(condition, properties):
    """What the installer makes of a condition, as far as ours go: comparisons, NOT, OR, AND and parentheses."""
    def operand(text):
        return text[1:-1] if text.startswith('"') else properties.get(text, "")

    def compare(match):
        left, fold, operator, right = operand(match[1]), match[2], match[3], operand(match[4])
        if fold:
            left, right = left.lower(), right.lower()
        return str({"><": right in left, "<<": left.startswith(right), "=": left == right}[operator])

    text = re.sub(rf"({QUOTED}) (~?)(><|<<|=) ({QUOTED})", compare, condition)
    text = re.sub(r"\b(?!NOT|OR|AND|True|False)\w+\b", lambda word: str(bool(operand(word[0]))), text)
    return eval(re.sub(r"NOT|OR|AND", lambda word: word[0].lower(), text))  # only True, False and operators are left


class Reproducible(WithFolder):
    def test_same_content_gives_the_same_bytes_at_another_time_and_place(self):
        content = self.content("elsewhere")
        for number, path in enumerate(sorted(content.rglob("*"), reverse=True)):
            os.utime(path, (number, number))
        (self.folder / "again").mkdir()
        self.make(content, VERSION, f"again/{NAME}")
        for kind in ("zip", "msi"):
            made = (self.folder / f"again/{NAME}.{kind}").read_bytes()
            self.assertEqual(hashlib.sha256(made).hexdigest(),
                             hashlib.sha256((PACKAGES / f"{NAME}.{kind}").read_bytes()).hexdigest(), kind)

    def test_other_content_is_another_package_of_the_same_product(self):
        content = self.content("other")
        (content / "CHANGELOG.html").write_text("other")
        msi = self.make(content, VERSION, "other-package")
        self.assertNotEqual(self.package_code(msi), self.package_code(MSI))

    @staticmethod
    def package_code(msi):
        information = subprocess.run(["msiinfo", "suminfo", msi], check=True, capture_output=True, text=True).stdout
        return next(line for line in information.splitlines() if line.startswith("Revision number"))


class Tables(WithFolder):
    def test_program_comes_always_and_examples_when_asked_for(self):
        levels = {row["Feature"]: (row["Feature_Parent"], row["Level"]) for row in table(MSI, "Feature")}
        self.assertEqual(levels, {"Quillet": ("", "1"), "Examples": ("Quillet", "4")})
        of_feature = {}
        for row in table(MSI, "FeatureComponents"):
            of_feature.setdefault(row["Feature_"], set()).add(row["Component_"])
        for row in table(MSI, "File"):
            path = self.place(row["Component_"]) + "/" + row["FileName"].rpartition("|")[2]
            feature = "Examples" if path.startswith("/examples/") else "Quillet"
            self.assertIn(row["Component_"], of_feature[feature], path)

    def place(self, component):
        folders = {row["Directory"]: row for row in table(MSI, "Directory")}
        folder = next(row["Directory_"] for row in table(MSI, "Component") if row["Component"] == component)
        path = ""
        while folder != "INSTALLDIR":
            path = "/" + folders[folder]["DefaultDir"].rpartition("|")[2] + path
            folder = folders[folder]["Directory_Parent"]
        return path

    def test_runs_no_code_of_its_own(self):
        # 51 sets a property, nothing else.
        self.assertEqual({row["Type"] for row in table(MSI, "CustomAction")}, {"51"})
        self.assertEqual(table(MSI, "Binary"), [])
        self.assertEqual(table(MSI, "ServiceInstall"), [])

    def test_upgrade_keeps_the_choice_of_features(self):
        older = next(row for row in table(MSI, "Upgrade") if row["ActionProperty"] == "WIX_UPGRADE_DETECTED")
        self.assertEqual(older["Attributes"], "1")  # migrates; Wine does not know the action
        self.assertIn("MigrateFeatureStates", self.sequence("InstallExecuteSequence"))

    def test_recalls_what_was_chosen_before_anything_depends_on_it(self):
        for name in ("InstallUISequence", "InstallExecuteSequence"):
            order = self.sequence(name)
            steps = ["AppSearch", "RecallDir", "RecallScheme", "LaunchConditions", "CostInitialize"]
            self.assertEqual([action for action in order if action in steps], steps, name)

    @staticmethod
    def sequence(name):
        return [row["Action"] for row in sorted(table(MSI, name), key=lambda row: int(row["Sequence"] or 0))]

    def test_texts_are_stored_in_the_german_code_page(self):
        self.assertEqual(subprocess.run(["msiinfo", "export", MSI, "_ForceCodepage"], check=True,
                                        capture_output=True).stdout.split()[0], b"1252")
        comments = next(row["Value"] for row in table(MSI, "Property") if row["Property"] == "ARPCOMMENTS")
        self.assertIn("Übergibt", comments)

    def test_old_windows_is_refused_with_a_sentence(self):
        sentence = next(row["Description"] for row in table(MSI, "LaunchCondition") if "VersionNT64" in row["Condition"])
        self.assertEqual(sentence, "Quillet braucht Windows 10 oder neuer mit 64 Bit; dieses Windows ist älter.")


class Scheme(WithFolder):
    """Which names URLSCHEME may have."""

    def setUp(self):
        super().setUp()
        self.conditions = [(row["Condition"], row["Description"]) for row in table(MSI, "LaunchCondition")
                           if "URLSCHEME" in row["Condition"]]

    def refusal(self, scheme, **properties):
        """The sentence with which the installer ends, or nothing."""
        properties = {"URLSCHEME": scheme, "QUOTE": '"', **properties}
        return next((sentence for condition, sentence in self.conditions if not holds(condition, properties)), None)

    def test_package_has_all_conditions(self):
        self.assertEqual(self.conditions, list(url_scheme.conditions()))
        self.assertLessEqual(max(len(condition) for condition, _ in self.conditions), 255)

    def test_own_names_are_taken(self):
        for name in ("orvane-demo", "a", "Firma.Vorgang+2", "x1", "web-firma", "orvanefile"):
            self.assertIsNone(self.refusal(name), name)

    def test_nothing_given_is_nothing_refused(self):
        self.assertIsNone(self.refusal(""))
        self.assertIsNone(self.refusal("", Installed="1", REMEMBEREDSCHEME=""))

    def test_what_is_no_scheme_is_refused(self):
        for name in ("1a", "-a", "+a", ".a", "a b", " a", "a:", "a/b", "a\\b", "größe", "a_b", 'a"b', "a%b", "a$b", "a[b]"):
            self.assertEqual(self.refusal(name), url_scheme.NO_SCHEME, name)

    def test_every_character_of_the_code_page_is_judged(self):
        letters = "abcdefghijklmnopqrstuvwxyz"
        for code in (*range(0x20, 0x7F), *range(0x80, 0x100)):
            character = bytes([code]).decode("cp1252", errors="ignore")
            allowed = character.lower() in letters + "0123456789+-." if character.isascii() else False
            if character and character != "\xad":  # a soft hyphen cannot be seen
                self.assertEqual(self.refusal(f"a{character}") is None, allowed, repr(character))

    def test_general_names_are_refused(self):
        for name in ("http", "https", "file", "mailto", "javascript", "HTTP", "Mailto", "ftp", "tel", "vbscript", "data",
                     "about", "ms-settings", "MS-word", "clsid", "shell", "view-source"):
            self.assertEqual(self.refusal(name), url_scheme.TOO_GENERAL, name)

    def test_names_in_use_are_refused_but_for_ones_own(self):
        self.assertEqual(self.refusal("exefile", TAKENSCHEME="Application"), url_scheme.TAKEN)
        self.assertIsNone(self.refusal("orvane", TAKENSCHEME="URL:orvane", REMEMBEREDSCHEME="orvane"))

    def test_a_name_cannot_change_under_an_installation(self):
        self.assertEqual(self.refusal("other", Installed="1", REMEMBEREDSCHEME="orvane"), url_scheme.FIXED)
        self.assertIsNone(self.refusal("orvane", Installed="1", REMEMBEREDSCHEME="orvane"))
        self.assertEqual(make_msi.upgrade_code(), "DA1788E4-DE39-4B4D-A561-72EF65CF0413")


if __name__ == "__main__":
    main()
