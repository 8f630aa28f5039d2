"""What the tables of the benchmarks tell of what was measured."""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

import bench
import compare
import measuring
import pages
import tables


def entry(name, nanoseconds, ratio, calls=0, comparison="parse", base="peer"):
    return measuring.Entry("json", comparison, name, base, nanoseconds, ratio, ratio * 0.9, ratio * 1.1, calls)


class TableTest(unittest.TestCase):
    def test_ratios_keep_the_digits_that_mean_something(self):
        self.assertEqual(["0.06", "9.99", "10.0", "99.9", "100", "1234"],
                         [tables.ratio(value) for value in (0.0625, 9.99, 9.996, 99.94, 99.96, 1234.4)])

    def test_run_names_each_comparison_once_and_gives_its_base_no_spread(self):
        self.assertEqual(
            "| what        | by      | time, × the base |  middle half | heap calls |\n"
            "| ----------- | ------- | ---------------: | -----------: | ---------: |\n"
            "| json: parse | plug-in |             0.50 | 0.45 to 0.55 |      1,234 |\n"
            "|             | peer    |                1 |              |          5 |\n"
            "| json: write | peer    |                1 |              |          0 |",
            tables.of_run([entry("plug-in", 50, 0.5, 1234), entry("peer", 100, 1, 5),
                           entry("peer", 1, 1, comparison="write")]))

    def test_change_is_that_of_the_medians_and_ones_that_only_one_side_has_are_named(self):
        rows = tables.of_change([entry("plug-in", 200, 2, 9), entry("gone", 1, 1)],
                                [entry("plug-in", 50, 0.5, 1), entry("new", 1, 1)]).splitlines()[2:]
        cells = [[cell.strip() for cell in row.split("|")[1:-1]] for row in rows]
        self.assertEqual([["json: parse", "plug-in", "2.00", "0.50", "-75 %", "9", "1"],
                          ["", "new", "", "1.00", "", "", "0"], ["", "gone", "1.00", "", "", "0", ""]], cells)

    def test_turns_are_brought_together_by_their_medians(self):
        middle = compare.median_of([[entry("plug-in", 10, 1.0)], [entry("plug-in", 90, 3.0)], [entry("plug-in", 20, 2.0)]])
        self.assertEqual([(20, 2.0)], [(each.nanoseconds, each.ratio) for each in middle])


class PageTest(unittest.TestCase):
    PAGE = "before\n<!-- scripts/bench -->\nold\n<!-- end of scripts/bench -->\nafter\n"

    def test_table_takes_the_place_of_the_last_one(self):
        self.assertEqual(self.PAGE.replace("old", "new"), pages.with_table(self.PAGE, "scripts/bench", "new"))

    def test_page_without_a_place_for_it_is_left_alone(self):
        with self.assertRaises(ValueError):
            pages.with_table(self.PAGE, "scripts/bench-compare", "new")


class ProgramTest(unittest.TestCase):
    """With a program in place of the emulator, which writes what the benchmark would."""

    def run_bench(self, *arguments, code=0):
        with tempfile.TemporaryDirectory() as folder:
            built = pathlib.Path(folder)
            (built / "bench").mkdir()
            (built / "bench" / "bench_json.exe").touch()
            record = [{"name": "parse", "base": "peer", "rounds": 3, "entries": [
                {"name": "peer", "nanoseconds": 1.0, "ratio": 1.0, "low": 1.0, "high": 1.0, "heap_calls": 7}]}]
            fake = built / "fake.py"
            fake.write_text("import pathlib, sys\n"
                            "at = sys.argv.index('--json')\n"
                            f"pathlib.Path(sys.argv[at + 1]).write_text({json.dumps(json.dumps(record))})\n"
                            f"sys.exit({code})\n", encoding="utf-8")
            return subprocess.run([sys.executable, bench.__file__, "--built", folder, f"--command={sys.executable}",
                                   f"--command={fake}", *arguments], check=False, capture_output=True, text=True)

    def test_table_is_printed(self):
        done = self.run_bench()
        self.assertEqual(0, done.returncode, done.stderr)
        self.assertIn("| json: parse | peer |", done.stdout)

    def test_program_that_fails_is_named(self):
        done = self.run_bench(code=3)
        self.assertEqual((2, ""), (done.returncode, done.stdout))
        self.assertIn("json ended with code 3", done.stderr)

    def test_unknown_subject_is_refused_with_those_there_are(self):
        done = self.run_bench("jsn")
        self.assertEqual(2, done.returncode)
        self.assertIn('no subject "jsn"; there are json', done.stderr)


if __name__ == "__main__":
    unittest.main()
