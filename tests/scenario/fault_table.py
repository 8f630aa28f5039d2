#!/usr/bin/env python3
"""A table of faults: of PluginCores, of plug-ins, of scenarios and of command lines, with the verdict, whom it names, and
what was left behind.

Each fault is tried as often as asked; a verdict counts as right when it is the expected one every time. What the tests
know is what is expected here.
"""

import argparse
import concurrent.futures
import json
import os
import pathlib
import queue
import re
import subprocess
import sys
import tempfile
from collections.abc import Callable
from dataclasses import dataclass, field

HERE = pathlib.Path(__file__).parent
sys.path.insert(0, str(HERE.parent / "contract"))
sys.path.insert(0, str(HERE))

import bad_scenarios_test  # noqa: E402
import contract_test  # noqa: E402
import verdicts_test  # noqa: E402

WORDS_SHOWN = 110


@dataclass
class Fault:
    kind: str
    name: str
    expected: str
    # Answers the verdict and the words that it comes with.
    attempt: Callable[["Kit"], tuple[str, str]]
    right: int = 0
    left: set[str] = field(default_factory=set)
    words: str = ""
    other: str = ""


class Kit:
    """simhost on a desktop of its own, with the Wine prefix that belongs to it."""

    def __init__(self, built: str, prefix: str, command: list[str], desktop: int = 0):
        self.built = pathlib.Path(built)
        self.prefix = pathlib.Path(prefix + (f"-{desktop}" if desktop else ""))
        self.command = command
        # As ctest says it.
        self.environment = {**os.environ, "CTEST_RESOURCE_GROUP_0_DESKTOPS": f"id:{desktop},slots:1"}

    def run(self, *arguments: str) -> tuple[int, str, str]:
        done = subprocess.run([*self.command, *arguments], capture_output=True, check=False, cwd=HERE.parents[1],
                              env=self.environment)
        return done.returncode, done.stdout.decode("utf-8"), done.stderr.decode("utf-8")

    def left_behind(self) -> set[str]:
        """Folders of runs, files of the core application, programs that run."""
        drive = self.prefix / "drive_c"
        temporary = {path.name for path in drive.glob("users/*/Temp/simhost*")}
        launch_info = {path.name for path in drive.glob("**/com.quorvel.Lumet-LaunchInfo.conf")}
        return temporary | launch_info | set(programs_of_windows(self.prefix))


# Wine's own come and go as it likes.
WINES_OWN = ("conhost.exe", "explorer.exe", "plugplay.exe", "rpcss.exe", "services.exe", "start.exe", "svchost.exe",
             "wineboot.exe", "winedevice.exe")


def programs_of_windows(prefix: pathlib.Path):
    """Those of this Wine prefix, each with its number, so that another one of the same name counts."""
    of_prefix = b"WINEPREFIX=" + bytes(prefix)
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            program = (process / "cmdline").read_bytes().split(b"\0")[0].decode(errors="replace")
            is_ours = of_prefix in (process / "environ").read_bytes().split(b"\0")
        except OSError:
            continue
        name = program.replace("\\", "/").rpartition("/")[2]
        if is_ours and name.lower().endswith(".exe") and name.lower() not in WINES_OWN:
            yield f"{name} ({process.name})"


def library_faults():
    for name, (clause, _) in contract_test.FAULTS.items():
        def attempt(kit, name=name, clause=clause):
            code, printed, complaints = kit.run("contract", str(kit.built / "plugincores" / f"Faulty{name}.dll"),
                                                "--level", "pedantic", "--json")
            broken = [one for one in json.loads(printed)["clauses"] if one["state"] == "broken"] if printed else []
            counted = [one for one in broken if one["clause"] not in contract_test.HINTS] or broken
            if not counted:
                return "nothing found" if code == 0 else f"exit code {code}", complaints
            seen = counted[0]["seen"][0]
            entries = {sighting["entry"] for sighting in counted[0]["seen"]}
            right_entry = clause in contract_test.HINTS or entries == contract_test.entries_at_fault(name)
            verdict = ", ".join(one["clause"] for one in counted) + ("" if right_entry else ", other entry")
            return verdict, f"{seen['entry']}: {seen['text']}"
        yield Fault("PluginCore", name, clause, attempt)


def plugin_faults():
    for (scenario, case), (rule, pattern) in verdicts_test.EXPECTED.items():
        def attempt(kit, scenario=scenario, case=case, pattern=pattern):
            with tempfile.TemporaryDirectory() as folder:
                record = pathlib.Path(folder) / "record.json"
                kit.run("play", str(HERE / "faults" / f"{scenario}.json"), "--case", case, "--quiet", "--record",
                        str(record))
                violations = json.loads(record.read_text(encoding="utf-8"))["violations"]
            words = violations[0]["text"] if violations else ""
            named = all(re.search(pattern, one["text"]) for one in violations)
            return ", ".join(one["rule"] for one in violations) + ("" if named else ", culprit not named"), words
        yield Fault("plug-in", f"{scenario}/{case}", rule, attempt)


def scenario_faults():
    for path in sorted((HERE / "bad").glob("*.json")):
        def attempt(kit, path=path):
            expected = bad_scenarios_test.expected_of(path)
            code, _, complaints = kit.run("play", str(path), "--quiet")
            lines = bad_scenarios_test.lines_of(complaints)
            right = code == 2 and bad_scenarios_test.lines_about(path, lines) == expected
            return "refused" if right else f"exit code {code}", (lines or [""])[0]
        yield Fault("scenario", path.stem, "refused", attempt)


