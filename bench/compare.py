"""Measures two commits, which take turns, and prints what has changed.

Called by scripts/bench-compare, which builds both and says what Wine needs.
"""

import argparse
import dataclasses
import pathlib
import statistics
import subprocess
import sys

import measuring
import pages
import tables


def median_of(turns: list[list[measuring.Entry]]) -> list[measuring.Entry]:
    """Entry by entry, the medians of what the turns have measured."""
    def middle(key, field):
        return statistics.median(getattr(entry, field) for turn in turns for entry in turn if entry.key == key)

    return [dataclasses.replace(entry, nanoseconds=middle(entry.key, "nanoseconds"), ratio=middle(entry.key, "ratio"))
            for entry in turns[0]]


def main() -> int:
    parser = argparse.ArgumentParser(
        prog="scripts/bench-compare", description="Builds two commits, lets their benchmarks take turns, and prints the "
        "change of the medians. Each commit is measured by the benchmarks that it holds itself.")
    parser.add_argument("subjects", nargs="*", metavar="SUBJECT", help="only these; all that both have, if none is named")
    parser.add_argument("--turns", type=int, default=5, metavar="N", help="how often each is measured, 5 if not given")
    parser.add_argument("--only", metavar="TEXT", default="", help="only the comparisons whose names hold this text")
    parser.add_argument("--page", type=pathlib.Path, metavar="FILE", help="put the table where this page has its marks, too")
    parser.add_argument("--before", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--after", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--command", action="append", required=True, help=argparse.SUPPRESS)
    options = parser.parse_args()
    if options.turns < 1:
        parser.error("there must be a turn")
    sides = [options.before, options.after]
    both = [subject for subject in measuring.subjects(sides[0]) if subject in measuring.subjects(sides[1])]
    for subject in options.subjects:
        if subject not in both:
            parser.error(f"not both have a subject \"{subject}\"; both have {', '.join(both) or 'none'}")
    arguments = ["--only", options.only] if options.only else []
    before: list[measuring.Entry] = []
    after: list[measuring.Entry] = []
    for subject in options.subjects or both:
        turns: list[list[list[measuring.Entry]]] = [[], []]
        for turn in range(options.turns):
            print(f"bench-compare: {subject}, turn {turn + 1} of {options.turns}", file=sys.stderr, flush=True)
            for side in (0, 1) if turn % 2 == 0 else (1, 0):
                try:
                    turns[side].append(measuring.measure(options.command, sides[side], subject, arguments))
                except subprocess.CalledProcessError as error:
                    print(f"bench-compare: {subject} ended with code {error.returncode}", file=sys.stderr)
                    return 2
        before += median_of(turns[0])
        after += median_of(turns[1])
    if not before and not after:
        print("bench-compare: there is nothing to compare", file=sys.stderr)
        return 2
    table = tables.of_change(before, after)
    print(table)
    if options.page:
        pages.put(options.page, "scripts/bench-compare", table)
    return 0


if __name__ == "__main__":
    sys.exit(main())
