"""A mutant is killed by a test that failed or by a crash, and not by what goes wrong with the run. Without a build."""

import pathlib
import unittest

from verdict import Ended, Fate, NoVerdict, Verdict, fate_by, verdict_of

BEGAN = "[==========] Running 2 tests from 1 test suite.\n[ RUN      ] Suite.Case\n"
FAILED = BEGAN + "[  FAILED  ] Suite.Case (3 ms)\n"
ENDED_EARLY = "run-in-wine: the exit code is 0, but the program never said that its tests passed: a.exe\n"

PASSED_RUN = Ended(0, BEGAN)
FAILED_RUN = Ended(1, FAILED)
NOT_STARTED = Ended(1, "", "wine-environment: Xvfb does not start, see above.\n")
ENDLESS = Ended(124, BEGAN, "run-in-wine: ended after 120 seconds: a.exe\n")

ENDS = {
    "passed": (PASSED_RUN, Verdict.PASSED),
    "a test failed": (FAILED_RUN, Verdict.FAILED),
    "a test with a parameter failed": (Ended(1, BEGAN + "[  FAILED  ] All/Suite.Case/0, where (1 ms)\n"), Verdict.FAILED),
    "a test failed, the next one hung": (Ended(124, FAILED), Verdict.FAILED),
    "a test failed, the next one crashed": (Ended(98, FAILED, "crash in Suite.Case\n"), Verdict.FAILED),
    "crashed": (Ended(98, BEGAN, "crash in Suite.Case\ncrash: exception 0xc0000005 at 1\n"), Verdict.CRASHED),
    "crashed before the tests": (Ended(5, "", "crash: exception 0xc0000005 at 1\n"), Verdict.CRASHED),
    "crashed before the report was ready": (Ended(5, "", "wine: Unhandled page fault on read access\n"), Verdict.CRASHED),
    "its stack overflowed": (Ended(97, BEGAN, "watchdog: the thread of Suite.Case died, perhaps\n"), Verdict.CRASHED),
    "failed fast, which nobody tells": (Ended(9, BEGAN), Verdict.CRASHED),
    "imports no more what a test replaces": (Ended(1, BEGAN, "ImportPatch: the module does not import A\n"), Verdict.CRASHED),
    "the time limit": (ENDLESS, Verdict.TIMED_OUT),
    "the watchdog's limit": (Ended(97, BEGAN, "watchdog: Suite.Case took longer than 60 seconds\n"), Verdict.TIMED_OUT),
    "no session": (NOT_STARTED, Verdict.NONE),
    "not started": (Ended(5, "", "run-in-wine: Wine did not start the program (code 5); once more\n"), Verdict.NONE),
    "ended with 0 in the middle, as without a server": (Ended(1, BEGAN, ENDED_EARLY), Verdict.NONE),
    "the server is gone": (Ended(134, BEGAN, "wine client error:0: recvmsg: Connection reset\n"), Verdict.NONE),
    "a summary that names nobody": (Ended(1, BEGAN + "[  FAILED  ] 1 test, listed below:\n"), Verdict.NONE),
}


class Runs:
    def __init__(self, *ends: Ended):
        self.ends = list(ends)

    def __call__(self) -> Ended:
        return self.ends.pop(0)


class VerdictTest(unittest.TestCase):
    def test_what_each_end_tells(self):
        for name, (ended, verdict) in ENDS.items():
            with self.subTest(name):
                self.assertEqual(verdict_of(ended), verdict)

    def test_the_words_are_those_of_the_test_programs(self):
        root = pathlib.Path(__file__).parents[2]
        watchdog = root / "tests" / "support" / "watchdog"
        patches = (root / "devkit" / "doubles" / "common" / "ImportPatch.cpp").read_text(encoding="utf-8")
        crashes = (watchdog / "CrashReport.cpp").read_text(encoding="utf-8")
        times = (watchdog / "Watchdog.cpp").read_text(encoding="utf-8")
        for words, source in (('"crash in %s', crashes), ('"crash: exception ', crashes),
                              ('"watchdog: the thread of %s died', times), ('"watchdog: %s took longer than ', times),
                              ('"ImportPatch: ', patches)):
            self.assertIn(words, source)


class FateTest(unittest.TestCase):
    def fate(self, *ends: Ended) -> tuple[Fate, int]:
        """And how many of the ends were not needed."""
        runs = Runs(*ends)
        return fate_by(runs), len(runs.ends)

    def test_a_clear_end_is_not_repeated(self):
        self.assertEqual(self.fate(PASSED_RUN, FAILED_RUN), (Fate.SURVIVED, 1))
        self.assertEqual(self.fate(FAILED_RUN, PASSED_RUN), (Fate.KILLED, 1))

    def test_after_any_other_end_the_second_run_counts(self):
        for first in (ENDLESS, NOT_STARTED):
            self.assertEqual(self.fate(first, PASSED_RUN, FAILED_RUN), (Fate.SURVIVED, 1))
            self.assertEqual(self.fate(first, FAILED_RUN, PASSED_RUN), (Fate.KILLED, 1))

    def test_two_time_outs_are_a_kill_of_their_own_kind(self):
        fate, left = self.fate(ENDLESS, ENDLESS, PASSED_RUN)
        self.assertEqual((fate, fate.is_killed, left), (Fate.KILLED_BY_TIME_OUT, True, 1))

    def test_two_runs_that_tell_nothing_are_an_error(self):
        for ends in ((NOT_STARTED, NOT_STARTED), (NOT_STARTED, ENDLESS), (ENDLESS, NOT_STARTED)):
            with self.assertRaisesRegex(NoVerdict, r"code 1: wine-environment: Xvfb does not start"):
                self.fate(*ends)


if __name__ == "__main__":
    unittest.main()
