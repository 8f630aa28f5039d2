#!/usr/bin/env python3
"""What a check and a run with a library of one's own say when something goes wrong, and whom they blame.

 - nothing passes that was not played or not recorded
 - the library is not blamed for a plug-in or a host that fails, and is for what it does itself

The folder of the built libraries and the command that runs simhost follow on the command line.
"""

import json
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).parents[2]
FOLDER = pathlib.Path()
COMMAND = []


def without_import_names(library: bytes) -> bytes:
    """The 64-bit library with an OriginalFirstThunk of 0 for each library that it needs."""
    content = bytearray(library)

    def number(at: int, size: int = 4) -> int:
        return int.from_bytes(content[at:at + size], "little")

    header = number(0x3C)
    sections = header + 24 + number(header + 20, 2)

    def offset_of(address: int) -> int:
        for section in range(sections, sections + 40 * number(header + 6, 2), 40):
            size, begin, raw_size, raw = struct.unpack_from("<4I", content, section + 8)
            if begin <= address < begin + max(size, raw_size):
                return raw + address - begin
        raise ValueError(f"no section holds {address:#x}")

    descriptor = offset_of(number(header + 24 + 112 + 8))
    while number(descriptor + 12) != 0:
        content[descriptor:descriptor + 4] = bytes(4)
        descriptor += 20
    return bytes(content)


