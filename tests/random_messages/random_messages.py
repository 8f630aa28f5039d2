"""Plays the scenario of the random messages with one seed after the other, and adds up what was sent.

Called by scripts/random-messages, which builds what is needed and says what Wine needs.
"""

import argparse
import json
import os
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).parents[2]
SCENARIO = ROOT / "devkit" / "scenarios" / "random-messages.json"
NOT_PLAYED = 2
# Mostly the same ones in every run.
DIFFERENT_ONES = {"moments", "missing_suites"}


def is_random(step: dict) -> bool:
    return step.get("do") == "random_messages"


def with_messages(scenario: dict, times: int | None) -> dict:
    """With so many messages in the first step of them, and in the others in proportion. Of each kind must come in
    proportion half as many, for few are a matter of chance."""
    steps = list(filter(is_random, scenario["steps"]))
    usual = steps[0]["times"]
    for step in steps if times is not None else []:
        step["at_least"] = {kind: count * times // usual // 2 for kind, count in step["at_least"].items()}
        step["at_least"]["messages"] = step["times"] = max(1, step["times"] * times // usual)
    return scenario


def counts_of(events: list[dict]) -> dict:
    """Of all steps that sent some."""
    return add_up([event["observed"]["at_least"] for event in events
                   if event["event"] == "step_end" and "at_least" in event["observed"]])


def play(command: list[str], scenario: pathlib.Path, seed: int) -> dict | None:
    """What came of the seed; None when it could not be played."""
    with tempfile.TemporaryDirectory() as folder:
        lines = pathlib.Path(folder) / "events.jsonl"
        run = subprocess.run([*command, "play", str(scenario), "--seed", str(seed), "--quiet", "--json-lines", str(lines)],
                             check=False, capture_output=True, text=True, errors="replace",
                             env={**os.environ, "SIMHOST_COMMAND": "scripts/simhost"})
        # As bytes: texts may hold what separates lines in a text.
        events = [json.loads(line) for line in lines.read_bytes().splitlines()] if lines.exists() else []
    ends = [event for event in events if event["event"] == "run_end"]
    if run.returncode == NOT_PLAYED or not ends:
        print(run.stdout + run.stderr, end="", file=sys.stderr)
        return None
    counts = counts_of(events)
    complaints = [f"{event['rule']}: {event['text']}" for event in events
                  if event["event"] == "complaint" and not event["expected"]]
    # A host that is lost has told its complaints only there.
    complaints += [each for each in ends[0]["complaints"] if each not in complaints]
    return {"seed": seed, "passed": run.returncode == 0 and bool(counts) and not complaints,
            "counts": counts, "complaints": complaints}


def add_up(all_counts: list[dict]) -> dict:
    totals: dict = {}
    for counts in all_counts:
        for kind, count in counts.items():
            totals[kind] = max(totals.get(kind, 0), count) if kind in DIFFERENT_ONES else totals.get(kind, 0) + count
    return totals


def main() -> int:
    parser = argparse.ArgumentParser(
        prog="random-messages", description="Sends the plug-in random messages from several seeds, with a PluginCore whose "
        "answers are hostile, and counts them by kind. The same seed sends the same messages. Exit codes: 0 the plug-in bore "
        "all, 1 it did not, 2 they could not be sent.")
    parser.add_argument("--seeds", type=int, default=5, metavar="N", help="how many seeds, 5 if not given")
    parser.add_argument("--first", type=int, default=1, metavar="SEED", help="the first of them, 1 if not given")
    parser.add_argument("--messages", type=int, metavar="N", help="how many from each; as many as in CI if not given")
    parser.add_argument("--json", type=pathlib.Path, metavar="FILE", help="where to write what came of it, in numbers")
    parser.add_argument("--command", action="append", required=True, help=argparse.SUPPRESS)
    options = parser.parse_args()
    if options.seeds < 1:
        parser.error("there must be a seed")
    runs = []
    with tempfile.TemporaryDirectory() as folder:
        scenario = pathlib.Path(folder) / SCENARIO.name
        story = with_messages(json.loads(SCENARIO.read_text(encoding="utf-8")), options.messages)
        scenario.write_text(json.dumps(story), encoding="utf-8")
        for seed in range(options.first, options.first + options.seeds):
            run = play(options.command, scenario, seed)
            if run is None:
                return NOT_PLAYED
            runs.append(run)
            print(f"seed {seed}: {'passed' if run['passed'] else 'failed'}, {run['counts'].get('messages', 0)} messages",
                  flush=True)
            for complaint in run["complaints"]:
                print(f"FAILED seed {seed}: {complaint}", file=sys.stderr)
            if not run["passed"]:
                asked = f" --messages {options.messages}" if options.messages is not None else ""
                print(f"  again: scripts/random-messages --seeds 1 --first {seed}{asked}", flush=True)
    failed = [run["seed"] for run in runs if not run["passed"]]
    counts = add_up([run["counts"] for run in runs])
    if options.json:
        options.json.write_text(json.dumps({"seeds": len(runs), "failed": failed, "counts": counts, "runs": runs}, indent=2) +
                                "\n", encoding="utf-8")
    for kind, count in counts.items():
        print(f"{kind:<16}{count:>10}")
    print(f"random-messages: {counts.get('messages', 0)} messages from {len(runs)} seeds, {len(failed)} seeds with findings")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
