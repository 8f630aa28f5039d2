#!/usr/bin/env python3
"""What may go wrong around a run: nothing of anybody's is lost, nothing stays behind, the exit code is 0, 1 or 2.

The folder of the built files and the command that starts simhost follow on the command line.
"""

import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "support"))

import simhost_events  # noqa: E402
import wine_session  # noqa: E402

FAULTS = pathlib.Path(__file__).parent / "faults"
# Passes within a second.
QUICK = [str(FAULTS / "replies.json"), "--case", "reply"]
# Runs until somebody ends it.
ENDLESS_STEPS = [{"do": "message", "caller": "Fault", "selector": "hang", "calls": []}]


class Simhost:
    def __init__(self, built: pathlib.Path, command: list[str], folder: pathlib.Path):
        self.built = built
        self.command = command
        self.folder = folder

    def run(self, *arguments: str) -> tuple[int, str, str]:
        run = subprocess.run([*self.command, *arguments], capture_output=True, check=False)
        return run.returncode, run.stdout.decode("utf-8"), run.stderr.decode("utf-8")

    def play(self, *arguments: str) -> tuple[int, str, str]:
        return self.run("play", *arguments, "--quiet")

    def start(self, *arguments: str) -> subprocess.Popen:
        return subprocess.Popen([*self.command, "play", *arguments, "--quiet"], stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE)

    def scenario(self, name: str, **members) -> str:
        path = self.folder / f"{name}.json"
        story = {"title": "T", "plugin": "FaultyPlugin.aip", "begin": "none", "end": "none", "steps": [
            {"do": "message", "caller": "Fault", "selector": "nothing", "calls": []}], **members}
        path.write_text(json.dumps(story), encoding="utf-8")
        return str(path)


def expect(what: str, outcome: tuple[int, str, str], code: int, complaint: str):
    """Exit code, and a complaint of exactly one line (or none) that matches."""
    came, printed, complaints = outcome
    lines = [line for line in complaints.splitlines() if line.strip()]
    if came != code:
        yield f"{what}: exit code {came}, expected {code}; {complaints}"
    if complaint and not any(re.search(complaint, line) for line in lines):
        yield f"{what}: expected the complaint /{complaint}/, but came {lines}"
    if not complaint and lines:
        yield f"{what}: unexpected complaints {lines}"
    if code == 2 and "assed" in printed:
        yield f"{what}: something was played: {printed}"


def check_exit_codes(simhost: Simhost):
    yield from expect("help", simhost.run("--help"), 0, "")
    yield from expect("help of play", simhost.run("play", "--help"), 0, "")
    yield from expect("a word that is no command", simhost.run("pley"), 2,
                      '^simhost: there is no command "pley"; did you mean "play"')
    yield from expect("a run that passes", simhost.play(*QUICK), 0, "")
    failing = simhost.scenario("fails", steps=[
        {"do": "message", "caller": "Fault", "selector": "nothing", "answer": 7, "calls": []}])
    yield from expect("a run that fails", simhost.play(failing), 1, "^FAILED reply: ")
    for arguments in ((), ("nonsense",), ("play",), ("play", "x.json", "--nonsense"), ("play", "x.json", "y.json")):
        yield from expect_refused(simhost, arguments)


def expect_refused(simhost: Simhost, arguments):
    code, _, complaints = simhost.run(*arguments)
    if code != 2 or not complaints.strip():
        yield f"command line {arguments}: exit code {code}, complaints {complaints!r}"


def check_ranges(simhost: Simhost):
    for option in ("--time-limit", "--step-time-limit"):
        for value in ("0", "-1", "86401", "9223372036854775808", "many"):
            yield from expect(f"{option} {value}", simhost.play(*QUICK, option, value), 2, f"^{option}: .*1 to 86400")
    for key in ("time_limit", "step_time_limit"):
        yield from expect(f'"{key}": 0', simhost.play(simhost.scenario("range", **{key: 0})), 2,
                          rf"{key}: must be from 1 to 86400")


