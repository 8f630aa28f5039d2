#!/usr/bin/env python3
"""The table of faults counts what is right, keeps what is not, and sees what is left behind.

Needs no simhost: a small program stands in for it. No arguments.
"""

import contextlib
import io
import pathlib
import subprocess
import sys
import tempfile
import threading
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent))

import fault_table  # noqa: E402
from fault_table import Fault, Kit  # noqa: E402

STAND_IN = "import sys; print(ANSWER); sys.exit(CODE)"


def stand_in(answer: str, code: int = 0) -> list[str]:
    program = STAND_IN.replace("ANSWER", repr(answer)).replace("CODE", str(code))
    return [sys.executable, "-c", program]


def table_of(fault: Fault, kit: Kit, times: int = 1) -> tuple[int, str]:
    printed = io.StringIO()
    with contextlib.redirect_stdout(printed), contextlib.redirect_stderr(io.StringIO()):
        code = fault_table.print_table([fault], [kit], times)
    return code, printed.getvalue()


class TheTable(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.prefix = pathlib.Path(folder.name)
        self.kit = Kit("", str(self.prefix), [])

    def test_counts_what_is_right(self):
        code, printed = table_of(Fault("plug-in", "crashes", "crash", lambda _: ("crash", "in | F")), self.kit, times=3)
        self.assertEqual(code, 0)
        self.assertIn("| plug-in | crashes | crash | 3 of 3 | in \\| F | nothing |", printed)
        self.assertIn("1 of 1 faults were classed rightly 3 times out of 3 and left nothing behind.", printed)

    def test_one_wrong_verdict_among_many_is_kept(self):
        verdicts = iter(["crash", "hang", "crash"])
        code, printed = table_of(Fault("plug-in", "crashes", "crash", lambda _: (next(verdicts), "words")), self.kit, 3)
        self.assertEqual(code, 1)
        self.assertIn("| crash (also: hang) | 2 of 3 |", printed)
        self.assertIn("0 of 1 faults", printed)

    def test_a_fault_without_a_result_does_not_end_the_table(self):
        def attempt(_):
            raise FileNotFoundError("record.json")
        code, printed = table_of(Fault("plug-in", "crashes", "crash", attempt), self.kit)
        self.assertEqual(code, 1)
        self.assertIn("also: no result) | 0 of 1 | FileNotFoundError: record.json |", printed)

    def test_a_folder_that_is_left(self):
        def attempt(_):
            (self.prefix / "drive_c" / "users" / "someone" / "Temp" / "simhost-7").mkdir(parents=True)
            return "crash", ""
        code, printed = table_of(Fault("plug-in", "crashes", "crash", attempt), self.kit)
        self.assertEqual(code, 1)
        self.assertIn("| simhost-7 |", printed)

    def test_a_program_that_is_left_beside_one_of_the_same_name(self):
        with contextlib.ExitStack() as programs:
            def start():
                program = subprocess.Popen(["Left.exe", "20"], executable="/bin/sleep",
                                           env={"WINEPREFIX": str(self.prefix)})
                programs.callback(program.wait)
                programs.callback(program.kill)
                # Linux tells a little later what was started.
                while not pathlib.Path(f"/proc/{program.pid}/cmdline").read_bytes():
                    time.sleep(0.01)
                return program
            start()
            second = []
            def attempt(_):
                second.append(start())
                return "crash", ""
            code, printed = table_of(Fault("plug-in", "starts", "crash", attempt), self.kit)
            self.assertEqual(code, 1)
            self.assertIn(f"| Left.exe ({second[0].pid}) |", printed)

    def test_two_kits_share_the_faults(self):
        both = threading.Barrier(2, timeout=20)
        used = []
        def attempt(kit):
            both.wait()
            used.append(kit.prefix)
            return "crash", ""
        kits = [Kit("", str(self.prefix), [], desktop) for desktop in (0, 1)]
        with contextlib.redirect_stdout(io.StringIO()), contextlib.redirect_stderr(io.StringIO()):
            code = fault_table.print_table([Fault("plug-in", name, "crash", attempt) for name in "ab"], kits, 1)
        self.assertEqual(code, 0)
        self.assertEqual(set(used), {self.prefix, pathlib.Path(f"{self.prefix}-1")})


class WhatSimhostAnswers(unittest.TestCase):
    def verdict_on(self, name: str, answer: str, code: int = 1) -> str:
        kit = Kit("", "", stand_in(answer, code))
        return next(fault for fault in fault_table.library_faults() if fault.name == name).attempt(kit)[0]

    def test_the_clause_at_its_entry_is_right(self):
        clause, entry = fault_table.contract_test.FAULTS["WritesBehindBuffer"]
        broken = '{"clauses": [{"clause": "%s", "state": "broken", "seen": [{"entry": "%s", "text": ""}]}]}'
        self.assertEqual(self.verdict_on("WritesBehindBuffer", broken % (clause, entry)), clause)
        self.assertEqual(self.verdict_on("WritesBehindBuffer", broken % (clause, "Elsewhere")), f"{clause}, other entry")

    def test_nothing_found_is_no_verdict(self):
        self.assertEqual(self.verdict_on("WritesBehindBuffer", '{"clauses": []}', 0), "nothing found")

    def test_a_bad_command_line_has_to_be_refused(self):
        for code, verdict in ((2, "exit code 2"), (1, "exit code 1")):
            kit = Kit("", "", stand_in("", code))
            first = next(iter(fault_table.command_line_faults(kit.built)))
            self.assertEqual(first.attempt(kit)[0], verdict)


if __name__ == "__main__":
    unittest.main()
