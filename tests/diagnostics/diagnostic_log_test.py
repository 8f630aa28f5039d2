#!/usr/bin/env python3
"""What the diagnostic plug-in's file logs when stories are played to it in the simulated host.

The folder of the built files and the command that runs a Windows program follow on the command line.
"""

import json
import pathlib
import re
import sys
import tempfile
import unittest

import diagnostic_files
from diagnostic_files import Built, ROOT, TIME

SCENARIOS = ROOT / "devkit" / "scenarios"
EXCERPT = pathlib.Path(__file__).parent / "excerpt.json"
HEADER = re.compile(r"""==== Quorvel Type Agent, diagnostic log ====\r
Date:     \d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} [+-]\d\d:\d\d\r
Plug-in:  (?P<version>\d+\.\d+\.\d+\.0)  (?P<plugin>[A-Z]:\\[^\r]*\\QuorvelTypeAgentAI20-diagnostic\.aip)\r
Host:     [^\r]*  [A-Z]:\\[^\r]*\\simhost\.exe\r
Windows:  10\.0\.\d+[^\r]*\r
Process:  \d+\r
\r
""")
LINE = re.compile(rf"(?P<time>{TIME}) (?P<indent> *)(?P<text>.*)")
ANSWERED = re.compile(r"<- (\w+) took \d+\.\d{3} ms, (answered|threw) ")
# Larger logs of ten thousand ticks would bury what else happened.
MOST_BYTES_OF_TICKS = 40_000


