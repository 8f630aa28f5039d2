#!/usr/bin/env python3
"""A copy of the tree with another number in project(): all that the build is going to compile tells that number, and
nothing tells the former one."""

import argparse
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

OTHER = "61.7.3"
# The resources that tell a version, at least.
EXPECTED = {"plugin.rc", "diagnostic_plugin.rc", "simhost.rc", "lumet.rc", "support_bundle.rc"}


def spellings(version: str) -> list[str]:
    """As text, and as the fixed numbers of a resource."""
    return [version, version.replace(".", ",")]


def copy_of_tree(source: pathlib.Path, target: pathlib.Path, version: str) -> None:
    names = ("CMakeLists.txt", "CMakePresets.json", "cmake", "src", "devkit", "bench", "tests", "scripts", "docs", "packaging",
             "fuzz", "support_bundle", "README.md")
    target.mkdir()
    for name in names:
        if (source / name).is_dir():
            shutil.copytree(source / name, target / name)
        elif (source / name).exists():
            shutil.copy(source / name, target / name)
    top = target / "CMakeLists.txt"
    text = top.read_text(encoding="utf-8")
    if text.count(f" VERSION {version} ") != 1:
        sys.exit(f"the top CMakeLists.txt does not tell version {version} once")
    top.write_text(text.replace(f" VERSION {version} ", f" VERSION {OTHER} "), encoding="utf-8")


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    for option in ("--version", "--cmake", "--source-folder"):
        parser.add_argument(option, required=True)
    options = parser.parse_args()
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        tree = pathlib.Path(folder) / "tree"
        copy_of_tree(pathlib.Path(options.source_folder), tree, options.version)
        configured = subprocess.run([options.cmake, "--preset", "release", "-DQUORVEL_BUILD_TESTS=OFF"], cwd=tree, check=False,
                                    stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8")
        if configured.returncode != 0:
            print(configured.stdout)
            return 1
        build = tree / "build" / "release"
        resources = [path for path in build.rglob("*.rc") if "CMakeFiles" not in path.parts]
        faults += [f"there is no {name}" for name in sorted(EXPECTED - {path.name for path in resources})]
        for path in resources:
            text = path.read_text(encoding="utf-8")
            faults += [f"{path.name} does not tell {each}" for each in spellings(OTHER) if each not in text]
        commands = (build / "build.ninja").read_text(encoding="utf-8")
        # The project's number also stands in the comments of what CMake writes.
        if not re.search(rf"-DQUORVEL_VERSION=\S*{re.escape(OTHER)}", commands):
            faults.append("no source is compiled with the number")
        for path in [*resources, build / "build.ninja"]:
            text = path.read_text(encoding="utf-8")
            faults += [f"{path.name} still tells {each}" for each in spellings(options.version)
                       if re.search(rf"(?<![\d.,]){re.escape(each)}(?![\d.])", text)]
    print("\n".join(faults) or f"{len(resources)} resources and the commands tell the number of project() alone.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
