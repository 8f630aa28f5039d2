"""Asserts how a test run judges programs that pass, fail, skip, crash, hang or end early."""

import argparse
import os
import subprocess
import sys
import time
import unittest

options = None


def run(case, *run_options, **environment):
    command = [options.run, *run_options, options.samples, f"--gtest_filter={case}"]
    return subprocess.run(command, capture_output=True, text=True, env={**os.environ, **environment})


def judge(case, **environment):
    return run(f"Sample.{case}", "--expect-passed", **environment)


class Verdict(unittest.TestCase):
    def assert_code(self, result, code):
        self.assertEqual(result.returncode, code, f"\nit printed:\n{result.stdout}{result.stderr}")

    def assert_fails_saying(self, result, *texts):
        """For programs that end themselves in the middle: what they print is certain, the code is Wine's to garble."""
        self.assertNotEqual(result.returncode, 0)
        for text in texts:
            self.assertIn(text, result.stderr)

    def test_passing_test_passes(self):
        self.assert_code(judge("Passes"), 0)

    def test_output_has_no_carriage_returns(self):
        output = subprocess.run([options.run, options.samples, "--gtest_filter=Sample.Passes"], capture_output=True)
        self.assertIn(b"said\nby the test\n", output.stdout)

    def test_failing_test_fails(self):
        result = judge("Fails")
        self.assert_code(result, 1)
        self.assertIn("[  FAILED  ] Sample.Fails", result.stdout)

    def test_skipped_test_fails(self):
        result = judge("IsSkipped")
        self.assert_code(result, 1)

    def test_one_skipped_test_among_passing_ones_fails(self):
        result = judge("Passes:Sample.IsSkipped")
        self.assert_code(result, 1)
        self.assertIn("a skipped test counts as a failure", result.stderr)

    def test_one_failing_test_among_passing_ones_is_named(self):
        result = judge("Passes:Sample.Fails")
        self.assert_code(result, 1)
        self.assertIn("[       OK ] Sample.Passes", result.stdout)
        self.assertIn("[  FAILED  ] Sample.Fails", result.stdout)

    def test_crash_among_passing_tests_is_named(self):
        result = judge("Passes:Sample.ReadsThroughANullPointer")
        self.assert_fails_saying(result, "crash in Sample.ReadsThroughANullPointer")

    def test_each_test_has_its_own_time(self):
        """Three tests of a second and a half each, of which none may take three."""
        result = judge("SleepsForAMoment*", QUORVEL_WATCHDOG_SECONDS="3")
        self.assert_code(result, 0)

    def test_hanging_test_among_passing_ones_is_named(self):
        result = judge("Passes:Sample.Hangs", QUORVEL_WATCHDOG_SECONDS="2")
        self.assert_fails_saying(result, "watchdog: Sample.Hangs took longer than 2 seconds")

    def test_program_that_runs_no_test_fails(self):
        self.assert_code(judge("NoSuchCase"), 1)

    def test_early_end_with_code_zero_fails(self):
        result = judge("EndsEarlyWithCodeZero")
        self.assert_code(result, 1)
        self.assertIn("never said that its tests passed", result.stderr)

    def test_code_cut_to_zero_fails(self):
        self.assert_code(judge("EndsWithACodeThatIsCutToZero"), 1)

    def test_crash_is_reported_with_code_and_stack(self):
        result = judge("ReadsThroughANullPointer")
        self.assert_fails_saying(
            result,
            "crash in Sample.ReadsThroughANullPointer",
            "crash: exception 0xc0000005 at ",
            "  verdict_samples.exe 0x14",
        )

    def test_stack_overflow_is_reported(self):
        result = judge("OverflowsTheStack")
        self.assert_fails_saying(
            result,
            "crash in Sample.OverflowsTheStack",
            "crash: exception 0xc00000fd at ",
            "  verdict_samples.exe 0x14",
        )

    def test_abort_fails_without_a_window(self):
        result = judge("Aborts")
        self.assert_code(result, 3)
        self.assertIn("crash in Sample.Aborts", result.stderr)

    def test_terminate_says_which_exception(self):
        result = judge("Terminates")
        self.assert_code(result, 3)
        self.assertIn("on purpose", result.stderr)

    def test_hanging_test_is_named_with_its_stack(self):
        result = judge("Hangs", QUORVEL_WATCHDOG_SECONDS="2")
        self.assert_fails_saying(
            result, "watchdog: Sample.Hangs took longer than 2 seconds", "  verdict_samples.exe 0x14"
        )

    def test_hanging_program_without_watchdog_is_ended(self):
        result = run("Sample.Hangs", "--time-limit", "2", QUORVEL_WATCHDOG_SECONDS="0")
        self.assert_code(result, 124)
        self.assertIn("ended after 2 seconds", result.stderr)

    def test_process_left_behind_does_not_hold_the_run_up(self):
        begin = time.monotonic()
        self.assert_code(judge("LeavesAProcessBehind"), 0)
        self.assertLess(time.monotonic() - begin, 6)

    def test_exit_code_is_kept_where_no_tests_are_expected(self):
        self.assert_code(run("Sample.Aborts"), 3)
        self.assert_code(run("Sample.EndsEarlyWithCodeZero"), 0)

    def test_missing_program_is_named(self):
        result = subprocess.run([options.run, "no-such.exe"], capture_output=True, text=True)
        self.assert_code(result, 2)
        self.assertIn("there is no file 'no-such.exe'", result.stderr)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--run", required=True, help="the script that runs Windows programs")
    parser.add_argument("--samples", required=True, help="the built program of VerdictSamples.cpp")
    options, unittest_arguments = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0], *unittest_arguments])
