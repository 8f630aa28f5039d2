"""The page of figures is what the figures give, and each defect that it names has a test of that name. Without a build."""

import copy
import json
import pathlib
import re
import unittest

import measures
import page
import reliability

ROOT = pathlib.Path(__file__).resolve().parents[2]
TEST_MACRO = re.compile(r"\bTEST(?:_F|_P)?\((\w+), (\w+)\)")


def names_of_tests() -> set[str]:
    """As ctest has them, and single cases of suites as `Suite.Case`."""
    names = {f"scenario.{file.stem}" for file in (ROOT / "devkit" / "scenarios").glob("*.json")}
    names |= {f"simhost.{file.stem}" for file in (ROOT / "tests" / "scenario" / "faults").glob("*.json")}
    for file in (ROOT / "tests").rglob("*.cpp"):
        for suite, case in TEST_MACRO.findall(file.read_text(encoding="utf-8")):
            names |= {suite, f"{suite}.{case}"}
    for file in (ROOT / "tests").rglob("CMakeLists.txt"):
        names |= set(re.findall(r"\badd_test\(NAME ([\w.-]+)", file.read_text(encoding="utf-8")))
    return names


def with_other_numbers(value):
    if isinstance(value, dict):
        return {key: with_other_numbers(member) for key, member in value.items()}
    return value + 1 if type(value) is int else value


class PageTest(unittest.TestCase):
    def setUp(self):
        self.text = reliability.PAGE.read_text(encoding="utf-8")
        self.figures = page.all_figures(reliability.FIGURES)

    def test_the_page_is_what_the_figures_give(self):
        self.assertEqual(page.written_into(self.text, self.figures), self.text, "run scripts/reliability --page")

    def test_another_figure_gives_another_page(self):
        for measure in (measure for measure in measures.MEASURES if measure.name in self.figures):
            changed = copy.deepcopy(self.figures)
            changed[measure.name]["figures"] = with_other_numbers(changed[measure.name]["figures"])
            self.assertNotEqual(page.written_into(self.text, changed), self.text, measure.name)

    def test_a_page_without_a_place_for_the_figures_is_refused(self):
        with self.assertRaisesRegex(ValueError, "no part '<!-- from figures: table -->'"):
            page.written_into("# Reliability\n", self.figures)

    def test_there_are_no_figures_that_nobody_tells(self):
        names = {file.stem for file in reliability.FIGURES.glob("*.json")}
        self.assertLessEqual(names, {measure.name for measure in measures.MEASURES})

    def test_what_was_not_measured_is_said(self):
        table = page.table({name: record for name, record in self.figures.items() if name != "binary"})
        self.assertIn("| binary | | not measured yet | |", table)

    def test_each_defect_has_its_test(self):
        cells = re.findall(r"^\|[^|]*\|([^|]*)\|$", self.text.partition("## Defects found")[2], re.MULTILINE)
        rows = [cell for cell in cells if cell.strip() not in ("held by", "---")]
        self.assertGreater(len(rows), 5)
        known = names_of_tests()
        for row in rows:
            named = re.findall(r"`([\w.-]+)`", row)
            self.assertTrue(named, row)
            self.assertEqual([name for name in named if name not in known], [])


class FiguresTest(unittest.TestCase):
    def test_a_failure_is_told(self):
        rows = measures.manners_rows({"cases": 10, "failed": 2, "faults": 3, "caught": 1})
        self.assertEqual([row.outcome for row in rows], ["2 failed", "1 caught as expected"])
        self.assertEqual(measures.binary_rows({"checks": 1, "files": 1, "waivers": 0, "findings": 4})[0].outcome, "4 findings")

    def test_a_pattern_that_matches_no_test_is_no_success(self):
        with self.assertRaisesRegex(RuntimeError, "matches none"):
            measures.count_of_unit_tests([{"tests": 3, "failures": 0, "errors": 0}, {"tests": 0, "failures": 0, "errors": 0}])

    def test_stories_are_counted_by_their_result(self):
        written = {"a": {"passed": True}, "b": {"passed": False}}
        self.assertEqual(measures.count_of_stories(written), {"cases": 2, "failed": 1})

    def test_a_survivor_stands_in_one_row(self):
        figures = {"mutation": {"figures": {"survivors": [
            {"mutant": "src/a.cpp: if (a || b) {: || -> &&, 1 in the line", "reason": ""}]}}}
        self.assertIn(r"| `src/a.cpp` | `if (a \|\| b) {: \|\| -> &&, 1 in the line` | none is known |",
                      page.survivors(figures))

    def test_survivors_with_a_reason_are_no_longer_sampled_only(self):
        reasons = json.loads((ROOT / "tests" / "mutation" / "survivors.json").read_text(encoding="utf-8"))
        for key in reasons:
            file, _, rest = key.partition(": ")
            line = rest.rpartition(": ")[0]
            self.assertIn(line, (ROOT / file).read_text(encoding="utf-8"), key)


if __name__ == "__main__":
    unittest.main()
