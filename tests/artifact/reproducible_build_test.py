#!/usr/bin/env python3
"""The same sources give the same plug-in, wherever they lie: builds it in another folder and compares the hashes."""

import argparse
import hashlib
import json
import shutil
import subprocess
import sys
from pathlib import Path

SOURCES = ("CMakeLists.txt", "CMakePresets.json", "cmake", "src")
# Longer than any that the first one was built in is likely to be: names of another length move everything behind them.
FOLDERS = ("another folder", "a folder with a name that is longer than that of the folder where the plug-in was built")


def cached(build_folder, variable):
    """A variable of the configured build; "" when it has none."""
    for line in (build_folder / "CMakeCache.txt").read_text(encoding="utf-8").splitlines():
        name, _, value = line.partition("=")
        if name.split(":")[0] == variable:
            return value
    return ""


def copy_sources(source_folder, folder):
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    for name in SOURCES:
        source = source_folder / name
        if source.is_dir():
            shutil.copytree(source, folder / name)
        else:
            shutil.copy(source, folder / name)


def build(options, folder):
    """Configured as the first one was, but the plug-in alone, and never from a cache of compiled objects."""
    source_folder, build_folder = Path(options.source_folder), Path(options.build_folder)
    copy_sources(source_folder, folder)
    # The debug information holds the folder where the compiler ran, below that of the sources.
    target = folder / build_folder.relative_to(source_folder)
    configure = [options.cmake, "-S", str(folder), "-B", str(target), "-G", "Ninja"]
    configure += [f"-D{name}={cached(build_folder, name)}" for name in ("CMAKE_TOOLCHAIN_FILE", "CMAKE_BUILD_TYPE")]
    configure += [f"-DCMAKE_{language}_COMPILER_LAUNCHER=" for language in ("C", "CXX")]
    configure += ["-DQUORVEL_BUILD_DEVKIT=OFF", "-DQUORVEL_BUILD_TESTS=OFF"]
    steps = (configure, [options.cmake, "--build", str(target), "--target", "shipped_plugin", "--parallel", options.parallel])
    for step in steps:
        run = subprocess.run(step, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8", check=False)
        if run.returncode != 0:
            sys.exit(f"{' '.join(step)} ended with {run.returncode}:\n{run.stdout[-4000:]}")
    return target


def hashes_in(build_folder, name):
    """Of the plug-in with its symbols, and as it is shipped."""
    files = [build_folder / part / name for part in ("bin", "shipped")]
    return {file: hashlib.sha256(file.read_bytes()).hexdigest() for file in files}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("plugin", help="the one that was built in the build folder")
    for name in ("cmake", "source-folder", "build-folder", "work-folder"):
        parser.add_argument(f"--{name}", required=True)
    parser.add_argument("--parallel", default="1", help="how many compilers run at a time")
    parser.add_argument("--json", type=Path, help="write the counts there")
    options = parser.parse_args()
    work = Path(options.work_folder)
    name = Path(options.plugin).name
    first = Path(options.build_folder)
    if cached(Path(options.build_folder), "CMAKE_CXX_COMPILER_LAUNCHER"):
        # A compiler cache changes the command lines, and with them the names in the debug information.
        first = build(options, work / FOLDERS[0])
    builds = [hashes_in(folder, name) for folder in (first, build(options, work / FOLDERS[1]))]
    for file, value in [pair for hashes in builds for pair in hashes.items()]:
        print(f"{value}  {file}")
    shutil.rmtree(work)
    different = len({tuple(hashes.values()) for hashes in builds})
    if options.json:
        options.json.write_text(json.dumps({"builds": len(builds), "hashes": different}) + "\n", encoding="utf-8")
    return 0 if different == 1 else 1


if __name__ == "__main__":
    sys.exit(main())
