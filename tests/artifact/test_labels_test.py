#!/usr/bin/env python3
"""Every test has a label, and labels are targets: scripts/test builds what a test needs by them. And the page about Windows
names the tests that are missing there.

The build folder follows on the command line.
"""

import fnmatch
import json
import pathlib
import re
import subprocess
import sys

WINDOWS_PAGE = (pathlib.Path(__file__).parents[2] / "docs" / "windows.md").read_text(encoding="utf-8")
# Names, and patterns such as `simhost.*`.
NAMED_ON_WINDOWS_PAGE = re.findall(r"`([\w.*-]+)`", WINDOWS_PAGE)


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
        # On Windows neither Python nor the scripts are asked for.
        program = pathlib.PurePath(test["command"][0]) if "command" in test else pathlib.PurePath()
        is_of_linux = program.name.startswith("python") or (program.parent.name == "scripts" and
                                                            program.name != "run-in-wine")
        if is_of_linux and not any(fnmatch.fnmatchcase(test["name"], each) for each in NAMED_ON_WINDOWS_PAGE):
            faults.append(f"{test['name']} is missing on Windows, and docs/windows.md does not say so")
        faults += [f"{test['name']}: the label {label} is no target" for label in labels if label not in targets]
    print("\n".join(faults) or "Every label is a target, and what is missing on Windows is named.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
