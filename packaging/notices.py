"""Whose code is in a package beside our own, and on what terms: the notices that Debian's packages of it bring."""

import pathlib
import sys

FOLDER = pathlib.Path("/usr/share/doc")
# In every Windows program that the compiler makes: its libraries, and those of MinGW-w64.
COMPILER = ["gcc-mingw-w64-base", "mingw-w64-x86-64-dev"]
IN_PLUGIN = [*COMPILER, "libutfcpp-dev"]
# The uninstaller is a program of NSIS.
IN_INSTALLED = [*IN_PLUGIN, "nsis-common"]
# The support bundle's program packs, and reads its command line.
IN_DIAGNOSTIC = [*IN_PLUGIN, "libcli11-dev", "libz-mingw-w64-dev"]
IN_KIT = [*IN_PLUGIN, "libcli11-dev", "nlohmann-json3-dev"]
INTRODUCTION = "Parts of these files come from others. Debian's package of each tells the terms:\n"


def text(packages: list[str]) -> str:
    parts = [INTRODUCTION, *(f"  {package}\n" for package in packages)]
    for package in packages:
        file = FOLDER / package / "copyright"
        if not file.is_file():
            sys.exit(f"package: {file} is missing. Run: scripts/setup")
        parts.append(f"\n{'=' * 80}\n{package}\n{'=' * 80}\n\n{file.read_text(encoding='utf-8').strip()}\n")
    return "".join(parts)
