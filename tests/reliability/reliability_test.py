"""The page of figures is what the figures give, and each defect that it names has a test of that name. Without a build."""

import copy
import json
import pathlib
import re
import sys
import tempfile
import unittest
from unittest import mock

import measures
import page
import reliability
import tree

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
        older = {"source": "of-then", "figures": {"checks": 1, "files": 2, "waivers": 3, "findings": 0}}
        table = page.table({"binary": older})
        self.assertIn("| 1 checks of 2 files, 3 waived | no findings | of-then |", table)
        self.assertRegex(table, r"\| stack protector, live: [^|]* \| \| not measured yet \| \|\n")

    def test_the_page_says_how_often_the_sweep_plays_without_a_fault(self):
        told = re.search(r"behind every (\d+) faults \(`--replay-every (\d+)`\)", self.text)
        played = re.search(r'"--replay-every", "(\d+)"', (ROOT / "tests" / "sweep" / "fault_sweep.py").read_text("utf-8"))
        self.assertEqual(told.groups(), (played[1], played[1]))

    def test_each_defect_has_its_test(self):
        cells = re.findall(r"^\|[^|]*\|([^|]*)\|$", self.text.partition("## Defects found")[2], re.MULTILINE)
        rows = [cell for cell in cells if cell.strip() not in ("held by", "---")]
        self.assertGreater(len(rows), 5)
        known = names_of_tests()
        for row in rows:
            named = re.findall(r"`([\w.-]+)`", row)
            self.assertTrue(named, row)
            self.assertEqual([name for name in named if name not in known], [])


class SurvivorsTest(unittest.TestCase):
    def test_a_survivor_stands_in_one_row(self):
        figures = {"mutation": {"figures": {"survivors": [
            {"mutant": "src/a.cpp: if (a || b) {: || -> &&, 1 in the line", "reason": ""}]}}}
        self.assertIn(r"| `src/a.cpp` | `if (a \|\| b) {: \|\| -> &&, 1 in the line` | none is known |",
                      page.survivors(figures))

    def test_reasons_are_those_of_now(self):
        found = [{"mutant": "a", "reason": "of before"}, {"mutant": "b", "reason": ""}]
        page.add_reasons(found, {"b": "of now"})
        self.assertEqual([survivor["reason"] for survivor in found], ["", "of now"])

    def test_survivors_with_a_reason_are_no_longer_sampled_only(self):
        reasons = json.loads((ROOT / "tests" / "mutation" / "survivors.json").read_text(encoding="utf-8"))
        for key in reasons:
            file, _, rest = key.partition(": ")
            line = rest.rpartition(": ")[0]
            self.assertIn(line, (ROOT / file).read_text(encoding="utf-8"), key)


class StaleTest(unittest.TestCase):
    def test_what_was_measured_before_and_what_never_was_is_listed(self):
        with mock.patch.object(tree, "source_of", lambda _root, commit, *without: " without ".join([commit, *without])):
            figures = {measure.name: {"source": tree.source_of(ROOT, "HEAD", *measure.without)}
                       for measure in measures.MEASURES}
            self.assertEqual(reliability.stale(figures), [])
            figures["growth"]["source"] = "before"
            figures["coverage"]["source"] = "before"
            del figures["binary"]
            self.assertEqual(reliability.stale(figures), [
                "growth: measured with src/ before, now HEAD without src/diagnostic",
                "coverage: measured with src/ before, now HEAD", "binary: not measured yet"])

    def test_the_folder_that_is_left_out_is_there(self):
        self.assertTrue((ROOT / tree.DIAGNOSTIC).is_dir())

    def test_the_exit_code_tells(self):
        for found, code in (([], 0), (["binary: not measured yet"], 1)):
            with mock.patch("sys.argv", ["reliability", "--built", ".", "--stale"]), mock.patch("builtins.print"), \
                    mock.patch.object(reliability, "stale", return_value=found):
                self.assertEqual(reliability.main(), code)


class MeasuringTest(unittest.TestCase):
    """Of a measure whose command writes what it is given."""

    def measure(self, refuse_changes=lambda _root, _commit: None):
        (ROOT / "build").mkdir(exist_ok=True)
        with tempfile.TemporaryDirectory(dir=ROOT / "build") as name:
            folder = pathlib.Path(name)
            command = (sys.executable, "-c", "import sys; open(sys.argv[2], 'w').write(sys.argv[1])", '{"tests": 3}')
            one = measures.Measure("one", (measures.Run(command),), lambda written: written[0], lambda figures: [],
                                   ("src/a",))
            with mock.patch.object(measures, "MEASURES", [one]), mock.patch.object(reliability, "FIGURES", folder / "f"), \
                    mock.patch.object(reliability, "PAGE", folder / "page.md"), mock.patch("builtins.print"), \
                    mock.patch.object(tree, "refuse_changes", refuse_changes), \
                    mock.patch("sys.argv", ["reliability", "--built", name]), \
                    mock.patch.object(tree, "source_of", lambda _root, commit, *without: f"{commit} without {without}"), \
                    mock.patch.object(tree, "git", return_value="of all"):
                reliability.PAGE.write_text("".join(page.begin_of(part) + page.END for part in page.PARTS), encoding="utf-8")
                code = reliability.main()
                return code, page.all_figures(reliability.FIGURES)

    def test_figures_are_kept_with_what_was_measured(self):
        self.assertEqual(self.measure(), (0, {
            "one": {"source": "of all without ('src/a',)", "commit": "of all", "figures": {"tests": 3}}}))

    def test_what_is_not_committed_is_not_measured(self):
        def refuse(_root, _commit):
            raise RuntimeError("src/A.cpp: not as in commit")
        self.assertEqual(self.measure(refuse), (2, {}))

    def test_a_tree_that_changes_meanwhile_gives_no_figures(self):
        calls = mock.Mock(side_effect=[None, RuntimeError("src/A.cpp: not as in commit")])
        self.assertEqual(self.measure(calls), (2, {}))
        self.assertEqual(calls.call_count, 2)


if __name__ == "__main__":
    unittest.main()
