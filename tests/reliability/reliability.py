#!/usr/bin/env python3
"""Measures what docs/reliability.md tells, and writes the page from the figures.

Called by scripts/reliability. The figures of each measure are kept in tests/reliability/figures, so that one of them can be
measured anew.
"""

import argparse
import json
import os
import pathlib
import subprocess
import sys
import tempfile

import measures
import page
import tree

ROOT = pathlib.Path(__file__).resolve().parents[2]
FIGURES = pathlib.Path(__file__).with_name("figures")
PAGE = ROOT / "docs" / "reliability.md"


def command_of_test(built: pathlib.Path, name: str) -> list[str]:
    shown = subprocess.run(["ctest", "--show-only=json-v1", "-R", f"^{name}$"], cwd=built, capture_output=True, text=True,
                           check=True).stdout
    tests = json.loads(shown)["tests"]
    if len(tests) != 1:
        raise RuntimeError(f"ctest knows {len(tests)} tests of the name '{name}'")
    return tests[0]["command"]


def run_one(run: measures.Run, built: pathlib.Path, written: pathlib.Path):
    command = [word.replace("{built}", str(built)) for word in run.command]
    if command[-1].endswith(":"):
        command[-1] += str(written)
    else:
        command.append(str(written))
    if run.test:
        command = command_of_test(built, run.test) + command
    # A code says whether all is well; that is told by the figures as well.
    subprocess.run(command, cwd=ROOT, stdout=sys.stderr, check=False, env=os.environ | {"PYTHONDONTWRITEBYTECODE": "1"})
    if not (ROOT / written).exists():
        raise RuntimeError(f"no figures came from: {' '.join(command)}")
    return json.loads((ROOT / written).read_text(encoding="utf-8"))


def measure_anew(measure: measures.Measure, built: pathlib.Path, commit: str):
    # Below the tree and named from there: programs for Windows write into it as well.
    with tempfile.TemporaryDirectory(dir=built) as name:
        folder = pathlib.Path(name).relative_to(ROOT)
        results = [run_one(run, built, folder / f"{number}.json") for number, run in enumerate(measure.runs)]
    # Hours may have passed, and some scripts build.
    tree.refuse_changes(ROOT, commit)
    FIGURES.mkdir(exist_ok=True)
    source = tree.source_of(ROOT, commit, *measure.without)
    record = {"source": source, "commit": commit, "figures": measure.digest(results)}
    measures.figures_file(FIGURES, measure).write_text(json.dumps(record, indent=2) + "\n", encoding="utf-8")


def stale(figures: dict[str, dict]) -> list[str]:
    """The measures that were not taken of what src/ is now, each with what it was taken of."""
    found = []
    for measure in measures.MEASURES:
        taken = figures.get(measure.name, {}).get("source")
        now = tree.source_of(ROOT, "HEAD", *measure.without)
        if taken != now:
            found.append(f"{measure.name}: {f'measured with src/ {taken}, now {now}' if taken else 'not measured yet'}")
    return found


def tell_stale() -> int:
    found = stale(page.all_figures(FIGURES))
    if found:
        print("\n".join(found))
    return 1 if found else 0


def main() -> int:
    names = [measure.name for measure in measures.MEASURES]
    parser = argparse.ArgumentParser(prog="scripts/reliability", description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("measures", nargs="*", metavar="MEASURE", help=f"only these: {', '.join(names)}")
    instead = parser.add_mutually_exclusive_group()
    instead.add_argument("--page", action="store_true", help="measure nothing, write the page from the figures that there are")
    instead.add_argument("--stale", action="store_true",
                         help="measure nothing, list the measures that depend on what has changed in src/ since; exit code 1 if "
                              "any")
    parser.add_argument("--built", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    options = parser.parse_args()
    unknown = [name for name in options.measures if name not in names]
    if unknown:
        parser.error(f"there is no measure '{unknown[0]}'; there are {', '.join(names)}")
    try:
        if options.stale:
            return tell_stale()
        chosen = [] if options.page else [measure for measure in measures.MEASURES
                                          if not options.measures or measure.name in options.measures]
        # Of what was built, once for all.
        commit = tree.commit_of(ROOT) if chosen else ""
        for measure in chosen:
            print(f"reliability: {measure.name}", file=sys.stderr)
            measure_anew(measure, options.built, commit)
        PAGE.write_text(page.written_into(PAGE.read_text(encoding="utf-8"), page.all_figures(FIGURES)), encoding="utf-8")
    except (RuntimeError, ValueError, OSError) as error:
        print(f"reliability: {error}", file=sys.stderr)
        return 2
    return 0


if __name__ == "__main__":
    sys.exit(main())
