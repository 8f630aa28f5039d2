#!/usr/bin/env python3
"""The sweep finds what a plug-in does wrong when a call fails, and nothing else.

Each case of faulty.json does one thing wrong, and only then. The command that runs simhost follows on the command line.
"""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

SCENARIO = "tests/sweep/faulty.json"

# Case, what is made to fail, and of each finding, in order, the call that failed and what the text must match.
ACQUIRE, ALLOCATE = "SP Basic Suite/AcquireSuite/SP Blocks Suite", "SP Blocks Suite/AllocateBlock"
MISUSE = r"^bad-argument: SP Blocks Suite/FreeBlock: not a block that is to be freed$"
SPOILT = r"the same scenario without a fault failed afterwards: .*was answered with 98, expected 0"
EXPECTED = [
    ("bears", ["--replay-every", "4"], []),
    ("block", ["--kind", "host", "--mode", "once"],
     [(ACQUIRE, r"^left: 1 of malloc$"), (ALLOCATE, r"^left: 1 of malloc$")]),
    ("handle", ["--kind", "allocation", "--mode", "once"], [("malloc", r"^left: 1 of CreateFileW$")]),
    ("suite", ["--kind", "import", "--mode", "once"],
     [("CreateFileW", r'^suite-leak AI Menu Suite: "AI Menu Suite" is still held 1 times$')]),
    ("crash", ["--kind", "allocation", "--mode", "once"],
     [("malloc", r"^crash: .*access violation .* in AccessViolation of FaultyPlugin\.aip \(FatalFaults\.cpp:\d+\)")]),
    ("hang", ["--kind", "allocation", "--mode", "once", "--step-time-limit", "2"],
     [("malloc", r"^hang: .* the main thread is in Hang of FaultyPlugin\.aip")]),
    ("exception", ["--kind", "import", "--mode", "once"],
     [("CreateFileW", r"^an exception left the plug-in$")]),
    ("busy", ["--kind", "allocation", "--mode", "once"],
     [("malloc", r'^a message was refused, as if another were being handled: .*; '
                 r"a message after the last step was refused; the next run of the same instance, without a fault, came out "
                 r"otherwise: the messages after the last step were answered with 1 and 1, expected 0 and 0; "
                 r'message 1: .* answered with 1, expected .* answered with 0')]),
    ("host-state", ["--kind", "allocation", "--mode", "once"],
     [("malloc", r'^host-state: message "Fault"/"leave the error mode when a call fails": the error mode became ')]),
    # A new library, which the scenario is played to after these faults, knows nothing of them.
    ("remembered", ["--kind", "allocation", "--mode", "once"],
     [("malloc", r"^the next run of the same instance, without a fault, came out otherwise: "
                 r"SP Basic Suite/AcquireSuite was called 0 times, expected 1; .*"
                 r"SP Blocks Suite/FreeBlock was called 0 times, expected 1$")]),
    ("remembered-badly", ["--kind", "allocation", "--mode", "once"],
     [("malloc", r"^in the next run of the same instance, without a fault: crash: .*in AccessViolation of ")]),
    # No call is made to fail any more: the host notices.
    ("afterwards", ["--kind", "host", "--mode", "from-here"],
     [(ACQUIRE, MISUSE), (ALLOCATE, MISUSE)]),
    # Two of four faults that share a replay are to blame: which ones is found out.
    ("spoilt", ["--kind", "host", "--mode", "once", "--replay-every", "4"], [(ACQUIRE, SPOILT), (ALLOCATE, SPOILT)]),
    ("filled", ["--kind", "host", "--mode", "filled"],
     [(ALLOCATE, r"^bad-argument: SP Blocks Suite/FreeBlock: not a block that is to be freed$")]),
    # Only the end of the process shows it: the last fault is named, whichever was to blame.
    ("process", ["--kind", "import", "--mode", "once"],
     [("CloseHandle", r"^when all was played, the process did not end well: process-left: Lumet\.exe was started ")]),
]