def check_work_folder(simhost: Simhost):
    folder = simhost.folder / "someone's"
    folder.mkdir()
    (folder / "thesis.txt").write_text("the only copy", encoding="utf-8")
    (folder / "sub").mkdir()
    outcome = simhost.play(*QUICK, "--work-folder", str(folder))
    yield from expect("a work folder with somebody's files", outcome, 2, "holds something that no run of simhost")
    if sorted(path.name for path in folder.iterdir()) != ["sub", "thesis.txt"]:
        yield "a work folder with somebody's files was touched"
    yield from expect("a work folder that is a file", simhost.play(*QUICK, "--work-folder", str(folder / "thesis.txt")),
                      2, "thesis.txt is no folder")
    own = simhost.folder / "own"
    for state in ("new", "of an earlier run"):
        yield from expect(f"a work folder that is {state}", simhost.play(*QUICK, "--work-folder", str(own)), 0, "")
        if (own / "stale.txt").exists() or not (own / "host" / "simhost.exe").exists():
            yield f"a work folder that is {state} does not hold the run and nothing else"
        (own / "stale.txt").write_text("of an earlier run", encoding="utf-8")
    (simhost.folder / "empty").mkdir()
    yield from expect("a work folder that is empty",
                      simhost.play(*QUICK, "--work-folder", str(simhost.folder / "empty")), 0, "")
    several = simhost.folder / "several"
    for attempt in ("first", "second"):
        yield from expect(f"several runs in a work folder, {attempt} time",
                          simhost.play(str(FAULTS / "replies.json"), "--work-folder", str(several)), 0, "")


def check_other_files(simhost: Simhost):
    """What is written anew must be of its kind."""
    for option in ("--record", "--junit", "--json-lines"):
        own = simhost.scenario("precious")
        before = pathlib.Path(own).read_bytes()
        yield from expect(f"{option} onto the scenario", simhost.play(own, option, own), 2, f"^simhost: {option}: .* is there and")
        if not pathlib.Path(own).exists() or pathlib.Path(own).read_bytes() != before:
            yield f"{option} onto the scenario has changed it"
        report = simhost.folder / f"report{option}"
        for attempt in ("first", "second"):
            yield from expect(f"{option}, {attempt} time", simhost.play(*QUICK, option, str(report)), 0, "")
    yield from expect("--accept into a missing folder",
                      simhost.play(*QUICK, "--accept", str(simhost.folder / "nowhere" / "x.json")), 2, "there is no folder")


def check_links(simhost: Simhost):
    """What a link in a work folder leads to is somebody else's."""
    folder, target = simhost.folder / "linked", simhost.folder / "target"
    target.mkdir()
    (target / "thesis.txt").write_text("the only copy", encoding="utf-8")
    yield from expect("a new work folder", simhost.play(*QUICK, "--work-folder", str(folder)), 0, "")
    (folder / "link").symlink_to(target)
    code, _, complaints = simhost.play(*QUICK, "--work-folder", str(folder))
    if not (target / "thesis.txt").exists():
        yield f"what a link in the work folder led to was removed; exit code {code}, {complaints}"


def check_record(simhost: Simhost):
    yield from expect("a record in a missing folder",
                      simhost.play(*QUICK, "--record", str(simhost.folder / "none" / "r.json")), 2,
                      "--record: there is no folder .*none")
    yield from expect("a record onto a folder", simhost.play(*QUICK, "--record", str(simhost.folder)), 2,
                      "--record: .* is a folder")


def check_paths(simhost: Simhost):
    outside = simhost.folder / "outside.txt"
    paths = ["../outside.txt", "a/../../outside.txt", "C:/outside.txt", "C:outside.txt", "/outside.txt",
             "\\\\?\\C:\\outside.txt", "a.txt:stream", "NUL", "sub/com1.txt", "dot.", "", str(outside)]
    for path in paths:
        cases = {
            "files": {"files": [{"path": path, "text": "x"}]},
            "copies": {"copies": [{"copy": "PluginCoreX64.dll", "to": path}]},
            "what-is-copied": {"copies": [{"copy": path, "to": "host/x.dll"}]},
            "write": {"steps": [{"do": "write", "files": [{"path": path}]}]},
            "move-to": {"steps": [{"do": "move", "from": "host/PluginCoreX64.dll", "to": path}]},
            "move-from": {"steps": [{"do": "move", "from": path, "to": "x"}]},
            "process": {"processes": [path]},
            "document": {"host": {"documents": {"A": {"path": path, "file": True}}}},
        }
        outcome = simhost.play(simhost.scenario("paths", cases=cases))
        yield from expect(f"the path {path!r}", outcome, 2, "is no path in the folder of the run")
        refused = outcome[2].count("is no path in the folder of the run")
        if refused != len(cases):
            yield f"the path {path!r} is refused {refused} times and not {len(cases)} times: {outcome[2]}"
    if outside.exists():
        yield "a scenario wrote outside the folder of its run"
    yield from expect("a document beside the folder of the run, which begins as its name does",
                      simhost.play(simhost.scenario("beside-work", host={"documents": {"A": {"path": "${work}shop\\A.ai"}}})),
                      0, "")
    # A document may lie anywhere, and is told there; what lies there is somebody's.
    outside.write_text("somebody's", encoding="utf-8")
    path = "Z:" + str(outside).replace("/", "\\")
    steps = [{"do": verb, "document": "A", "calls": "any"} for verb in ("open", "save")]
    outcome = simhost.play(simhost.scenario("saves", plugin="QuorvelTypeAgentAI20.aip", begin={"calls": "any"},
                                            end=[{"do": verb, "calls": "any"} for verb in
                                                 ("application_shutdown", "shutdown", "unload")],
                                            host={"documents": {"A": {"path": path}}}, steps=steps))
    if "assed" not in outcome[1] or outside.read_text(encoding="utf-8") != "somebody's":
        yield f"a document outside the folder of the run was saved over: {outcome}"


