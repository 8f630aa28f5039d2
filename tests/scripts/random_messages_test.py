#!/usr/bin/env python3
"""What scripts/random-messages makes of what simhost tells."""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

SENDER = pathlib.Path(__file__).parents[1] / "random_messages" / "random_messages.py"

sys.dont_write_bytecode = True
sys.path.insert(0, str(SENDER.parent))

import random_messages  # noqa: E402

# In the place of simhost. Seed 2 breaks a rule, seed 3 loses the host, seed 4 cannot be played.
FAKE = """
import json, pathlib, sys
words = dict(zip(sys.argv[1:], sys.argv[2:]))
seed, step = int(words["--seed"]), json.loads(pathlib.Path(words["play"]).read_text())["steps"][0]
events = []
if seed == 2:
    events.append({"event": "complaint", "rule": "re-entrancy", "text": "a message", "expected": False})
if seed != 3:
    counts = {"messages": step["times"] + seed, "moments": 10 * seed, "least": step["at_least"]["nested"]}
    events.append({"event": "step_end", "observed": {"at_least": counts}})
events.append({"event": "call", "results": {"text": chr(0x85) + chr(0x2028)}})
events.append({"event": "run_end", "complaints": {2: ["re-entrancy: a message"], 3: ["crash: there"]}.get(seed, [])})
if seed != 4:
    pathlib.Path(words["--json-lines"]).write_text(
        "".join(json.dumps(event, ensure_ascii=False) + chr(10) for event in events), encoding="utf-8")
sys.exit({2: 1, 3: 1, 4: 2}.get(seed, 0))
"""


class RandomMessagesScript(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.record = pathlib.Path(folder.name) / "record.json"
        self.fake = pathlib.Path(folder.name) / "fake.py"
        self.fake.write_text(FAKE, encoding="utf-8")

    def send(self, *arguments):
        done = subprocess.run([sys.executable, SENDER, f"--command={sys.executable}", f"--command={self.fake}", "--json",
                               self.record, *arguments], capture_output=True, encoding="utf-8", check=False)
        return done, json.loads(self.record.read_text(encoding="utf-8")) if self.record.exists() else None

    def test_counts_of_the_seeds_are_added(self):
        done, record = self.send("--seeds", "2", "--first", "5", "--messages", "100")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual((record["seeds"], record["failed"]), (2, []))
        self.assertEqual({kind: record["counts"][kind] for kind in ("messages", "moments")}, {"messages": 211, "moments": 60})
        self.assertEqual(done.stdout.splitlines()[-1],
                         "random-messages: 211 messages from 2 seeds, 0 seeds with findings")

    def test_as_many_messages_as_in_ci_unless_others_are_asked_for(self):
        scenario = json.loads((SENDER.parents[2] / "devkit" / "scenarios" / "random-messages.json").read_text("utf-8"))
        step = scenario["steps"][0]
        counts = self.send("--seeds", "1", "--first", "5")[1]["counts"]
        self.assertEqual((counts["messages"], counts["least"]), (step["times"] + 5, step["at_least"]["nested"]))
        self.assertGreaterEqual(step["times"], 10000)
        counts = self.send("--seeds", "1", "--first", "5", "--messages", str(step["times"] // 10))[1]["counts"]
        self.assertEqual(counts["least"], step["at_least"]["nested"] // 20)

    def test_finding_is_told_with_its_seed_and_how_to_see_it_again(self):
        done, record = self.send("--seeds", "3", "--messages", "100")
        self.assertEqual((done.returncode, record["failed"]), (1, [2, 3]))
        self.assertEqual(done.stderr.splitlines(), ["FAILED seed 2: re-entrancy: a message", "FAILED seed 3: crash: there"])
        self.assertIn("  again: scripts/random-messages --seeds 1 --first 2 --messages 100", done.stdout.splitlines())

    def test_several_steps_keep_their_proportion_and_are_added(self):
        steps = [{"do": "random_messages", "times": 1000, "at_least": {"nested": 100}}, {"do": "tick"},
                 {"do": "random_messages", "times": 100, "at_least": {"lost_tables": 8}}]
        self.assertEqual(random_messages.with_messages({"steps": steps}, 500)["steps"],
                         [{"do": "random_messages", "times": 500, "at_least": {"nested": 25, "messages": 500}}, {"do": "tick"},
                          {"do": "random_messages", "times": 50, "at_least": {"lost_tables": 2, "messages": 50}}])
        ends = [{"event": "step_end", "observed": {"at_least": {"messages": 7, "moments": 5, "missing_suites": 3}}},
                {"event": "step_end", "observed": {}},
                {"event": "step_end", "observed": {"at_least": {"messages": 2, "moments": 6, "missing_suites": 1}}}]
        self.assertEqual(random_messages.counts_of(ends), {"messages": 9, "moments": 6, "missing_suites": 3})

    def test_what_cannot_be_played_is_2(self):
        self.assertEqual(self.send("--seeds", "2", "--first", "3")[0].returncode, 2)
        self.assertFalse(self.record.exists())


if __name__ == "__main__":
    unittest.main(verbosity=0)
