"""Reads the built plug-ins as the host and Windows read them, instead of trusting the build."""

import argparse
import json
import sys
from pathlib import Path

from plugin_checks import CHECKS, WAIVERS, findings_of
from plugin_file import Known, PluginFile


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("plugins", nargs="+", metavar="FILE")
    parser.add_argument("--version", required=True, help="the project's version, three numbers")
    parser.add_argument("--source-folder", required=True, help="where the project was built")
    parser.add_argument("--objdump", required=True)
    parser.add_argument("--json", metavar="FILE", help="write what was checked there")
    options = parser.parse_args()
    found = {}
    for path in map(Path, options.plugins):
        known = Known(path.stem, options.version, options.source_folder, options.objdump)
        found[path.name] = findings_of(PluginFile(path, known))
    for name, findings in found.items():
        for finding in findings:
            print(f"{name}: {finding}")
    for name, (_, reason) in WAIVERS.items():
        print(f"waived: {name}: {reason}")
    count = sum(map(len, found.values()))
    print(f"{len(CHECKS)} checks of {len(found)} files, {len(WAIVERS)} waived: {count} findings")
    if options.json:
        record = {"files": len(found), "checks": len(CHECKS), "waivers": len(WAIVERS), "findings": count}
        Path(options.json).write_text(json.dumps(record) + "\n", encoding="utf-8")
    return 1 if count else 0


if __name__ == "__main__":
    sys.exit(main())
