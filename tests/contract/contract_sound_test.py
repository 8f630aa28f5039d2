#!/usr/bin/env python3
"""What keeps the contract passes, and what the check says about itself is right.

 - the example, the double and the libraries without a fault keep all clauses, and each was tried
 - a library may be slow; a level counts its own clauses
 - every clause that can break a run has a library in the table of faults, and every library is in it
 - what is no library, or not there, is refused with exit code 2
 - a run with a library of one's own names what it breaks

The folder of the built files and the command that runs simhost follow on the command line.
"""

import json
import pathlib
import sys

from contract_test import ALLOWED, FAULTS, HINTS, Contract


def check_sound(contract: Contract, library: pathlib.Path, *options: str, answers: pathlib.Path | None = None):
    code, report = contract.check(library, *options, answers=answers)
    for clause in report["clauses"]:
        if clause["clause"] not in HINTS and clause["state"] != "kept":
            yield f"{library.name}: {clause['clause']} is {clause['state']}: {clause['seen']}"
    if code != 0:
        yield f"{library.name}: the exit code is {code}: {report['notes']}"


def check_time(contract: Contract):
    """A slow library is not convicted, and no probe goes on for ever."""
    library = contract.folder / "FaultyTakesMoreTime.dll"
    # Ten calls of one probe take four times as long as one may.
    yield from check_sound(contract, library, "--call-time-limit", "1")
    code, report = contract.check(library, "--probe-time-limit", "1")
    if code != 0 or not any('"small-buffers": it was not finished within 1 seconds' in n for n in report["notes"]):
        yield f"{library.name} with little time: exit code {code}, {report['notes']}"


def check_levels(contract: Contract):
    for name, passing in (("LeavesThread", ["contract"]), ("ChangesErrorMode", ["contract", "robust"]), ("Throws", [])):
        for level in ("contract", "robust"):
            code, report = contract.check(contract.folder / f"Faulty{name}.dll", level=level)
            if (code, report["passed"]) != ((0, True) if level in passing else (1, False)):
                yield f"Faulty{name} at level {level}: exit code {code}, passed {report['passed']}"


def check_table(contract: Contract):
    built = {path.stem.removeprefix("Faulty") for path in contract.folder.glob("Faulty*.dll")} - {"Nothing", *ALLOWED}
    for name in sorted(built ^ set(FAULTS)):
        yield f"{name} is {'not in the table' if name in built else 'in the table and not built'}"
    known = json.loads(contract.run("list", "--json").stdout)["clauses"]
    for clause in sorted(set(known) ^ {clause for clause, _ in FAULTS.values()}):
        yield f"the clause {clause} is {'broken by no library' if clause in known else 'not known'}"
    for clause in known:
        told = contract.run("explain", clause)
        if told.returncode != 0 or told.stdout.decode().count("\n") < 6:
            yield f"explain {clause}: exit code {told.returncode}, {told.stdout.decode()!r}"


def check_refusals(contract: Contract):
    for arguments, expected in (
        (("explain", "bufer-behind"), '; did you mean "buffer-behind"?'),
        (("contract", str(contract.folder / "nowhere.dll")), "there is no file"),
        (("contract", __file__), "is a text"),
    ):
        done = contract.run(*arguments)
        if done.returncode != 2 or expected not in done.stderr.decode():
            yield f"{arguments}: exit code {done.returncode}, {done.stderr.decode()!r}"


def check_play(contract: Contract):
    for library, expected in (
        # The run goes on behind the fault, and names the place.
        ("FaultyWritesBehindBuffer", 'FAILED contract: buffer-behind: any-calls.json.begin[0]: GetMenus, call 1: written 1 '
                                     'byte behind the end of "buffer" (4096 bytes) ('),
        ("FaultyKeepsText", "FAILED contract: argument-kept: any-calls.json.steps[1]: HandleOpenExistingDocument"),
        ("FaultyLeavesHook", "FAILED contract: hook-left: any-calls.json.end[0]: TerminatePluginCoreInterface, call 1: it"),
    ):
        file = str(contract.folder / f"{library}.dll")
        done = contract.run("play", "tests/contract/any-calls.json", "--quiet", "--plugincore", file)
        if done.returncode != 1 or expected not in done.stderr.decode():
            yield f"play with {library}: exit code {done.returncode}, {done.stderr.decode()}"
    # What a library changes in the host's process is not held against the plug-in.
    for library in ("FaultyChangesFolder", "FaultyChangesRounding", "FaultyChangesErrorMode"):
        file = str(contract.folder / f"{library}.dll")
        done = contract.run("play", "tests/contract/any-calls.json", "--quiet", "--plugincore", file)
        if done.returncode != 0:
            yield f"play with {library}: exit code {done.returncode}, {done.stderr.decode()}"
    # What it needs lies where it came from.
    for scenario, file in (
        ("ticks.json", contract.folder / "PluginCoreWithNeighbour.dll"),
        ("location.json", contract.folder.parent / "PluginCoreX64.dll"),
    ):
        done = contract.run("play", f"devkit/scenarios/{scenario}", "--quiet", "--plugincore", str(file))
        printed = done.stdout.decode() + done.stderr.decode()
        # The double keeps to the scenario; the other library has items of its own.
        if ("fonts -> 0" in printed) if file.name == "PluginCoreWithNeighbour.dll" else (done.returncode == 0):
            continue
        yield f"play {scenario} with {file.name}: exit code {done.returncode}, {printed}"


def main() -> int:
    contract = Contract(sys.argv[1], sys.argv[2:])
    faults = [
        *check_table(contract),
        *check_refusals(contract),
        *check_play(contract),
        *check_sound(contract, contract.folder / "ExamplePluginCore.dll"),
        *check_sound(contract, contract.folder / "FaultyNothing.dll"),
        *check_sound(contract, contract.folder / "FaultyTellsLength.dll"),
        *check_sound(contract, contract.folder / "FaultyTellsSize.dll"),
        *check_sound(contract, contract.folder.parent / "PluginCoreX64.dll",
                     answers=pathlib.Path(__file__).with_name("double-answers.json")),
        *check_time(contract),
        *check_levels(contract),
    ]
    print("\n".join(faults) or "All sound libraries keep the contract.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