class Runs(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_simhost(self, *arguments, code) -> tuple[str, str]:
        done = subprocess.run([*COMMAND, *map(str, arguments)], capture_output=True, check=False, cwd=ROOT)
        printed, complaints = done.stdout.decode(), done.stderr.decode()
        self.assertEqual(done.returncode, code, printed + complaints)
        return printed, complaints

    def contract(self, library: str, *arguments, code):
        return self.run_simhost("contract", FOLDER / f"{library}.dll", *arguments, code=code)

    def play(self, scenario, library: pathlib.Path, *arguments, code):
        printed, complaints = self.run_simhost("play", scenario, "--quiet", "--plugincore", library, *arguments, code=code)
        if code != 0:
            self.assertNotIn("Passed", printed)
        return printed, complaints

    def scenario(self, **members) -> pathlib.Path:
        path = self.folder / "scenario.json"
        path.write_text(json.dumps({"title": "T", "begin": {"calls": "any"}, "steps": [], **members}), encoding="utf-8")
        return path

    # ---- Nothing passes that was not played ----

    def test_a_plugin_that_is_not_there_or_none_is_told(self):
        _, complaints = self.contract("ExamplePluginCore", "--plugin", "nowhere.aip", code=2)
        self.assertRegex(complaints, r"the plug-in .*nowhere\.aip does not exist")
        _, complaints = self.contract("ExamplePluginCore", "--plugin", "README.md", code=2)
        self.assertRegex(complaints, r"the plug-in .*README\.md is a text")

    def test_a_plugin_that_never_calls_the_library_proves_nothing(self):
        printed, _ = self.contract("ExamplePluginCore", "--plugin", FOLDER.parent / "FaultyPlugin.aip", code=2)
        self.assertIn("not the library's doing: the library of --plugincore was never called", printed)
        self.assertTrue(printed.endswith("Not checked to the end: the note tells why.\n"), printed)

    def test_a_scenario_that_lays_out_no_plugincore_is_not_played(self):
        _, complaints = self.play("devkit/scenarios/location-nowhere.json", FOLDER / "ExamplePluginCore.dll", code=2)
        self.assertIn("lays out no PluginCoreX64.dll", complaints)

    def test_a_library_that_is_never_called_does_not_pass(self):
        """Its own folder is not searched either, although a PluginCoreX64.dll lies there."""
        elsewhere = {"copy": "PluginCoreX64.dll", "to": "elsewhere/PluginCoreX64.dll"}
        other = {"copy": "PluginCoreWithoutGetMenus.dll", "to": "host/PluginCoreX64.dll"}
        for copies in ([elsewhere], [elsewhere, other]):
            path = self.scenario(copies=copies, end=[
                {"do": verb, "calls": "any"} for verb in ("application_shutdown", "shutdown", "unload")])
            for arguments in ((), ("--until", "1"), ("--in-process",)):
                with self.subTest(copies=len(copies), arguments=arguments):
                    _, complaints = self.play(path, FOLDER.parent / "PluginCoreX64.dll", *arguments, code=1)
                    self.assertIn("FAILED unrecorded: the library of --plugincore was never called\n", complaints)

    def test_a_run_in_the_same_process_takes_the_library_too(self):
        self.play("tests/contract/any-calls.json", FOLDER / "ExamplePluginCore.dll", "--in-process", code=0)

    def test_a_file_that_is_no_library_is_refused(self):
        library = (FOLDER / "ExamplePluginCore.dll").read_bytes()
        machine = library.index(b"PE\0\0") + 4
        for name, content, complaint in (
            ("text", b"not a library\n", "is a text"),
            ("32-bit", library[:machine] + (0x14C).to_bytes(2, "little") + library[machine + 2:], "is a 32-bit file"),
        ):
            path = self.folder / f"{name}.dll"
            path.write_bytes(content)
            _, complaints = self.play("tests/contract/any-calls.json", path, code=2)
            self.assertRegex(complaints, rf"the PluginCore .*{name}\.dll {complaint}")

    def test_what_a_library_without_a_table_of_names_does_is_seen(self):
        """Some linkers write only one table of imports, in which Windows puts the addresses in place of the names."""
        library = self.folder / "one-table.dll"
        library.write_bytes(without_import_names((FOLDER / "FaultyLeavesHook.dll").read_bytes()))
        _, complaints = self.play("tests/contract/any-calls.json", library, code=1)
        self.assertIn("FAILED contract: hook-left: ", complaints)

    def test_the_library_that_is_missing_behind_a_neighbour_is_named(self):
        """Windows looks in the folder of the checked library, not in that of the program."""
        library = shutil.copy(FOLDER / "PluginCoreWithNeighbour.dll", self.folder)
        neighbour = (FOLDER / "Neighbour.dll").read_bytes()
        (self.folder / "Neighbour.dll").write_bytes(neighbour.replace(b"KERNEL32.dll", b"LOSTEL32.dll"))
        _, complaints = self.run_simhost("contract", library, code=2)
        self.assertIn("needs Neighbour.dll, which needs LOSTEL32.dll, which is not found", complaints)

    # ---- Who is to blame ----

    def test_the_library_is_not_blamed_for_a_plugin_that_crashes(self):
        printed, _ = self.contract("ExamplePluginCore", "--plugin", FOLDER.parent / "CrashesAtStart.aip", code=2)
        self.assertRegex(printed, r"not the library's doing: crash: day\.json\.begin\[0\].* of CrashesAtStart\.aip")
        self.assertIn(" 0 broken", printed)

    def test_a_library_that_ends_a_run_is_named(self):
        inside = r"message \"AI Notifier\"/\"AI Notify\", entry HandleOpenExistingDocument, call 1: "
        place = r" of PluginCoreX64\.dll \(\w+Faults\.c:\d+\)"
        for fault, rule, pattern in (
            ("Crashes", "crash", r"access violation .* writing 0x10 in Crash" + place),
            ("OverflowsStack", "crash", r"stack overflow .* in OverflowStack" + place),
            ("Hangs", "hang", r"the step had not ended after 3 seconds; the main thread is in Hang" + place),
            ("Exits", "process-ended", r"the process was ended with code 0 .* in Exit" + place),
            ("CallsExit", "process-ended", r"the process was ended with code 3 .* in CallExit" + place),
            ("Aborts", "crash", r"abort\(\) was called in Abort" + place),
        ):
            with self.subTest(fault):
                printed, complaints = self.play("tests/contract/any-calls.json", FOLDER / f"Faulty{fault}.dll",
                                                "--step-time-limit", "3", code=1)
                self.assertRegex(printed, r"again: .* --step-time-limit 3 --until \d+\n")
                self.assertRegex(complaints, rf"^FAILED {rule}: any-calls\.json\.steps\[0\], {inside}{pattern}")

    def test_what_several_runs_have_shown_is_told_once(self):
        # Laid out for the day it has another name, which its own one contains here.
        library = self.folder / "MyPluginCoreX64.dll"
        shutil.copy(FOLDER / "FaultyKeepsText.dll", library)
        printed, _ = self.run_simhost("contract", library, code=1)
        told = re.findall(r"read (\"path\" \(\d+ bytes?\) after) the entry had returned.*?\[([^]]*)\]", printed, re.DOTALL)
        self.assertTrue(any("small-buffers, texts" in runs for _, runs in told), printed)
        self.assertEqual(len(told), len({what for what, _ in told}), printed)
        self.assertEqual(set(re.findall(r"\w*PluginCoreX64\.dll", printed)), {"MyPluginCoreX64.dll"}, printed)

    # ---- The layer's own work is not charged to the library ----

    def seen(self, library: str) -> dict:
        printed, _ = self.contract(library, "--level", "pedantic", "--json", code=1)
        return {clause["clause"]: clause["seen"] for clause in json.loads(printed)["clauses"] if clause["seen"]}

    def test_threads_are_neither_waited_for_one_by_one_nor_named_at_once(self):
        seen = self.seen("FaultyLeavesManyThreads")
        self.assertEqual(set(seen) - {"slow"}, {"thread-left"})
        for sighting in seen["thread-left"]:
            # The day lays it out under another name.
            self.assertRegex(sighting["text"],
                             r"it left (32|64) threads that run Wait of FaultyLeavesManyThreads\.dll \(")
        for sighting in seen.get("slow", []):
            # The threads themselves take some, the more so with a debugger at work.
            self.assertLess(int(re.search(r"took (\d+) ms", sighting["text"])[1]), 1500, sighting)

    def test_a_call_whose_fault_was_noted_is_not_slow(self):
        """The library takes its time as well; but nobody can tell the one from the other."""
        seen = self.seen("FaultyReadsBehindTextSlowly")
        noted = {(sighting["run"], sighting["entry"], sighting["call"]) for sighting in seen["argument-behind"]}
        self.assertEqual({entry for _, entry, _ in noted}, {"HandleSaveDocument"})
        slow = {(sighting["run"], sighting["entry"], sighting["call"]) for sighting in seen.get("slow", [])}
        self.assertFalse(noted & slow)


if __name__ == "__main__":
    FOLDER = pathlib.Path(sys.argv[1])
    COMMAND = [str(pathlib.Path(word).resolve()) if pathlib.Path(word).exists() else word for word in sys.argv[2:]]
    unittest.main(argv=sys.argv[:1])