def check_kit_is_safe(simhost: Simhost):
    """Files that are laid out are copies: writing over them changes nothing of the kit."""
    before = (simhost.built / "FaultyPlugin.aip").read_bytes()
    scenario = simhost.scenario("overwrites", files=[{"path": "host/Plug-ins/FaultyPlugin.aip", "text": ""}])
    simhost.play(scenario)
    if (simhost.built / "FaultyPlugin.aip").read_bytes() != before:
        yield "a scenario has overwritten the plug-in's file in the kit"


def check_files_that_are_no_plugins(simhost: Simhost):
    plugin = (simhost.built / "FaultyPlugin.aip").read_bytes()
    machine = plugin.index(b"PE\0\0") + 4

    def with_machine(number: int) -> bytes:
        return plugin[:machine] + number.to_bytes(2, "little") + plugin[machine + 2:]

    files = {
        "text": (b"not a plug-in\n", "is a text"),
        "empty": (b"", "is empty"),
        "32-bit": (with_machine(0x14C), "is a 32-bit file"),
        "arm": (with_machine(0xAA64), "is a 64-bit file for ARM"),
        "cut": (plugin[:4096], "is cut short"),
        "linux": (pathlib.Path("/bin/true").read_bytes(), "is a program or library for Linux"),
        "noise": (bytes(range(256)) * 9, "is neither program nor library"),
        "program": ((simhost.built / "Lumet.exe").read_bytes(), "is a program and not a library"),
    }
    for name, (content, complaint) in files.items():
        path = simhost.folder / f"{name}.aip"
        path.write_bytes(content)
        yield from expect(f"a plug-in that is {name}", simhost.play(*QUICK, "--plugin", str(path)), 2,
                          rf"the plug-in .*{name}\.aip {complaint}")
    yield from expect("a plug-in that is missing", simhost.play(*QUICK, "--plugin", str(simhost.folder / "no.aip")), 2,
                      r"the plug-in .*no\.aip does not exist")
    needs = simhost.folder / "needs.aip"
    needs.write_bytes(plugin.replace(b"USER32.dll", b"USED32.dll").replace(b"user32.dll", b"used32.dll"))
    yield from expect("a plug-in that needs a missing library", simhost.play(*QUICK, "--plugin", str(needs)), 1,
                      r"plugin-load: needs\.aip needs (USED|used)32\.dll, which is not found")
    used = simhost.folder / "used32.dll"
    used.write_bytes(plugin.replace(b"USER32.dll", b"LOST32.dll").replace(b"user32.dll", b"lost32.dll"))
    beside = simhost.scenario("beside", files=[{"path": "host/used32.dll", "from": f"Z:{used}"}])
    yield from expect("a plug-in that needs a library that needs a missing one",
                      simhost.play(beside, "--plugin", str(needs)), 1,
                      r"needs\.aip needs (USED|used)32\.dll, which needs (LOST|lost)32\.dll, which is not found")


def check_two_at_once(simhost: Simhost):
    slow = simhost.scenario("slow", steps=ENDLESS_STEPS, step_time_limit=5, expect={"violations": {"hang": 1}})
    lines = simhost.folder / "slow.jsonl"
    first = simhost.start(slow, "--json-lines", str(lines))
    if not simhost_events.wait_for_step(lines, first):
        yield "the first of two runs has not begun its step"
    yield from expect("a second run that does not wait", simhost.play(*QUICK, "--no-wait"), 2,
                      "another simhost plays on this desktop")
    yield from expect("a window that does not wait", simhost.run("window", "--no-wait"), 2,
                      "another simhost plays on this desktop")
    second = simhost.play(*QUICK)
    yield from expect("a second run that waits", second, 0, "waits for another simhost")
    first.communicate()
    if first.returncode != 0:
        yield f"a run during which others wanted to play has exit code {first.returncode}"


