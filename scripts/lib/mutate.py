"""Makes defects in a copy of the sources, one at a time, and lets the tests look for them: see scripts/mutate."""

import argparse
import collections
import os
import pathlib
import random
import shutil
import subprocess
import sys
import time

from mutants import mutants_of

ROOT = pathlib.Path(__file__).resolve().parents[2]
WORK = ROOT / "build/mutate"
TREE = WORK / "tree"
BUILD = TREE / "build/mingw-release"
FOLDERS = ("app", "target", "delivery", "framework", "runtime")

# A step builds a target and runs the tests that these options choose; the steps go from quick to thorough.
Step = collections.namedtuple("Step", "target options")


def steps_for(folder, quick):
    steps = [
        Step("scripted_tests", ("-R", r"^scripted\.")),
        Step("unit_tests", ("-R", r"^unit\.", "-LE", "random")),
        Step("unit_tests", ("-R", r"^unit\.", "-L", "random")),
    ]
    # The last ones take minutes, and repeat as a whole what the others look at one by one. On a busy machine a real run may fail by
    # itself, so it has to fail twice.
    real = ("--repeat", "until-pass:2", "-R", r"^(system|program_file|recipes)\.")
    return steps if quick else steps + [
        Step("all", (*real, "-L", f"^{folder}$", "-LE", "^(matrix|load)$")),
        Step("all", (*real, "-LE", f"^({folder}|matrix|load)$")),
    ]


class Change:
    """One mutant of one file, as the results name it."""

    def __init__(self, file, text, mutant):
        self.file, self.mutant = file, mutant
        self.mutated = text[:mutant.start] + mutant.new + text[mutant.end:]
        place = f"{file}:{mutant.line}:{mutant.column}"
        self.name = f"{place}\t{mutant.operator}\t{self.words(text[mutant.start:mutant.end])} -> {self.words(mutant.new)}"

    @staticmethod
    def words(text):
        return " ".join(text.split()) or "(nothing)"


def all_changes():
    for folder in FOLDERS:
        for path in sorted((ROOT / folder).iterdir()):
            if path.suffix in (".cpp", ".h"):
                text = path.read_text(encoding="utf-8")
                file = str(path.relative_to(ROOT))
                yield from (Change(file, text, mutant) for mutant in mutants_of(text))


class Results:
    """What became of each mutant, one line for each in a file; a later line replaces an earlier one."""

    def __init__(self):
        self.file = WORK / "results.tsv"
        self.outcomes = {}
        for line in self.file.read_text(encoding="utf-8").splitlines() if self.file.exists() else []:
            outcome, rest = line.split("\t", 1)
            name, by = rest.rsplit("\t", 1)
            self.outcomes[name] = (outcome, by)

    def add(self, change, outcome, by):
        self.outcomes[change.name] = (outcome, by)
        with self.file.open("a", encoding="utf-8") as file:
            file.write(f"{outcome}\t{change.name}\t{by}\n")

    def outcome(self, change):
        return self.outcomes.get(change.name, ("not run", ""))[0]


def copy_sources():
    """Brings the copy in line. A file that is the same keeps its time, so that what was built of it stays."""
    wanted = set()
    for folder, subfolders, files in os.walk(ROOT):
        subfolders[:] = [name for name in subfolders if name not in ("build", ".git", "__pycache__")]
        for name in files:
            source = pathlib.Path(folder, name)
            copy = TREE / source.relative_to(ROOT)
            wanted.add(copy)
            copy.parent.mkdir(parents=True, exist_ok=True)
            if not copy.exists() or copy.read_bytes() != source.read_bytes():
                shutil.copy(source, copy)  # with the right to be started
    for folder, subfolders, files in os.walk(TREE):
        subfolders[:] = [name for name in subfolders if name != "build"]
        for name in files:
            if pathlib.Path(folder, name) not in wanted:
                pathlib.Path(folder, name).unlink()


def configure():
    # A defect that the compiler only warns of is one for the tests to find.
    command = ["cmake", "--preset", "mingw-release", "-DCMAKE_CXX_FLAGS=-w"]
    if shutil.which("ccache"):
        command.append("-DCMAKE_CXX_COMPILER_LAUNCHER=ccache")
    subprocess.run(command, cwd=TREE, check=True, stdout=subprocess.DEVNULL)


