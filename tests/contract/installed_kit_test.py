#!/usr/bin/env python3
"""The installed kit is whole: its header and example make a library, which its simhost plays and checks.

CMake, the build folder, the C compiler and the command that runs a Windows program follow on the command line.
"""

import pathlib
import subprocess
import sys
import tempfile

CMAKE, BUILD, COMPILER, *RUN = sys.argv[1:]


def run(*command: str) -> str:
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False, encoding="utf-8")
    if done.returncode != 0:
        sys.exit(f"{' '.join(command)}: exit code {done.returncode}\n{done.stdout}")
    return done.stdout


def main() -> int:
    with tempfile.TemporaryDirectory() as folder:
        kit = pathlib.Path(folder) / "The kit"
        run(CMAKE, "--install", BUILD, "--component", "kit", "--prefix", str(kit))
        simhost, library = str(kit / "bin" / "simhost.exe"), str(pathlib.Path(folder) / "Mine.dll")
        run(COMPILER, "-std=c11", "-shared", "-static", f"-I{kit / 'include'}", "-o", library,
            str(kit / "example_plugincore" / "ExamplePluginCore.c"))
        run(*RUN, simhost, "contract", library, "--level", "pedantic")
        printed = run(*RUN, simhost, "play", str(kit / "scenarios" / "saved.json"))
        if "Passed: " not in printed:
            sys.exit(printed)
    print("The installed kit is whole.")
    return 0


if __name__ == "__main__":
    sys.exit(main())
