"""Where the Wine session is in which the test runs: ctest gives each test that needs a desktop one of three."""

import os
import pathlib

BUILD = pathlib.Path(__file__).parents[2] / "build"


def _suffix() -> str:
    number = os.environ.get("CTEST_RESOURCE_GROUP_0_DESKTOPS", "id:0,slots:1").removeprefix("id:").partition(",")[0]
    return "" if number == "0" else f"-{number}"


def display_file() -> pathlib.Path:
    """Names the display while the session runs."""
    return BUILD / f"wine-session{_suffix()}" / "display"


def drive() -> pathlib.Path:
    return BUILD / f"wine{_suffix()}" / "drive_c"
