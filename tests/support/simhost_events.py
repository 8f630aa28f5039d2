"""Waits for what a run of simhost tells while it takes place."""

import pathlib
import subprocess
import time

PATIENCE_SECONDS = 60


def wait_for_step(lines: pathlib.Path, run: subprocess.Popen) -> bool:
    """Whether the run, which writes its JSON lines there, has begun its first step before it ended."""
    end = time.monotonic() + PATIENCE_SECONDS
    while time.monotonic() < end and run.poll() is None:
        if lines.exists() and b'"step_begin"' in lines.read_bytes():
            return True
        time.sleep(0.05)
    return False
