"""Works the page that builds calls in Chromium, from a folder: call_builder_test.py ROOT BUILD [PICTURES]

Fills in, copies, and compares with what the page's functions write under node. Everything goes through the browser's own driver,
which types, clicks and pastes. With PICTURES, a folder gets pictures of the page at the width of a desktop and of a phone.
"""
import base64
import json
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.request
from pathlib import Path

ROOT, BUILD = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
PICTURES = Path(sys.argv[3]).resolve() if len(sys.argv) > 3 else None
PAGE = BUILD / "examples/call-builder/call-builder.html"
LIMIT = 60  # seconds, for whatever is waited for
ELEMENT = "element-6066-11e4-a52e-4f735466cecf"  # the key of an element's name, by the driver's protocol
CONTROL, DELETE = "\ue009", "\ue017"

# Prints what the page should write: the settings come as JSON, numbers aside.
NODE = """
const calls = require(process.argv[1] + '/examples/call-builder/calls.js');
const { settings, program, scheme } = JSON.parse(process.argv[2]);
const all = { ...calls.NONE, ...settings };
const link = calls.writeLink(scheme, program, all);
const written = { link, html: link.refused ? link : { source: calls.htmlOf(link.source, 'Quillet') } };
for (const form of Object.keys(calls.FORMS)) written[form] = calls.writeForm(form, program, all);
console.log(JSON.stringify(Object.fromEntries(Object.entries(written).map(([form, { source }]) => [form, source ?? null]))));
"""


def wait_until(condition, what):
    deadline = time.monotonic() + LIMIT
    while not (result := condition()):
        if time.monotonic() > deadline:
            raise AssertionError(f"{LIMIT} seconds passed: {what}")
        time.sleep(0.05)
    return result


class Browser:
    """As much of the driver's protocol (W3C WebDriver) as is needed."""

    def __init__(self, port, downloads):
        self.address = f"http://127.0.0.1:{port}/session"
        options = {"args": ["--headless=new", "--no-sandbox", "--disable-gpu"],
                   "prefs": {"download.default_directory": str(downloads)}}
        answer = self.call("POST", "", {"capabilities": {"alwaysMatch": {
            "browserName": "chrome", "goog:chromeOptions": options, "goog:loggingPrefs": {"browser": "ALL"}}}})
        self.address += "/" + answer["sessionId"]

    def call(self, method, path, data=None):
        content = None if method == "GET" else json.dumps(data or {}).encode()
        request = urllib.request.Request(self.address + path, content, {"Content-Type": "application/json"}, method=method)
        with urllib.request.urlopen(request, timeout=LIMIT) as answer:
            return json.load(answer)["value"]

    def script(self, source, *arguments):
        return self.call("POST", "/execute/sync", {"script": source, "args": list(arguments)})

    def element(self, selector):
        return self.call("POST", "/element", {"using": "css selector", "value": selector})[ELEMENT]

    def click(self, selector):
        self.call("POST", f"/element/{self.element(selector)}/click")

    def type(self, selector, text):
        """Takes the place of what the field holds."""
        self.call("POST", f"/element/{self.element(selector)}/value", {"text": CONTROL + "a" + CONTROL + DELETE})
        self.call("POST", f"/element/{self.element(selector)}/value", {"text": text})

    def resize(self, width, height):
        self.call("POST", "/goog/cdp/execute", {"cmd": "Emulation.setDeviceMetricsOverride", "params": {
            "width": width, "height": height, "deviceScaleFactor": 1, "mobile": False}})

    def pasted(self):
        """What the clipboard holds, by a field of the test's own."""
        self.script("const area = document.createElement('textarea'); area.id = 'pasted'; document.body.append(area);")
        self.call("POST", f"/element/{self.element('#pasted')}/value", {"text": CONTROL + "v" + CONTROL})
        return self.script("const area = document.getElementById('pasted'); area.remove(); return area.value;")


