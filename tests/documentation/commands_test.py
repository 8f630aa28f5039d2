#!/usr/bin/env python3
"""Every command in a ```sh block of the documentation works as it stands, in the order of the page.

Each line is run by bash in the project's folder; one that stands on several pages is run once. A comment at its end may
say how it ends, "# exit code 1", or what is printed on the way, "# shows: these words". A window is closed as soon as it
is on the screen. What is not run is named here with the reason. Commands stand in no other kind of block, and what is
named in a line of text must be there: the script, the command of simhost.

usage: commands_test.py [--fresh-clone] [PAGE...]     all pages of the project when none is named
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
SHOWS = re.compile(r"# shows: (.+)$")
FENCED = re.compile(r"^```(\w*)[^\n]*\n(.*?)^```$", re.MULTILINE | re.DOTALL)
PAGES = [ROOT / "README.md", ROOT / "CONTRIBUTING.md", *sorted((ROOT / "docs").glob("*.md"))]

# Commands that are not run here, by how they begin, each with the reason.
WITHIN = "runs tests within a test, and would write over what ctest remembers of this run"
LINT = "part of .ci/run, which installs what it needs"
HOURS = "takes minutes to hours; a test of its own tries the script with little to do"
BEFORE = "scripts/test has done it before the tests, under a lock that keeps builds of one folder apart"
NOT_RUN = {
    "scripts/test": WITHIN + "; the test Scripts tries the script",
    "ctest": WITHIN,
    ".ci/run": WITHIN,
    "scripts/format": "changes files; " + LINT,
    "scripts/tidy": LINT,
    "scripts/second-compiler": LINT,
    "scripts/fuzz": LINT + ". " + HOURS,
    "scripts/random-messages": HOURS,
    "scripts/coverage": HOURS,
    "scripts/bench": HOURS,
    "scripts/bench-compare": HOURS,
    "scripts/package --twice": "takes many minutes; the test ReproducibleBuild does the same without the developer kit",
    "cmake --preset release-ci": BEFORE,
    "cmake --build --preset release-ci": BEFORE,
    "cmake --preset release": "a second build folder, which takes as long as the first",
    "cmake --build --preset release": "the same",
    "cmake --preset diagnostic": "the same; scripts/test builds that plug-in in its own folder",
    "cmake --build --preset diagnostic": "the same",
}
# Blocks of a Windows shell, by page.
WINDOWS_BLOCKS = {
    "devkit.md": "the test packages.kit runs them under Wine",
    "windows.md": "need Visual C++; the test VisualCppConfiguration configures what they do, as far as it can be seen here",
}
# What a command line begins with.
COMMAND = re.compile(r"(?:\w+=\S+ )*(?:\./\w|scripts/\w|\.ci/\w|cmake |ctest |git |x86_64-w64-mingw32-|wine |apt-get |simhost )")
# Blocks that look like commands, and are none: how a command is written in general.
SYNOPSES = ("simhost play SCENARIO",)


def commands_of(page: pathlib.Path) -> list[str]:
    blocks = [text for language, text in FENCED.findall(page.read_text(encoding="utf-8")) if language == "sh"]
    joined = re.sub(r"\\\n\s*", "", "".join(blocks))
    return [line for line in joined.splitlines() if line.strip() and not line.startswith("#")]


def begins_with(command: str, beginning: str) -> bool:
    return (without_comment(command) + " ").startswith(beginning + " ")


def reason_of(command: str) -> str:
    """Why it is not run here; empty when it is."""
    return next((reason for beginning, reason in NOT_RUN.items() if begins_with(command, beginning)), "")


def faults_in_blocks(page: pathlib.Path) -> list[str]:
    """Commands that nobody would run because of where they stand."""
    text = page.read_text(encoding="utf-8")
    faults = []
    for language, block in FENCED.findall(text):
        if language == "bat" and page.name not in WINDOWS_BLOCKS:
            faults.append(f"{page.name}: a block of a Windows shell, and nobody says who runs it:\n{block}")
        if language not in ("sh", "bat"):
            faults += [f"{page.name}: stands in no sh block: {line}" for line in block.splitlines() if COMMAND.match(line)]
    indented = re.findall(r"^ {4,}(\S.*)$", FENCED.sub("", text), re.MULTILINE)
    return faults + [f"{page.name}: stands in no sh block: {line}" for line in indented
                     if COMMAND.match(line) and not line.startswith(SYNOPSES)]


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
    if (words := SHOWS.search(command)) and words[1] not in printed:
        return f"does not show {words[1]}\n{printed}"
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
    parser.add_argument("pages", nargs="*", type=pathlib.Path)
    arguments = parser.parse_args()
    pages = arguments.pages or PAGES
    written = {without_comment(command): command for page in pages for command in commands_of(page)}
    commands = {bare: command for bare, command in written.items() if not reason_of(command)}
    faults = [] if commands else ["there is no command in any page"]
    for page in pages:
        faults += faults_in_text(page) + faults_in_blocks(page)
    if not arguments.pages:
        faults += [f"NOT_RUN names {each}, and no page does" for each in NOT_RUN
                   if not any(begins_with(bare, each) for bare in written)]
        faults += [f"WINDOWS_BLOCKS names {each}, which has none" for each in WINDOWS_BLOCKS
                   if "bat" not in dict(FENCED.findall((ROOT / "docs" / each).read_text(encoding="utf-8")))]
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
    for bare in written:
        if reason := reason_of(bare):
            print(f"not run: {bare}: {reason}")
    print("\n".join(faults) or f"All {len(commands)} commands work.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
