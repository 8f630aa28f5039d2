#!/usr/bin/env python3
"""Every clause of the contract is broken by a faulty PluginCore, and each of these breaks exactly its clause: the
libraries of the table below, each caught in the entry that is at fault.

Which part of the table is checked (1 for the first), in how many parts, the folder of the built files and the command
that runs simhost follow on the command line.
"""

import json
import os
import pathlib
import re
import subprocess
import sys

# The library: the clause that it breaks, and the entry that does, or all those that do.
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
    "ChangesSize": ("size-sane", "HandleOpenExistingDocument"),
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
    "AddsBadTexts": ("callback-text", "CreateMenusFromJSONBuffer"),
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
    "ThrowsAfterTerminate": ("exception", ("IdleEvent", "ProcessPanelMessages", "GetMenus", "HandleMenuSelection",
                                           "RegisterPlugPlug")),
    "FailsSecondStart": ("second-start", ("InitializePluginCoreInterface", "GetMenus")),
    "LeavesHook": ("hook-left", "TerminatePluginCoreInterface"),
    "LeavesWindow": ("window-left", "TerminatePluginCoreInterface"),
    "LeavesWindowUnseen": ("window-left", "TerminatePluginCoreInterface"),
    "LeavesThread": ("thread-left", "TerminatePluginCoreInterface"),
    "LeavesManyThreads": ("thread-left", "TerminatePluginCoreInterface"),
    "LeavesProcess": ("process-left", "TerminatePluginCoreInterface"),
    "Leaks": ("memory-grows", ("IdleEvent", "ProcessPanelMessages", "GetSocketPort", "HandleCreateNewDocument",
                               "CreateMenusFromJSONBuffer", "InvokeResolveDialog", "RegisterPlugPlug")),
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
# All ways in which the library does it.
SEEN = {
    "ChangesSize": ["the size became 3, ", "the size became 17, ", r"the size became \d{4,5}, "],
    "KeepsBuffer": [r"\(KeepBuffer of", r"\(WriteLater of"],
    "AddsBadTexts": ["an item without text", "<F6><DF>e\" is not UTF-8"],
    "ChildrenFirst": ['names the parent "Fonts"', 'names the parent "Plain"'],
    "AddsLabelTwice": ['"About" came twice', '"Fonts" came twice'],
    "LeavesHook": ["a hook of type 3", "a hook for events of windows"],
    "Leaks": ["blocks of memory", "bytes in its blocks of memory", "pages of memory"],
}
# Its clause has several sides, of which each fault touches more than one; it is told once all the same.
TOLD_ONCE = {"AddsSubMenuTwice", "Leaks"}
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


def entries_at_fault(name: str) -> set[str]:
    _, entry = FAULTS[name]
    return {entry} if isinstance(entry, str) else set(entry)


def states_of(report: dict) -> dict[str, str]:
    return {clause["clause"]: clause["state"] for clause in report["clauses"]}


def check_faults(contract: Contract, names: list[str]):
    for name in names:
        expected, _ = FAULTS[name]
        code, report = contract.check(contract.folder / f"Faulty{name}.dll", *OPTIONS.get(name, []))
        broken = {clause["clause"]: clause["seen"] for clause in report["clauses"] if clause["state"] == "broken"}
        wrong = set(broken) - HINTS - {expected}
        if expected not in broken or wrong:
            yield f"Faulty{name}: expected {expected}, but came {json.dumps(broken)}"
            continue
        entries = {sighting["entry"] for sighting in broken[expected]}
        wanted = entries_at_fault(name)
        # Any entry may be slow on a busy machine.
        if not wanted <= entries or (expected not in HINTS and entries != wanted):
            yield f"Faulty{name}: the entries at fault are {entries}, expected {wanted}"
        for pattern in SEEN.get(name, []):
            if not any(re.search(pattern, sighting["text"]) for sighting in broken[expected]):
                yield f"Faulty{name}: nobody has seen {pattern!r}: {broken[expected]}"
        calls = [(sighting["run"], sighting["entry"], sighting["call"]) for sighting in broken[expected]]
        if name in TOLD_ONCE and len(calls) != len(set(calls)):
            yield f"Faulty{name}: something is told more than once: {broken[expected]}"
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
        if name in PLACES and not re.search(rf"{PLACES[name]} of \S+ \(\w+Faults\.c:\d+\)", sighting["text"]):
            yield f"Faulty{name}: the place is not named in {sighting}"


def main() -> int:
    part, parts = int(sys.argv[1]), int(sys.argv[2])
    contract = Contract(sys.argv[3], sys.argv[4:])
    names = list(FAULTS)[part - 1::parts]
    faults = list(check_faults(contract, names))
    print("\n".join(faults) or f"All {len(names)} faulty libraries are caught by their clause alone.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
