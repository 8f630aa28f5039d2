#!/usr/bin/env python3
"""The kit is whole as it is packed: unpacked elsewhere, its header and example make a library, which its simhost
checks; and what its pages say to type in its folder works there.

The build folder, the C compiler and the command that runs a Windows program follow on the command line.
"""

import pathlib
import re
import subprocess
import sys
import tempfile
import zipfile

import pefile

TESTS = pathlib.Path(__file__).parents[1]
PACK = TESTS.parent / "packaging" / "packages.py"
LINKS_TEST = TESTS / "documentation" / "links_test.py"
FOLDER = "Mein Ordner für Schriften 字"
BUILD, COMPILER, *RUN = sys.argv[1:]
# What a command has to print, by its first words.
PRINTED = {"play": "Passed: ", "contract": "kept", "list": "saved.json"}
# It waits for a person.
NOT_RUN = "window"


def run(*command: str | pathlib.Path, cwd: pathlib.Path | None = None) -> str:
    done = subprocess.run([str(word) for word in command], cwd=cwd, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          check=False, encoding="utf-8")
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}: exit code {done.returncode}\n{done.stdout}")
    return done.stdout


def unpack(folder: pathlib.Path) -> pathlib.Path:
    run(sys.executable, PACK, "--build-folder", BUILD, "--output", folder / "packages", "--only", "Kit")
    [package] = (folder / "packages").glob("*.zip")
    kit = folder / FOLDER
    with zipfile.ZipFile(package) as archive:
        archive.extractall(kit)
    return kit


def commands_of(page: pathlib.Path) -> set[str]:
    """What it says to type in the folder of the kit."""
    return set(re.findall(r"^ *(bin\\simhost\.exe .*)$", page.read_text(encoding="utf-8"), re.MULTILINE))


def check_commands(kit: pathlib.Path) -> None:
    pages = [commands_of(kit / page) for page in ("README.txt", "docs/devkit.md")]
    if not all(pages):
        sys.exit("a page says nothing about the folder of the kit")
    for command in sorted(set.union(*pages)):
        program, *arguments = command.split()
        if arguments[0] == NOT_RUN:
            continue
        printed = run(*RUN, kit / program.replace("\\", "/"), *arguments, cwd=kit)
        if PRINTED[arguments[0]] not in printed:
            sys.exit(f"{command}: {printed}")


def check_binaries(kit: pathlib.Path) -> None:
    """Nothing of the machine that built them: no symbols, no time, no folder."""
    binaries = [file for file in (kit / "bin").rglob("*") if file.suffix in (".exe", ".dll", ".aip")]
    if len(binaries) < 10:
        sys.exit(f"the kit has only {binaries}")
    for file in binaries:
        header = pefile.PE(str(file), fast_load=True).FILE_HEADER
        if header.NumberOfSymbols or header.TimeDateStamp:
            sys.exit(f"{file.name} has {header.NumberOfSymbols} symbols and the time {header.TimeDateStamp}")
        if str(TESTS.parent).encode() in file.read_bytes():
            sys.exit(f"{file.name} names the folder where it was built")


def check_files_of_scenarios(kit: pathlib.Path) -> None:
    for scenario in (kit / "scenarios").glob("*.json"):
        for plugin in re.findall(r'"plugin": "([^"]+)"', scenario.read_text(encoding="utf-8")):
            if not (kit / "bin" / plugin).exists():
                sys.exit(f"{scenario.name}: the kit has no {plugin}")


def main() -> int:
    with tempfile.TemporaryDirectory() as folder:
        kit = unpack(pathlib.Path(folder))
        check_binaries(kit)
        check_files_of_scenarios(kit)
        run(sys.executable, LINKS_TEST, kit)
        library = pathlib.Path(folder) / "Mine.dll"
        run(COMPILER, "-std=c11", "-shared", "-static", f"-I{kit / 'include'}", "-o", library,
            kit / "example_plugincore" / "ExamplePluginCore.c")
        run(*RUN, kit / "bin" / "simhost.exe", "contract", library, "--level", "pedantic")
        check_commands(kit)
    print("The packed kit is whole.")
    return 0


if __name__ == "__main__":
    sys.exit(main())
