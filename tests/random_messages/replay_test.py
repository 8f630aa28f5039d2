#!/usr/bin/env python3
"""The same seed sends the same messages, another seed others, and the counts are those of the messages that were sent.

The command that runs simhost follows on the command line.
"""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True

import random_messages  # noqa: E402

TIMES = 200
COMMAND = []


class Replay(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.scenario = cls.folder / "random.json"
        story = random_messages.with_messages(json.loads(random_messages.SCENARIO.read_text(encoding="utf-8")), TIMES)
        cls.scenario.write_text(json.dumps(story), encoding="utf-8")

    def send(self, name: str, *arguments: str) -> tuple[bytes, dict]:
        """The list of the messages as it is written, and the counts that are told."""
        work, events = self.folder / name, self.folder / f"{name}.jsonl"
        run = subprocess.run([*COMMAND, "play", self.scenario, "--quiet", "--work-folder", work, "--json-lines", events,
                              *arguments], check=False, capture_output=True, encoding="utf-8", errors="replace")
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        counts = random_messages.counts_of([json.loads(line) for line in events.read_bytes().splitlines()])
        return (work / "random-messages.txt").read_bytes(), counts

    def test_same_seed_sends_the_same_and_another_one_others(self):
        first = self.send("first", "--seed", "5")
        self.assertEqual(first, self.send("again", "--seed", "5"))
        self.assertNotEqual(first[0], self.send("other", "--seed", "6")[0])

    def test_seed_of_the_scenario_sends_the_same_and_what_is_listed_counts(self):
        listed, counts = self.send("counted")
        self.assertEqual((listed, counts), self.send("counted-again"))
        lines = [line.lstrip(b"0123456789 ") for line in listed.splitlines()]
        sent = [line for line in lines if not line.rpartition(b": ")[2].startswith(b"-> ") and not line.startswith(b"-> ")]
        requests = [line for line in sent if line.endswith(b"the panel asks for the port")]
        self.assertEqual(len(sent) - len(requests), counts["messages"])
        self.assertEqual(len(requests), counts["panel_requests"])
        self.assertEqual(len([line for line in sent if line.startswith(b"within ")]), counts["nested"])
        self.assertEqual(len([line for line in sent if line.endswith(b" null")]), counts["null_messages"])
        self.assertEqual({int(line.split()[0]) for line in listed.splitlines()}, set(range(1, TIMES + 1)))


if __name__ == "__main__":
    COMMAND = sys.argv[1:]
    unittest.main(argv=sys.argv[:1], verbosity=0)
