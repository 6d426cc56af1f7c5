"""What the MSI's tables say, and that they are always made alike: msi_tables_test.py ROOT PACKAGES VERSION

Wine shows much of what the installer makes of the tables, but not all: no sentence of a refused installation, for one.
"""
import os
import subprocess

from packages import MSI, NAME, PACKAGES, ROOT, VERSION, WithFolder, main

import make_msi


def msiinfo(*words):
    return subprocess.run(["msiinfo", *words], check=True, capture_output=True).stdout.decode().rstrip("\0")


def table(name):
    """The rows as dictionaries."""
    columns, _, _, *rows = msiinfo("export", MSI, name).split("\r\n")
    return [dict(zip(columns.split("\t"), row.split("\t"))) for row in rows if row]


class Reproducible(WithFolder):
    def test_same_content_gives_the_same_bytes_at_another_time_and_place(self):
        content = self.content("elsewhere")
        for number, path in enumerate(sorted(content.rglob("*"), reverse=True)):
            os.utime(path, (number, number))
        (self.folder / "again").mkdir()
        self.make(content, VERSION, f"again/{NAME}")
        for kind in ("zip", "msi"):
            again = (self.folder / f"again/{NAME}.{kind}").read_bytes()
            self.assertTrue(again == (PACKAGES / f"{NAME}.{kind}").read_bytes(), kind)

    def test_other_content_is_another_package_of_the_same_product(self):
        content = self.content("other")
        (content / "LIESMICH.txt").write_text("other")
        codes = {line for msi in (self.make(content, VERSION, "other-package"), MSI)
                 for line in msiinfo("suminfo", msi).splitlines() if line.startswith("Revision number")}
        self.assertEqual(len(codes), 2)


class Tables(WithFolder):
    def test_runs_no_code_of_its_own_and_registers_no_scheme(self):
        # 51 sets a property, nothing else.
        self.assertEqual({row["Type"] for row in table("CustomAction")}, {"51"})
        self.assertEqual(table("Binary") + table("ServiceInstall"), [])
        self.assertEqual({row["Key"].rpartition("\\")[2] for row in table("Registry")}, {"Quillet", "quillet.exe"})

    def test_upgrade_keeps_the_choice_of_features(self):
        older = next(row for row in table("Upgrade") if row["ActionProperty"] == "WIX_UPGRADE_DETECTED")
        self.assertEqual(older["Attributes"], "1")  # migrates; Wine does not know the action
        self.assertIn("MigrateFeatureStates", self.sequence("InstallExecuteSequence"))
        self.assertEqual(make_msi.upgrade_code(), "DA1788E4-DE39-4B4D-A561-72EF65CF0413")

    def test_recalls_the_folder_before_anything_depends_on_it(self):
        for name in ("InstallUISequence", "InstallExecuteSequence"):
            steps = ["AppSearch", "RecallDir", "EndDir", "LaunchConditions", "CostInitialize"]
            self.assertEqual([action for action in self.sequence(name) if action in steps], steps, name)

    @staticmethod
    def sequence(name):
        return [row["Action"] for row in sorted(table(name), key=lambda row: int(row["Sequence"] or 0))]

    def test_texts_are_stored_in_the_german_code_page(self):
        self.assertEqual(msiinfo("export", MSI, "_ForceCodepage").split()[0], "1252")
        self.assertIn("Übergibt", next(row["Value"] for row in table("Property") if row["Property"] == "ARPCOMMENTS"))

    def test_refusals_are_sentences_that_fit_and_lead_on(self):
        sentences = {row["Condition"]: row["Description"] for row in table("LaunchCondition")}
        self.assertLessEqual(max(map(len, [*sentences, *sentences.values()])), 255)
        self.assertTrue(all(sentence.endswith(".") for sentence in sentences.values()))
        [scheme] = [sentence for condition, sentence in sentences.items() if condition.endswith("NOT URLSCHEME")]
        self.assertIn("im Handbuch (docs\\handbuch.html) unter »Ein Schema für alle Benutzer«", scheme)
        self.assertIn("\n### Ein Schema für alle Benutzer\n", (ROOT / "docs/handbuch.md").read_text(encoding="utf-8"))


if __name__ == "__main__":
    main()
