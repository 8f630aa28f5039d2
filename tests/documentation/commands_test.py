#!/usr/bin/env python3
"""Every command in a ```sh block of the documentation works as it stands, in the order of the page.

Each line is run by bash in the project's folder. A comment at its end may say how it ends: "# exit code 1". The pages
follow on the command line.
"""

import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).parents[2]
TIME_LIMIT_SECONDS = 300
EXIT_CODE = re.compile(r"# exit code (\d)$")


def commands_of(page: pathlib.Path) -> list[str]:
    blocks = re.findall(r"^```sh\n(.*?)^```$", page.read_text(encoding="utf-8"), re.MULTILINE | re.DOTALL)
    joined = re.sub(r"\\\n\s*", "", "".join(blocks))
    return [line for line in joined.splitlines() if line.strip() and not line.startswith("#")]


def fault_of(command: str) -> str:
    expected = int(found[1]) if (found := EXIT_CODE.search(command)) else 0
    try:
        done = subprocess.run(["bash", "-c", command], cwd=ROOT, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, check=False, timeout=TIME_LIMIT_SECONDS)
    except subprocess.TimeoutExpired:
        return f"does not end within {TIME_LIMIT_SECONDS} seconds"
    if done.returncode == expected:
        return ""
    printed = done.stdout.decode("utf-8", errors="replace")
    return f"the exit code is {done.returncode} and not {expected}\n{printed}"


def main() -> int:
    count = 0
    faults = []
    for page in map(pathlib.Path, sys.argv[1:]):
        for command in commands_of(page):
            count += 1
            if fault := fault_of(command):
                faults.append(f"{page.name}: {command}: {fault}")
    if count == 0:
        faults.append("there is no command in any page")
    print("\n".join(faults) or f"All {count} commands work.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
