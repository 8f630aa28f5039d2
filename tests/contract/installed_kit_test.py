#!/usr/bin/env python3
"""The installed kit is whole: its header and example make a library, which its simhost checks; and what the page says to
type in its folder works there.

CMake, the build folder, the C compiler and the command that runs a Windows program follow on the command line.
"""

import pathlib
import re
import subprocess
import sys
import tempfile

LINKS_TEST = pathlib.Path(__file__).parents[1] / "documentation" / "links_test.py"
CMAKE, BUILD, COMPILER, *RUN = sys.argv[1:]


def run(*command: str, cwd: str | None = None) -> str:
    done = subprocess.run(command, cwd=cwd, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False, encoding="utf-8")
    if done.returncode != 0:
        sys.exit(f"{' '.join(command)}: exit code {done.returncode}\n{done.stdout}")
    return done.stdout


def commands_of_page(page: pathlib.Path) -> list[str]:
    """What it says to type in the folder of the kit."""
    blocks = re.findall(r"^```bat\n(.*?)^```$", page.read_text(encoding="utf-8"), re.MULTILINE | re.DOTALL)
    commands = "".join(blocks).splitlines()
    if not commands:
        sys.exit(f"{page.name} says nothing about the folder of the kit")
    return commands


def check_files_of_scenarios(kit: pathlib.Path) -> None:
    for scenario in (kit / "scenarios").glob("*.json"):
        for plugin in re.findall(r'"plugin": "([^"]+)"', scenario.read_text(encoding="utf-8")):
            if not (kit / "bin" / plugin).exists():
                sys.exit(f"{scenario.name}: the kit has no {plugin}")


def main() -> int:
    with tempfile.TemporaryDirectory() as folder:
        kit = pathlib.Path(folder) / "The kit"
        run(CMAKE, "--install", BUILD, "--component", "kit", "--prefix", str(kit))
        simhost, library = str(kit / "bin" / "simhost.exe"), str(pathlib.Path(folder) / "Mine.dll")
        check_files_of_scenarios(kit)
        run(sys.executable, str(LINKS_TEST), str(kit))
        run(COMPILER, "-std=c11", "-shared", "-static", f"-I{kit / 'include'}", "-o", library,
            str(kit / "example_plugincore" / "ExamplePluginCore.c"))
        run(*RUN, simhost, "contract", library, "--level", "pedantic")
        for command in commands_of_page(kit / "docs" / "devkit.md"):
            program, *arguments = command.split()
            printed = run(*RUN, str(kit / program.replace("\\", "/")), *arguments, cwd=str(kit))
            # Elsewhere than in the project, scenarios are those of the kit.
            expected = {"play": "Passed: ", "list": "saved.json"}.get(arguments[0], "")
            if expected not in printed:
                sys.exit(f"{command}: {printed}")
    print("The installed kit is whole.")
    return 0


if __name__ == "__main__":
    sys.exit(main())
