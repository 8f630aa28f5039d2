#!/usr/bin/env python3
"""Negative tests of the scenario reader and of the schema.

Each file in bad/ is refused by simhost with exactly the complaints in the .txt file beside it, and nothing is played.
The schema refuses the same files, except what it cannot know. The command to play a scenario follows on the command
line.
"""

import json
import pathlib
import subprocess
import sys
import tempfile

import scenario_schema

BAD = pathlib.Path(__file__).parent / "bad"
# What only the reader can know: names that are defined elsewhere, or by the double of the host; what is behind a value;
# and two members of one name, of which most readers of JSON see one.
SCHEMA_ACCEPTS = {
    "argument-of-another-kind",
    "files-not-there",
    "in-one-case",
    "like-nothing",
    "name-twice",
    "no-script-code",
    "no-step-at-all",
    "no-time",
    "set-where-nothing-is",
    "through-a-value",
    "unknown-argument",
    "unknown-document",
    "unknown-menu-item",
    "unknown-operation",
    "unknown-owner",
    "unknown-owner-in-check",
    "unknown-placeholder",
    "unknown-suite",
    "value-used-in-itself",
}
# Words of the JSON library, which mean nothing to a reader.
JARGON = ("json.exception", "parse_error", "type_error", "syntax error while parsing")


def lines_of(complaints: str) -> list[str]:
    return [line.removeprefix("simhost: ") for line in complaints.splitlines()]


def complaints(command: list[str], *arguments) -> tuple[list[str], str, int]:
    run = subprocess.run([*command, *map(str, arguments), "--quiet"], capture_output=True, check=False)
    return lines_of(run.stderr.decode("utf-8")), run.stdout.decode("utf-8"), run.returncode


def expected_of(path: pathlib.Path) -> list[str]:
    return path.with_suffix(".txt").read_text(encoding="utf-8").splitlines()


def lines_about(path: pathlib.Path, lines: list[str]) -> list[str]:
    """From the file's name on: where it lies is called otherwise in Windows."""
    return [line[line.index(path.name):] for line in lines if f"/{path.name}:" in line]


def check_reader(command: list[str]) -> list[str]:
    lines, printed, code = complaints(command, BAD)
    faults = []
    if code != 2:
        faults.append(f"the exit code is {code} and not 2")
    if "assed" in printed:
        faults.append(f"something was played: {printed}")
    for path in sorted(BAD.glob("*.json")):
        expected = expected_of(path)
        found = lines_about(path, lines)
        if found != expected:
            faults.append(f"{path.name}: expected {expected}, but came {found}")
    faults += [f"a complaint in the words of a library: {line}" for line in lines if any(w in line for w in JARGON)]
    return faults


def check_one(command: list[str], what: str, expected: str, *arguments) -> list[str]:
    lines, _, code = complaints(command, *arguments)
    if code == 2 and len(lines) == 1 and lines[0].endswith(expected):
        return []
    return [f"{what} brings exit code {code} and {[line[:200] for line in lines]}"]


def check_names(command: list[str]) -> list[str]:
    calls = BAD.parent / "faults" / "calls.json"
    return [
        *check_one(command, "a missing file", "missing-file.json: cannot be read", BAD / "missing-file.json"),
        *check_one(command, "an unknown case", 'there is no case "mising"; did you mean "missing"?', calls, "--case",
                   "mising"),
        *check_one(command, "a pattern without files", "no scenario matches tests/nowhere-*", "tests/nowhere-*"),
    ]


def check_large(command: list[str]) -> list[str]:
    """Files that are too large to lie here."""
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "large.json"
        path.write_text('{"title": ' + "[" * 200_000, encoding="utf-8")
        faults += check_one(command, "a file of 200,000 brackets",
                            "large.json:1:110: more than 100 levels of arrays and objects", path)
        path.write_text('{"title": "' + "T" * (16 * 1024 * 1024) + '"}', encoding="utf-8")
        faults += check_one(command, "a file of 16 megabytes",
                            "large.json:1:1: the file has more than 16 megabytes", path)
        path.write_text(json.dumps({"title": "T", "values": {f"v{i}": 0 for i in range(100_000)}}), encoding="utf-8")
        faults += check_one(command, "100,000 members of an object",
                            "large.json:1:10917: more than 1000 members in one object", path)
        chain = {"v0": [], **{f"v{i}": [f"${{v{i - 1}}}"] for i in range(1, 150)}}
        steps = [{"do": "about", "calls": []}]
        path.write_text(json.dumps({"title": "T", "values": dict(reversed(chain.items())), "steps": steps}))
        faults += check_one(command, "a chain of 150 values", "values.v50[0]: more than 100 values that use each other", path)
        # The mark that Windows editors write is harmless.
        path.write_bytes(b"\xef\xbb\xbf" + json.dumps({"title": "T", "steps": [{"do": "jump"}]}).encode())
        faults += check_one(command, "a byte order mark", 'large.json:1:33: steps[0].do: there is no verb "jump"', path)
    return faults


def check_schema() -> list[str]:
    faults = []
    for path in sorted(BAD.glob("*.json")):
        try:
            scenario = json.loads(path.read_bytes().decode("utf-8"))
        except (json.JSONDecodeError, UnicodeDecodeError):
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
    command = sys.argv[1:]
    faults = check_pairs() + check_schema() + check_reader(command) + check_names(command) + check_large(command)
    print("\n".join(faults) or "Every bad scenario is refused, for the right reason.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
