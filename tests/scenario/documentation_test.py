#!/usr/bin/env python3
"""The JSON examples in docs/scenarios.md are valid: whole scenarios as they stand, the others as a part of one.

An example that has a "title" is read by simhost too. The command for that follows on the command line.
"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile

import scenario_schema

PAGE = scenario_schema.ROOT / "docs" / "scenarios.md"


def scenario_with(example):
    """The scenario that the example is, or the smallest one that it is a part of."""
    if isinstance(example, dict) and "title" in example:
        return example
    if isinstance(example, dict) and "do" in example:
        return {"title": "T", "steps": [example]}
    if isinstance(example, list):
        return {"title": "T", "steps": example}
    return {"title": "T", "steps": [], **example}


def main() -> int:
    examples = re.findall(r"^```json\n(.*?)^```$", PAGE.read_text(encoding="utf-8"), re.MULTILINE | re.DOTALL)
    faults = [] if len(examples) >= 5 else [f"{PAGE.name} holds {len(examples)} examples in ```json lines"]
    with tempfile.TemporaryDirectory() as folder:
        for number, text in enumerate(examples, start=1):
            try:
                scenario = scenario_with(json.loads(text))
            except json.JSONDecodeError as error:
                faults.append(f"example {number} is no JSON: {error}\n{text}")
                continue
            fault = scenario_schema.fault_of(scenario)
            path = pathlib.Path(folder) / f"example-{number}.json"
            path.write_text(json.dumps(scenario), encoding="utf-8")
            run = subprocess.run([*sys.argv[1:], str(path)], capture_output=True, check=False)
            if run.returncode != 0:
                fault += run.stderr.decode("utf-8")
            if fault:
                faults.append(f"example {number}: {fault}\n{text}")
    print("\n".join(faults) or f"All {len(examples)} examples of {PAGE.name} are valid.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
