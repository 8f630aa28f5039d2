#!/usr/bin/env python3
"""Every clause of the contract is broken by a faulty PluginCore, and each of these breaks exactly its clause.

 - the faulty libraries are those of the table below, all of them, each caught in the entry that is at fault
 - every clause that can break a run has a library in the table
 - the example, the double and the libraries without a fault keep all clauses, and each was tried
 - a library may be slow; a level counts its own clauses
 - what is no library, or not there, is refused with exit code 2

The folder of the built files and the command that runs simhost follow on the command line.
"""

import json
import os
import pathlib
import re
import subprocess
import sys

# The library: the clause that it breaks, and the entry that does.
FAULTS = {
    "WritesBehindBuffer": ("buffer-behind", "GetMenus"),
    "WritesFlagAsBool": ("buffer-behind", "PluginIsEnabled"),
    "WritesInFrontOfBuffer": ("buffer-in-front", "GetIDForDocument"),
    "Unterminated": ("buffer-terminated", "GetIDForDocument"),
    "AnswersInLatin1": ("reply-utf-8", "GetIDForDocument"),
    "WritesBehindText": ("buffer-rest", "GetIDForDocument"),
    "ChangesFolder": ("current-folder", "HandleSaveDocument"),
    "ChangesRounding": ("floating-point", "HandleSaveDocument"),
    "ChangesErrorMode": ("error-mode", "HandleSaveDocument"),
    "GrowsSize": ("size-sane", "HandleOpenExistingDocument"),
    "WritesToNullBuffer": ("null-buffer", "HandleOpenExistingDocument"),
    "RefusesNullBuffer": ("null-buffer", "HandleOpenExistingDocument"),
    "ReadsBehindText": ("argument-behind", "HandleSaveDocument"),
    "ReadsBehindTextSlowly": ("argument-behind", "HandleSaveDocument"),
    "ReadsInFrontOfText": ("argument-behind", "HandleSaveDocument"),
    "WritesInFrontOfText": ("argument-behind", "HandleSaveDocument"),
    "WritesToText": ("argument-written", "HandleCloseDocument"),
    "KeepsText": ("argument-kept", "HandleOpenExistingDocument"),
    "KeepsBuffer": ("argument-kept", "HandleCreateNewDocument"),
    "FreesText": ("argument-freed", "HandleSaveDocument"),
    "ReallocatesText": ("argument-freed", "HandleSaveDocument"),
    "ChangesState": ("messaging-state", "RegisterPlugPlug"),
    "ChangesStateLater": ("messaging-state", "RegisterPlugPlug"),
    "AnswersTwo": ("flag-value", "PluginIsEnabled"),
    "Throws": ("exception", "HandleSaveDocument"),
    "Raises": ("exception", "HandleCloseDocument"),
    "RaisesToGoOn": ("exception", "GetIDForDocument"),
    "AddsWithNullContext": ("callback-context", "CreateMenusFromJSONBuffer"),
    "AddsWithOwnContext": ("callback-context", "CreateMenusFromJSONBuffer"),
    "AddsWithoutLabel": ("callback-text", "CreateMenusFromJSONBuffer"),
    "AddsWithOddFlag": ("callback-flag", "CreateMenusFromJSONBuffer"),
    "ChildrenFirst": ("callback-parent", "CreateMenusFromJSONBuffer"),
    "AddsTwice": ("callback-duplicate", "CreateMenusFromJSONBuffer"),
    "AddsSubMenuTwice": ("callback-duplicate", "CreateMenusFromJSONBuffer"),
    "AddsLabelTwice": ("callback-duplicate", "CreateMenusFromJSONBuffer"),
    "AddsOnOtherThread": ("callback-thread", "CreateMenusFromJSONBuffer"),
    "AddsLate": ("callback-late", "CreateMenusFromJSONBuffer"),
    "AnswersCutJson": ("menu-json", "GetMenus"),
    "AnswersWithoutChild": ("menu-members", "GetMenus"),
    "AnswersWithNumber": ("menu-kinds", "GetMenus"),
    "AnswersIni": ("settings-json", "GetSettings"),
    "AnswersTrue": ("settings-members", "GetSettings"),
    "RefusesVersion": ("version", "GetAPIVersion"),
    "SilentAfterTerminate": ("after-terminate", "GetSettings"),
    "ForgetsPort": ("after-terminate", "GetSocketPort"),
    "FailsSecondStart": ("second-start", "InitializePluginCoreInterface"),
    "LeavesHook": ("hook-left", "TerminatePluginCoreInterface"),
    "LeavesWindow": ("window-left", "TerminatePluginCoreInterface"),
    "LeavesWindowUnseen": ("window-left", "TerminatePluginCoreInterface"),
    "LeavesThread": ("thread-left", "TerminatePluginCoreInterface"),
    "LeavesManyThreads": ("thread-left", "TerminatePluginCoreInterface"),
    "LeavesProcess": ("process-left", "TerminatePluginCoreInterface"),
    "Leaks": ("memory-grows", "IdleEvent"),
    "LeaksAtStart": ("memory-grows", "InitializePluginCoreInterface"),
    "LeaksHandle": ("handles-grow", "IdleEvent"),
    "LacksEntry": ("entries-missing", ""),
    "ShowsDialog": ("dialog", "HandleOpenExistingDocument"),
    "Crashes": ("crash", "HandleOpenExistingDocument"),
    "CrashesWithLongPath": ("crash", "HandleOpenExistingDocument"),
    "OverflowsStack": ("crash", "HandleOpenExistingDocument"),
    "Hangs": ("hang", "HandleOpenExistingDocument"),
    "Exits": ("process-ended", "HandleOpenExistingDocument"),
    "CallsExit": ("process-ended", "HandleOpenExistingDocument"),
    "Terminates": ("process-ended", "HandleOpenExistingDocument"),
    "Aborts": ("process-ended", "HandleOpenExistingDocument"),
    "FailsFast": ("process-ended", "HandleOpenExistingDocument"),
    "TakesTime": ("slow", "HandleSaveDocument"),
}
# These do unusual things that the contract allows.
ALLOWED = ["TellsLength", "TellsSize", "TakesMoreTime"]
# What makes it risky to call the library without guards: lost processes, dialogs, and memory that is not its own.
TOO_RISKY = {"crash", "hang", "process-ended", "dialog", "null-buffer", "messaging-state", "buffer-behind",
             "buffer-in-front", "argument-behind", "argument-written", "argument-kept", "argument-freed"}
