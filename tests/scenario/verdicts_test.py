#!/usr/bin/env python3
"""Verdicts name who is to blame: the rule, the step, and module, function and file of the code.

Plays a scenario of faults/ and looks at the texts of what was found, which the scenario itself only counts. The command
that plays it follows on the command line. Prints what that prints.
"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile

# Scenario, case, rule, and what the text must match: the place in the file, then what happened and who did it. None: no
# rule is broken.
PLUGIN = r"of FaultyPlugin\.aip \(FatalFaults\.cpp:\d+\)"
STEP = r'steps\[0\], message "Fault"/"[^"]+": '
EXPECTED = {
    ("crash", "abort"): ("crash", STEP + rf"abort\(\) was called in Abort {PLUGIN}"),
    ("crash", "access-violation"): (
        "crash", STEP + rf"access violation \(0xC0000005\) writing 0x10 in AccessViolation {PLUGIN}"),
    ("crash", "at-start"): (
        "crash", r'begin\[0\], message "SP Interface"/"[^"]+": access violation .* writing 0x10 in PluginMain of '
                 r"CrashesAtStart\.aip \(CrashingPlugin\.cpp:\d+\)"),
    ("crash", "bad-pointer"): (
        "crash", STEP + rf"access violation .* reading 0x10 in PassBadPointer {PLUGIN}, which called \w+"),
    ("crash", "null-jump"): ("crash", STEP + rf"access violation .* executing 0x0 in JumpNowhere {PLUGIN}"),
    ("crash", "stack-overflow"): ("crash", STEP + rf"stack overflow \(0xC00000FD\) in Recurse {PLUGIN}"),
    ("crash", "exception"): ("crash", r'message "Fault"/"throw an exception": an exception left the plug-in'),
    ("fail-fast", "interrupt"): ("fail-fast", STEP + rf"fail-fast \(0xC0000409\), reason 7 in FailFast {PLUGIN}"),
    ("hang", "sleeps"): ("hang", STEP + rf".* after \d seconds; the main thread is in Hang {PLUGIN}"),
    ("hang", "spins"): ("hang", STEP + rf".* after \d seconds; the main thread is in Spin {PLUGIN}"),
    ("hang", "unload"): ("hang", rf"steps\[1\].*: .* the main thread is in Hang {PLUGIN}"),
    ("hang", "end"): ("hang", rf"^the end of the host's process: .* the main thread is in Hang {PLUGIN}"),
    ("process-ended", "terminate"): (
        "process-ended", STEP + rf"the process was ended with code 0 \(0x00000000\) in EndProcess {PLUGIN}"),
    ("process-ended", "exit"): (
        "process-ended", STEP + rf".* code 3 \(0x00000003\) in ExitThroughRuntime {PLUGIN}, which called exit"),
    ("process-ended", "exit-process"): (
        "process-ended", STEP + rf".* code 3758096385 \(0xE0000001\) in ExitThroughWindows {PLUGIN}"),
    ("process-ended", "main-thread"): (
        "process-ended", STEP + rf"the main thread was ended with code 7 .* in EndMainThread {PLUGIN}"),
    ("lost-verdict", "killed"): ("lost-verdict", STEP + r"the process was ended from outside, without a result"),
    ("modal-dialog", "question"): (
        "modal-dialog",
        STEP + rf'the dialog "A question", "Do you like it\?" \(class #32770\) .* opened in AskQuestion {PLUGIN}'),
    ("modal-dialog", "own-class"): (
        "modal-dialog", STEP + rf'the dialog "Sign in" \(class QuorvelOwnDialog\) .* opened in ShowOwnDialog {PLUGIN}'),
    ("left-running", "process"): ("process-left", r"^Lumet\.exe was started during the run"),
    ("left-running", "thread"): ("thread-left", rf"^a thread still ran when the host quit, in WaitForEver {PLUGIN}"),
    ("time-limit", "hangs"): (
        "time-limit", STEP + rf"the run was ended after \d seconds; the main thread was in Hang {PLUGIN}"),
}


# The message's number, and the seed that sends it again.
RANDOM = r"random message \d+ of the seed 7"
EXPECTED |= {
    ("random-messages", "borne"): None,
    ("random-messages", "crash"): (
        "crash", rf'steps\[1\], {RANDOM}, message null/"[^"]*": access violation .* in AccessViolation {PLUGIN}'),
    ("random-messages", "exception"): (
        "crash", rf"^message .+: an exception left the plug-in \({RANDOM}\)$"),
    ("random-messages", "busy"): (
        "re-entrancy", rf"steps\[1\]: .* was refused, and no other message was under way \({RANDOM}\)$"),
    ("random-messages", "nested"): (
        "re-entrancy", rf"steps\[1\]: within another message, .* was handled, and answered with 0 \({RANDOM}\)$"),
    ("random-messages", "too-few"): ("random-messages", r"steps\[1\]: messages: \d+, expected at least 5000$"),
    ("random-messages", "no-such-kind"): (
        "random-messages", r"steps\[1\]: panel_requests: 0, expected at least 1$"),
}


# Each entry of the PluginCore crashes once: the case, where, and in which entry.
CRASHES_OF_PLUGINCORE = """
    get-apiversion                  begin[0]  GetAPIVersion
    initialize-plugin-core-interface begin[0]  InitializePluginCoreInterface
    get-menus                       begin[0]  GetMenus
    create-menus-from-jsonbuffer    begin[0]  CreateMenusFromJSONBuffer
    plugin-is-enabled               begin[0]  PluginIsEnabled
    get-settings                    begin[0]  GetSettings
    handle-create-new-document      steps[0]  HandleCreateNewDocument
    handle-open-existing-document   steps[1]  HandleOpenExistingDocument
    invoke-resolve-dialog           steps[1]  InvokeResolveDialog
    activate-chosen-fonts           steps[1]  ActivateChosenFonts
    invoke-restricted-fonts-dialog  steps[1]  InvokeRestrictedFontsDialog
    get-idfor-document              steps[2]  GetIDForDocument
    update-document-font-usage      steps[2]  UpdateDocumentFontUsage
    handle-menu-selection           steps[2]  HandleMenuSelection
    handle-save-document            steps[3]  HandleSaveDocument
    register-plug-plug              steps[4]  RegisterPlugPlug
    get-socket-port                 steps[4]  GetSocketPort
    idle-event                      steps[4]  IdleEvent
    process-panel-messages          steps[4]  ProcessPanelMessages
    invoke-command-dialog           steps[5]  InvokeCommandDialog
    handle-close-document           steps[6]  HandleCloseDocument
    terminate-plugin-core-interface end[0]    TerminatePluginCoreInterface
