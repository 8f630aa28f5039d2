#!/usr/bin/env python3
"""The same sources give the same plug-in and the same packages, wherever they lie: builds and packs in another folder
and compares the hashes.

The developer kit, which takes minutes to build, is only built again with --kit.
"""

import argparse
import hashlib
import json
import shutil
import subprocess
import sys
from pathlib import Path

# What no package is made of.
LEFT_OUT = {".git", "bench", "build", "fuzz", "tests"}
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
    def left_out(of_folder, names):
        return LEFT_OUT.intersection(names) if Path(of_folder) == source_folder else ()

    shutil.rmtree(folder, ignore_errors=True)
    shutil.copytree(source_folder, folder, ignore=left_out)


def build(options, folder):
    """Configured as the first one was, but without tests, and never from a cache of compiled objects. Answers the
    folders of the sources and of what was built."""
    source_folder, build_folder = Path(options.source_folder), Path(options.build_folder)
    copy_sources(source_folder, folder)
    # The debug information holds the folder where the compiler ran, below that of the sources.
    target = folder / build_folder.relative_to(source_folder)
    configure = [options.cmake, "-S", str(folder), "-B", str(target), "-G", "Ninja"]
    configure += [f"-D{name}={cached(build_folder, name)}" for name in ("CMAKE_TOOLCHAIN_FILE", "CMAKE_BUILD_TYPE")]
    configure += [f"-DCMAKE_{language}_COMPILER_LAUNCHER=" for language in ("C", "CXX")]
    configure += [f"-DQUORVEL_BUILD_DEVKIT={'ON' if options.kit else 'OFF'}", "-DQUORVEL_BUILD_TESTS=OFF"]
    configure += [f"-DQUORVEL_QUICK_BUILD={cached(build_folder, 'QUORVEL_QUICK_BUILD')}"]
    run(configure)
    run([options.cmake, "--build", str(target), "--target", "packaged", "--parallel", options.parallel])
    return folder, target


def run(step):
    done = subprocess.run(step, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8", check=False)
    if done.returncode != 0:
        sys.exit(f"{' '.join(step)} ended with {done.returncode}:\n{done.stdout[-4000:]}")


def pack(options, source_folder, build_folder, output):
    """By the script of that folder."""
    only = [] if options.kit else ["--only", "AI20"]
    run([sys.executable, str(source_folder / "packaging" / "packages.py"), "--build-folder", str(build_folder),
         "--output", str(output), *only])


def hashes_in(build_folder, name, packages):
    """Of the plug-in with its symbols, of the one that is shipped, and of the packages; by their names."""
    files = [build_folder / part / name for part in ("bin", "shipped")] + sorted(packages.glob("QuorvelTypeAgent*"))
    return {file: hashlib.sha256(file.read_bytes()).hexdigest() for file in files}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("plugin", help="the one that was built in the build folder")
    for name in ("cmake", "source-folder", "build-folder", "work-folder"):
        parser.add_argument(f"--{name}", required=True)
    parser.add_argument("--kit", action="store_true", help="the developer kit as well")
    parser.add_argument("--parallel", default="1", help="how many compilers run at a time")
    parser.add_argument("--json", type=Path, help="write the counts there")
    options = parser.parse_args()
    work = Path(options.work_folder)
    name = Path(options.plugin).name
    first = Path(options.source_folder), Path(options.build_folder)
    if cached(first[1], "CMAKE_CXX_COMPILER_LAUNCHER"):
        # A compiler cache changes the command lines, and with them the names in the debug information.
        first = build(options, work / FOLDERS[0])
    second = build(options, work / FOLDERS[1])
    builds = []
    for source_folder, build_folder in (first, second):
        packages = work / f"packages of build {len(builds) + 1}"
        pack(options, source_folder, build_folder, packages)
        builds.append(hashes_in(build_folder, name, packages))
    if len(builds[0]) < 6:
        sys.exit(f"there are only these files: {builds[0]}")
    for file, value in [pair for hashes in builds for pair in hashes.items()]:
        print(f"{value}  {file}")
    shutil.rmtree(work)
    different = len({tuple(hashes.values()) for hashes in builds})
    if options.json:
        options.json.write_text(json.dumps({"builds": len(builds), "hashes": different}) + "\n", encoding="utf-8")
    return 0 if different == 1 else 1


if __name__ == "__main__":
    sys.exit(main())
