#!/usr/bin/env python3
"""What scripts/fuzz makes of what the fuzzers say. The fuzzers are shell scripts."""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

RUNNER = pathlib.Path(__file__).parents[2] / "fuzz" / "run_fuzzers.py"
STATISTICS = 'echo "stat::number_of_executed_units: 700" >&2\n'
# As libFuzzer says it: files that it is given are played one by one, folders are fuzzed.
IS_PLAYED = 'for last; do :; done; [ -f "$last" ]'


class FuzzScript(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        for target in ("words", "menu"):
            corpus = self.root / "source" / "corpus" / target
            corpus.mkdir(parents=True)
            (corpus / "by-hand").write_text("text", encoding="utf-8")
            self.fuzzer(f"fuzz-{target}", STATISTICS)

    def fuzzer(self, name, text):
        file = self.root / "built" / name
        file.parent.mkdir(exist_ok=True)
        file.write_text(f'#!/bin/sh\necho "$0" "$@" >>"{self.root}/calls"\n{text}', encoding="utf-8")
        file.chmod(0o755)

    def run_fuzzers(self, *arguments, targets=("words", "menu")):
        chosen = [word for target in targets for word in ("--target", target)]
        done = subprocess.run([sys.executable, RUNNER, "--source", self.root / "source", "--built", self.root / "built",
                               *chosen, *arguments], capture_output=True, encoding="utf-8", check=False)
        return done.returncode, done.stdout.splitlines(), done.stderr

    def calls(self):
        return (self.root / "calls").read_text(encoding="utf-8").splitlines()

    def test_nothing_found_is_0_and_counted(self):
        code, printed, _ = self.run_fuzzers("--json", str(self.root / "counts.json"))
        self.assertEqual((code, printed[-1]), (0, "fuzz: 1400 inputs, 0 findings"))
        counts = json.loads((self.root / "counts.json").read_text(encoding="utf-8"))
        self.assertEqual((counts["targets"], counts["inputs"], counts["found"], counts["corpus_files"]), (2, 1400, 0, 2))

    def test_short_run_is_always_the_same_and_leaves_the_corpus_alone(self):
        self.run_fuzzers(targets=["words"])
        played, fuzzed = self.calls()
        self.assertTrue(played.endswith("/corpus/words/by-hand"), played)
        self.assertRegex(fuzzed, r" -seed=1 -runs=\d+ \S+/built/short/words \S+/corpus/words$")

    def test_long_run_has_a_new_seed_and_keeps_what_it_grew(self):
        self.run_fuzzers("--seconds", "5", targets=["words"])
        self.assertNotIn("-seed", self.calls()[1])
        self.assertRegex(self.calls()[1], r" -max_total_time=5 \S+/built/grown/words \S+/corpus/words$")

    def test_finding_is_1_and_told_with_its_command(self):
        self.fuzzer("fuzz-menu", f'{IS_PLAYED} && exit 0\n' 'echo "Disagreement: menu: the item" >&2\n'
                    'echo "artifact_prefix=x; Test unit written to /there/crash-1" >&2\n' + STATISTICS + "exit 77\n")
        code, printed, _ = self.run_fuzzers()
        self.assertEqual((code, printed[-1]), (1, "fuzz: 1400 inputs, 1 findings"))
        self.assertIn("menu: FOUND after 700 inputs", printed)
        self.assertIn("  Disagreement: menu: the item", printed)
        self.assertIn(f"  once more: {self.root}/built/fuzz-menu '/there/crash-1'", printed)

    def test_committed_input_that_fails_is_1(self):
        self.fuzzer("fuzz-menu", f'{IS_PLAYED} && echo "Running: $last" >&2 && exit 77\n' + STATISTICS)
        code, printed, _ = self.run_fuzzers()
        self.assertEqual(code, 1)
        self.assertTrue(any("once more" in line and line.endswith("/corpus/menu/by-hand'") for line in printed), printed)

    def test_fuzzer_that_does_not_run_is_2(self):
        self.fuzzer("fuzz-menu", "exit 1\n")
        self.assertEqual(self.run_fuzzers()[0], 2)
        self.fuzzer("fuzz-menu", "exit 0\n")
        self.assertEqual(self.run_fuzzers()[0], 2)
        (self.root / "built" / "fuzz-menu").unlink()
        code, _, complained = self.run_fuzzers()
        self.assertEqual((code, complained), (2, "fuzz: not built: menu\n"))

    def test_unknown_target_is_2(self):
        self.assertEqual(self.run_fuzzers(targets=["nothing"])[0], 2)

    def test_planted_defects_must_all_be_found(self):
        for target in ("words", "menu"):
            self.fuzzer(f"planted-{target}", 'echo "Running: $1" >&2\nexit 77\n')
        self.assertEqual(self.run_fuzzers("--planted")[::2], (0, ""))
        self.fuzzer("planted-menu", STATISTICS)
        code, printed, _ = self.run_fuzzers("--planted")
        self.assertEqual((code, printed[-1]), (1, "fuzz: 1 of 2 planted defects found"))

    def test_merge_adds_what_reaches_more(self):
        self.fuzzer("fuzz-words", 'for each; do case $each in */chosen/words) echo new >"$each/0123456789abcdef";; esac; done\n')
        (self.root / "built" / "grown" / "words").mkdir(parents=True)
        code, printed, _ = self.run_fuzzers("--merge")
        self.assertEqual((code, printed), (0, ["words: 1 inputs added to the corpus", "menu: 0 inputs added to the corpus"]))
        self.assertEqual(sorted(file.name for file in (self.root / "source/corpus/words").iterdir()),
                         ["by-hand", "found-0123456789ab"])


if __name__ == "__main__":
    unittest.main()