class DiagnosticLog(unittest.TestCase):
    built = None

    def setUp(self):
        diagnostic_files.clear_logs()
        self.addCleanup(diagnostic_files.clear_logs)

    def play(self, scenario: str, *options: str, code: int = 0) -> str:
        """The log of the run."""
        run = self.built.run("simhost.exe", "play", SCENARIOS / scenario, "--quiet", "--plugin",
                             self.built.diagnostic_plugin, *options)
        self.assertEqual(run.returncode, code, (run.stdout + run.stderr).decode("utf-8"))
        return diagnostic_files.only_log()

    def lines(self, log: str) -> list[tuple[int, str]]:
        """Level and text of each line behind the header."""
        head = HEADER.match(log)
        self.assertTrue(head, log[:1000])
        lines = []
        for line in log[head.end():].split("\r\n")[:-1]:
            match = LINE.fullmatch(line)
            self.assertTrue(match, line)
            self.assertEqual(len(match["indent"]) % 2, 0, line)
            lines.append((len(match["indent"]) // 2, match["text"]))
        return lines

    def check_messages(self, lines: list[tuple[int, str]]) -> None:
        """None is within another one, so each begins and ends at the first column, and is closed."""
        levels = [level for level, text in lines if re.match(r"(Entering )?PluginMain\(", text)]
        self.assertGreater(len(levels), 0)
        self.assertEqual(set(levels), {0})
        self.assertEqual(len(levels) % 2, 0)

    def test_run_begins_with_the_header_and_ends_with_the_end(self):
        log = self.play("demo.json")
        version = re.search(r"VERSION (\d+\.\d+\.\d+) ", (ROOT / "CMakeLists.txt").read_text(encoding="utf-8"))[1]
        self.assertEqual(HEADER.match(log)["version"], version + ".0")
        self.assertEqual(log.count("diagnostic log"), 1)
        self.assertRegex(log, r"\r\n" + TIME + r" +PluginCore: [^\r]*  [A-Z]:\\[^\r]*\\PluginCoreX64\.dll\r\n")
        self.assertRegex(log, r"\r\n" + TIME + r" ==== the run ends: the host's process ends ====\r\n$")

    def test_every_call_of_the_plugincore_is_there_in_order_with_its_duration(self):
        with tempfile.TemporaryDirectory() as folder:
            record = pathlib.Path(folder) / "events.jsonl"
            lines = self.lines(self.play("demo.json", "--json-lines", str(record)))
            events = [json.loads(line) for line in record.read_text(encoding="utf-8").splitlines()]
        entries = json_entries(events)
        self.assertGreater(len(entries), 20)
        called = [text[3:].partition("(")[0] for _, text in lines if text.startswith("-> ")]
        self.assertEqual(called, entries)
        answered = [text for _, text in lines if text.startswith("<- ")]
        self.assertEqual(len(answered), len(called))
        for text in answered:
            self.assertRegex(text, ANSWERED)
        self.assertTrue(any(text.startswith("-> GetMenus(\"") and text.endswith(", buffer \"\", size 4096)")
                            for _, text in lines))
        self.assertTrue(any(re.match(r'<- GetSocketPort took \d+\.\d{3} ms, answered 0, value 49152$', text)
                            for _, text in lines))

    def test_what_happens_within_a_call_is_indented_below_it(self):
        lines = self.lines(self.play("demo.json"))
        self.check_messages(lines)
        call = next(i for i, (_, text) in enumerate(lines) if text.startswith("-> CreateMenusFromJSONBuffer("))
        level = lines[call][0]
        end = next(i for i, (_, text) in enumerate(lines) if text.startswith("<- CreateMenusFromJSONBuffer "))
        self.assertEqual(lines[end][0], level)
        self.assertGreater(end, call + 4)
        self.assertEqual(min(each for each, _ in lines[call + 1:end]), level + 1)

    def test_indentation_is_back_after_exceptions_of_either_compiler(self):
        for case, thrown in (("cpp", "an exception of the plug-in's own compiler"),
                             ("foreign", r"an exception of Visual C++ (0xE06D7363)")):
            with self.subTest(case):
                diagnostic_files.clear_logs()
                lines = self.lines(self.play("throws.json", "--case", case))
                self.check_messages(lines)
                self.assertEqual([text.partition(" took ")[0][3:] for _, text in lines if text.endswith("threw " + thrown)],
                                 ["HandleOpenExistingDocument", "HandleSaveDocument", "InvokeCommandDialog",
                                  "HandleCloseDocument"])
                unhandled = [level for level, text in lines if text == "Unhandled exception in Brightbox plugin."]
                self.assertEqual(unhandled, [1, 1, 1, 1])
                # What each message says first is one level in, whatever the message before it has left open.
                first = [lines[i + 1][0] for i, (_, text) in enumerate(lines) if text.startswith("Entering PluginMain(")]
                self.assertEqual(set(first), {1})

    def test_ticks_are_counted_and_not_told_one_by_one(self):
        log = self.play("ticks.json")
        self.assertLess(len(log), MOST_BYTES_OF_TICKS)
        # The first tick and, behind the check whether fonts are activated, some more are in full.
        self.assertRegex(log, rf"\r\n{TIME} \.\.\. \d+ calls as before since {TIME}; the last one ProcessPanelMessages\(1\)\r\n")
        full = log.count("-> IdleEvent()")
        counted = sum(map(int, re.findall(r"\.\.\. (\d+) calls? as before", log)))
        self.assertGreater(counted + 2 * full, 2 * 10_000)
        self.assertLess(full, 100)

    def test_last_line_names_the_call_that_hangs(self):
        log = self.play("saved.json", "--plugincore", str(self.built.folder / "plugincores" / "FaultyHangs.dll"),
                        "--step-time-limit", "4", code=1)
        self.assertRegex(log.removesuffix("\r\n").rpartition("\r\n")[2],
                         rf'^{TIME} +-> HandleOpenExistingDocument\("[^"]*", buffer "", size 32767\)$')
        self.assertNotIn("the run ends", log)

    def test_stories_pass_with_it_as_with_the_shipped_one(self):
        for scenario in ("working-day.json", "re-entrant.json", "dialog-from-within-the-plugincore.json",
                         "entry-missing.json", "tick-throws.json", "panel-asks.json"):
            with self.subTest(scenario):
                run = self.built.run("simhost.exe", "play", SCENARIOS / scenario, "--quiet", "--plugin",
                                     self.built.diagnostic_plugin)
                self.assertEqual(run.returncode, 0, (run.stdout + run.stderr).decode("utf-8"))

    def test_page_shows_a_log_as_it_is(self):
        page = (ROOT / "docs" / "diagnostics.md").read_text(encoding="utf-8")
        shown = masked(re.search(r"^```text\n(.*?)^```$", page, re.MULTILINE | re.DOTALL)[1])
        run = self.built.run("simhost.exe", "play", EXCERPT, "--quiet", "--plugin", self.built.diagnostic_plugin)
        self.assertEqual(run.returncode, 0, (run.stdout + run.stderr).decode("utf-8"))
        log = masked(diagnostic_files.only_log().replace("\r\n", "\n"))
        place = 0
        for part in shown.split("[...]\n"):
            found = log.find(part, place)
            self.assertNotEqual(found, -1, f"{part}\nis not in\n{log[place:]}")
            place = found + len(part)
        self.assertEqual(place, len(log))

    def test_log_folder_that_cannot_be_made_is_no_matter(self):
        folder = diagnostic_files.log_folder().parent
        for each in sorted(folder.rglob("*"), reverse=True):
            each.rmdir() if each.is_dir() else each.unlink()
        folder.rmdir() if folder.exists() else None
        folder.parent.mkdir(parents=True, exist_ok=True)
        folder.write_text("a file of that name", encoding="utf-8")
        self.addCleanup(folder.unlink)
        run = self.built.run("simhost.exe", "play", SCENARIOS / "saved.json", "--quiet", "--plugin",
                             self.built.diagnostic_plugin)
        self.assertEqual(run.returncode, 0, (run.stdout + run.stderr).decode("utf-8"))


def masked(log: str) -> str:
    """Without what differs each time."""
    for pattern, mark in (
            (TIME, "TIME"),
            (r"\d{4}-\d\d-\d\d", "DATE"),
            (r"[+-]\d\d:\d\d", "OFFSET"),
            (r"took [\d.]+ ms", "took T ms"),
            (r"(?<=Process:  )\d+", "NUMBER"),
            (r"(?<=Windows:  )\S+", "VERSION"),
            (r"(?<=Plug-in:  )\S+", "VERSION"),
            (r"(?<=PluginCore: )\d\S+", "VERSION"),
            (r'[^" ]*\\simhost-runs\\excerpt-\d+', "FOLDER")):
        log = re.sub(pattern, mark, log)
    return log


def json_entries(events: list[dict]) -> list[str]:
    """The entries that were called, in order, as the simulated host has seen it."""
    return [event["entry"] for event in events if event["event"] == "call" and event.get("library") == "plugincore"]


if __name__ == "__main__":
    DiagnosticLog.built = Built(sys.argv[1], sys.argv[2:])
    unittest.main(argv=[sys.argv[0]])
