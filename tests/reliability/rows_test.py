"""What is told of the figures is what they say. Without a build."""

import unittest

import rows

BINARY = {"checks": 17, "files": 2, "waivers": 1, "findings": 0}
BUILDS = {"builds": 2, "hashes": 1}
UNITS = {"tests": 6, "failures": 0, "errors": 0}
MUTATION = {"mutants": 900, "sampled": 300, "not_compiled": 7, "killed": 290, "percent_killed": 96.7,
            "killed_by_time_out": [{}, {}], "survivors": [{"reason": "equivalent"}, {"reason": ""}]}


class FiguresTest(unittest.TestCase):
    def test_a_failure_is_told(self):
        told = rows.manners_rows({"cases": 10, "failed": 2, "faults": 3, "caught": 1})
        self.assertEqual([row.outcome for row in told], ["2 failed", "1 caught as expected"])
        self.assertEqual(rows.binary_rows({"checks": 1, "files": 1, "waivers": 0, "findings": 4})[0].outcome, "4 findings")

    def test_a_pattern_that_matches_no_test_is_no_success(self):
        with self.assertRaisesRegex(RuntimeError, "matches none"):
            rows.count_of_unit_tests([{"tests": 3, "failures": 0, "errors": 0}, {"tests": 0, "failures": 0, "errors": 0}])

    def test_stories_are_counted_by_their_result(self):
        written = {"a": {"passed": True}, "b": {"passed": False}}
        self.assertEqual(rows.count_of_stories(written), {"cases": 2, "failed": 1})

    def test_mutants_are_counted_as_what_they_are(self):
        row = rows.mutation_rows(MUTATION)[0]
        self.assertEqual(row.tried, "300; 7 that do not compile were replaced")
        self.assertEqual(row.outcome, "290 killed (96.7 %), 2 of them by the time limit; 2 survived, 1 of them without a reason")


class SweepTest(unittest.TestCase):
    def setUp(self):
        counts = {"played": 10, "not_reached": 1, "left_out_same_way": 5, "with_findings": 0}
        self.figures = {"by_kind": {"import": {"once": counts, "from-here": counts | {"with_findings": 2}}},
                        "imports_never_called": ["WriteFile"], "imports_that_can_fail": 71, "cases": 4, "scenarios": 3,
                        "distinct": True, "injected": 18, "operations": 9, "unplayable": [], "left_out": {"not_played": 0},
                        "with_findings": 2}

    def test_each_kind_and_mode_has_a_row(self):
        told = rows.sweep_rows(self.figures)[:2]
        self.assertEqual([row.outcome for row in told], ["no findings", "2 findings"])
        self.assertEqual(told[0].tried, "9 injected, 1 not reached any more; 5 on the way of one of these")

    def test_what_no_story_calls_is_named(self):
        self.assertEqual((rows.sweep_rows(self.figures)[-1].tried, rows.sweep_rows(self.figures)[-1].outcome),
                         ("1 of 71", "`WriteFile`"))

    def test_playing_again_is_told_once_it_was_measured(self):
        self.assertEqual(rows.sweep_rows(self.figures)[-2].tried, "")
        again = {"played_again": 17, "not_replayable_in_one_instance": ["a.json: no a-208", "a.json: no a-212"]}
        self.assertEqual(rows.sweep_rows(self.figures | again)[-2].tried, "after 17 faults; 1 cases not playable twice")


class BinaryTest(unittest.TestCase):
    def outcomes(self, figures: dict) -> list[str]:
        return [row.outcome for row in rows.binary_rows(figures)]

    def test_each_of_its_runs_has_a_row(self):
        figures = rows.binary_digest([BINARY, BUILDS, UNITS])
        self.assertEqual(self.outcomes(figures), ["no findings", "the same hash", "all passed"])
        figures = rows.binary_digest([BINARY, {"builds": 2, "hashes": 2}, UNITS | {"failures": 1}])
        self.assertEqual(self.outcomes(figures), ["no findings", "2 DIFFERENT hashes", "1 failed"])

    def test_what_an_older_record_lacks_was_not_measured(self):
        self.assertEqual([row.tried for row in rows.binary_rows(BINARY)], ["17 checks of 2 files, 1 waived", "", ""])


class GrowthTest(unittest.TestCase):
    def outcome(self, what: str, **counts) -> str:
        return rows.growth_rows({what: {"times": 1000, "handles": 0, "blocks": 0} | counts})[0].outcome

    def test_what_is_meant_to_grow_is_told_as_such(self):
        self.assertEqual(self.outcome("the two handles that stay open", handles=1, blocks=3, right=True),
                         "what they cost: handles 1, blocks 3")
        self.assertEqual(self.outcome("cycles of the plug-in", handles=1000, blocks=3000, right=True),
                         "exactly the handles that are meant to stay, and what they cost: handles 1,000, blocks 3,000")
        self.assertEqual(self.outcome("one of the handles left behind", handles=1, right=True), "noticed: handles 1")

    def test_what_is_not_meant_is_wrong_whatever_grew(self):
        for what in ("the two handles that stay open", "cycles of the plug-in", "one of the handles left behind", "messages"):
            self.assertEqual(self.outcome(what, handles=2, right=False), "grown: handles 2, which is WRONG")
        self.assertEqual(self.outcome("one of the handles left behind", right=False), "nothing grew, which is WRONG")

    def test_a_comparison_is_neither(self):
        self.assertEqual(self.outcome("cycles of a plug-in that does nothing"), "nothing grew, for comparison")
        self.assertEqual(self.outcome("cycles of a plug-in that does nothing", handles=1), "grown: handles 1, for comparison")


if __name__ == "__main__":
    unittest.main()
