"""Running the programs that know the formats, and telling what they cannot know."""

import functools
import subprocess
import sys

TIME_LIMIT_SECONDS = 120


class ImportFailed(Exception):
    """In words for whoever gave the file."""


@functools.cache
def warn(words: str) -> None:
    """Once, however often it holds."""
    print(f"import-document: {words}", file=sys.stderr)


def run(*command: str) -> bytes:
    """What the program writes to standard output. Raises ImportFailed with the program's own words."""
    try:
        done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, check=False,
                              timeout=TIME_LIMIT_SECONDS)
    except FileNotFoundError:
        raise ImportFailed(f"{command[0]} is missing; scripts/setup installs it") from None
    except subprocess.TimeoutExpired:
        raise ImportFailed(f"{command[0]} did not end within {TIME_LIMIT_SECONDS} seconds") from None
    if done.returncode != 0:
        # Ghostscript tells the reason on standard output, and only that there was one on standard error.
        words = text_of(done.stdout + done.stderr).strip().splitlines() or ["no reason given"]
        raise ImportFailed(f"{command[0]} cannot read {command[-1]}: {words[0]}")
    return done.stdout


def text_of(data: bytes) -> str:
    """Names in old files may be in any encoding."""
    try:
        return data.decode("utf-8")
    except UnicodeDecodeError:
        return data.decode("latin-1")
