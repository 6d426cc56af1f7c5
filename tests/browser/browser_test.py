"""Clicks the links of examples/url-scheme/links.html in Chromium: browser_test.py ROOT BUILD, on a desktop.

The whole way: a real click, the browser, the desktop's handler for the scheme, the registration (examples/url-scheme/register.reg)
under Wine, the program, the example host. The page says itself, in <samp> beside each link, which line the host shows. The
desktop's handler is a script that also notes the link as the browser has handed it over, and the program's exit code.
"""
import http.server
import json
import os
import re
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from html import unescape
from pathlib import Path
from urllib.parse import quote

ROOT, BUILD = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
SCHEME = ROOT / "examples/url-scheme"
LIMIT = 60  # seconds, for whatever is waited for
ANSWER, ACCEPTED, NO_WINDOW = 2, 0, 256 - 2  # exit codes, of which this side sees eight bits

ROW = re.compile(r'<a href="([^"]*)">(.*?)</a></td>\s*<td>(?:<samp>(.*?)</samp>|nichts)</td>', re.DOTALL)

HANDLER = """#!/bin/sh
wine start /wait "$1" </dev/null >/dev/null 2>&1
echo "$? $1" >>"$(dirname "$0")/handled.log"
"""

# Tells the server where on the screen each link is (in kiosk mode the page fills the screen), and over which one the pointer
# is: a browser that is still busy with its first picture swallows clicks.
REPORT = """<script>
const report = (what, value) => fetch('/' + what, { method: 'POST', body: JSON.stringify(value) });
const links = Array.from(document.querySelectorAll('a'));
const reportPlaces = () => report('places', links.map((link) => link.getClientRects()[0]));
addEventListener('load', reportPlaces);
addEventListener('resize', reportPlaces);
addEventListener('mousemove', (event) => report('pointer', links.indexOf(event.target)));
</script>"""


def holds(condition):
    """A tool that does not find a window yet ends with an error."""
    try:
        return condition()
    except subprocess.CalledProcessError:
        return False


def wait_until(condition, what):
    deadline = time.monotonic() + LIMIT
    while not holds(condition):
        if time.monotonic() > deadline:
            raise AssertionError(f"{LIMIT} seconds passed: {what}")
        time.sleep(0.05)


class PageServer(http.server.ThreadingHTTPServer):
    """Serves the page, at an origin of its own, and takes what it reports: see REPORT."""

    def __init__(self):
        super().__init__(("127.0.0.1", 0), PageHandler)
        self.reported = {}
        self.origin = f"http://127.0.0.1:{self.server_port}"


class PageHandler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        found = self.path == "/links.html"
        self.send_response(200 if found else 404)
        self.send_header("Content-Type", "text/html; charset=utf-8")
        self.end_headers()
        if found:
            self.wfile.write((SCHEME / "links.html").read_bytes() + REPORT.encode())

    def do_POST(self):
        self.server.reported[self.path] = json.loads(self.rfile.read(int(self.headers["Content-Length"])))
        self.send_response(204)
        self.end_headers()

    def log_message(self, *_):
        pass


