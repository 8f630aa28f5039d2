#!/usr/bin/env python3
"""Runs the fuzzers that scripts/fuzz has built."""

import argparse
import concurrent.futures
import dataclasses
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time

# How many inputs the short form tries of each target: a second or two. Always the same ones, from the same seed.
SHORT_RUNS = {"json": 6_000, "json-units": 25_000, "report": 4_000, "menu": 20_000, "launch-info": 50_000,
              "words": 8_000, "settings": 30_000}
PLANTED_RUNS = 20_000
SEED = 1
# Longer inputs show nothing that shorter ones do not, and cost time. What is committed is played whole.
LONGEST = 1024
LONGEST_COMMITTED = 256
SECONDS_PER_INPUT = 20
DISAGREEMENT = re.compile(r"^(Disagreement: .*|.*runtime error: .*|==\d+==\s?ERROR: .*)$", re.MULTILINE)


@dataclasses.dataclass
class Outcome:
    target: str
    runs: int
    seconds: float
    # The input that shows the finding; None when there was none.
    finding: str | None
    says: list[str]
    broken: bool = False


def fuzzer_of(arguments, target):
    return arguments.built / f"{'planted' if arguments.planted else 'fuzz'}-{target}"


def command_of(arguments, target):
    # libFuzzer adds what it finds new to the first folder that it is given: never to the committed one.
    grown = arguments.built / ("grown" if arguments.seconds else "short") / target
    if not arguments.seconds:
        shutil.rmtree(grown, ignore_errors=True)
    grown.mkdir(parents=True, exist_ok=True)
    findings = arguments.built / ("planted-findings" if arguments.planted else "findings") / target
    findings.mkdir(parents=True, exist_ok=True)
    command = [fuzzer_of(arguments, target), f"-artifact_prefix={findings}/", f"-timeout={SECONDS_PER_INPUT}",
               f"-max_len={LONGEST}", "-print_final_stats=1"]
    dictionary = arguments.source / "dictionaries" / f"{target}.dict"
    if dictionary.exists():
        command.append(f"-dict={dictionary}")
    if arguments.seconds:
        command.append(f"-max_total_time={arguments.seconds}")
    else:
        command += [f"-seed={SEED}", f"-runs={PLANTED_RUNS if arguments.planted else SHORT_RUNS[target]}"]
    return [*command, grown, arguments.source / "corpus" / target]


def play_committed(arguments, target):
    """What is committed, whole: the run itself cuts long inputs. None, or the outcome of one that shows something."""
    began = time.monotonic()
    files = sorted((arguments.source / "corpus" / target).iterdir())
    done = run([fuzzer_of(arguments, target), *files])
    if done.returncode == 0:
        return None
    shown = re.findall(r"^Running: (.*)$", done.stderr, re.MULTILINE)
    seconds = time.monotonic() - began
    return Outcome(target, len(shown), seconds, shown[-1] if shown else "", said(done.stderr), not shown)


def run(command):
    return subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          encoding="utf-8", errors="replace", check=False)


def said(output):
    return DISAGREEMENT.findall(output)[:3]


def fuzz(arguments, target):
    outcome = play_committed(arguments, target)
    if outcome:
        return outcome
    began = time.monotonic()
    done = run(command_of(arguments, target))
    (arguments.built / f"{target}.log").write_text(done.stderr, encoding="utf-8")
    written = re.search(r"Test unit written to (.*)$", done.stderr, re.MULTILINE)
    runs = re.search(r"stat::number_of_executed_units:\s+(\d+)", done.stderr)
    # Neither a finding nor its statistics at the end: it never ran.
    broken = not written and (done.returncode != 0 or not runs)
    return Outcome(target, int(runs[1]) if runs else 0, time.monotonic() - began, written[1] if written else None,
                   said(done.stderr), broken)


def merge(arguments, target):
    """Into the committed corpus what of the grown one reaches more, the shortest inputs first."""
    grown = arguments.built / "grown" / target
    if not grown.is_dir():
        return 0
    chosen = arguments.built / "chosen" / target
    shutil.rmtree(chosen, ignore_errors=True)
    committed = arguments.source / "corpus" / target
    shutil.copytree(committed, chosen)
    # By branches alone: with their counters, hundreds of inputs are worth keeping, and no person reads them.
    run([fuzzer_of(arguments, target), "-merge=1", "-use_counters=0", f"-max_len={LONGEST_COMMITTED}", chosen, grown])
    added = [file for file in chosen.iterdir() if not (committed / file.name).exists()]
    for file in added:
        # A name that tells it from what a person wrote.
        shutil.copy(file, committed / f"found-{file.name[:12]}")
    return len(added)


def tell(arguments, outcome):
    if outcome.broken:
        print(f"{outcome.target}: the fuzzer did not run; see {arguments.built / outcome.target}.log")
    elif outcome.finding is None:
        print(f"{outcome.target}: {outcome.runs} inputs in {outcome.seconds:.0f} s, nothing found")
    else:
        print(f"{outcome.target}: FOUND after {outcome.runs} inputs")
        for line in outcome.says:
            print(f"  {line}")
        print(f"  once more: {fuzzer_of(arguments, outcome.target)} '{outcome.finding}'")


def arguments_of(line):
    parser = argparse.ArgumentParser(prog="scripts/fuzz", description="Without arguments: the short run, always the same.")
    parser.add_argument("--seconds", type=int, default=0, help="so long for each target, from a new seed")
    parser.add_argument("--target", action="append", choices=sorted(SHORT_RUNS), help="only this one; may be repeated")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 1, help="so many at a time (one per processor)")
    parser.add_argument("--planted", action="store_true", help="negative test: code with a defect each, which must be found")
    parser.add_argument("--merge", action="store_true", help="add to fuzz/corpus/ what longer runs found new, and stop")
    parser.add_argument("--json", type=pathlib.Path, metavar="FILE", help="write the counts there")
    parser.add_argument("--source", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--built", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    return parser.parse_args(line)


def main():
    arguments = arguments_of(sys.argv[1:])
    targets = arguments.target or list(SHORT_RUNS)
    missing = [target for target in targets if not fuzzer_of(arguments, target).exists()]
    if missing:
        print(f"fuzz: not built: {', '.join(missing)}", file=sys.stderr)
        return 2
    if arguments.merge:
        for target in targets:
            print(f"{target}: {merge(arguments, target)} inputs added to the corpus")
        return 0

    with concurrent.futures.ThreadPoolExecutor(max(1, arguments.jobs)) as executor:
        outcomes = []
        for outcome in executor.map(lambda target: fuzz(arguments, target), targets):
            tell(arguments, outcome)
            sys.stdout.flush()
            outcomes.append(outcome)

    found = sum(outcome.finding is not None for outcome in outcomes)
    counts = {"targets": len(outcomes), "inputs": sum(outcome.runs for outcome in outcomes),
              "seconds": round(sum(outcome.seconds for outcome in outcomes)), "found": found,
              "planted": arguments.planted,
              "corpus_files": sum(len(list((arguments.source / "corpus" / target).iterdir())) for target in targets)}
    if arguments.json:
        arguments.json.write_text(json.dumps(counts, indent=2) + "\n", encoding="utf-8")
    if any(outcome.broken for outcome in outcomes):
        return 2
    if arguments.planted:
        print(f"fuzz: {found} of {len(outcomes)} planted defects found")
        return 0 if found == len(outcomes) else 1
    print(f"fuzz: {counts['inputs']} inputs, {found} findings")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
