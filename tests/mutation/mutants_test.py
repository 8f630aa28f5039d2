"""The changes to the sources are those that are meant. Without a build."""

import pathlib
import unittest

import mutants
import mutation

SOURCE = """\
#include <array>  // 1 == 1
constexpr int kSize = 0x10;
bool Check(const std::vector<int>& list, bool found) {
    if (list.size() <= 2u && !found) {
        LogMessage(kNote, "1 == %d", 'a');
        return true;
    }
    list.clear();
    return list == other;
}
"""


class MutantsTest(unittest.TestCase):
    def setUp(self):
        self.found = mutants.mutants_of("src/json/A.cpp", SOURCE)

    def test_conditions_calls_and_constants_are_changed(self):
        self.assertEqual(
            [(mutant.line, mutant.kind, mutant.before.strip(), mutant.after.strip()) for mutant in self.found],
            [(2, "constant", "0x10", "0x11"), (4, "condition", "<=", ">"), (4, "condition", "&&", "||"),
             (4, "condition", "!", ""), (4, "constant", "2u", "3u"),
             (5, "call", "LogMessage(kNote, \"1 == %d\", 'a');", ";"), (6, "constant", "true", "false"),
             (8, "call", "list.clear();", ";"), (9, "condition", "==", "!=")])

    def test_a_mutant_differs_in_one_place(self):
        for mutant in self.found:
            changed = mutant.apply(SOURCE)
            differing = [pair for pair in zip(SOURCE.split("\n"), changed.split("\n")) if pair[0] != pair[1]]
            self.assertEqual(len(differing), 1, mutant)
        self.assertIn("if (list.size() <= 2u && found) {", self.found[3].apply(SOURCE))

    def test_the_key_does_not_depend_on_the_line(self):
        moved = mutants.mutants_of("src/json/A.cpp", "\n\n" + SOURCE)
        self.assertEqual([mutant.key for mutant in moved], [mutant.key for mutant in self.found])
        self.assertEqual(len({mutant.key for mutant in self.found}), len(self.found))

    def test_the_tree_has_enough_of_them(self):
        root = pathlib.Path(__file__).resolve().parents[2]
        self.assertGreater(len(mutants.mutants_in(root, mutation.FOLDERS)), 600)


if __name__ == "__main__":
    unittest.main()
