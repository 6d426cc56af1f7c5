#!/usr/bin/env python3
"""Checks what can be checked of the workflow without the service that runs it: check_ci.py ROOT

- It parses, and its first line says that it has not been run.
- Every path into this repository exists, scripts that it starts can be started, and every preset is one of its kind.
- What it takes from the self-test kit is called so in packaging/ and tests/kit/.
- What a job needs is a job, and what it downloads has been uploaded by one that it needs.
- Actions are named with a version, and the workflow may read the repository and no more.

Prints one line per fault, and ends with 1 if there is any.
"""
import json
import os
import re
import sys
from pathlib import Path

import yaml

from check_docs import check_paths

WORKFLOW = ".github/workflows/ci.yml"
FIRST_LINE = "# Not yet run: "
KINDS = {"cmake --preset": "configurePresets", "cmake --build --preset": "buildPresets", "ctest --preset": "testPresets"}
PRESET = re.compile(r"(cmake --preset|cmake --build --preset|ctest --preset) (\S+)")
BUILD = re.compile(r"\bbuild/([\w-]+)/")
OF_KIT = re.compile(r"-selftest-x64|[\w-]+\.(?:cmd|txt)|(?<=selftest\.cmd\" )/\w+")
ACTION = re.compile(r"[\w-]+/[\w-]+@v\d+")


def steps(workflow):
    return [step for job in workflow["jobs"].values() for step in job["steps"]]


def commands(workflow):
    """The commands of every step; those of one that is folded are one line."""
    return [line for step in steps(workflow) for line in step.get("run", "").splitlines()]


def names_of(presets, kind):
    return {preset["name"] for preset in presets[kind] if not preset.get("hidden")}


def check_presets(root, text, workflow):
    presets = json.loads((root / "CMakePresets.json").read_text(encoding="utf-8"))
    for command, name in PRESET.findall("\n".join(commands(workflow))):
        if name not in names_of(presets, KINDS[command]):
            yield f"{command} {name}: there is no such preset"
    for name in BUILD.findall(text):
        if name not in names_of(presets, "configurePresets"):
            yield f"build/{name}/ is the folder of no preset"


def check_files(root, text, workflow):
    yield from check_paths(root, re.findall(r"[\w./*-]+[\w/*-]", text))
    for line in commands(workflow):
        script = root / line.split()[0]
        if line.startswith("./") and not os.access(script, os.X_OK):
            yield f"{line.split()[0]} cannot be started"


def check_kit(root, text):
    there = "".join(path.read_text(encoding="utf-8") for folder in ("packaging", "tests/kit")
                    for path in sorted((root / folder).iterdir()) if path.is_file())
    for name in sorted(set(OF_KIT.findall(text))):
        if not re.search(rf"(?<![\w-]){re.escape(name)}\b", there):
            yield f"the self-test kit has no {name}"


def artifacts(job, action):
    return {step["with"]["name"] for step in job["steps"] if step.get("uses", "").startswith(f"actions/{action}-artifact@")}


def check_jobs(jobs):
    for name, job in jobs.items():
        needed = [job["needs"]] if isinstance(job.get("needs"), str) else job.get("needs", [])
        for other in needed:
            if other not in jobs:
                yield f"{name} needs {other}, which is no job"
        there = {artifact for other in needed for artifact in artifacts(jobs.get(other, {"steps": []}), "upload")}
        for artifact in sorted(artifacts(job, "download") - there):
            yield f"{name} downloads {artifact}, which no job that it needs has uploaded"


def check_trust(workflow):
    if workflow.get("permissions") != {"contents": "read"}:
        yield "the workflow may do more than read"
    for step in steps(workflow):
        if "uses" in step and not ACTION.fullmatch(step["uses"]):
            yield f"{step['uses']} has no version"


def check(root):
    text = (root / WORKFLOW).read_text(encoding="utf-8")
    try:
        workflow = yaml.safe_load(text)
    except yaml.YAMLError as error:
        return [f"is no YAML: {error}"]
    faults = [] if text.startswith(FIRST_LINE) else [f"does not begin with '{FIRST_LINE}…'"]
    return [*faults, *check_presets(root, text, workflow), *check_files(root, text, workflow),
            *check_kit(root, text), *check_jobs(workflow["jobs"]), *check_trust(workflow)]


def main(root):
    faults = [f"{WORKFLOW}: {fault}" for fault in check(root)]
    print("\n".join(faults) if faults else f"{WORKFLOW} is right as far as can be told")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1]).resolve()))
