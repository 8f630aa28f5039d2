#!/usr/bin/env python3
"""The transcript in the README is what the demo prints. The command to play it follows on the command line."""

import difflib
import pathlib
import re
import subprocess
import sys

README = pathlib.Path(__file__).parents[2] / "README.md"


def main() -> int:
    blocks = re.findall(r"^```(\w*)\n(.*?)^```$", README.read_text(encoding="utf-8"), re.MULTILINE | re.DOTALL)
    transcripts = [text for language, text in blocks if not language]
    if len(transcripts) != 1:
        print(f"{README.name} does not hold one transcript between ``` lines.")
        return 1
    demo = subprocess.run(sys.argv[1:], stdout=subprocess.PIPE, check=False)
    # A call that took its time says so: this machine's business.
    printed = re.sub(r"( -> .*), \d+ ms$", r"\1", demo.stdout.decode("utf-8"), flags=re.MULTILINE)
    if demo.returncode != 0:
        print(f"The demo failed with exit code {demo.returncode}:\n{printed}")
        return 1
    difference = list(difflib.unified_diff(
        transcripts[0].splitlines(), printed.splitlines(), README.name, "what the demo prints", lineterm=""))
    if difference:
        print("\n".join(difference))
        print("Cure: put the output of scripts/demo between the ``` lines of the README.")
        return 1
    print("The transcript is as the demo prints it.")
    return 0


if __name__ == "__main__":
    sys.exit(main())