def command_line_faults(built: pathlib.Path):
    quick = [str(HERE / "faults" / "replies.json"), "--case", "reply", "--quiet"]
    text = str(HERE / "bad" / "not-json.txt")
    cases = {
        "no command": ([], "a command is missing"),
        "unknown command": (["pley"], 'there is no command "pley"; did you mean "play"'),
        "no scenario": (["play"], "scenario is required"),
        "scenario that is not there": (["play", "nowhere.json"], "nowhere.json: cannot be read"),
        "pattern that matches nothing": (["play", "nothing-*"], "no scenario matches nothing-"),
        "case that is not there": (["play", *quick[:1], "--case", "nowhere"], 'no case "nowhere"'),
        "time limit of 0": (["play", *quick, "--time-limit", "0"], "1 to 86400"),
        "time limit of too many seconds": (["play", *quick, "--time-limit", "99999999999999999999"], "1 to 86400"),
        "record into a missing folder": (["play", *quick, "--record", "/nowhere/record.json"], "nowhere"),
        "work folder with somebody's files": (["play", *quick, "--work-folder", str(HERE)], "no run of simhost"),
        "plug-in that is a text": (["play", *quick, "--plugin", text], "is a text"),
        "PluginCore that is a text": (["contract", text], "is a text"),
        "PluginCore that is a program": (["contract", str(built / "simhost.exe")], "is a program and not a library"),
        "PluginCore that is not there": (["contract", "nowhere.dll"], "no file"),
        "unknown clause": (["explain", "bufer-behind"], "buffer-behind"),
        "document that is none": (["open", text], "no imported document"),
    }
    for name, (arguments, words) in cases.items():
        def attempt(kit, arguments=arguments, words=words):
            code, _, complaints = kit.run(*arguments)
            right = code == 2 and re.search(words, complaints)
            return "refused" if right else f"exit code {code}", " ".join(complaints.split())
        yield Fault("command line", name, "refused", attempt)


def cell(text: str) -> str:
    text = " ".join(text.split()).replace("|", "\\|")
    return text if len(text) <= WORDS_SHOWN else text[:WORDS_SHOWN - 1] + "…"


def try_once(fault: Fault, kit: Kit) -> None:
    before = kit.left_behind()
    try:
        verdict, fault.words = fault.attempt(kit)
    except Exception as error:  # noqa: BLE001
        # The program has written nothing, or not what it should: that is its verdict, and the table goes on.
        verdict, fault.words = "no result", f"{type(error).__name__}: {error}"
    fault.right += verdict == fault.expected
    fault.other = fault.other if verdict == fault.expected else verdict
    fault.left |= kit.left_behind() - before


def row(fault: Fault, times: int) -> str:
    verdict = fault.expected + (f" (also: {fault.other})" if fault.other else "")
    return (f"| {fault.kind} | {fault.name} | {verdict} | {fault.right} of {times} | {cell(fault.words)} | "
            f"{', '.join(sorted(fault.left)) or 'nothing'} |")


def print_table(faults: list[Fault], kits: list[Kit], times: int) -> int:
    """Tries as many at a time as there are kits. Answers the exit code."""
    free = queue.SimpleQueue()
    for kit in kits:
        free.put(kit)

    def try_all(fault: Fault) -> Fault:
        kit = free.get()
        try:
            for _ in range(times):
                try_once(fault, kit)
        finally:
            free.put(kit)
        return fault

    print("| fault of | which | verdict | right | names | left behind |\n|---|---|---|---|---|---|", flush=True)
    with concurrent.futures.ThreadPoolExecutor(len(kits)) as pool:
        for number, fault in enumerate(pool.map(try_all, faults)):
            print(row(fault, times), flush=True)
            if not sys.stdout.isatty():
                print(f"fault-table: {number + 1} of {len(faults)} faults", file=sys.stderr, flush=True)
    right = sum(fault.right == times and not fault.left for fault in faults)
    print(f"\n{right} of {len(faults)} faults were classed rightly {times} times out of {times} and left nothing behind.")
    return 0 if right == len(faults) else 1


def at_least_one(text: str) -> int:
    number = int(text)
    if number < 1:
        raise ValueError
    return number


def main() -> int:
    parser = argparse.ArgumentParser(prog="fault-table", description="Tries every fault that the kit knows, and prints "
                                     "a table: the verdict, whom it names, how often it was right, what was left.")
    parser.add_argument("--built", help=argparse.SUPPRESS, required=True)  # the folder of simhost.exe
    parser.add_argument("--prefix", help=argparse.SUPPRESS, required=True)  # Wine's, of the first desktop
    parser.add_argument("--desktops", help=argparse.SUPPRESS, type=at_least_one, default=1)
    parser.add_argument("--command", help=argparse.SUPPRESS, required=True, action="append")  # what starts simhost
    parser.add_argument("--only", metavar="PATTERN", default="", help="only the faults whose kind and name, such as "
                        "\"PluginCore, Crashes\", match this regular expression")
    parser.add_argument("times", metavar="TIMES", nargs="?", type=at_least_one, default=1,
                        help="how often each fault is tried (1)")
    options = parser.parse_args()
    kits = [Kit(options.built, options.prefix, options.command, desktop) for desktop in range(options.desktops)]
    faults = [*library_faults(), *plugin_faults(), *scenario_faults(), *command_line_faults(kits[0].built)]
    chosen = [fault for fault in faults if re.search(options.only, f"{fault.kind}, {fault.name}")]
    if not chosen:
        parser.error(f"no fault matches {options.only}")
    return print_table(chosen, kits, options.times)


if __name__ == "__main__":
    sys.exit(main())