class CallBuilder(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        log = cls.folder / "driver.log"
        with open(log, "wb") as output:
            driver = subprocess.Popen(["chromedriver", "--port=0"], stdin=subprocess.DEVNULL, stdout=output, stderr=output)
        cls.addClassCleanup(driver.wait, LIMIT)
        cls.addClassCleanup(driver.terminate)
        port = wait_until(lambda: re.search(r"started successfully on port (\d+)", log.read_text()), "the driver does not start")
        cls.browser = Browser(port[1], cls.folder)
        cls.addClassCleanup(cls.browser.call, "DELETE", "")

    def setUp(self):
        self.browser.resize(1280, 900)
        self.browser.call("POST", "/url", {"url": "about:blank"})
        self.browser.call("POST", "/url", {"url": PAGE.as_uri()})

    def tearDown(self):
        """Among what a browser complains about is everything that the content policy stops."""
        self.assertEqual(self.browser.call("POST", "/se/log", {"type": "browser"}), [])

    def written(self, settings, program=r"C:\Program Files\Quillet\quillet.exe", scheme="orvane-demo"):
        command = ["node", "-e", NODE, ROOT, json.dumps({"settings": settings, "program": program, "scheme": scheme})]
        return json.loads(subprocess.run(command, capture_output=True, check=True, encoding="utf-8").stdout)

    def shown(self):
        return self.browser.script("""
            return Object.fromEntries(Array.from(document.querySelectorAll('#calls article'), (card) =>
              [card.id.replace('call-', ''), card.querySelector('pre')?.textContent ?? null]));""")

    def test_shows_and_copies_what_the_functions_write(self):
        self.browser.type("#kla", "HostFrame")
        self.browser.type("#copydata", "Größe 100% & <5>")
        self.browser.call("POST", f"/element/{self.browser.element('#copydataencoding')}/value", {"text": "UTF-8"})
        self.browser.click("#dialog")
        expected = self.written({"kla": "HostFrame", "copydata": "Größe 100% & <5>", "copydataencoding": "UTF-8", "nodlg": True})
        self.assertEqual(self.shown(), expected)
        self.assertIsNone(expected["link"])  # for the percent sign
        for form in (form for form, source in expected.items() if source):
            self.browser.click(f"#call-{form} button")
            wait_until(lambda: self.browser.script(
                "return document.querySelector(arguments[0]).textContent === 'Kopiert'", f"#call-{form} button"), "not copied")
            self.assertEqual(self.browser.pasted(), expected[form], form)

    def test_offers_the_way_that_carries_every_text(self):
        self.browser.type("#copydata", 'Preis "5 €" -nodlg')
        self.assertEqual(set(self.shown().values()), {None})
        self.assertIn("schaltet", self.browser.script("return document.getElementById('warnings').textContent"))
        self.browser.click("#warnings button")
        self.assertEqual(self.shown(), self.written(
            {"kla": "QuilletBeispielHost", "copydata": "UHJlaXMgIjUg4oKsIiAtbm9kbGc"}))

    def test_takes_a_path_as_it_is_copied_and_warns_of_half_a_one(self):
        self.browser.type("#program", r'"D:\Quillet\quillet.exe"')
        settings = {"kla": "QuilletBeispielHost", "copydata": "Vorgang 4711"}
        self.assertEqual(self.shown(), self.written(settings, r"D:\Quillet\quillet.exe"))
        self.assertEqual(self.browser.script("return document.querySelectorAll('.warning').length;"), 0)
        for half in ("quillet.exe", r"D:\Quillet"):
            self.browser.type("#program", half)
            self.assertIn("kein ganzer Pfad", self.browser.script("return document.querySelector('#warnings').textContent;"))

    def test_marks_what_has_not_run(self):
        self.assertEqual(self.browser.script("return document.querySelectorAll('#call-batch .untried').length;"), 0)
        self.browser.type("#copydata", "Größe")
        self.assertEqual(self.browser.script("return document.querySelectorAll('#call-batch .untried').length;"), 1)

    def test_sends_notifications(self):
        self.browser.click("#sends-notification")
        self.browser.type("#wparam", "0xFFFFFFFFFFFFFFFF")
        line = r'"C:\Program Files\Quillet\quillet.exe" -wparam=-1 -kla=QuilletBeispielHost'
        self.assertEqual(self.shown()["line"], line)
        self.browser.type("#wparam", "x")
        self.assertEqual(self.shown()["line"], line.replace(" -wparam=-1", ""))
        self.assertIn("keine ganze Zahl", self.browser.script("return document.getElementById('warnings').textContent"))

    def test_says_when_nothing_would_be_sent(self):
        self.browser.type("#kla", "")
        self.browser.click("#sends-notification")
        self.assertIn("nichts gesendet", self.browser.script("return document.getElementById('meaning').textContent"))
        self.assertEqual(self.shown(), self.written({}))

    def test_takes_line_breaks_as_windows_has_them(self):
        self.browser.type("#copydata", "a\nb")
        self.assertEqual(self.shown(), self.written({"kla": "QuilletBeispielHost", "copydata": "a\r\nb"}))

    def test_downloads_registry_files_that_name_any_path(self):
        self.browser.type("#program", r"D:\Größe\quillet.exe")
        self.browser.click("#all-users")
        self.browser.click("#registry-register button:last-of-type")
        file = self.folder / "register-all-users.reg"
        wait_until(file.exists, "nothing is downloaded")
        content = file.read_bytes()
        self.assertEqual(content[:2], b"\xff\xfe")
        self.assertIn('[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\orvane-demo\\shell\\open\\command]\r\n'
                      '@="\\"D:\\\\Größe\\\\quillet.exe\\" -url=\\"%1\\""\r\n', content.decode("utf-16"))

    def test_tries_patterns(self):
        match = "return document.getElementById('match').textContent"
        self.assertEqual(self.browser.script(match), "Das Muster passt.")
        self.browser.type("#pattern", "*vorgang [0-9]*")
        self.assertEqual(self.browser.script(match), "Das Muster passt nicht.")
        self.assertIn("Schreibweise", self.browser.script("return document.getElementById('match-notes').textContent"))

    def test_speaks_english(self):
        self.browser.click("#en")
        text = self.browser.script("return document.body.innerText")
        self.assertIn("What is meant to happen", text)
        for german in (" und ", "Der ", "Das ", "nicht", "Kopieren"):
            self.assertNotIn(german, text)
        self.assertEqual(self.browser.script("return document.documentElement.lang + document.title"),
                         "enBuild calls for Quillet")

    def test_every_field_has_a_label_and_every_button_a_name(self):
        self.assertEqual(self.browser.script("""
            return Array.from(document.querySelectorAll('input, select, textarea, button'))
              .filter((field) => !(field.labels?.length || field.textContent.trim()) ).map((field) => field.outerHTML);"""), [])

    def test_fits_a_desktop_and_a_phone(self):
        for width, height in ((1280, 900), (360, 740)):
            self.browser.resize(width, height)
            # The longest word that anybody enters, and all that the page has to say.
            self.browser.type("#copydata", "-nodlg " + "W" * 150 + " -nodlg € %")
            self.picture(f"call-builder-{width}-warned.png", width)
            self.assertLessEqual(self.browser.script("return document.documentElement.scrollWidth"), width)
            self.browser.type("#copydata", "Vorgang 4711")
            self.picture(f"call-builder-{width}.png", width)

    def picture(self, name, width):
        if PICTURES:
            PICTURES.mkdir(parents=True, exist_ok=True)
            height = self.browser.script("return document.documentElement.scrollHeight")
            self.browser.resize(width, height)
            (PICTURES / name).write_bytes(base64.b64decode(self.browser.call("GET", "/screenshot")))


if __name__ == "__main__":
    missing = [tool for tool in ("chromedriver", "node") if not shutil.which(tool)]
    sys.exit(f"missing: {', '.join(missing)} (./scripts/lib/setup.sh browser)") if missing else unittest.main(argv=sys.argv[:1])
