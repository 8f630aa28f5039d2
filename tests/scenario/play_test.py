#!/usr/bin/env python3
"""What simhost play prints, writes and remembers. The command that runs simhost follows on the command line."""

import json
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "support"))

import simhost_events  # noqa: E402

ROOT = pathlib.Path(__file__).parents[2]
SCENARIOS = ROOT / "devkit" / "scenarios"
COMMAND = []

BROKEN = {
    "title": "Expectations that do not hold",
    "host": {"documents": {"A": {"frames": [["Optima-Roman"]], "placed": ["${work}\\B.ai"]}}},
    "steps": [
        {"do": "open", "document": "A", "calls": [
            "PluginIsEnabled", "IdleEvent", {"HandleOpenExistingDocument": {"path": "${work}\\A.ai"}},
        ]},
        {"do": "save", "say": "The document is saved", "document": "A", "calls": [
            "PluginIsEnabled",
            {"HandleSaveDocument": {"path": "${work}\\A.ai", "report": {
                "DocumentFonts": [{"PostScriptName": "Optima-Bold"}], "LinkedDocuments": ["${work}\\B.ai"],
            }}},
        ]},
    ],
}


class Play(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def write(self, name, scenario):
        path = self.folder / name
        path.write_text(json.dumps(scenario), encoding="utf-8")
        return path

    def play(self, *arguments, code=0):
        run = subprocess.run([*COMMAND, "play", *map(str, arguments)], capture_output=True, check=False, cwd=ROOT)
        printed, complaints = run.stdout.decode("utf-8"), run.stderr.decode("utf-8")
        self.assertEqual(run.returncode, code, printed + complaints)
        return printed, complaints

    def test_each_step_has_a_verdict_and_complaints_stand_where_they_happened(self):
        path = self.write("broken.json", BROKEN)
        printed, complaints = self.play(path, code=1)
        steps = printed.split("\n\n")
        self.assertTrue(steps[1].startswith("1. The host starts\n") and steps[1].endswith("\n  ok"), steps[1])
        self.assertIn("  ! calls:\n      expected IdleEvent, but it did not come\n  failed", steps[2])
        self.assertIn(
            "      call 2: HandleSaveDocument, report:\n"
            "        at DocumentFonts[0].PostScriptName\n"
            '          expected  "Optima-Bold"\n'
            '          came      "Optima-Roman"\n'
            "  failed", steps[3])
        self.assertTrue(steps[3].startswith("3. The document is saved\n"), steps[3])
        self.assertTrue(steps[-1].startswith("After the last step\n  ok"), steps[-1])
        self.assertIn("1 of 1 run did not pass:\n  broken.json: failed in step 2 (line 1): open A\n"
                      f"    again: simhost play {path} --until 2\n", printed)
        self.assertIn("FAILED calls: broken.json.steps[0]: call 2: expected IdleEvent {}", complaints)
        self.assertIn('"path":"<work>\\\\A.ai"', complaints)
        self.assertNotIn("\x1b", printed)

    def test_a_disabled_plugincore_looks_disabled(self):
        printed, _ = self.play(SCENARIOS / "disabled.json")
        self.assertIn("PluginIsEnabled (flag 1, preset 0) -> 0, disabled", printed)

    def test_what_an_entry_threw_is_no_answer(self):
        printed, _ = self.play(SCENARIOS / "tick-throws.json", "--case", "c*")
        self.assertIn("IdleEvent -> threw ", printed)
        self.assertNotIn("IdleEvent -> 0", printed.split("IdleEvent -> threw ")[0])

    def test_brief_prints_a_line_for_each_step_and_all_of_a_failed_one(self):
        printed, _ = self.play(self.write("broken.json", BROKEN), "--brief", code=1)
        self.assertIn("\nok      1. The host starts\nfailed  2. open A\n  \"AI Notifier\"", printed)
        self.assertNotIn("GetAPIVersion", printed)

    def test_colour_only_when_asked(self):
        printed, _ = self.play(self.write("broken.json", BROKEN), "--color", "always", code=1)
        self.assertIn("  \x1b[32mok\x1b[0m\n", printed.replace("\x1b[32m  ok", "  \x1b[32mok"))
        self.assertIn("\x1b[31m", printed)

    def test_a_run_ends_after_the_step_that_is_named(self):
        path = self.write("broken.json", BROKEN)
        printed, _ = self.play(path, "--until", "The document is saved", code=1)
        self.assertIn("\n3. The document is saved\n", printed)
        self.assertNotIn("The host quits", printed)
        self.assertNotIn("After the last step", printed)
        printed, _ = self.play(path, "--until", "1")
        self.assertIn("what is left over was not looked at", printed)
        self.play(SCENARIOS / "saved.json", "--until", "2", "--quiet")
        quoting = self.write("quoting.json", {"title": "T", "steps": [
            {"do": "about", "say": 'He says "hi"', "calls": "any"}, {"do": "about", "calls": "any"}]})
        self.play(quoting, "--until", 'He says "hi"', "--quiet", "--work-folder", f"{self.folder}/with a slash/")
        for step, complaint in (("9", "there is no step 9; the scenario has 6"),
                                ("The document was saved", "did you mean \"The document is saved\"?")):
            self.assertIn(complaint, self.play(path, "--until", step, code=2)[1])

    def test_what_failed_the_last_time_is_played_again(self):
        good = {"title": "T", "steps": [{"do": "menu_changed", "calls": "any"}]}
        bad = {**good, "steps": [{"do": "menu_changed", "calls": ["IdleEvent"]}]}
        cases = self.write("cases.json", {"title": "T", "cases": {
            "good": {"steps": [{"do": "about", "calls": "any"}]}, "bad": {"steps": [{"do": "about", "calls": []}]}}})
        path = self.write("one.json", bad)
        self.play(cases, path, "--quiet", code=1)
        printed, complaints = self.play("--only-failed", code=1)
        self.assertIn("cases.json/bad: failed", printed)
        self.assertNotIn("cases.json/good", printed)
        self.assertIn("one.json: failed", printed)
        # What has not failed is not played, and nothing is forgotten.
        printed, _ = self.play(SCENARIOS / "about.json", "--only-failed")
        self.assertEqual(printed, "Nothing of that failed the last time, so nothing is played.\n")
        self.write("one.json", good)
        printed, _ = self.play(path, "--only-failed")
        self.assertIn("Passed:", printed)
        # What was not among these is not forgotten.
        printed, _ = self.play("--only-failed", code=1)
        self.assertIn("cases.json/bad: failed", printed)
        self.assertNotIn("one.json", printed)
        cases.write_text(json.dumps({"title": "T", "cases": {
            "bad": {"steps": [{"do": "about", "calls": "any"}]}}}), encoding="utf-8")
        self.assertIn("Passed:", self.play("--only-failed")[0])
        printed, _ = self.play("--only-failed")
        self.assertEqual(printed, "Nothing failed the last time, so nothing is played.\n")

    def test_what_failed_is_not_forgotten_by_the_way(self):
        good = {"steps": [{"do": "about", "calls": "any"}]}
        bad = {"steps": [{"do": "about", "calls": "any"}, {"do": "about", "calls": ["IdleEvent"]}]}
        cases = self.write("cases.json", {"title": "T", "cases": {"bad": bad, "good": good}})
        self.play(cases, "--quiet", code=1)
        # A run that ended before the step says nothing of it.
        self.play("--only-failed", "--until", "1", "--quiet")
        self.assertIn("IdleEvent", self.play("--only-failed", "--quiet", code=1)[1])
        # Nor does another case of the file say anything of one that cannot be played.
        self.write("cases.json", {"title": "T", "cases": {"lost": {**good, "plugin": "Nowhere.aip"}, "good": good}})
        self.play(cases, "--quiet", code=2)
        self.assertIn("cases.json/lost", self.play("--only-failed", code=2)[1])
        # What is not there any more cannot fail.
        self.write("cases.json", {"title": "T", "cases": {"good": good}})
        printed, _ = self.play("--only-failed")
        self.assertEqual(printed, "Nothing of that failed the last time, so nothing is played.\n")
        printed, _ = self.play("--only-failed")
        self.assertEqual(printed, "Nothing failed the last time, so nothing is played.\n")
        gone = self.write("gone.json", {"title": "T", **bad})
        self.play(gone, "--quiet", code=1)
        gone.unlink()
        self.play("--only-failed", code=2)
        printed, _ = self.play("--only-failed")
        self.assertEqual(printed, "Nothing failed the last time, so nothing is played.\n")

    def test_several_files_and_patterns(self):
        printed, _ = self.play("devkit/scenarios/about.json", "devkit/scenarios/changed*", "devkit/scenarios/about.json",
                               "--quiet")
        played = [line for line in printed.splitlines() if line.endswith(": passed")]
        self.assertEqual(played, ["about.json: passed", "changed-without-a-document.json: passed",
                                  "changed.json: passed"])

    def test_runs_of_one_name_are_not_kept_in_the_place_of_each_other(self):
        good = {"title": "T", "steps": [{"do": "about", "calls": "any"}]}
        (self.folder / "a").mkdir()
        (self.folder / "b").mkdir()
        files = [self.write("a/x.json", good), self.write("b/X.json", good)]
        work, record = self.folder / "work", self.folder / "record.json"
        for option, place in (("--work-folder", work), ("--record", record)):
            printed, complaints = self.play(*files, option, place, code=2)
            self.assertRegex(complaints, rf"simhost: {option} keeps runs by name, and .*a/x\.json and .*b/X\.json have")
            self.assertFalse(place.exists())
        cases = self.write("a/y.json", {"title": "T", "cases": {"z": {"steps": good["steps"]}}})
        self.play(cases, self.write("y-z.json", good), "--work-folder", work, code=2)
        self.assertFalse(work.exists())
        self.play(*files, "--quiet")

    def test_files_do_not_lie_in_the_work_folder_nor_in_each_others_place(self):
        work, good = self.folder / "work", {"title": "T", "steps": [{"do": "about", "calls": "any"}]}
        path = self.write("x.json", good)
        self.play(path, "--work-folder", work, "--quiet")
        inside = self.write("work/x.json", good)
        lines = work / "lines.jsonl"
        for option, complaint in ((["--json-lines", lines], "--json-lines: "), (["--record", lines], "--record: "),
                                  (["--plugin", work / "host" / "Plug-ins" / "QuorvelTypeAgentAI20.aip"], "--plugin: ")):
            _, complaints = self.play(path, "--work-folder", work, *option, code=2)
            self.assertRegex(complaints, f"^simhost: {complaint}.* lies in the folder that --work-folder names")
        _, complaints = self.play(inside, "--work-folder", work, code=2)
        self.assertIn("simhost: scenario: ", complaints)
        self.assertTrue(inside.exists())
        broken = self.write("work/broken.json", {"title": 1})
        _, complaints = self.play(broken, path, "--work-folder", work, code=2)
        self.assertRegex(complaints, "^simhost: scenario: .*broken.json lies in the folder that --work-folder names")
        self.assertTrue(broken.exists())
        one = self.folder / "one"
        _, complaints = self.play(path, "--record", one, "--junit", work / ".." / "ONE", code=2)
        self.assertRegex(complaints, "^simhost: --record and --junit name one file, .*one")
        self.assertFalse(one.exists())

    def test_more_than_announced_is_not_announced(self):
        steps = [{"do": "message", "caller": "Fault", "selector": "nothing", "answer": 7, "calls": []}] * 3
        announced = {"title": "T", "plugin": "FaultyPlugin.aip", "begin": "none", "end": "none", "steps": steps}
        for violations in ({"reply": 2}, {"reply": [f"many.json.steps[{i}]: \"Fault\"/\"nothing\" was answered with 0, expected 7"
                                                    for i in range(2)]}):
            path = self.write("many.json", {**announced, "expect": {"violations": violations}})
            printed, _ = self.play(path, code=1)
            self.assertEqual((printed.count("as announced, reply:"), printed.count("! reply:")), (2, 1), printed)
            self.assertIn("many.json: failed in step 3", printed)

    def test_json_lines_hold_steps_calls_answers_and_times(self):
        file = self.folder / "lines.jsonl"
        for _ in range(2):
            self.play(self.write("broken.json", BROKEN), "--json-lines", file, "--quiet", code=1)
        events = [json.loads(line) for line in file.read_text(encoding="utf-8").splitlines()]
        self.assertEqual([e["event"] for e in events].count("run_begin"), 2)
        end = events[-1]
        self.assertEqual((end["event"], end["passed"], end["played"]), ("run_end", False, True))
        calls = [e for e in events if e["event"] == "call"]
        self.assertIn("HandleSaveDocument", [call["entry"] for call in calls])
        self.assertTrue(all("ms" in call and "answer" in call for call in calls))
        steps = [e for e in events if e["event"] == "step_end"]
        self.assertEqual([e["passed"] for e in steps[:4]], [True, False, False, True])
        self.assertEqual([e["rule"] for e in events if e["event"] == "complaint"], ["calls"] * 4)

    def test_json_lines_on_standard_output_stand_alone(self):
        printed, _ = self.play(SCENARIOS / "about.json", "--json-lines", "-")
        events = [json.loads(line) for line in printed.splitlines()]
        self.assertEqual((events[0]["event"], events[-1]["event"]), ("run_begin", "run_end"))

    def test_a_lost_host_leaves_whole_lines(self):
        file = self.folder / "lines.jsonl"
        self.play(ROOT / "tests/scenario/faults/crash.json", "--case", "abort", "--json-lines", file, "--quiet")
        events = [json.loads(line) for line in file.read_text(encoding="utf-8").splitlines()]
        self.assertEqual((events[0]["event"], events[-1]["event"]), ("run_begin", "run_end"))
        self.assertTrue(events[-1]["passed"])

    def test_a_lost_host_is_told_in_the_step_where_it_was_lost(self):
        source = json.loads((ROOT / "tests/scenario/faults/crash.json").read_text(encoding="utf-8"))
        source["cases"]["abort"].pop("expect")
        printed, _ = self.play(self.write("crash.json", source), "--case", "abort", code=1)
        self.assertRegex(printed, r"\n1\. message abort\n(  .*\n)*  ! .*abort.*\n  failed\n")
        self.assertIn("crash.json/abort: failed in step 1 (line 1): message abort", printed)

    def test_the_calls_of_the_step_in_which_the_host_was_lost_are_told(self):
        library = pathlib.Path(COMMAND[-1]).parent / "plugincores" / "FaultyCrashes.dll"
        lines, record = self.folder / "lines.jsonl", self.folder / "record.json"
        printed, _ = self.play("tests/contract/any-calls.json", "--plugincore", library, "--json-lines", lines,
                               "--record", record, code=1)
        self.assertRegex(printed, r"\n2\. open A\n      PluginIsEnabled \(.*\) -> 0, enabled.*\n"
                                  r"      HandleOpenExistingDocument \(.*\) -> did not return\n(.*\n)*?  ! crash: ")
        events = [json.loads(line) for line in lines.read_text(encoding="utf-8").splitlines()]
        calls = [event for event in events if event["event"] == "call"]
        self.assertEqual((calls[-1]["entry"], calls[-1]["returned"]), ("HandleOpenExistingDocument", False))
        self.assertIn("path", calls[-1]["arguments"])
        kept = json.loads(record.read_text(encoding="utf-8"))["calls"]
        self.assertEqual([call["entry"] for call in kept], [call["entry"] for call in calls])
        self.assertEqual((kept[0]["step"], kept[-1]["step"]), (1, 2))

    def test_calls_and_times_are_told_and_kept(self):
        library = pathlib.Path(COMMAND[-1]).parent / "plugincores" / "FaultyTakesTime.dll"
        record = self.folder / "record.json"
        scenario = self.write("save.json", {
            "title": "T", "host": {"documents": {"A": {"frames": [["Optima-Roman"]]}}}, "begin": {"calls": "any"},
            "steps": [{"do": "open", "document": "A", "calls": "any"}, {"do": "save", "document": "A", "calls": "any"}],
            "end": [{"do": verb, "calls": "any"} for verb in ("application_shutdown", "shutdown", "unload")]})
        printed, _ = self.play(scenario, "--plugincore", library, "--record", record)
        self.assertRegex(printed, r"\n      HandleSaveDocument -> 0, 1\d\d ms\n")
        calls = json.loads(record.read_text(encoding="utf-8"))["calls"]
        saved = [call for call in calls if call["entry"] == "HandleSaveDocument"]
        self.assertGreaterEqual(saved[0]["ms"], 120)

    def test_menu_items_are_told_with_all_that_they_are(self):
        record = self.folder / "record.json"
        printed, _ = self.play(SCENARIOS / "demo.json", "--record", record)
        self.assertIn('\n          item: fonts "Fonts", a sub-menu -> 0\n', printed)
        self.assertRegex(printed, r'\n          item: automatic ".*", in "Fonts" -> 0\n')
        calls = json.loads(record.read_text(encoding="utf-8"))["calls"]
        items = next(call for call in calls if call["entry"] == "CreateMenusFromJSONBuffer")["results"]["items"]
        self.assertEqual(items[0], {"id": "fonts", "label": "Fonts", "text": "Fonts", "checked": 0, "enabled": 1,
                                    "has_sub_menu": 1, "parent": None, "answer": 0})

    def test_what_cannot_be_written_is_told(self):
        for option in ("--record", "--junit", "--accept"):
            with self.subTest(option):
                folder = self.folder / option
                folder.mkdir()
                scenario = self.write("slow.json", {
                    "title": "T", "plugin": "FaultyPlugin.aip", "begin": "none", "end": "none", "step_time_limit": 4,
                    "steps": [{"do": "message", "caller": "Fault", "selector": "hang", "calls": []}],
                    "expect": {"violations": {"hang": 1}}})
                lines = self.folder / f"{option}.jsonl"
                run = subprocess.Popen([*COMMAND, "play", str(scenario), option, str(folder / "file"), "--quiet",
                                        "--json-lines", str(lines)],
                                       stdout=subprocess.PIPE, stderr=subprocess.PIPE, cwd=ROOT)
                self.assertTrue(simhost_events.wait_for_step(lines, run))
                shutil.rmtree(folder)
                printed, complaints = run.communicate()
                self.assertEqual(run.returncode, 2, printed + complaints)
                self.assertRegex(complaints.decode("utf-8"), r"simhost: cannot write .*file")

    def test_lines_that_do_not_arrive_are_told(self):
        """A file that may not grow stands for a full disk."""
        limit = 16 * 1024 * 1024
        lines = self.folder / "lines.jsonl"
        lines.write_text('{"event": "note"}\n', encoding="utf-8")
        os.truncate(lines, limit - 3000)

        def limit_files():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))

        run = subprocess.run([*COMMAND, "play", SCENARIOS / "about.json", "--quiet", "--json-lines", lines], cwd=ROOT,
                             capture_output=True, check=False, preexec_fn=limit_files)  # noqa: PLW1509
        complaints = run.stderr.decode("utf-8")
        self.assertEqual(run.returncode, 2, run.stdout.decode("utf-8") + complaints)
        self.assertRegex(complaints, r"simhost: cannot write .*lines\.jsonl; lines of it are missing")
        self.assertNotIn("Passed:", run.stdout.decode("utf-8"))

    def test_a_file_can_be_copied_from_one_that_comes_into_being_during_the_run(self):
        def write(**file):
            return {"do": "write", "files": [file]}

        steps = [write(path="later/a.txt", text="a"), write(path="b.txt", **{"from": "${work}\\later\\a.txt"}),
                 write(path="c.txt", **{"from": "later/a.txt"})]
        scenario = {"title": "T", "files": [{"path": "first.txt", "text": "first"},
                                            {"path": "second.txt", "from": "first.txt"}], "steps": steps}
        path, work = self.write("later.json", scenario), self.folder / "work"
        for options in ([], ["--in-process"]):
            with self.subTest(options=options):
                self.play(path, "--quiet", "--work-folder", work, *options)
                read = {name: (work / f"{name}.txt").read_text(encoding="utf-8") for name in ("second", "b", "c")}
                self.assertEqual(read, {"second": "first", "b": "a", "c": "a"})

    def test_a_null_pointer_can_be_expected(self):
        steps = [{"do": "about", "calls": [{"GetSettings": {"capacity": None, "zeroed": None}},
                                           {"GetSocketPort": {"preset": None}}]}]
        _, complaints = self.play(self.write("null.json", {"title": "T", "steps": steps}), code=1)
        self.assertIn('expected GetSettings {"capacity":null,"zeroed":null}', complaints)

    def test_a_file_that_cannot_be_moved_is_told_in_words(self):
        move = {"do": "move", "from": "a.txt", "to": "b.txt"}
        scenario = {"title": "T", "files": [{"path": "a.txt", "text": "a"}], "steps": [move, move]}
        _, complaints = self.play(self.write("moves.json", scenario), code=1)
        self.assertRegex(complaints, r"cannot move <work>.a\.txt to <work>.b\.txt \(error \d+\)")
        self.assertNotIn("filesystem", complaints)

    def test_a_menu_that_differs_is_shown_member_by_member(self):
        source = {"title": "T", "steps": [{"do": "check", "menu": [{"group": "Type Plugins2"}]}]}
        printed, _ = self.play(self.write("menu.json", source), code=1)
        self.assertIn("  ! state:\n      at menu[0].group\n        expected  \"Type Plugins2\"\n"
                      "        came      \"Type Plugins1\"\n  failed", printed)

    def test_junit(self):
        file = self.folder / "junit.xml"
        unreadable = self.write("unreadable.json", {"title": "T", "steps": [{"do": "jump \u0001<&\">"}]})
        self.play(self.write("broken.json", BROKEN), SCENARIOS / "tick-throws.json", unreadable, "--junit", file,
                  "--quiet", code=2)
        root = xml.etree.ElementTree.parse(file).getroot()
        self.assertEqual((root.tag, root.get("tests"), root.get("failures"), root.get("errors")),
                         ("testsuites", "4", "1", "1"))
        names = {(case.get("classname"), case.get("name")): [child.tag for child in case]
                 for case in root.iter("testcase")}
        self.assertEqual(names[("broken", "broken")], ["failure"])
        self.assertEqual(names[("unreadable", "unreadable")], ["error"])
        self.assertEqual(names[("tick-throws", "cpp")], [])

    def test_hostile_answers_are_the_same_for_the_same_number(self):
        def calls(seed):
            printed, _ = self.play(SCENARIOS / "demo.json", "--seed", seed, "--json-lines", "-")
            events = [json.loads(line) for line in printed.splitlines()]
            return [(e["entry"], e["answer"], json.dumps(e.get("results"))) for e in events if e["event"] == "call"]

        first = calls(1)
        self.assertEqual(first, calls(1))
        self.assertNotEqual(first, calls(2))

    def test_a_debugger_sees_a_run_in_its_own_process(self):
        for name in ("demo.json", "panel-no-library.json"):
            printed, _ = self.play(SCENARIOS / name, "--in-process", "--quiet")
            self.assertIn("Passed:", printed)
        _, complaints = self.play(self.write("broken.json", BROKEN), "--in-process", "--quiet", code=1)
        self.assertNotIn("cannot remove", complaints)
        self.assertIn("FAILED calls: broken.json.steps[0]: call 2", complaints)
        _, complaints = self.play("tests/scenario/faults/crash.json", "--case", "access-violation", "--in-process", code=1)
        self.assertIn("FAILED crash: the plug-in plays in this process, and there was the exception 0xC0000005 at ", complaints)
        _, complaints = self.play(SCENARIOS / "tick-throws.json", "--in-process", code=2)
        self.assertIn("--in-process takes one case", complaints)

    def test_what_was_observed_can_be_accepted(self):
        for name in ("demo.json", "saved.json", "about.json", "menu-labels.json"):
            source = json.loads((SCENARIOS / name).read_text(encoding="utf-8"))
            case = next(iter(source.get("cases", {})), None)
            with self.subTest(name):
                spoilt = json.loads(json.dumps(source))
                for step in spoilt.get("steps", []) + spoilt.get("cases", {}).get(case, {}).get("steps", []):
                    if "calls" in step:
                        step.update({"calls": [], "answer": 99})
                        step.pop("bus_calls", None)
                        step.pop("panel_events", None)
                        step.pop("boxes", None)
                    if step["do"] == "check":
                        step.update({"menu": []})
                path = self.write(name, spoilt)
                chosen = ["--case", case] if case else []
                accepted = self.folder / f"accepted-{name}"
                self.play(path, *chosen, "--quiet", code=1)
                self.play(path, *chosen, "--quiet", "--accept", accepted)
                self.assertIn("Passed:", self.play(accepted, "--quiet")[0])
                _, complaints = self.play(path, *chosen, "--quiet", "--accept", accepted, code=2)
                self.assertIn("is there already; --force overwrites it", complaints)
                self.play(path, *chosen, "--quiet", "--accept", accepted, "--force")

    def test_how_a_dialog_ended_can_be_accepted(self):
        source = json.loads((SCENARIOS / "suppression-one-dialog-at-a-time.json").read_text(encoding="utf-8"))
        dialogs = [step for part in ("steps", "end") for step in source.get(part, []) if step["do"] == "dialog"]
        expected = [step["expect"] for step in dialogs]
        self.assertIn("clicked OK", expected)
        for step in dialogs:
            step["expect"] = "pressed Enter"
        accepted = self.folder / "accepted.json"
        self.play(self.write("dialogs.json", source), "--quiet", "--accept", accepted)
        self.assertIn("Passed:", self.play(accepted, "--quiet")[0])

    def test_what_a_nested_step_observed_cannot_be_accepted(self):
        source = json.loads((SCENARIOS / "panel-asks-during-a-message.json").read_text(encoding="utf-8"))
        source["steps"][1]["nested"][0]["step"]["answer"] = 99
        accepted = self.folder / "accepted.json"
        _, complaints = self.play(self.write("nested.json", source), "--quiet", "--accept", accepted, code=1)
        self.assertIn("cannot be accepted: reply: ", complaints)
        self.assertFalse(accepted.exists())

    def test_what_comes_after_the_last_step_or_does_not_come_cannot_be_accepted(self):
        source = json.loads((SCENARIOS / "panel-no-library.json").read_text(encoding="utf-8"))
        source["expect"]["messaging_library"] = "Elsewhere.dll"
        accepted = self.folder / "accepted.json"
        _, complaints = self.play(self.write("library.json", source), "--quiet", "--accept", accepted, code=1)
        self.assertIn("cannot be accepted: messaging-library: ", complaints)
        announced = {"title": "T", "steps": [{"do": "about", "calls": "any"}], "expect": {"violations": {"reply": 1}}}
        _, complaints = self.play(self.write("announced.json", announced), "--quiet", "--accept", accepted, code=1)
        self.assertIn("cannot be accepted: reply: broken 0 times, expected 1", complaints)
        self.assertFalse(accepted.exists())

    def test_what_is_announced_does_not_stand_in_the_way_of_accepting(self):
        other = {"do": "message", "caller": "Fault", "selector": "no such fault", "calls": []}
        right = {**other, "answer": 99}
        text = 'announced.json.steps[0]: "Fault"/"no such fault" was answered with 99, expected 0'
        for announced, steps in ((1, [other, other]), ([text], [other, right, other])):
            with self.subTest(announced=announced):
                source = {"title": "T", "plugin": "FaultyPlugin.aip", "begin": "none", "end": "none", "steps": steps,
                          "expect": {"violations": {"reply": announced}}}
                accepted = self.folder / "announced" / "announced.json"
                accepted.parent.mkdir(exist_ok=True)
                self.play(self.write("announced.json", source), "--quiet", "--accept", accepted, "--force")
                self.assertIn("Passed:", self.play(accepted, "--quiet")[0])

    def test_a_crash_cannot_be_accepted(self):
        source = json.loads((ROOT / "tests/scenario/faults/crash.json").read_text(encoding="utf-8"))
        source["cases"]["abort"].pop("expect")
        accepted = self.folder / "accepted.json"
        _, complaints = self.play(self.write("crash.json", source), "--case", "abort", "--quiet", "--accept", accepted,
                                  code=1)
        self.assertIn("cannot be accepted", complaints)
        self.assertFalse(accepted.exists())

    def test_the_usual_calls_are_the_same_wherever_a_scenario_lies(self):
        path = self.write("elsewhere.json", {"title": "T", "begin": {"calls": [{"usual": "start-up"}]},
                                             "steps": [{"do": "tick", "calls": ["PluginIsEnabled", {"usual": "tick"}]}]})
        run = subprocess.run([*COMMAND, "play", str(path), "--quiet"], capture_output=True, check=False, cwd=self.folder)
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)

    def test_list_speaks_to_people_and_to_programs(self):
        def listed(*arguments):
            run = subprocess.run([*COMMAND, "list", *arguments], capture_output=True, check=True, cwd=ROOT)
            return run.stdout.decode("utf-8")

        self.assertIn("suite-leak", listed("rules").splitlines())
        self.assertIn("suite-leak", json.loads(listed("rules", "--json")))
        self.assertIn("AI Font Suite/GetDefaultFont", json.loads(listed("operations", "--json")))
        title = json.loads((SCENARIOS / "about.json").read_text(encoding="utf-8"))["title"]
        self.assertIn(f"about.json\n  {title}\n", listed("scenarios"))


if __name__ == "__main__":
    COMMAND = [str(pathlib.Path(word).resolve()) if pathlib.Path(word).exists() else word for word in sys.argv[1:]]
    unittest.main(argv=sys.argv[:1])
