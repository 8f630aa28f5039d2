#!/usr/bin/env python3
"""What scripts/coverage makes of gcovr's reports."""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

COUNTER = pathlib.Path(__file__).parents[1] / "coverage" / "count_coverage.py"


def line(number, count, *branches, noncode=False):
    return {"line_number": number, "count": count, "branches": [{"count": taken} for taken in branches],
            "gcovr/noncode": noncode, "gcovr/excluded": False}


class CoverageScript(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        (self.root / "src").mkdir()
        (self.root / "src" / "A.cpp").write_text("one\n  two\nthree\n", encoding="utf-8")

    def count(self, simhost, together):
        for name, lines in (("simhost", simhost), ("all", together)):
            files = [{"file": "src/A.cpp", "lines": lines}] if lines is not None else []
            (self.root / f"{name}.json").write_text(json.dumps({"files": files}), encoding="utf-8")
        done = subprocess.run([sys.executable, COUNTER, "--simhost", self.root / "simhost.json", "--all",
                               self.root / "all.json", "--source", self.root, "--json", self.root / "counts.json"],
                              capture_output=True, encoding="utf-8", check=False)
        counts = self.root / "counts.json"
        return done, json.loads(counts.read_text(encoding="utf-8")) if counts.exists() else None

    def test_everything_run_is_0(self):
        done, counts = self.count([line(1, 1, 1, 2)], [line(1, 2, 2, 3)])
        self.assertEqual(done.returncode, 0)
        self.assertEqual((counts["all_lines_percent"], counts["all_branches_percent"]), (100.0, 100.0))

    def test_less_than_is_aimed_at_is_1_and_told_by_line(self):
        done, counts = self.count([line(1, 1), line(2, 0)], [line(1, 1, 1, 0), line(2, 0), line(3, 0, noncode=True)])
        self.assertEqual(done.returncode, 1)
        self.assertEqual((counts["all_lines"], counts["all_lines_run"], counts["all_branches_taken"]), (2, 1, 1))
        self.assertIn("src/A.cpp:1: one way only: one", done.stdout)
        self.assertIn("src/A.cpp:2: never runs: two", done.stdout)
        self.assertNotIn("A.cpp:3", done.stdout)

    def test_too_few_branches_alone_are_1(self):
        done, _ = self.count([line(1, 1, 1, 0)], [line(1, 1, 1, 0)])
        self.assertEqual(done.returncode, 1)
        self.assertIn("coverage: 100.0 % of the lines, aim 97 %\ncoverage: 50.0 % of the branches, aim 90 %", done.stdout)

    def test_both_columns_count_the_same_lines_and_branches(self):
        # Line 2 never ran in the simulated host, where gcov then told two branches too many; line 3 was not known there.
        _, counts = self.count([line(1, 1, 1, 0), line(2, 0, 0, 0, 0, 0)],
                               [line(1, 1, 1, 1), line(2, 4, 2, 2), line(3, 1)])
        self.assertEqual((counts["simhost_lines"], counts["simhost_lines_run"]), (3, 1))
        self.assertEqual((counts["simhost_branches"], counts["simhost_branches_taken"]), (4, 1))
        self.assertEqual((counts["all_branches"], counts["all_branches_taken"]), (4, 4))

    def test_no_counters_are_2(self):
        done, counts = self.count(None, None)
        self.assertEqual((done.returncode, counts), (2, None))
        self.assertIn("no counters", done.stderr)


if __name__ == "__main__":
    unittest.main()
