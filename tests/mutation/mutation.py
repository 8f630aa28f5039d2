#!/usr/bin/env python3
"""Samples mutants of the plug-in's logic and tells which of them the unit tests kill.

Called by scripts/mutation, which has built the tests. Each mutant is compiled by itself and linked into the test programs
of its folder, in a copy of that folder's archive; no file of the tree changes.
"""

import argparse
import concurrent.futures
import json
import pathlib
import shutil
import sys
import threading
from collections.abc import Iterator

import mutants
import sampling
from build import Build
from mutants import Mutant
from sampling import Outcome
from trial import Trial
from verdict import Fate

# Where the logic is; src/host only wraps the host's operations, src/resources holds no code.
FOLDERS = ["src/diagnostic", "src/dialogs", "src/documents", "src/frame", "src/json", "src/menus", "src/panel",
           "src/plugincore", "src/support"]
# No compiler of this build takes it.
OF_ANOTHER_COMPILER = "Msvc.cpp"
SURVIVORS = pathlib.Path(__file__).with_name("survivors.json")
PERCENT_WANTED = 90


def try_all(build: Build, chosen: list[Mutant], folder: pathlib.Path, workers: int) -> Iterator[Outcome]:
    """Yields outcomes as they come. Each worker has a desktop for itself."""
    desktops = list(range(workers))
    lock = threading.Lock()

    def play(mutant: Mutant) -> Outcome:
        with lock:
            desktop = desktops.pop()
        try:
            return Trial(build, mutant, folder / str(desktop)).play(desktop)
        finally:
            with lock:
                desktops.append(desktop)

    with concurrent.futures.ThreadPoolExecutor(workers) as executor:
        yield from executor.map(play, chosen)


def check_controls(build: Build, everything: list[Mutant], folder: pathlib.Path, workers: int):
    for control in try_all(build, sampling.controls(everything), folder, workers):
        if control.fate != Fate.SURVIVED:
            by = f" by {control.by}" if control.by else ""
            raise RuntimeError(f"without any change, {control.mutant.file} is {control.fate.value}{by}")


def in_words(outcome: Outcome) -> str:
    mutant = outcome.mutant
    return (f"{outcome.fate.value}{' in ' + outcome.by if outcome.by else ''}: "
            f"{mutant.file}:{mutant.line}: {mutant.before.strip()} -> {mutant.after.strip() or 'nothing'}")


def tell(figures: dict) -> bool:
    """True when enough were killed, and each other one has its reason."""
    for killed in figures["killed_by_time_out"]:
        print(f"killed by time-out: {killed['at']}: {killed['mutant']}")
    for survivor in figures["survivors"]:
        print(f"survived: {survivor['at']}: {survivor['mutant']}\n    {survivor['reason'] or 'no reason is known'}")
    unexplained = sum(not survivor["reason"] for survivor in figures["survivors"])
    print(f"{figures['killed']} of {figures['sampled']} mutants killed, {figures['percent_killed']} %, "
          f"{len(figures['killed_by_time_out'])} of them by time-out; {unexplained} survivors without a reason; "
          f"{figures['not_compiled']} that did not compile were replaced")
    return figures["percent_killed"] >= PERCENT_WANTED and not unexplained


def main() -> int:
    parser = argparse.ArgumentParser(prog="mutation", description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--sample", type=int, default=300, help="how many mutants that compile (default 300)")
    parser.add_argument("--seed", type=int, default=1, help="which ones (default 1)")
    parser.add_argument("--only", default="", help="only of files whose path holds this text")
    parser.add_argument("--json", type=pathlib.Path, help="write the figures there")
    parser.add_argument("--root", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--built", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--workers", type=int, default=1, help=argparse.SUPPRESS)
    options = parser.parse_args()

    everything = [mutant for mutant in mutants.mutants_in(options.root, FOLDERS)
                  if options.only in mutant.file and not mutant.file.endswith(OF_ANOTHER_COMPILER)]
    if not everything:
        parser.error(f"no mutant in a file whose path holds '{options.only}'")
    folder = options.root / "build" / "mutation"
    outcomes = []
    try:
        build = Build(options.root, options.built)
        check_controls(build, everything, folder, options.workers)
        for outcome in sampling.try_in_order(sampling.in_random_order(everything, options.seed), options.sample,
                                             lambda batch: try_all(build, batch, folder, options.workers)):
            outcomes.append(outcome)
            print(f"{len(outcomes)}/{options.sample} {in_words(outcome)}", flush=True)
    except RuntimeError as error:
        print(f"mutation: {error}", file=sys.stderr)
        return 2
    finally:
        shutil.rmtree(folder, ignore_errors=True)

    figures = sampling.report(outcomes, json.loads(SURVIVORS.read_text(encoding="utf-8")), options.seed, len(everything))
    if options.json:
        options.json.write_text(json.dumps(figures, indent=2) + "\n", encoding="utf-8")
    return 0 if tell(figures) else 1


if __name__ == "__main__":
    sys.exit(main())