"""
for line in CRASHES_OF_PLUGINCORE.strip().splitlines():
    case, place, entry = line.split()
    EXPECTED["crash-plugincore", case] = ("crash", (
        rf'\.{re.escape(place)}, message "[^"]+"/"[^"]+", entry {entry}, call 1: '
        r"access violation \(0xC0000005\) writing 0x10 in PluginCoreX64\.dll\b"))


def play(command: list[str], path: pathlib.Path) -> dict:
    """The records of all cases, by name of the case."""
    cases = list(json.loads(path.read_text(encoding="utf-8"))["cases"])
    with tempfile.TemporaryDirectory() as folder:
        record = pathlib.Path(folder) / "record.json"
        subprocess.run([*command, "--record", str(record)], check=False)
        whole = json.loads(record.read_text(encoding="utf-8"))
    return {case: whole if len(cases) == 1 else whole[f"{path.name}/{case}"] for case in cases}


def faults_of(scenario: str, records: dict):
    for (of_scenario, case), expected in EXPECTED.items():
        if of_scenario != scenario:
            continue
        found = [(violation["rule"], violation["text"]) for violation in records[case]["violations"]]
        if expected is None:
            if found:
                yield f"{scenario}.json/{case}: expected nothing, but came {found}"
            continue
        rule, pattern = expected
        if len(found) != 1 or found[0][0] != rule or not re.search(pattern, found[0][1]):
            yield f"{scenario}.json/{case}: expected {rule!r} with /{pattern}/, but came {found}"
    for case in records:
        if (scenario, case) not in EXPECTED:
            yield f"{scenario}.json/{case}: nothing says here whom its verdict must name"


def main() -> int:
    command = sys.argv[1:]
    path = next(pathlib.Path(argument) for argument in command if argument.endswith(".json"))
    if not any(scenario == path.stem for scenario, _ in EXPECTED):
        # Its rule names nobody beside the plug-in.
        return subprocess.run(command, check=False).returncode
    faults = list(faults_of(path.stem, play(command, path)))
    for fault in faults:
        print(f"FAILED {fault}")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