def processes_of(scenario: str) -> dict[int, str]:
    """The Windows processes that have to do with a run of the scenario, by process identifier."""
    name = pathlib.Path(scenario).stem
    found = {}
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            arguments = (process / "cmdline").read_bytes().replace(b"\0", b" ").decode("utf-8", "replace")
        except OSError:
            continue
        if name in arguments and re.search(r"^\S*(simhost|Lumet)\.exe", arguments):
            found[int(process.name)] = arguments
    return found


def began(lines: pathlib.Path, run: str) -> bool:
    """Whether a step of the run of that name has begun."""
    try:
        text = lines.read_text(encoding="utf-8")
    except FileNotFoundError:
        # Not yet. Whether it can be written is tried by making it and removing it again.
        return False
    return '"step_begin"' in text.partition(f'"run_begin","run":"{run}"')[2]


def left_in_temp() -> list[pathlib.Path]:
    users = wine_session.drive() / "users"
    return [*users.glob("*/Temp/simhost-runs/*"), *users.glob("*/Temp/simhost-launch-info*")]


def check_cancelled(code: int, complaints: str, kept: dict[str, pathlib.Path]):
    """Of a run that somebody gives up, everything is put back at once, and what was played before is kept."""
    if code != 2 or "simhost: cancelled" not in complaints:
        yield f"a run that was given up has exit code {code} and says {complaints!r}"
    if left := left_in_temp():
        yield f"a run that was given up has left {left}"
    junit = kept["--junit"].read_text(encoding="utf-8") if kept["--junit"].exists() else "nothing"
    if 'tests="2" failures="0" errors="1"' not in junit:
        yield f"a run that was given up leaves in the report of JUnit {junit}"
    record = kept["--record"].read_text(encoding="utf-8") if kept["--record"].exists() else "{}"
    if list(json.loads(record)) != ["before-SIGINT.json"]:
        yield f"a run that was given up leaves in the record {record}"
    last = json.loads(kept["--json-lines"].read_text(encoding="utf-8").splitlines()[-1])
    if (last["event"], last.get("played"), last.get("complaints")) != ("run_end", False, ["cancelled"]):
        yield f"a run that was given up ends in {last}"


def check_killed(simhost: Simhost, how: signal.Signals):
    """A run whose process is ended leaves nothing that runs; at the latest the next run clears away its folder."""
    # Of a name that no run of another clone has at the same time.
    scenario = simhost.scenario(f"endless-{how.name}-{simhost.folder.name}", steps=ENDLESS_STEPS, step_time_limit=600, time_limit=600,
                                copies=["PluginCoreX64.dll", "Lumet.exe"], processes=["host/Lumet.exe"])
    before = simhost.scenario(f"before-{how.name}")
    kept = {option: simhost.folder / f"{how.name}{option}" for option in ("--junit", "--record", "--json-lines")}
    # The lines of the endless run alone.
    run = simhost.start(before, scenario, *(str(word) for pair in kept.items() for word in pair))
    end = time.monotonic() + 60
    while time.monotonic() < end and not began(kept["--json-lines"], pathlib.Path(scenario).name):
        time.sleep(0.05)
    during = processes_of(scenario)
    if len(during) != 3:
        yield f"{how.name}: expected the starter, the host and another program to run, but these do: {during}"
    starters = [pid for pid, arguments in during.items() if "simhost.exe play" in arguments]
    for starter in starters:
        os.kill(starter, how)
    _, complaints = run.communicate(timeout=60)
    end = time.monotonic() + 5
    while processes_of(scenario) and time.monotonic() < end:
        time.sleep(0.1)
    if left := processes_of(scenario):
        yield f"{how.name}: these still run: {left}"
    if how == signal.SIGINT:
        yield from check_cancelled(run.returncode, complaints.decode("utf-8"), kept)
    yield from expect(f"the run after one that was ended by {how.name}", simhost.play(*QUICK), 0, "")
    if left := left_in_temp():
        yield f"{how.name}: the next run has not cleared away {left}"


def main() -> int:
    built, *command = sys.argv[1:]
    folder = pathlib.Path(tempfile.mkdtemp())
    faults = []
    try:
        simhost = Simhost(pathlib.Path(built), command, folder)
        for check in (check_exit_codes, check_ranges, check_work_folder, check_other_files, check_links, check_record, check_paths,
                      check_kit_is_safe, check_files_that_are_no_plugins, check_two_at_once,
                      lambda host: check_killed(host, signal.SIGKILL), lambda host: check_killed(host, signal.SIGINT)):
            faults += check(simhost)
    finally:
        shutil.rmtree(folder)
    print("\n".join(faults) or "Nothing is lost, nothing stays behind, and every exit code is 0, 1 or 2.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