def build(target, environment=None):
    with (WORK / "build.log").open("wb") as log:
        return subprocess.run(["cmake", "--build", str(BUILD), "--target", target], stdout=log, stderr=log,
                              env=os.environ | (environment or {})).returncode == 0


def noticed_by(step):
    """The first test that fails, or None."""
    # Random tests look at the same for every mutant, and did so without a defect.
    environment = os.environ | {"QUILLET_TEST_SEED": "1"}
    failed = BUILD / "Testing/Temporary/LastTestsFailed.log"
    failed.unlink(missing_ok=True)
    with (WORK / "test.log").open("wb") as log:
        passed = subprocess.run(["ctest", "--preset", "mingw-release", "--stop-on-failure", *step.options], cwd=TREE,
                                stdin=subprocess.DEVNULL, stdout=log, stderr=log, env=environment).returncode == 0
    if passed:
        return None
    # Without a name, a program could not even list its tests.
    return failed.read_text(encoding="utf-8").splitlines()[0].split(":", 1)[1] if failed.exists() else "start"


class Tester:
    def __init__(self, quick):
        """Runs everything once without a defect: all must pass."""
        self.quick = quick
        for step in steps_for(FOLDERS[0], quick):
            if not build(step.target):
                sys.exit(f"does not build without a defect: {WORK / 'build.log'}")
            test = noticed_by(step)
            if test:
                sys.exit(f"{test} fails without a defect: {WORK / 'test.log'}")

    def look_for(self, change):
        """Gives the outcome and the test that noticed the change."""
        path = TREE / change.file
        original = path.read_bytes()
        path.write_text(change.mutated, encoding="utf-8")
        try:
            for step in steps_for(change.file.split("/")[0], self.quick):
                if not build(step.target, {"CCACHE_READONLY": "1"}):
                    return "not compiled", ""
                test = noticed_by(step)
                if test:
                    return "caught", test
            return "survived", ""
        finally:
            path.write_bytes(original)


def report(changes, results):
    counts = collections.Counter(results.outcome(change) for change in changes)
    for change in changes:
        if results.outcome(change) == "survived":
            print("survived\t" + change.name)
    judged = counts["caught"] + counts["survived"]
    share = f", {100 * counts['caught'] / judged:.1f} % caught" if judged else ""
    print(f"{len(changes)} mutants: {counts['caught']} caught, {counts['survived']} survived, "
          f"{counts['not compiled']} not compiled, {counts['not run']} not run{share}")


def main():
    parser = argparse.ArgumentParser(prog="./scripts/mutate")
    parser.add_argument("--file", help="only mutants of files whose path begins so", default="")
    parser.add_argument("--sample", type=int, metavar="N", help="only N of them")
    parser.add_argument("--seed", type=int, help="which, and in which order", default=random.randrange(1_000_000))
    parser.add_argument("--quick", action="store_true", help="without real runs of the program")
    parser.add_argument("--survivors", action="store_true", help="only those that survived, once more")
    parser.add_argument("--list", action="store_true", help="runs nothing; says what became of each")
    options = parser.parse_args()

    # Put into one order for all before the choice, so that a sample is a part of every larger one of its seed.
    changes = list(all_changes())
    order = random.Random(options.seed).sample(changes, len(changes))
    chosen = [change for change in order if change.file.startswith(options.file)][:options.sample]
    WORK.mkdir(parents=True, exist_ok=True)
    results = Results()
    if options.list:
        for change in sorted(chosen, key=changes.index):
            print(results.outcome(change) + "\t" + change.name)
        return

    wanted = "survived" if options.survivors else "not run"
    pending = [change for change in chosen if results.outcome(change) == wanted]
    print(f"seed {options.seed}: {len(chosen)} of {len(changes)} mutants, {len(pending)} to run; {results.file}", flush=True)
    if pending:
        copy_sources()
        configure()
        tester = Tester(options.quick)
        for number, change in enumerate(pending, 1):
            begin = time.monotonic()
            outcome, by = tester.look_for(change)
            results.add(change, outcome, by)
            print(f"{number}/{len(pending)} {time.monotonic() - begin:.0f} s {outcome}: {change.name} {by}", flush=True)
    report(sorted(chosen, key=changes.index), results)


if __name__ == "__main__":
    main()
