#!/usr/bin/env python3
"""Every command in a ```sh block of the documentation works as it stands, in the order of the page.

Each line is run by bash in the project's folder; one that stands on several pages is run once. A comment at its end may
say how it ends: "# exit code 1". A window is closed as soon as it is on the screen. What is named in a line of text must
be there: the script, the command of simhost.

usage: commands_test.py [--fresh-clone] PAGE...
  --fresh-clone   in a new clone of the repository, where nothing is built: takes minutes, and is no part of the tests
"""

import argparse
import contextlib
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).parents[2]
TIME_LIMIT_SECONDS = 300
TIME_LIMIT_OF_FRESH_CLONE_SECONDS = 3000
EXIT_CODE = re.compile(r"# exit code (\d)$")
FENCED = re.compile(r"^```(\w*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
NOT_RUN = {
    "scripts/test": "runs all tests, this one too",
    "scripts/package --twice": "takes many minutes; the test ReproducibleBuild does the same without the developer kit",
}


def commands_of(page: pathlib.Path) -> list[str]:
    blocks = [text for language, text in FENCED.findall(page.read_text(encoding="utf-8")) if language == "sh"]
    joined = re.sub(r"\\\n\s*", "", "".join(blocks))
    return [line for line in joined.splitlines() if line.strip() and not line.startswith("#")]


def without_comment(command: str) -> str:
    return re.sub(r"\s+# .*$", "", command)


@contextlib.contextmanager
def display_of_its_own():
    """For a window that a person would see."""
    reader, writer = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x1024x24", "-nolisten", "tcp"],
                              pass_fds=[writer], stderr=subprocess.DEVNULL)
    os.close(writer)
    try:
        with os.fdopen(reader) as number:
            yield ":" + number.readline().strip()
    finally:
        server.terminate()
        server.wait()


@contextlib.contextmanager
def held_session():
    """Else each script starts Wine anew."""
    join = f'source "{ROOT}/scripts/lib/wine-environment"; wine_session_join; cat; wine_session_leave'
    holder = subprocess.Popen(["bash", "-c", join], stdin=subprocess.PIPE)
    try:
        yield
    finally:
        holder.communicate()


def close_window(command: str, process: subprocess.Popen, environment: dict, limit: int) -> None:
    """As soon as there is one; again when it does not hear at once."""
    end = time.monotonic() + limit
    while process.poll() is None:
        if time.monotonic() > end:
            raise subprocess.TimeoutExpired(command, limit)
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Host by hand$"], capture_output=True,
                               env=environment, check=False, encoding="utf-8").stdout.split()
        if found:
            subprocess.run(["xdotool", "windowfocus", found[0], "key", "alt+F4"], env=environment, check=False,
                           capture_output=True)
        time.sleep(0.5)


def run(command: str, folder: pathlib.Path, limit: int) -> tuple[int | None, str]:
    with tempfile.TemporaryFile() as output, contextlib.ExitStack() as stack:
        environment = dict(os.environ)
        shows_window = " window" in without_comment(command)
        if shows_window:
            environment["DISPLAY"] = stack.enter_context(display_of_its_own())
        process = subprocess.Popen(["bash", "-c", command], cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                                   stdout=output, stderr=subprocess.STDOUT)
        try:
            if shows_window:
                close_window(command, process, environment, limit)
            process.wait(limit)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
            return None, ""
        output.seek(0)
        return process.returncode, output.read().decode("utf-8", errors="replace")


def fault_of(command: str, folder: pathlib.Path, limit: int) -> str:
    expected = int(found[1]) if (found := EXIT_CODE.search(command)) else 0
    began = time.monotonic()
    code, printed = run(command, folder, limit)
    print(f"{time.monotonic() - began:6.1f} s  {command}", flush=True)
    if code is None:
        return f"does not end within {limit} seconds"
    return "" if code == expected else f"the exit code is {code} and not {expected}\n{printed}"


def faults_in_text(page: pathlib.Path) -> list[str]:
    """Of the commands within the text of a page, which may have placeholders."""
    text = FENCED.sub("", page.read_text(encoding="utf-8"))
    commands = re.findall(r"^  (\w+) ", (ROOT / "scripts" / "simhost").read_text(encoding="utf-8"), re.MULTILINE)
    faults = []
    for code in re.findall(r"`([^`\n]+)`", text):
        words = code.split()
        if words[0].startswith("scripts/") and not (ROOT / words[0]).exists():
            faults.append(f"{page.name}: `{code}`: there is no such script")
        if words[0] in ("simhost", "scripts/simhost") and words[1:] and words[1] not in [*commands, "COMMAND"]:
            faults.append(f"{page.name}: `{code}`: simhost has no such command")
    return faults


def main() -> int:
    parser = argparse.ArgumentParser()
    parser.add_argument("--fresh-clone", action="store_true")
    parser.add_argument("pages", nargs="+", type=pathlib.Path)
    arguments = parser.parse_args()
    commands = {without_comment(command): command for page in arguments.pages for command in commands_of(page)}
    for command in NOT_RUN:
        commands.pop(command, None)
    faults = [] if commands else ["there is no command in any page"]
    for page in arguments.pages:
        faults += faults_in_text(page)
    with tempfile.TemporaryDirectory() as temporary, contextlib.ExitStack() as stack:
        folder, limit = ROOT, TIME_LIMIT_SECONDS
        if arguments.fresh_clone:
            folder, limit = pathlib.Path(temporary) / "clone", TIME_LIMIT_OF_FRESH_CLONE_SECONDS
            subprocess.run(["git", "clone", "--quiet", str(ROOT), str(folder)], check=True)
        else:
            stack.enter_context(held_session())
        for command in commands.values():
            if fault := fault_of(command, folder, limit):
                faults.append(f"{command}: {fault}")
    print("\n".join(faults) or f"All {len(commands)} commands work.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
