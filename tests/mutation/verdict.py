"""What a run of a test program under Wine tells of a mutant. Under load Wine may fail to start a program, or a program may
come to its time limit: neither says that a test has noticed anything.
"""

import dataclasses
import enum
import re
from collections.abc import Callable

FAILED_TEST = re.compile(r"^\[  FAILED  \] \w[\w/]*\.\w", re.MULTILINE)
BEGAN = re.compile(r"^\[={10}\] Running [1-9]\d* tests? ", re.MULTILINE)
# Words of a test program itself (tests/support/watchdog, ImportPatch: what a test replaces is not imported any more), and
# of Wine about a program that it has started.
CRASH = re.compile(r"^(?:crash in |crash: exception |watchdog: the thread of .* died|ImportPatch: |wine: Unhandled )",
                   re.MULTILINE)
TOO_LONG = re.compile(r"^watchdog: .* took longer than ", re.MULTILINE)
# Of Wine, about a server that is gone.
SERVER_LOST = re.compile(r"^wine client error", re.MULTILINE)
# Of scripts/run-in-wine: the time limit was reached.
TIME_LIMIT_CODE = 124
# Also of scripts/run-in-wine, when a program ended with 0 before its tests did. So ends a program whose server is gone.
DOUBTFUL_CODE = 1


@dataclasses.dataclass(frozen=True)
class Ended:
    """How a call of scripts/run-in-wine ended."""

    code: int
    output: str = ""
    errors: str = ""


class Verdict(enum.Enum):
    PASSED = "all tests passed"
    FAILED = "a test failed"
    CRASHED = "the program crashed"
    TIMED_OUT = "the time limit was reached"
    NONE = "nothing is known of the tests"


class Fate(enum.Enum):
    SURVIVED = "survived"
    KILLED = "killed"
    # It never ends, or takes far too long.
    KILLED_BY_TIME_OUT = "killed by time-out"
    NOT_COMPILED = "not compiled"

    @property
    def is_killed(self) -> bool:
        return self in (Fate.KILLED, Fate.KILLED_BY_TIME_OUT)


FATES = {Verdict.PASSED: Fate.SURVIVED, Verdict.FAILED: Fate.KILLED, Verdict.CRASHED: Fate.KILLED}


class NoVerdict(RuntimeError):
    """The runs have failed, and not the tests."""


def verdict_of(ended: Ended) -> Verdict:
    if ended.code == 0:
        return Verdict.PASSED
    if FAILED_TEST.search(ended.output):
        return Verdict.FAILED
    if ended.code == TIME_LIMIT_CODE or TOO_LONG.search(ended.errors):
        return Verdict.TIMED_OUT
    if SERVER_LOST.search(ended.errors):
        return Verdict.NONE
    # Nobody tells of a fast failure. Before the tests began a code could mean anything.
    if CRASH.search(ended.errors) or (BEGAN.search(ended.output) and ended.code != DOUBTFUL_CODE):
        return Verdict.CRASHED
    return Verdict.NONE


def fate_by(run: Callable[[], Ended]) -> Fate:
    """Runs the tests, and once more when that says nothing of them. Throws NoVerdict when neither does."""
    ends = []
    for _ in range(2):
        ends.append(run())
        verdict = verdict_of(ends[-1])
        if verdict in FATES:
            return FATES[verdict]
    if all(verdict_of(ended) == Verdict.TIMED_OUT for ended in ends):
        return Fate.KILLED_BY_TIME_OUT
    told = "; then ".join(f"{verdict_of(ended).value} (code {ended.code}: {last_words(ended)})" for ended in ends)
    raise NoVerdict(told)


def last_words(ended: Ended) -> str:
    lines = (ended.errors or ended.output).strip().splitlines()
    return lines[-1] if lines else "without a word"
