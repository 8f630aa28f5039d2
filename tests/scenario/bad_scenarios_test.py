#!/usr/bin/env python3
"""Negative tests of the scenario reader and of the schema.

Each file in bad/ is refused by simhost with the complaint in the .txt file beside it, and nothing is played. The schema
refuses the same files, except what it cannot know. The command to play a scenario follows on the command line.
"""

import json
import pathlib
import subprocess
import sys

import scenario_schema

BAD = pathlib.Path(__file__).parent / "bad"
# What only the reader can know: names that are defined elsewhere in the file.
SCHEMA_ACCEPTS = {
    "like-nothing",
    "set-where-nothing-is",
    "unknown-owner",
    "unknown-placeholder",
    "value-used-in-itself",
}


def complaints(command: list[str], path: pathlib.Path) -> tuple[list[str], str, int]:
    run = subprocess.run([*command, str(path), "--quiet"], capture_output=True, check=False)
    lines = [line.removeprefix("simhost: ") for line in run.stderr.decode("utf-8").splitlines()]
    return lines, run.stdout.decode("utf-8"), run.returncode


def check_reader(command: list[str]) -> list[str]:
    lines, printed, code = complaints(command, BAD)
    faults = []
    if code != 2:
        faults.append(f"the exit code is {code} and not 2")
    if "assed" in printed:
        faults.append(f"something was played: {printed}")
    for path in sorted(BAD.glob("*.json")):
        complaint = path.with_suffix(".txt").read_text(encoding="utf-8").strip()
        found = [line for line in lines if complaint in line]
        if len(found) != 1:
            about = [line for line in lines if path.name in line]
            faults.append(f"{path.name}: expected the complaint {complaint!r}, but came {about}")
    if len(lines) != len(list(BAD.glob("*.json"))):
        faults.append(f"there is not exactly one complaint per file: {lines}")
    lines, _, code = complaints(command, BAD / "missing-file.json")
    if code != 2 or not lines or not lines[0].endswith("missing-file.json: cannot be read"):
        faults.append(f"a missing file brings exit code {code} and {lines}")
    lines, _, code = complaints([*command, "--case", "nowhere"], BAD.parent / "faults" / "calls.json")
    if code != 2 or lines != ['calls.json: there is no case "nowhere"']:
        faults.append(f"an unknown case brings exit code {code} and {lines}")
    return faults


def check_schema() -> list[str]:
    faults = []
    for path in sorted(BAD.glob("*.json")):
        try:
            scenario = json.loads(path.read_text(encoding="utf-8"))
        except json.JSONDecodeError:
            continue
        accepted = not scenario_schema.fault_of(scenario)
        if accepted != (path.stem in SCHEMA_ACCEPTS):
            faults.append(f"{path.name}: the schema {'accepts' if accepted else 'refuses'} it")
    return faults


def check_pairs() -> list[str]:
    scenarios = {path.stem for path in BAD.glob("*.json")}
    files = {path for path in BAD.iterdir() if path.suffix not in (".json", ".txt") or path.stem not in scenarios}
    return [f"{path.name} belongs to no scenario in bad/" for path in sorted(files)]


def main() -> int:
    faults = check_pairs() + check_schema() + check_reader(sys.argv[1:])
    print("\n".join(faults) or "Every bad scenario is refused, for the right reason.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
