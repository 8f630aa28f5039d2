#!/usr/bin/env python3
"""Makes the table of scripts/coverage of what gcovr has read."""

import argparse
import dataclasses
import json
import pathlib
import sys

AIMS = {"lines": 97.0, "branches": 90.0}


@dataclasses.dataclass
class Count:
    lines: int = 0
    lines_run: int = 0
    branches: int = 0
    branches_taken: int = 0
    # Line numbers.
    never_run: list[int] = dataclasses.field(default_factory=list)
    partly_taken: list[int] = dataclasses.field(default_factory=list)

    def add(self, other):
        for field in ("lines", "lines_run", "branches", "branches_taken"):
            setattr(self, field, getattr(self, field) + getattr(other, field))

    def share(self, kind):
        all_there, run = {"lines": (self.lines, self.lines_run), "branches": (self.branches, self.branches_taken)}[kind]
        return 100.0 * run / all_there if all_there else 100.0


def count_file(lines):
    count = Count()
    for line in lines:
        if line["gcovr/noncode"] or line.get("gcovr/excluded"):
            continue
        count.lines += 1
        count.lines_run += line["count"] > 0
        taken = sum(branch["count"] > 0 for branch in line["branches"])
        count.branches += len(line["branches"])
        count.branches_taken += taken
        if line["count"] == 0:
            count.never_run.append(line["line_number"])
        elif taken < len(line["branches"]):
            count.partly_taken.append(line["line_number"])
    return count


def read(file):
    content = json.loads(file.read_text(encoding="utf-8"))
    return {each["file"]: each["lines"] for each in sorted(content["files"], key=lambda each: each["file"])}


def on_the_lines_of(every, some):
    """The lines of `every` with the counts of `some`. gcov does not tell the branches of exceptions from others on lines
    that never ran, and counts them: two reports of the same code would differ in what there is."""
    counted = {line["line_number"]: line for line in some}
    result = []
    for line in every:
        other = counted.get(line["line_number"], {"count": 0})
        if other["count"] == 0:
            branches = [{**branch, "count": 0} for branch in line["branches"]]
            other = {"count": 0, "branches": branches}
        result.append({**line, "count": other["count"], "branches": other["branches"]})
    return result


def total(counts):
    result = Count()
    for count in counts.values():
        result.add(count)
    return result


def row(name, *counts):
    shares = [f"{count.share(kind):8.1f}%" for count in counts for kind in ("lines", "branches")]
    return f"{name:46}{''.join(shares)}"


def tell_missing(file, count, source):
    text = (source / file).read_text(encoding="utf-8").splitlines()
    for number in sorted([*count.never_run, *count.partly_taken]):
        mark = "never runs" if number in count.never_run else "one way only"
        yield f"{file}:{number}: {mark}: {text[number - 1].strip()}"


def main():
    parser = argparse.ArgumentParser(prog="scripts/coverage", description="Counts which lines and branches of src/ run.")
    parser.add_argument("--json", type=pathlib.Path, metavar="FILE", help="write the counts there")
    parser.add_argument("--simhost", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--all", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--source", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    arguments = parser.parse_args()

    every, some = read(arguments.all), read(arguments.simhost)
    together = {file: count_file(lines) for file, lines in every.items()}
    simhost = {file: count_file(on_the_lines_of(lines, some.get(file, []))) for file, lines in every.items()}
    if not together:
        print("coverage: no counters of src/ were found", file=sys.stderr)
        return 2
    print(f"{'':46}{'simulated host':>18}{'and unit tests':>18}")
    print(f"{'':46}{'lines branches' :>18}{'lines branches':>18}")
    for file, count in together.items():
        print(row(file, simhost[file], count))
    print(row("all", total(simhost), total(together)))
    print()
    for file, count in together.items():
        for line in tell_missing(file, count, arguments.source):
            print(line)

    if arguments.json:
        counts = {"files": len(together)}
        for name, count in (("simhost", total(simhost)), ("all", total(together))):
            for kind in ("lines", "lines_run", "branches", "branches_taken"):
                counts[f"{name}_{kind}"] = getattr(count, kind)
            for kind in AIMS:
                counts[f"{name}_{kind}_percent"] = round(count.share(kind), 1)
        arguments.json.write_text(json.dumps(counts, indent=2) + "\n", encoding="utf-8")

    code = 0
    for kind, aim in AIMS.items():
        share = total(together).share(kind)
        print(f"coverage: {share:.1f} % of the {kind}, aim {aim:.0f} %")
        code = max(code, 1 if share < aim else 0)
    return code


if __name__ == "__main__":
    sys.exit(main())