class Links(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        cls.register()
        cls.start_host()
        cls.start_browser()

    @classmethod
    def start(cls, name, *command, **options):
        """A process that ends with the tests; its output goes to a file, since Wine's services hold a pipe open."""
        with open(cls.folder / f"{name}.log", "wb") as log:
            process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=subprocess.STDOUT, **options)
        cls.addClassCleanup(process.wait, LIMIT)
        cls.addClassCleanup(process.terminate)
        return process

    @classmethod
    def register(cls):
        """The scheme under Wine, with this build's path, and on the desktop."""
        program = "Z:" + str(BUILD / "quillet.exe").replace("/", r"\\")
        entries = (SCHEME / "register.reg").read_text(encoding="ascii")
        # Wine 8 does not look into the user's own classes.
        entries = entries.replace(r"HKEY_CURRENT_USER\Software\Classes", "HKEY_CLASSES_ROOT")
        entries = entries.replace(r"C:\\Program Files\\Quillet\\quillet.exe", program)
        (cls.folder / "register.reg").write_text(entries, encoding="ascii", newline="\r\n")
        cls.start("regedit", "wine", "regedit", "/S", cls.folder / "register.reg").wait(LIMIT)

        handler = cls.folder / "handler"
        handler.write_text(HANDLER, encoding="ascii")
        handler.chmod(0o755)
        (cls.folder / "handled.log").touch()
        applications = cls.folder / "data/applications"
        applications.mkdir(parents=True)
        (cls.folder / "config").mkdir()
        (applications / "quillet.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Quillet\nExec={handler} %u\n"
            "MimeType=x-scheme-handler/orvane-demo;\n", encoding="ascii")
        (cls.folder / "config/mimeapps.list").write_text(
            "[Default Applications]\nx-scheme-handler/orvane-demo=quillet.desktop\n", encoding="ascii")

    @classmethod
    def start_host(cls):
        cls.start("host", "wine", BUILD / "example_host.exe", "--base64url")
        wait_until(lambda: "Bereit" in cls.host_log(), "the host does not start")

    @classmethod
    def start_browser(cls):
        server = PageServer()
        threading.Thread(target=server.serve_forever, daemon=True).start()
        cls.addClassCleanup(server.server_close)
        cls.addClassCleanup(server.shutdown)
        profile = cls.folder / "profile"
        (profile / "Default").mkdir(parents=True)
        # What the browser notes when its user ticks "always allow" for this page.
        allowed = {"protocol_handler": {"allowed_origin_protocol_pairs": {server.origin: {"orvane-demo": True}}}}
        (profile / "Default/Preferences").write_text(json.dumps(allowed), encoding="ascii")
        environment = {**os.environ, "XDG_DATA_HOME": str(cls.folder / "data"),
                       "XDG_CONFIG_HOME": str(cls.folder / "config"), "XDG_CURRENT_DESKTOP": "X-Generic",
                       "HOME": str(cls.folder)}
        cls.start("browser", "chromium", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
                  "--disable-background-networking", "--disable-component-update", "--disable-sync", "--kiosk",
                  "--password-store=basic", f"--user-data-dir={profile}", f"{server.origin}/links.html", env=environment)
        wait_until(lambda: "/places" in server.reported, "the browser does not show the page")
        cls.reported = server.reported

    @classmethod
    def host_log(cls):
        return (cls.folder / "host.log").read_text(encoding="utf-8")

    @classmethod
    def handled(cls):
        """The exit code and the link of each run that has ended."""
        lines = (cls.folder / "handled.log").read_text(encoding="utf-8").splitlines()
        return [(int(code), link) for code, link in (line.split(" ", 1) for line in lines)]

    @staticmethod
    def xdotool(*words):
        """What it prints; fails when a search finds nothing."""
        return subprocess.run(["xdotool", *words], capture_output=True, text=True, check=True, timeout=LIMIT).stdout.split()

    def points_at(self, number):
        """Moves the pointer onto a link, and gives the page a moment to notice."""
        place = self.reported["/places"][number]
        x, y = (round(place[start] + place[size] / 2) for start, size in (("x", "width"), ("y", "height")))
        self.xdotool("mousemove", str(x), str(y - 1), "mousemove", str(x), str(y))
        deadline = time.monotonic() + 1
        while self.reported.get("/pointer") != number and time.monotonic() < deadline:
            time.sleep(0.05)
        return self.reported.get("/pointer") == number

    def in_front(self):
        """Clicks go to what is in front, and that may be the host or the dialog."""
        window = self.xdotool("search", "--onlyvisible", "--name", "^Links an den Beispiel-Host")[-1]
        self.xdotool("windowactivate", "--sync", window)
        return True

    def click(self, number):
        wait_until(lambda: self.in_front() and self.points_at(number), "the pointer does not reach the link")
        self.xdotool("click", "1")

    @staticmethod
    def as_the_browser_hands_it_over(link):
        """Escaped is what is not ASCII, and nothing else."""
        return "".join(character if character.isascii() else quote(character) for character in link)

    @staticmethod
    def exit_code(promised, link):
        if not promised:
            return NO_WINDOW
        return ACCEPTED if link.endswith("&nodlg") else ANSWER

    def test_host_receives_what_the_page_promises(self):
        page = (SCHEME / "links.html").read_text(encoding="utf-8")
        rows = [[unescape(cell) for cell in row] for row in ROW.findall(page)]
        self.assertEqual(len(rows), page.count("<a href="))
        self.assertEqual(len(rows), len(self.reported["/places"]))
        for number, (link, _, promised) in enumerate(rows):
            before = len(self.host_log())
            self.click(number)
            wait_until(lambda: len(self.handled()) > number, f"{link}: the program has not ended")
            self.assertEqual(self.handled()[number:],
                             [(self.exit_code(promised, link), self.as_the_browser_hands_it_over(link))])
            # A host without a dialog to answer shows its last line a moment later.
            wait_until(lambda: "ntwort" in self.host_log()[before:] or not promised, f"{link}: the host does not react")
            lines = [line.strip() for line in self.host_log()[before:].splitlines()]
            if promised:
                self.assertIn(promised, lines)
            else:
                self.assertEqual(lines, [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
