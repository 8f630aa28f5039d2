#!/usr/bin/env python3
"""Every test has a label, and labels are targets: scripts/test builds what a test needs by them.

The build folder follows on the command line.
"""

import json
import re
import subprocess
import sys


def output_of(*command: str) -> str:
    return subprocess.run(command, capture_output=True, check=True, encoding="utf-8").stdout


def main() -> int:
    folder = sys.argv[1]
    targets = set(re.findall(r"^(\w+): phony$", output_of("ninja", "-C", folder, "-t", "targets", "all"), re.MULTILINE))
    faults = []
    for test in json.loads(output_of("ctest", "--test-dir", folder, "--show-only=json-v1"))["tests"]:
        labels = {each["name"]: each["value"] for each in test["properties"]}.get("LABELS", [])
        if not labels:
            faults.append(f"{test['name']} has no label")
        faults += [f"{test['name']}: the label {label} is no target" for label in labels if label not in targets]
    print("\n".join(faults) or "Every label is a target.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
