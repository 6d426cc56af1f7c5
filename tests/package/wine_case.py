"""A Windows to install on: the desktop's fresh one, which every test leaves as it was, registry and files."""
import os
import re
import subprocess
import time
from pathlib import Path

from packages import WithFolder

LIMIT = 120  # seconds, for whatever is waited for

# What Windows, here Wine, changes by itself while programs run.
OWN_FILES = re.compile(r"windows/(temp|Installer)$|windows/inf/|users/[^/]+/(AppData/Local/)?Temp|\.log$", re.IGNORECASE)
# The installer's own folders of the registry, which Wine makes when they are first needed.
OWN_KEYS = re.compile(r"\\Installer(\\(Features|Products|UpgradeCodes|UserData(\\S-1-5-18(\\(Components|Products))?)?))?$")


class WineCase(WithFolder):
    drive = Path(os.environ["WINEPREFIX"]) / "drive_c"

    maxDiff = None

    files_before = registry_before = None  # what every test of a run begins and ends with

    def setUp(self):
        super().setUp()
        if not WineCase.files_before:
            WineCase.files_before, WineCase.registry_before = self.files(), self.registry()

    def wine(self, *arguments, folder=None):
        """The exit code, or its lower eight bits; output goes to a file, since Wine's services hold a pipe open."""
        with open(self.folder / "output.txt", "wb") as output:
            return subprocess.run(["wine", *arguments], cwd=folder, stdin=subprocess.DEVNULL, stdout=output,
                                  stderr=subprocess.STDOUT, timeout=LIMIT).returncode

    def output(self):
        return (self.folder / "output.txt").read_bytes().decode("cp850")  # a German console's

    def msiexec(self, action, msi, *properties):
        """As the handbook rolls it out: silently, with a log; each property as NAME=value, which stands quoted in the line."""
        log, msi = ("Z:" + str(path).replace("/", "\\") for path in (self.folder / "msi.log", msi))
        words = [action, f'"{msi}"', "/qn", "/norestart", "/l*v", f'"{log}"']
        words += ['{}="{}"'.format(*item.split("=", 1)) for item in properties]
        return self.batch(["msiexec " + " ".join(words).replace("%", "%%")], self.folder)

    def batch(self, lines, folder):
        """In a batch file, because only there a line is what it is: Wine puts quotes around whole arguments of its own."""
        file = self.folder / "lines.cmd"
        file.write_bytes("\r\n".join(["@echo off", *lines, ""]).encode("cp850"))
        return self.wine("cmd", "/c", str(file), folder=folder)

    def log(self):
        content = (self.folder / "msi.log").read_bytes()
        return content.decode("utf-16" if content.startswith(b"\xff\xfe") else "utf-8", errors="replace")

    def registry(self):
        """"key: value" lines of both hives."""
        lines = []
        for hive in ("HKLM", "HKCU"):
            file = self.folder / f"{hive}.reg"
            self.wine("reg", "export", hive, str(file), "/y")
            key = ""
            for line in re.sub(r"\\\n *", "", file.read_text(encoding="utf-16")).splitlines():
                if line.startswith("["):
                    key = line[1:-1]
                if line and not OWN_KEYS.search(key):
                    lines.append(f"{key}: {line}")
        return set(lines)

    def files(self):
        found = set()
        for path in self.drive.rglob("*"):
            name = path.relative_to(self.drive).as_posix()
            if not OWN_FILES.search(name):
                facts = path.stat()
                found.add(f"{name} {facts.st_size} {facts.st_mtime_ns}" if path.is_file() else name)
        return found

    def expect_same(self, before, after):
        self.assertEqual((sorted(after - before), sorted(before - after)), ([], []))

    def expect_no_file_left(self):
        self.expect_same(self.files_before, self.files())

    def value(self, key):
        """The text of a key's default value, or None."""
        self.wine("reg", "query", key, "/ve")
        found = re.search(r"REG_\w+ *(.*)", self.output())
        return found[1].strip() if found else None

    def start_host(self, program, *options):
        log = self.folder / "host.txt"
        with open(log, "wb") as output:
            host = subprocess.Popen(["wine", program, *options], stdin=subprocess.DEVNULL, stdout=output,
                                    stderr=subprocess.STDOUT)

        def end():
            host.kill()
            host.wait(LIMIT)
        self.addCleanup(end)
        self.wait_for("the host", lambda: b"Bereit" in log.read_bytes())
        return end

    def host_log(self):
        return (self.folder / "host.txt").read_bytes().decode("utf-8", errors="replace")

    def wait_for(self, what, condition):
        deadline = time.monotonic() + LIMIT
        while not condition():
            self.assertLess(time.monotonic(), deadline, what)
            time.sleep(0.05)