ENDS_THE_HOST = {"Raises", "RaisesToGoOn"}
OPTIONS = {"Hangs": ["--call-time-limit", "2"]}
# Where the library does it.
PLACES = {"Crashes": "Crash", "Hangs": "Hang", "Exits": "Exit", "Raises": "Raise", "OverflowsStack": "OverflowStack",
          "ReadsInFrontOfText": "ReadInFrontOfText"}
# Hints may come by the way: a dialog takes time, and so does a busy machine.
HINTS = {"slow"}


class Contract:
    def __init__(self, folder: str, command: list[str]):
        self.folder = pathlib.Path(folder)
        self.command = command

    def run(self, *arguments: str, answers: pathlib.Path | None = None) -> subprocess.CompletedProcess:
        """`answers`: those of the double."""
        script = {} if answers is None else {"QUORVEL_PLUGINCORE_SCRIPT": str(answers)}
        return subprocess.run([*self.command, *arguments], capture_output=True, check=False, env={**os.environ, **script})

    def check(self, library: pathlib.Path, *options: str, level: str = "pedantic",
              answers: pathlib.Path | None = None) -> tuple[int, dict]:
        done = self.run("contract", str(library), "--level", level, "--json", *options, answers=answers)
        try:
            return done.returncode, json.loads(done.stdout)
        except json.JSONDecodeError:
            raise SystemExit(f"{library.name}: {done.stdout.decode()}{done.stderr.decode()}") from None


def states_of(report: dict) -> dict[str, str]:
    return {clause["clause"]: clause["state"] for clause in report["clauses"]}


def check_faults(contract: Contract):
    for name, (expected, entry) in FAULTS.items():
        code, report = contract.check(contract.folder / f"Faulty{name}.dll", *OPTIONS.get(name, []))
        broken = {clause["clause"]: clause["seen"] for clause in report["clauses"] if clause["state"] == "broken"}
        wrong = set(broken) - HINTS - {expected}
        if expected not in broken or wrong:
            yield f"Faulty{name}: expected {expected}, but came {json.dumps(broken)}"
            continue
        entries = {sighting["entry"] for sighting in broken[expected]}
        # Any entry may be slow on a busy machine.
        if entry not in entries or (expected not in HINTS and entries != {entry}):
            yield f"Faulty{name}: the entries at fault are {entries}, expected {entry!r}"
        if code != (0 if expected in HINTS else 1):
            yield f"Faulty{name}: the exit code is {code}"
        # What has nothing to do with memory does not keep anybody from looking at memory.
        is_left_out = states_of(report)["memory-grows"] == "not tried"
        if is_left_out != (expected in TOO_RISKY or name in ENDS_THE_HOST):
            yield f"Faulty{name}: memory was {'not ' if is_left_out else ''}looked at: {report['notes']}"
        yield from check_place(name, broken[expected])
        if expected == "hang" and not any("hangs: the probes entries, null-buffer" in note for note in report["notes"]):
            yield f"Faulty{name}: the report does not name the probes that were left out: {report['notes']}"


def check_place(name: str, seen: list[dict]):
    """A loss in a probe is named like one in the day, with function, file and line."""
    for sighting in seen:
        if name in PLACES and not re.search(rf"{PLACES[name]} of \S+ \(Faults\.c:\d+\)", sighting["text"]):
            yield f"Faulty{name}: the place is not named in {sighting}"


def check_sound(contract: Contract, library: pathlib.Path, *options: str, answers: pathlib.Path | None = None):
    code, report = contract.check(library, *options, answers=answers)
    for clause in report["clauses"]:
        if clause["clause"] not in HINTS and clause["state"] != "kept":
            yield f"{library.name}: {clause['clause']} is {clause['state']}: {clause['seen']}"
    if code != 0:
        yield f"{library.name}: the exit code is {code}"


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
        (("explain", "bufer-behind"), 'the nearest is "buffer-behind"'),
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
        *check_faults(contract),
    ]
    print("\n".join(faults) or f"All {len(FAULTS)} faulty libraries are caught by their clause alone.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
