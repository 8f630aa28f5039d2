"""Plays sweeps side by side, each on a desktop of its own, and adds up what they tell.

Called by scripts/fault-sweep, which builds what is needed and says what Wine needs.
"""

import argparse
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time

# What is played on one desktop. No fault of one is equal to a fault of the other.
SHARES = [["once", "filled"], ["from-here"]]

# What no sweep plays.
STEPS_LEFT_OUT = ["random_messages: they make calls fail themselves, and scripts/random-messages plays them"]


def add(total, part):
    """Counts are added, lists joined, member by member."""
    if isinstance(part, dict):
        return {key: add(total.get(key), part[key]) if key in part else total[key] for key in {**total, **part}} \
            if total else part
    return part if total is None else total + part


def start(command: list[str], desktop: int, modes: list[str], arguments: list[str], record: pathlib.Path):
    environment = {**os.environ, "CTEST_RESOURCE_GROUP_0_DESKTOPS": f"id:{desktop},slots:1",
                   "SIMHOST_COMMAND": "scripts/simhost"}
    chosen = [word for mode in modes for word in ("--mode", mode)]
    return subprocess.Popen([*command, "sweep", *arguments, *chosen, "--json", str(record)], env=environment)


def main() -> int:
    parser = argparse.ArgumentParser(
        prog="fault-sweep", description="Lets one call of the plug-in after the other fail, in all scenarios or in those "
        "that are named, and prints what it does not bear. Of calls of one operation on one way through the plug-in the "
        "first one fails alone. Exit codes: 0 it bore all, 1 it did not, 2 a scenario could not be played.")
    parser.add_argument("scenarios", nargs="*", default=["devkit/scenarios"], help="files, folders, patterns")
    parser.add_argument("--whole", action="store_true", help="every call fails, in every scenario: takes many hours")
    parser.add_argument("--every", type=int, default=1, help="of each kind and mode, each so many-th fault alone")
    parser.add_argument("--json", type=pathlib.Path, help="where to write what came of it, in numbers")
    parser.add_argument("--command", action="append", required=True, help=argparse.SUPPRESS)
    options = parser.parse_args()
    arguments = [*options.scenarios, "--replay-every", "16", "--every", str(options.every)]
    arguments += [] if options.whole else ["--distinct"]
    began = time.monotonic()
    with tempfile.TemporaryDirectory() as folder:
        records = [pathlib.Path(folder) / f"{number}.json" for number in range(len(SHARES))]
        runs = [start(options.command, number, modes, arguments, records[number])
                for number, modes in enumerate(SHARES)]
        codes = [run.wait() for run in runs]
        if not all(record.exists() for record in records):
            return 2
        totals: dict = {}
        for record in records:
            totals = add(totals, json.loads(record.read_text(encoding="utf-8")))
    # Each share plays the same cases, which count once, and so do their calls.
    totals["scenarios"] //= len(SHARES)
    totals["cases"] //= len(SHARES)
    totals["calls"] = {kind: count // len(SHARES) for kind, count in totals["calls"].items()}
    totals["unplayable"] = sorted(set(totals["unplayable"]))
    # Of each share some of the same.
    operations = set(totals.pop("operations"))
    can_fail = sorted(set(totals.pop("imports_that_can_fail")))
    totals["operations"] = len(operations)
    totals["imports_that_can_fail"] = len(can_fail)
    totals["imports_never_called"] = [name for name in can_fail if name not in operations]
    totals["distinct"] = not options.whole
    totals["every"] = options.every
    totals["steps_left_out"] = STEPS_LEFT_OUT
    totals["seconds"] = round(time.monotonic() - began)
    if options.json:
        options.json.write_text(json.dumps(totals, indent=2) + "\n", encoding="utf-8")
    print(f"fault-sweep: {totals['faults']} faults in {totals['cases']} cases of {totals['scenarios']} scenarios, "
          f"{totals['injected']} of them injected, {totals['not_reached']} never reached, "
          f"{len(totals['findings'])} with findings, {len(totals['unplayable'])} cases not playable")
    left_out = totals["left_out"]
    print(f"never called here, of {len(can_fail)} imports that can fail: {', '.join(totals['imports_never_called']) or 'nothing'}")
    print(f"left out: {left_out['same_way']} faults on the way of another one, {left_out['passed_over']} passed over, "
          f"{left_out['not_played']} not played; steps: {'; '.join(STEPS_LEFT_OUT)}")
    return 1 if 1 in codes else max(codes, key=abs)


if __name__ == "__main__":
    sys.exit(main())
