"""As many mutants are tried as were asked for, always the same ones, and each is reported. Without a build."""

import unittest

import mutants
import sampling
from sampling import Outcome
from verdict import Fate

SOURCE = "\n".join(f"bool Check{i}() {{ return a == {i}; }}" for i in range(20))
EVERYTHING = mutants.mutants_of("src/json/A.cpp", SOURCE)


class OrderTest(unittest.TestCase):
    def test_the_order_depends_on_the_seed_alone(self):
        self.assertEqual(sampling.in_random_order(EVERYTHING, 7), sampling.in_random_order(EVERYTHING, 7))
        self.assertNotEqual(sampling.in_random_order(EVERYTHING, 7), sampling.in_random_order(EVERYTHING, 8))
        self.assertCountEqual(sampling.in_random_order(EVERYTHING, 7), EVERYTHING)

    def tried(self, count: int, compiles) -> list[Outcome]:
        def play(batch):
            return (Outcome(mutant, Fate.KILLED if compiles(mutant) else Fate.NOT_COMPILED) for mutant in batch)
        return list(sampling.try_in_order(sampling.in_random_order(EVERYTHING, 7), count, play))

    def test_what_does_not_compile_is_replaced(self):
        outcomes = self.tried(10, lambda mutant: mutant.line % 3)
        compiled = [outcome for outcome in outcomes if outcome.fate == Fate.KILLED]
        self.assertEqual(len(compiled), 10)
        self.assertGreater(len(outcomes), 10)
        # The first ones of the order, without a gap.
        self.assertCountEqual([outcome.mutant for outcome in outcomes],
                              sampling.in_random_order(EVERYTHING, 7)[:len(outcomes)])

    def test_no_more_are_tried_than_there_are(self):
        self.assertEqual(len(self.tried(1000, lambda mutant: True)), len(EVERYTHING))
        self.assertEqual(len(self.tried(1000, lambda mutant: False)), len(EVERYTHING))

    def test_as_many_as_asked_for_and_no_more(self):
        self.assertEqual(len(self.tried(4, lambda mutant: True)), 4)


class ReportTest(unittest.TestCase):
    def test_each_fate_is_counted_as_what_it_is(self):
        first, second, third, fourth, fifth = EVERYTHING[:5]
        outcomes = [Outcome(first, Fate.KILLED, "json_tests"), Outcome(second, Fate.SURVIVED),
                    Outcome(third, Fate.NOT_COMPILED), Outcome(fourth, Fate.SURVIVED),
                    Outcome(fifth, Fate.KILLED_BY_TIME_OUT, "json_tests")]
        figures = sampling.report(outcomes, {second.key: "equivalent"}, 3, 9)
        self.assertEqual((figures["mutants"], figures["sampled"], figures["not_compiled"]), (9, 4, 1))
        self.assertEqual((figures["killed"], figures["percent_killed"]), (2, 50.0))
        self.assertEqual([killed["mutant"] for killed in figures["killed_by_time_out"]], [fifth.key])
        self.assertEqual([survivor["reason"] for survivor in figures["survivors"]], ["equivalent", ""])

    def test_controls_change_nothing_in_each_folder(self):
        controls = sampling.controls(EVERYTHING + mutants.mutants_of("src/menus/A.cpp", SOURCE))
        self.assertEqual([control.file for control in controls], ["src/menus/A.cpp", "src/json/A.cpp"])
        for control in controls:
            self.assertEqual(control.apply(SOURCE), SOURCE)


if __name__ == "__main__":
    unittest.main()
