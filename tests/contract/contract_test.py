#!/usr/bin/env python3
"""Every clause of the contract is broken by a faulty PluginCore, and each of these breaks exactly its clause.

 - the faulty libraries are those of the table below, all of them, each caught in the entry that is at fault
 - every clause that can break a run has a library in the table
 - the example and the library without a fault keep all clauses, and each was tried; the double keeps all that it tries
 - what is no library, or not there, is refused with exit code 2

The folder of the built files and the command that runs simhost follow on the command line.
"""

import json
import pathlib
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
    "WritesToText": ("argument-written", "HandleCloseDocument"),
    "KeepsText": ("argument-kept", "HandleOpenExistingDocument"),
    "KeepsBuffer": ("argument-kept", "HandleCreateNewDocument"),
    "FreesText": ("argument-freed", "HandleSaveDocument"),
    "ReallocatesText": ("argument-freed", "HandleSaveDocument"),
    "ChangesState": ("messaging-state", "RegisterPlugPlug"),
    "AnswersTwo": ("flag-value", "PluginIsEnabled"),
    "Throws": ("exception", "HandleSaveDocument"),
    "AddsWithoutLabel": ("callback-text", "CreateMenusFromJSONBuffer"),
    "AddsWithOddFlag": ("callback-flag", "CreateMenusFromJSONBuffer"),
    "ChildrenFirst": ("callback-parent", "CreateMenusFromJSONBuffer"),
    "AddsTwice": ("callback-duplicate", "CreateMenusFromJSONBuffer"),
    "AddsOnOtherThread": ("callback-thread", "CreateMenusFromJSONBuffer"),
    "AddsLate": ("callback-late", "CreateMenusFromJSONBuffer"),
    "AnswersCutJson": ("menu-json", "GetMenus"),
    "AnswersWithoutChild": ("menu-members", "GetMenus"),
    "AnswersIni": ("settings-json", "GetSettings"),
    "AnswersTrue": ("settings-members", "GetSettings"),
    "RefusesVersion": ("version", "GetAPIVersion"),
    "SilentAfterTerminate": ("after-terminate", "GetSettings"),
    "FailsSecondStart": ("second-start", "InitializePluginCoreInterface"),
    "LeavesHook": ("hook-left", "TerminatePluginCoreInterface"),
    "LeavesWindow": ("window-left", "TerminatePluginCoreInterface"),
    "LeavesWindowUnseen": ("window-left", "TerminatePluginCoreInterface"),
    "LeavesThread": ("thread-left", "TerminatePluginCoreInterface"),
    "LeavesManyThreads": ("thread-left", "TerminatePluginCoreInterface"),
    "LeavesProcess": ("process-left", "TerminatePluginCoreInterface"),
    "Leaks": ("memory-grows", "IdleEvent"),
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
# Hints may come by the way: a dialog takes time, and so does a busy machine.
HINTS = {"slow"}


class Contract:
    def __init__(self, folder: str, command: list[str]):
        self.folder = pathlib.Path(folder)
        self.command = command

    def run(self, *arguments: str) -> subprocess.CompletedProcess:
        return subprocess.run([*self.command, *arguments], capture_output=True, check=False)

    def check(self, library: pathlib.Path) -> tuple[int, list[dict]]:
        done = self.run("contract", str(library), "--level", "pedantic", "--json")
        try:
            return done.returncode, json.loads(done.stdout)["clauses"]
        except json.JSONDecodeError:
            raise SystemExit(f"{library.name}: {done.stdout.decode()}{done.stderr.decode()}") from None


def check_faults(contract: Contract):
    for name, (expected, entry) in FAULTS.items():
        code, clauses = contract.check(contract.folder / f"Faulty{name}.dll")
        broken = {clause["clause"]: clause["seen"] for clause in clauses if clause["state"] == "broken"}
        wrong = set(broken) - HINTS - {expected}
        if expected not in broken or wrong:
            yield f"Faulty{name}: expected {expected}, but came {json.dumps(broken)}"
            continue
        entries = {sighting["entry"] for sighting in broken[expected]}
        # The machine may be slow at other entries as well.
        if entry not in entries or (expected not in HINTS and entries != {entry}):
            yield f"Faulty{name}: the entries at fault are {entries}, expected {entry!r}"
        if code != (0 if expected in HINTS else 1):
            yield f"Faulty{name}: the exit code is {code}"


def check_sound(contract: Contract, library: pathlib.Path, all_tried: bool):
    code, clauses = contract.check(library)
    for clause in clauses:
        if clause["clause"] in HINTS:
            continue
        if clause["state"] == "broken" or (all_tried and clause["state"] != "kept"):
            yield f"{library.name}: {clause['clause']} is {clause['state']}: {clause['seen']}"
    if code != 0:
        yield f"{library.name}: the exit code is {code}"


def check_table(contract: Contract):
    built = {path.stem.removeprefix("Faulty") for path in contract.folder.glob("Faulty*.dll")} - {"Nothing"}
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
        *check_sound(contract, contract.folder / "ExamplePluginCore.dll", all_tried=True),
        *check_sound(contract, contract.folder / "FaultyNothing.dll", all_tried=True),
        *check_sound(contract, contract.folder.parent / "PluginCoreX64.dll", all_tried=False),
        *check_faults(contract),
    ]
    print("\n".join(faults) or f"All {len(FAULTS)} faulty libraries are caught by their clause alone.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
