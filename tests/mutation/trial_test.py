"""A mutant goes through the programs that can kill it, and a run that fails is no kill. With scripts instead of builds."""

import pathlib
import tempfile
import unittest
from unittest import mock

import mutants
import mutation
from trial import Trial
from verdict import Fate, NoVerdict

MUTANT = mutants.mutants_of("src/json/A.cpp", "bool Check() { return a == b; }")[0]

# In place of scripts/run-in-wine: takes the next line of the program's file for its exit code and output. A call that is
# not as it should be passes.
RUN_IN_WINE = r"""#!/usr/bin/env bash
program=$(basename "$4")
[[ $* == "--expect-passed --time-limit 120 "* && $CTEST_RESOURCE_GROUP_0_DESKTOPS == id:2,slots:1 ]] || exit 0
[[ $PWD == */trial ]] || exit 0
line=$(head -n 1 "$ENDS/$program")
sed -i 1d "$ENDS/$program"
echo "${line#* }"
exit "${line%% *}"
"""
PASSED, FAILED, TIMED_OUT, NOT_STARTED = "0 ", "1 [  FAILED  ] Suite.Case", "124 ", "1 "


class FakeBuild:
    def __init__(self, root: pathlib.Path, ends: dict[str, list[str]]):
        self.root = self.folder = root
        self.binaries = {name: f"tests/{name}" for name in ends}
        (root / "scripts").mkdir()
        (root / "tests").mkdir()
        script = root / "scripts" / "run-in-wine"
        script.write_text(RUN_IN_WINE.replace("$ENDS", str(root)), encoding="utf-8")
        script.chmod(0o755)
        for name, lines in ends.items():
            (root / name).write_text("\n".join(lines) + "\n", encoding="utf-8")

    def programs(self, _file: str) -> list[str]:
        return list(self.binaries)


class TrialTest(unittest.TestCase):
    def play(self, compiles: bool = True, links: bool = True, **ends: list[str]):
        with tempfile.TemporaryDirectory() as folder, \
                mock.patch.object(Trial, "compile", return_value=compiles), \
                mock.patch.object(Trial, "link", return_value=links):
            root = pathlib.Path(folder)
            outcome = Trial(FakeBuild(root, ends), MUTANT, root / "trial").play(desktop=2)
            return outcome.fate, outcome.by

    def test_the_first_program_that_notices_is_named(self):
        self.assertEqual(self.play(own=[FAILED], all=[FAILED]), (Fate.KILLED, "own"))
        self.assertEqual(self.play(own=[PASSED], all=[FAILED]), (Fate.KILLED, "all"))
        self.assertEqual(self.play(own=[PASSED], all=[PASSED]), (Fate.SURVIVED, ""))

    def test_a_run_that_failed_is_repeated(self):
        self.assertEqual(self.play(own=[NOT_STARTED, PASSED]), (Fate.SURVIVED, ""))
        self.assertEqual(self.play(own=[TIMED_OUT, PASSED]), (Fate.SURVIVED, ""))
        self.assertEqual(self.play(own=[TIMED_OUT, TIMED_OUT]), (Fate.KILLED_BY_TIME_OUT, "own"))

    def test_an_error_names_the_mutant(self):
        with self.assertRaisesRegex(NoVerdict, r"src/json/A\.cpp: .*: own could not be played: "):
            self.play(own=[NOT_STARTED, NOT_STARTED])
        with self.assertRaisesRegex(RuntimeError, "own does not link"):
            self.play(links=False, own=[PASSED])

    def test_what_does_not_compile_is_not_played(self):
        self.assertEqual(self.play(compiles=False, own=[FAILED]), (Fate.NOT_COMPILED, ""))


class RunTest(unittest.TestCase):
    def code(self, trial) -> int:
        arguments = ["mutation", "--root", str(pathlib.Path(__file__).parents[2]), "--built", ".", "--only", "src/json",
                     "--sample", "3"]
        with mock.patch("sys.argv", arguments), mock.patch.object(mutation, "Build"), \
                mock.patch.object(mutation, "Trial", trial), mock.patch("shutil.rmtree"), mock.patch("builtins.print"):
            return mutation.main()

    def trial(self, fate):
        """Controls survive, all else meets the fate, or the error."""
        def play(_build, mutant, _folder):
            def outcome(_desktop):
                if isinstance(fate, Exception):
                    raise fate
                changed = mutant.before != mutant.after
                return mutation.Outcome(mutant, fate if changed else Fate.SURVIVED, "json_tests" if changed else "")
            return mock.Mock(play=outcome)
        return play

    def test_the_exit_code_tells_kills_from_survivors_and_errors(self):
        self.assertEqual(self.code(self.trial(Fate.KILLED)), 0)
        self.assertEqual(self.code(self.trial(Fate.KILLED_BY_TIME_OUT)), 0)
        self.assertEqual(self.code(self.trial(Fate.SURVIVED)), 1)
        self.assertEqual(self.code(self.trial(NoVerdict("no session"))), 2)

    def test_a_control_that_is_killed_is_an_error(self):
        trial = mock.Mock(return_value=mock.Mock(play=lambda _: mutation.Outcome(MUTANT, Fate.KILLED, "json_tests")))
        self.assertEqual(self.code(trial), 2)


if __name__ == "__main__":
    unittest.main()
