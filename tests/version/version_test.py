#!/usr/bin/env python3
"""All places tell the version that CMake knows: the tree, the tags of the commit, the built files, simhost itself."""

import argparse
import subprocess
import sys


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    for option in ("--version", "--script", "--program", "--run"):
        parser.add_argument(option, required=True)
    parser.add_argument("files", nargs="+")
    options = parser.parse_args()
    checked = subprocess.run([options.script, *options.files], stderr=subprocess.PIPE, check=False, encoding="utf-8")
    faults = checked.stderr.splitlines()
    if checked.returncode != (1 if faults else 0):
        faults.append(f"the script ends with {checked.returncode}")
    asked = subprocess.run([options.run, options.program, "--version"], capture_output=True, check=False, encoding="utf-8")
    if (asked.returncode, asked.stdout) != (0, f"simhost {options.version}\n"):
        faults.append(f"simhost --version: code {asked.returncode}, {asked.stdout!r} {asked.stderr!r}")
    print("\n".join(faults) or f"The tree, {len(options.files)} files and simhost tell version {options.version}.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
