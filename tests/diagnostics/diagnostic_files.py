"""What the tests of this folder share: the user's folders in the Wine session, and the built files."""

import os
import pathlib
import re
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "support"))

import wine_session  # noqa: E402

ROOT = pathlib.Path(__file__).parents[2]
PATIENCE_SECONDS = 60
TIME = r"\d\d:\d\d:\d\d\.\d\d\d"


class Built:
    """The folder of the built files, and the command that runs a Windows program."""

    def __init__(self, folder: str, run: list[str]):
        self.folder = pathlib.Path(folder)
        self.run_command = run
        self.diagnostic_plugin = self.folder / "QuorvelTypeAgentAI20-diagnostic.aip"
        # The first program on a desktop makes its prefix, in which the user's folders are.
        self.run("simhost.exe", "--help")

    def command(self, program: str | pathlib.Path, *arguments) -> list[str]:
        """The program of that name in the folder, or the one at an absolute path."""
        # A box that nobody closes: exit code 124, and not the end of all tests.
        return [*self.run_command, "--time-limit", str(PATIENCE_SECONDS), str(self.folder / program),
                *map(str, arguments)]

    def run(self, program: str, *arguments, **environment) -> subprocess.CompletedProcess:
        return subprocess.run(self.command(program, *arguments), capture_output=True, check=False, cwd=ROOT,
                              env={**os.environ, **environment})

    def start(self, program: str | pathlib.Path, *arguments) -> subprocess.Popen:
        return subprocess.Popen(self.command(program, *arguments), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                cwd=ROOT)


def profile() -> pathlib.Path:
    """Of the one user of the Wine prefix."""
    folders = [each for each in (wine_session.drive() / "users").iterdir() if each.name != "Public"]
    if len(folders) != 1:
        raise AssertionError(f"there are {folders}")
    return folders[0]


def local_app_data() -> pathlib.Path:
    return profile() / "AppData" / "Local"


def log_folder() -> pathlib.Path:
    return local_app_data() / "Quorvel" / "TypeAgent" / "Logs"


def windows_path(path: pathlib.Path) -> str:
    """As a program in the prefix names a file there."""
    return "C:\\" + str(path.relative_to(wine_session.drive())).replace("/", "\\")


def clear_logs() -> None:
    for file in log_folder().glob("*"):
        file.unlink()


def only_log() -> str:
    files = list(log_folder().glob("*"))
    if len(files) != 1:
        raise AssertionError(f"expected one log, there are {files}")
    if not re.fullmatch(r"QuorvelTypeAgentAI20-\d{8}-\d{6}-\d+\.log", files[0].name):
        raise AssertionError(f"a log has the name {files[0].name}")
    return files[0].read_bytes().decode("utf-8")


def wait_for(what: str, condition):
    end = time.monotonic() + PATIENCE_SECONDS
    while time.monotonic() < end:
        if value := condition():
            return value
        time.sleep(0.1)
    raise AssertionError(f"{what} did not come within {PATIENCE_SECONDS} seconds")


def last_line_of_log() -> str:
    files = list(log_folder().glob("*.log"))
    return files[0].read_bytes().decode("utf-8").rpartition("\r\n")[0].rpartition("\r\n")[2] if files else ""
