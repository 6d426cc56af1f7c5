"""Translates and runs the samples of examples/ as far as a machine without Windows can: samples_test.py ROOT

C# needs mcs, Pascal fpc; what is not there is skipped. (The C++ host is built and runs in the tests of the recipes.)
"""
import ctypes
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from contextlib import redirect_stdout
from io import StringIO
from pathlib import Path

ROOT = Path(sys.argv[1]).resolve()
EXAMPLES = ROOT / "examples"
sys.path.insert(0, str(EXAMPLES / "python"))
sys.dont_write_bytecode = True
import send_text  # noqa: E402
import small_host  # noqa: E402

# Whether a text may stand between the quotes of a command line.
HOSTILE = ("Akte -url=?kla=HangHost&copydata=&nodlg&msg=-1008", 'Akte"x', "Was heißt -?", "x  -NODLG", "- -nodlg", "")
HARMLESS = ("Vorgang 4711 - Müller", "Vorgang-4711 -", "-nodlg", "Saldo -5", "a\t-nodlg")
REFUSED = 256 - 101  # as this side sees it


class Translated(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def translate(self, *command):
        run = subprocess.run(command, cwd=self.folder, capture_output=True, encoding="utf-8")
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)

    @unittest.skipUnless(shutil.which("mcs"), "needs mono-mcs")
    def test_csharp_in_the_version_that_windows_has_on_board(self):
        sources = sorted((EXAMPLES / "csharp").glob("*.cs"))
        self.assertEqual(len(sources), 2)
        for source in sources:
            with self.subTest(source.name):
                self.translate("mcs", "-langversion:5", "-warnaserror", "-r:System.Windows.Forms",
                               f"-out:{self.folder}/sample.exe", source)

    @unittest.skipUnless(shutil.which("fpc"), "needs fp-compiler")
    def test_pascal_against_a_stand_in_for_the_windows_units(self):
        self.translate("fpc", "-Mdelphiunicode", "-Cn", "-Sew", f"-Fu{ROOT}/tests/samples/pascal", f"-FU{self.folder}",
                       f"-FE{self.folder}", EXAMPLES / "pascal/SmallHost.pas")

    @unittest.skipUnless(shutil.which("mcs") and shutil.which("mono"), "needs mono-mcs")
    def test_csharp_recipe_refuses_what_could_hold_a_switch(self):
        self.translate("mcs", f"-out:{self.folder}/sample.exe", EXAMPLES / "csharp/SendText.cs")
        environment = {**os.environ, "QUILLET": shutil.which("true")}
        for texts, code, output in ((HOSTILE, REFUSED, "Nicht gesendet: "), (HARMLESS, 0, "")):
            for text in texts:
                with self.subTest(text):
                    run = subprocess.run(("mono", self.folder / "sample.exe", text), env=environment, capture_output=True,
                                         encoding="utf-8")
                    self.assertEqual((run.returncode, run.stdout[:len("Nicht gesendet: ")]), (code, output))

    def test_python_recipe_refuses_what_could_hold_a_switch(self):
        self.assertEqual([text for text in HOSTILE + HARMLESS if send_text.could_hold_a_switch(text)], list(HOSTILE))
        run = subprocess.run((sys.executable, "-B", EXAMPLES / "python/send_text.py", HOSTILE[0]), capture_output=True,
                             encoding="utf-8")
        self.assertEqual((run.returncode, run.stdout[:len("Nicht gesendet: ")]), (REFUSED, "Nicht gesendet: "))


class RecordedCalls:
    """In the place of user32, with one dialog."""

    def __init__(self):
        self.calls = []

    def GetClassNameW(self, window, name, _):
        name.value = "#32770" if window.value == PythonHost.DIALOG else "Button"

    def __getattr__(self, name):
        def call(*arguments):
            self.calls.append((name, *(getattr(argument, "value", argument) for argument in arguments)))
            return 77

        return call


class PythonHost(unittest.TestCase):
    DIALOG = 0x1234
    WINDOW = 0x5678

    def send(self, content, dialog=DIALOG):
        """Gives the window a text; its result, what it printed, and the calls that it made."""
        buffer = ctypes.create_string_buffer(content, max(len(content), 1))
        data = small_host.CopyData(0, len(content), ctypes.addressof(buffer))
        user32, output = RecordedCalls(), StringIO()
        with redirect_stdout(output):
            result = small_host.handle(user32, self.WINDOW, small_host.WM_COPYDATA, dialog, ctypes.addressof(data))
        return result, output.getvalue(), user32.calls

    def test_takes_a_text_and_posts_the_answer(self):
        self.assertEqual(self.send("Größe 5 €".encode("utf-16-le")),
                         (1, "'Gr\\xf6\\xdfe 5 \\u20ac'\n", [("PostMessageW", self.DIALOG, 0x402, 0, 0)]))

    def test_answers_nobody_but_a_dialog(self):
        self.assertEqual(self.send("a".encode("utf-16-le"), dialog=0), (1, "'a'\n", []))
        self.assertEqual(self.send(b"", dialog=0), (1, "''\n", []))
        self.assertEqual(self.send(b"", dialog=self.WINDOW), (1, "''\n", []))

    def test_refuses_what_is_no_text(self):
        for content in (b"a", b"\x00\xd8", b"a\0" * 1001):
            self.assertEqual(self.send(content), (0, "", []))

    def test_shows_hostile_characters_as_escapes(self):
        self.assertEqual(self.send("a\r\n\x1b[2J".encode("utf-16-le"))[1], "'a\\r\\n\\x1b[2J'\n")

    def test_leaves_other_messages_to_the_system(self):
        user32 = RecordedCalls()
        self.assertEqual(small_host.handle(user32, self.WINDOW, 0x0F, 1, -2), 77)
        self.assertEqual(small_host.handle(user32, self.WINDOW, small_host.WM_DESTROY, 0, 0), 0)
        self.assertEqual(user32.calls, [("DefWindowProcW", self.WINDOW, 0x0F, 1, -2), ("PostQuitMessage", 0)])

    def test_structures_have_the_layout_of_64_bits(self):
        sizes = [ctypes.sizeof(structure) for structure in (small_host.CopyData, small_host.WindowClass, small_host.Message)]
        self.assertEqual(sizes, [24, 72, 48])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
