"""Measures, prints the table, and on request puts it into a page.

Called by scripts/bench, which builds what is needed and says what Wine needs.
"""

import argparse
import pathlib
import subprocess
import sys

import measuring
import pages
import tables

def main() -> int:
    parser = argparse.ArgumentParser(
        prog="scripts/bench", description="Measures what the plug-in's work costs, beside what others would cost and beside "
        "the floor, and prints a table of ratios within this run.")
    parser.add_argument("subjects", nargs="*", metavar="SUBJECT", help="only these; all, if none is named")
    parser.add_argument("--quick", action="store_true", help="few samples: shows that it works, the times mean nothing")
    parser.add_argument("--only", metavar="TEXT", default="", help="only the comparisons whose names hold this text")
    parser.add_argument("--page", type=pathlib.Path, metavar="FILE", help="put the table where this page has its marks, too")
    parser.add_argument("--built", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--command", action="append", required=True, help=argparse.SUPPRESS)
    options = parser.parse_args()
    known = measuring.subjects(options.built)
    for subject in options.subjects:
        if subject not in known:
            parser.error(f"there is no subject \"{subject}\"; there are {', '.join(known)}")
    arguments = ["--only", options.only] if options.only else []
    arguments += ["--quick"] if options.quick else []
    entries = []
    for subject in options.subjects or known:
        print(f"bench: {subject}", file=sys.stderr, flush=True)
        try:
            entries += measuring.measure(options.command, options.built, subject, arguments)
        except subprocess.CalledProcessError as error:
            print(f"bench: {subject} ended with code {error.returncode}", file=sys.stderr)
            return 2
    if not entries:
        print(f"bench: no comparison holds \"{options.only}\" in its name", file=sys.stderr)
        return 2
    table = tables.of_run(entries)
    print(table)
    if options.page:
        pages.put(options.page, "scripts/bench", table)
    return 0


if __name__ == "__main__":
    sys.exit(main())