def sweep(command: list[str], arguments: list[str]) -> tuple[int, str, dict]:
    with tempfile.TemporaryDirectory() as folder:
        record = pathlib.Path(folder) / "totals.json"
        run = subprocess.run([*command, "sweep", *arguments, "--json", str(record)], check=False,
                             capture_output=True, text=True, env={**os.environ, "SIMHOST_COMMAND": "again-by"})
        totals = json.loads(record.read_text(encoding="utf-8")) if record.exists() else {}
        return run.returncode, run.stdout + run.stderr, totals


def mistakes_in(case: str, expected: list, code: int, output: str, totals: dict):
    found = [(finding["operation"], "; ".join(finding["texts"])) for finding in totals.get("findings", [])]
    matches = len(found) == len(expected) and all(
        operation == wanted and re.search(pattern, text)
        for (operation, text), (wanted, pattern) in zip(found, expected))
    if not matches or code != (1 if expected else 0):
        yield f"{case}: expected {expected}, exit code {code}, found {found}\n{output}"
    if totals.get("faults", 0) == 0:
        yield f"{case}: nothing was made to fail"


def count_mistakes(command: list[str]):
    """What is left out is counted: with it, each way of playing a case comes to the same."""
    every_call = sweep(command, [SCENARIO, "--case", "bears"])[2]
    some = sweep(command, [SCENARIO, "--case", "bears", "--distinct", "--every", "3"])[2]
    left_out = some["left_out"]
    if every_call["left_out"] != {"same_way": 0, "passed_over": 0, "not_played": 0}:
        yield f"all was played, but {every_call['left_out']} is left out"
    if left_out["passed_over"] == 0 or left_out["not_played"] != 0 or some["faults"] + left_out["same_way"] + \
            left_out["passed_over"] != every_call["faults"]:
        yield f"{some['faults']} of {every_call['faults']} faults were played, but {left_out} is left out"
    for totals in (every_call, some):
        rows = [row for modes in totals["by_kind"].values() for row in modes.values()]
        if sum(row["offered"] for row in rows) != every_call["faults"] or \
                sum(row["played"] for row in rows) != totals["faults"] or \
                totals["injected"] + totals["not_reached"] != totals["faults"]:
            yield f"the counts do not add up: {totals}"


def repeat_mistakes(command: list[str], totals: dict):
    """The command that is told with a finding brings it about again, and shows the way to it."""
    finding = totals["findings"][0]
    code, output, again = sweep(command, finding["repeat"].split())
    if code != 1 or [one["texts"] for one in again["findings"]] != [finding["texts"]]:
        yield f"{finding['repeat']}: exit code {code}, not the finding {finding}\n{output}"
    for wanted in (r"the call, in \w+", r"left by malloc, in .*LeakWhenACallFails"):
        if not re.search(wanted, output):
            yield f"{finding['repeat']}: nothing like '{wanted}' in\n{output}"


def main() -> int:
    command = sys.argv[1:]
    mistakes = []
    for case, options, expected in EXPECTED:
        code, output, totals = sweep(command, [SCENARIO, "--case", case, *options])
        mistakes += mistakes_in(case, expected, code, output, totals)
        if case == "block" and not mistakes:
            mistakes += repeat_mistakes(command, totals)
    mistakes += count_mistakes(command)
    code, output, totals = sweep(command, [SCENARIO, "--case", "bears", "--number", "99"])
    if code != 2 or "there is no such call" not in output:
        mistakes.append(f"a call that never comes: exit code {code}\n{output}")
    cases = set(json.loads(pathlib.Path(SCENARIO).read_text(encoding="utf-8"))["cases"])
    if cases != {case for case, _, _ in EXPECTED}:
        mistakes.append(f"{SCENARIO} has other cases than this test")
    for mistake in mistakes:
        print(f"FAILED {mistake}")
    if not mistakes:
        print(f"Passed: {len(EXPECTED)} cases")
    return 1 if mistakes else 0


if __name__ == "__main__":
    sys.exit(main())
