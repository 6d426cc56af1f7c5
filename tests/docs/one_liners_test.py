"""Runs the encoders and decoders of base64url that the documents show: one_liners_test.py ROOT

A block under a line `<!-- one line: LANGUAGE -->` is an expression of `text`: so the handbook encodes. One under
`<!-- function: LANGUAGE -->` is a function of `text`: so the host guides decode.
JavaScript needs node, C# needs mcs and mono; what is not there is skipped.
"""
import base64
import json
import random
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(sys.argv[1]).resolve()
BLOCK = re.compile(r"^<!-- (?:one line|function): (\w+) -->\n```\w+\n(.*?)\n```$", re.MULTILINE | re.DOTALL)
GUIDES = ("docs/host-leitfaden.md", "docs/host-guide.md")
# What a lenient decoder takes: not enough digits, padding, blanks, digits of plain base64, bits after the last byte that are
# not zero; and bytes that are no UTF-8.
NO_BASE64URL = ("Z", "Zm9vZ", "Zg==", "Zg=", "Zm 9v", "Zm9v\n", " Zm9v", "Pz8/", "Pz8+", "Zm9v?", "ä", "Zh", "Zm9=", "_w", "w6", "wIA")


def expressions(document):
    return dict(BLOCK.findall((ROOT / document).read_text(encoding="utf-8")))


def random_text():
    ranges = [(0, 0x1f), (0x20, 0x7e), (0x80, 0x7ff), (0x800, 0xd7ff), (0x10000, 0x10ffff)]
    return "".join(chr(random.randint(*random.choice(ranges))) for _ in range(random.randint(0, 30)))


TEXTS = ["", "f", "fo", "foo", "???>>>", '100% für "5 €" 😀', *(random_text() for _ in range(200))]
ENCODED = [base64.urlsafe_b64encode(text.encode()).decode().rstrip("=") for text in TEXTS]


def evaluate_in_node(expression, texts):
    program = f"console.log(JSON.stringify({json.dumps(texts)}.map((text) => {expression})))"
    return json.loads(subprocess.run(["node", "-"], input=program, capture_output=True, check=True, encoding="utf-8").stdout)


CSHARP = """
using System;
using System.Text;

static class OneLine
{
    %s

    static void Main()
    {
        foreach (string text in new[] %s)
        {
            try { Console.WriteLine(Convert.ToBase64String(Encoding.Unicode.GetBytes(%s))); }
            catch (ArgumentException) { Console.WriteLine("refused"); }
            catch (FormatException) { Console.WriteLine("refused"); }
        }
    }
}
"""


def evaluate_in_csharp(expression, texts, function=""):
    """The results; None for a text that is refused."""
    with tempfile.TemporaryDirectory() as folder:
        source, program = Path(folder) / "OneLine.cs", Path(folder) / "OneLine.exe"
        # C# reads the texts as JSON writes them, each unit beyond ASCII by its number.
        source.write_text(CSHARP % (function, "{%s}" % json.dumps(texts)[1:-1], expression), encoding="utf-8")
        subprocess.run(["mcs", "-langversion:5", "-warnaserror", f"-out:{program}", source], check=True)
        run = subprocess.run(["mono", program], capture_output=True, check=True, encoding="ascii")
    return [None if line == "refused" else base64.b64decode(line).decode("utf-16-le") for line in run.stdout.split("\n")[:-1]]


class OneLiners(unittest.TestCase):
    def test_every_document_has_its_own(self):
        self.assertEqual(set(expressions("docs/handbuch.md")), {"javascript", "python", "csharp", "powershell"})
        for guide in GUIDES:
            self.assertEqual(set(expressions(guide)), {"csharp", "python", "delphi"})
        self.assertEqual(expressions(GUIDES[0]), expressions(GUIDES[1]))

    def test_python(self):
        encode = expressions("docs/handbuch.md")["python"]
        self.assertEqual([eval(encode, {"base64": base64}, {"text": text}) for text in TEXTS], ENCODED)
        defined = {"base64": base64}
        exec(expressions(GUIDES[0])["python"], defined)
        self.assertEqual([defined["from_base64url"](text) for text in ENCODED], TEXTS)
        for text in NO_BASE64URL:
            with self.assertRaises(ValueError, msg=text):
                defined["from_base64url"](text)

    @unittest.skipUnless(shutil.which("node"), "needs node")
    def test_javascript(self):
        self.assertEqual(evaluate_in_node(expressions("docs/handbuch.md")["javascript"], TEXTS), ENCODED)

    @unittest.skipUnless(shutil.which("mcs") and shutil.which("mono"), "needs mono-mcs")
    def test_csharp(self):
        self.assertEqual(evaluate_in_csharp(expressions("docs/handbuch.md")["csharp"], TEXTS), ENCODED)
        decode = expressions(GUIDES[0])["csharp"]
        self.assertEqual(evaluate_in_csharp("FromBase64Url(text)", ENCODED, decode), TEXTS)
        self.assertEqual(evaluate_in_csharp("FromBase64Url(text)", NO_BASE64URL, decode), [None] * len(NO_BASE64URL))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
