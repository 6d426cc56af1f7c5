"""Makes defects in a copy of the sources, one at a time, and lets the tests look for them: see scripts/mutate."""

import argparse
import collections
import os
import pathlib
import random
import subprocess
import sys
import time

from mutants import mutants_of

ROOT = pathlib.Path(__file__).resolve().parents[2]
WORK = ROOT / "build/mutate"
TREE = WORK / "tree"  # the copy, which scripts/mutate has brought in line and configured
RESULTS = WORK / "results.tsv"
FAILED = TREE / "build/mingw-release/Testing/Temporary/LastTestsFailed.log"
FOLDERS = ("app", "target", "delivery", "framework", "runtime")

# One mutant of one file, as the results name it, and the file's text with it.
Change = collections.namedtuple("Change", "file name mutated")


def steps_for(folder, quick):
    """From quick to thorough: targets to build, each with the options that choose its tests."""
    steps = [
        ("scripted_tests", ("-R", r"^scripted\.")),
        ("unit_tests", ("-R", r"^unit\.", "-LE", "random")),
        ("unit_tests", ("-R", r"^unit\.", "-L", "random")),
    ]
    # The last ones take minutes, and repeat as a whole what the others look at one by one. On a busy machine a real run may
    # fail by itself, so it has to fail twice.
    real = ("--repeat", "until-pass:2", "-R", r"^(system|program_file|recipes)\.")
    return steps if quick else steps + [
        ("all", (*real, "-L", f"^{folder}$", "-LE", "^(matrix|load)$")),
        ("all", (*real, "-LE", f"^({folder}|matrix|load)$")),
    ]


def changes_of(path):
    text, file = path.read_text(encoding="utf-8"), str(path.relative_to(ROOT))
    for operator, start, end, new in mutants_of(text):
        line, column = text.count("\n", 0, start) + 1, start - text.rfind("\n", 0, start)
        old_words, new_words = (" ".join(words.split()) or "(nothing)" for words in (text[start:end], new))
        name = f"{file}:{line}:{column}\t{operator}\t{old_words} -> {new_words}"
        yield Change(file, name, text[:start] + new + text[end:])


def known_outcomes():
    """What became of each mutant that was run: one line for each, and a later line replaces an earlier one."""
    lines = RESULTS.read_text(encoding="utf-8").splitlines() if RESULTS.exists() else []
    splits = [line.split("\t") for line in lines]
    return {"\t".join(name): outcome for outcome, *name, _ in splits}


def succeeds(log, *command, **environment):
    with (WORK / log).open("wb") as file:
        return subprocess.run(command, cwd=TREE, stdin=subprocess.DEVNULL, stdout=file, stderr=file,
                              env=os.environ | environment).returncode == 0


def judge(folder, quick, **environment):
    """Builds the copy and runs its tests, step by step: the outcome, and the test that noticed."""
    for target, options in steps_for(folder, quick):
        if not succeeds("build.log", "cmake", "--build", "--preset", "mingw-release", "--target", target, **environment):
            return "not compiled", ""
        FAILED.unlink(missing_ok=True)
        # Random tests look at the same for every mutant, and did so without a defect.
        test = ("ctest", "--preset", "mingw-release", "--stop-on-failure", *options)
        if not succeeds("test.log", *test, QUILLET_TEST_SEED="1"):
            # "1:NAME" in each line; without a name, a program could not even list its tests.
            return "caught", FAILED.read_text(encoding="utf-8").splitlines()[0].split(":", 1)[1] if FAILED.exists() else "start"
    return "survived", ""


def judge_change(change, quick):
    path = TREE / change.file
    original = path.read_bytes()
    path.write_text(change.mutated, encoding="utf-8")
    try:
        return judge(change.file.split("/")[0], quick, CCACHE_READONLY="1")
    finally:
        path.write_bytes(original)


def report(outcomes):
    for name, outcome in outcomes.items():
        if outcome == "survived":
            print(f"survived\t{name}")
    counts = collections.Counter(outcomes.values())
    judged = counts["caught"] + counts["survived"]
    share = f", {100 * counts['caught'] / judged:.1f} % caught" if judged else ""
    print(f"{len(outcomes)} mutants: {counts['caught']} caught, {counts['survived']} survived, "
          f"{counts['not compiled']} not compiled, {counts['not run']} not run{share}")


def main():
    parser = argparse.ArgumentParser(prog="./scripts/mutate", add_help=False)
    parser.add_argument("--sample", type=int, metavar="N")
    parser.add_argument("--seed", type=int, default=random.randrange(1_000_000))
    parser.add_argument("--file", metavar="PATH", default="")
    for flag in ("--quick", "--survivors", "--list"):
        parser.add_argument(flag, action="store_true")
    options = parser.parse_args()

    paths = [path for folder in FOLDERS for path in sorted((ROOT / folder).iterdir()) if path.suffix in (".cpp", ".h")]
    changes = [change for path in paths for change in changes_of(path)]
    # Put into one order for all before the choice, so that a sample is a part of every larger one of its seed.
    order = random.Random(options.seed).sample(changes, len(changes))
    chosen = [change for change in order if change.file.startswith(options.file)][:options.sample]
    known = known_outcomes()
    outcomes = {change.name: known.get(change.name, "not run") for change in sorted(chosen, key=changes.index)}
    if options.list:
        for name, outcome in outcomes.items():
            print(f"{outcome}\t{name}")
        return

    wanted = "survived" if options.survivors else "not run"
    pending = [change for change in chosen if outcomes[change.name] == wanted]
    print(f"seed {options.seed}: {len(chosen)} of {len(changes)} mutants, {len(pending)} to run; {RESULTS}", flush=True)
    outcome, test = judge(FOLDERS[0], options.quick) if pending else ("survived", "")
    if outcome != "survived":
        sys.exit(f"{test or 'the build'} fails without a defect, see test.log or build.log in {WORK}")
    for number, change in enumerate(pending, 1):
        begin = time.monotonic()
        outcome, test = judge_change(change, options.quick)
        outcomes[change.name] = outcome
        with RESULTS.open("a", encoding="utf-8") as file:
            file.write(f"{outcome}\t{change.name}\t{test}\n")
        print(f"{number}/{len(pending)} {time.monotonic() - begin:.0f} s {outcome}: {change.name} {test}", flush=True)
    report(outcomes)


if __name__ == "__main__":
    main()
