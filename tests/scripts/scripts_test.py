#!/usr/bin/env python3
"""The scripts around the program: what they build, how they end, and who gets which display.

They run in a copy of the tree's scripts/, with fake tools in the place of CMake, ctest and Wine. The program that they
run is a shell script.
"""

import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

HERE = pathlib.Path(__file__).parent
ROOT = HERE.parents[1]
FAKE_TOOLS = ("apt-get", "cmake", "ctest", "dpkg-query", "sudo", "wine", "wineboot", "winecfg", "wineserver", "Xvfb")
PATIENCE_SECONDS = 30
TELL_DISPLAY = 'echo "$DISPLAY $WINEPREFIX"\n'


def wait_for(condition):
    end = time.monotonic() + PATIENCE_SECONDS
    while not condition():
        if time.monotonic() > end:
            raise AssertionError("nothing happens")
        time.sleep(0.02)


class ScriptsTest(unittest.TestCase):
    def setUp(self):
        temporary = pathlib.Path(tempfile.mkdtemp())
        # What looks after a session ends a little after it.
        self.addCleanup(wait_for, lambda: shutil.rmtree(temporary, ignore_errors=True) or not temporary.exists())
        self.root = temporary / "The tree"
        shutil.copytree(ROOT / "scripts", self.root / "scripts")
        (self.root / "scripts" / "setup").write_text("#!/bin/sh\nexit ${FAKE_SETUP_CODE:-0}\n", encoding="utf-8")
        (self.root / "tests").mkdir()
        tools = self.root / "tools"
        tools.mkdir()
        for tool in FAKE_TOOLS:
            (tools / tool).symlink_to(HERE / "fake_tool")
        self.log = self.root / "log"
        self.log.touch()
        outside = {name: value for name, value in os.environ.items()
                   if not name.startswith(("QUORVEL", "CTEST", "WINE", "DISPLAY"))}
        self.environment = {**outside, "PATH": f"{tools}:{outside['PATH']}", "FAKE_LOG": str(self.log),
                            "QUORVEL_WINE_LOADER": "/bin/bash"}
        self.addCleanup(self.end_sessions)

    def end_sessions(self):
        for server in self.root.glob("build/wine*/server"):
            server.unlink()
        wait_for(lambda: not list(self.root.glob("build/wine-session*/xvfb.pid")))

    def program(self, text: str):
        file = self.root / "build" / "release-ci" / "bin" / "simhost.exe"
        file.parent.mkdir(parents=True, exist_ok=True)
        # A shell that runs the one before reads on in its own file.
        new = file.with_suffix(".new")
        new.write_text(text, encoding="utf-8")
        new.replace(file)
        return str(file)

    def start(self, script: str, *arguments: str, **environment: str) -> subprocess.Popen:
        return subprocess.Popen([self.root / "scripts" / script, *arguments], env={**self.environment, **environment},
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                encoding="utf-8")

    def run_script(self, script: str, *arguments: str, **environment: str) -> tuple[int, str, str]:
        process = self.start(script, *arguments, **environment)
        printed, complained = process.communicate(timeout=PATIENCE_SECONDS)
        return process.returncode, printed, complained

    def end(self, process: subprocess.Popen) -> int:
        (self.root / "end").touch()
        process.communicate(timeout=PATIENCE_SECONDS)
        return process.returncode

    def calls(self, beginning: str) -> list[str]:
        return [line for line in self.log.read_text(encoding="utf-8").splitlines() if line.startswith(beginning)]


class Simhost(ScriptsTest):
    def test_help_builds_nothing(self):
        for arguments, expected in ((["--help"], 0), (["-h"], 0), (["play", "--help"], 0), (["window", "-h"], 0), ([], 2)):
            with self.subTest(arguments):
                code, printed, _ = self.run_script("simhost", *arguments)
                self.assertEqual((code, printed.splitlines()[0]), (expected, "usage: scripts/simhost COMMAND [ARGUMENT...]"))
        self.assertEqual(self.calls(""), [])
        self.assertFalse((self.root / "build").exists())

    def test_help_of_a_program_that_is_built_is_its_own(self):
        self.program('echo "asked for $*"\n')
        self.assertEqual(self.run_script("simhost", "window", "--help")[:2], (0, "asked for window --help\n"))
        self.assertEqual(self.calls("cmake"), [])

    def test_usage_names_every_command(self):
        sources = "".join(file.read_text(encoding="utf-8") for file in
                          sorted((ROOT / "devkit" / "simhost" / "command").glob("*.cpp")))
        commands = set(re.findall(r'add_subcommand\(\s*"(\w+)"', sources)) - {"perform", "probe", "symbols"}
        printed = self.run_script("simhost", "--help")[1]
        self.assertEqual(set(re.findall(r"^  (\w+) ", printed, re.MULTILINE)), commands)

    def test_exit_codes_are_the_programs_own_and_2_for_all_else(self):
        for program, expected in (("exit 0", 0), ("exit 1", 1), ("exit 2", 2), ("exit 53", 2), ("kill -9 $$", 2)):
            with self.subTest(program):
                self.program(program + "\n")
                code, _, complained = self.run_script("simhost", "list")
                self.assertEqual(code, expected)
                self.assertEqual("the program was ended" in complained, program in ("exit 53", "kill -9 $$"))

    def test_program_says_again_what_was_typed(self):
        self.program('echo "$SIMHOST_COMMAND"\n')
        typed = str(self.root / "scripts" / "simhost").replace(" ", "\\ ")
        self.assertEqual(self.run_script("simhost", "list")[1], typed + "\n")

    def test_build_or_setup_that_fails_is_2(self):
        self.program("exit 0\n")
        code, _, complained = self.run_script("simhost", "list", FAKE_BUILD_CODE="1")
        self.assertEqual(code, 2)
        self.assertIn("failed, see above. Mend the first error.", complained)
        self.assertEqual(self.run_script("simhost", "list", FAKE_SETUP_CODE="1")[0], 2)
        self.assertEqual(self.run_script("import-document", "a.pdf", FAKE_SETUP_CODE="1")[0], 2)

    def test_build_tells_how_far_it_is_by_quarters(self):
        self.program("exit 0\n")
        self.assertEqual(self.run_script("simhost", "list", FAKE_BUILD_STEPS="2")[2].splitlines()[:-1], [])
        lines = self.run_script("simhost", "list", FAKE_BUILD_STEPS="40")[2].splitlines()
        self.assertEqual(lines, [f"simhost: building, {step} of 40 steps" for step in (1, 10, 20, 30, 40)])

    def test_two_builds_come_one_after_the_other(self):
        self.program("exit 0\n")
        both = [self.start("simhost", "list", FAKE_BUILD_SECONDS="0.5") for _ in range(2)]
        complaints = [process.communicate(timeout=PATIENCE_SECONDS)[1] for process in both]
        self.assertEqual([process.returncode for process in both], [0, 0])
        self.assertIn("simhost: waiting for another build of this folder", "".join(complaints))
        order = [line.split(" ")[0] for line in self.calls("") if line.startswith(("cmake --build", "the build ends"))]
        self.assertEqual(order, ["cmake", "the", "cmake", "the"])


class Setup(ScriptsTest):
    def setUp(self):
        super().setUp()
        shutil.copy(ROOT / "scripts" / "setup", self.root / "scripts" / "setup")

    def test_nothing_is_installed_when_nothing_is_missing(self):
        self.assertEqual(self.run_script("setup"), (0, "", ""))
        self.assertEqual((self.calls("apt-get"), len(self.calls("dpkg-query"))), ([], 1))

    def test_what_is_missing_is_installed_and_nothing_else(self):
        # Another package's name begins with this one.
        code, _, complained = self.run_script("setup", FAKE_MISSING="wine")
        self.assertEqual((code, complained), (0, "setup: installing wine\n"))
        self.assertRegex(self.calls("apt-get")[-1], r" install --yes --no-install-recommends wine$")


class Sessions(ScriptsTest):
    def test_window_without_a_display_is_refused_before_anything_is_built(self):
        code, _, complained = self.run_script("simhost", "window")
        self.assertEqual((code, self.calls("cmake")), (2, []))
        self.assertIn("DISPLAY is not set", complained)

    def test_window_is_shown_where_the_person_is_and_stands_in_nobodys_way(self):
        self.program(TELL_DISPLAY + f'while [[ ! -e "{self.root}/end" ]]; do sleep 0.02; done\n')
        window = self.start("simhost", "window", DISPLAY=":7")
        self.assertEqual(window.stdout.readline(), f":7 {self.root}/build/wine-visible\n")
        self.assertIn('"Managed"="Y"', (self.root / "build/wine-visible/user.reg").read_text(encoding="utf-8"))

        elsewhere = self.run_script("simhost", "window", DISPLAY=":8")
        self.assertEqual(elsewhere[0], 2)
        self.assertIn("a window of simhost is open on another display than :8. Close it", elsewhere[2])

        self.program(TELL_DISPLAY)
        code, printed, _ = self.run_script("simhost", "list", DISPLAY=":7")
        self.assertEqual((code, printed.split(" ", 1)[1]), (0, f"{self.root}/build/wine\n"))
        self.assertNotEqual(printed.split()[0], ":7")
        self.assertIn('"Managed"="N"', (self.root / "build/wine/user.reg").read_text(encoding="utf-8"))
        self.assertTrue((self.root / "build/wine-visible/server").exists(), "the window's server was ended")

        # A second window on the same display shares the server, and does not end it.
        self.assertEqual(self.run_script("simhost", "window", DISPLAY=":7")[:2],
                         (0, f":7 {self.root}/build/wine-visible\n"))
        self.assertTrue((self.root / "build/wine-visible/server").exists(), "the window's server was ended")
        self.assertEqual(self.end(window), 0)
        self.assertFalse((self.root / "build/wine-visible/server").exists(), "the server stays")

    def test_program_that_runs_live_holds_its_session(self):
        program = self.program(f'echo begun; while [[ ! -e "{self.root}/end" ]]; do sleep 0.02; done; exit 1\n')
        live = self.start("run-in-wine", "--live", program)
        self.assertEqual(live.stdout.readline(), "begun\n")
        other = self.root / "other.exe"
        other.write_text("exit 0\n", encoding="utf-8")
        leave = f'source "{self.root}/scripts/lib/wine-environment"; wine_session_join; wine_session_leave'
        subprocess.run(["bash", "-c", leave], env=self.environment, check=True, timeout=PATIENCE_SECONDS)
        self.assertTrue((self.root / "build/wine/server").exists(), "the server was ended under the program")
        self.assertEqual(self.end(live), 1)

    def test_two_desktops_have_a_prefix_and_a_display_each_and_one_is_made(self):
        program = self.program(TELL_DISPLAY)
        printed = [self.run_script("run-in-wine", program, CTEST_RESOURCE_GROUP_0_DESKTOPS=f"id:{number},slots:1")[1]
                   for number in (0, 1, 0)]
        self.assertEqual([line.split(" ", 1)[1] for line in printed],
                         [f"{self.root}/build/{name}\n" for name in ("wine", "wine-1", "wine")])
        self.assertEqual(len({line.split()[0] for line in printed}), 2)
        self.assertEqual(len(self.calls("wineboot")), 1)

    def test_number_of_a_display_that_has_ended_is_not_killed(self):
        program = self.program("exit 0\n")
        somebody = subprocess.Popen(["sleep", "60"])
        self.addCleanup(lambda: (somebody.kill(), somebody.wait()))
        session = self.root / "build" / "wine-session"
        session.mkdir(parents=True)
        (session / "xvfb.pid").write_text(f"{somebody.pid}\n", encoding="utf-8")
        self.assertEqual(self.run_script("run-in-wine", program)[0], 0)
        self.assertIsNone(somebody.poll())


class Test(ScriptsTest):
    def described(self, *labels):
        return json.dumps({"tests": [{"name": f"test-{number}", "properties": [{"name": "LABELS", "value": each}] if each
                                      else []} for number, each in enumerate(labels)]})

    def builds(self):
        return [line.partition("/build/release-ci")[2].split() for line in self.calls("cmake --build")]

    def test_builds_what_the_chosen_tests_need(self):
        for labels, targets in (([["json_tests"], ["kit", "json_tests"]], ["--target", "json_tests", "--target", "kit"]),
                                ([["json_tests"], None], [])):
            with self.subTest(labels):
                self.log.write_text("", encoding="utf-8")
                code, printed, _ = self.run_script("test", "-R", "Json", FAKE_TESTS=self.described(*labels))
                self.assertEqual(code, 0)
                self.assertEqual(printed.splitlines()[-1], "100% tests passed, 0 tests failed out of 1")
                self.assertEqual(self.builds(), [targets])

    def test_without_arguments_builds_everything(self):
        self.assertEqual(self.run_script("test")[0], 0)
        self.assertEqual(self.builds(), [[]])

    def test_nothing_failed_means_nothing_to_run_again(self):
        code, printed, _ = self.run_script("test", "--rerun-failed")
        self.assertEqual((code, printed), (0, "test: nothing failed in the last run, so there is nothing to run again\n"))
        self.assertEqual(self.builds(), [])

    def test_name_that_matches_nothing(self):
        code, _, complained = self.run_script("test", "-R", "Jason", FAKE_TESTS=self.described(), FAKE_TEST_COUNT="0")
        self.assertNotEqual(code, 0)
        self.assertIn("test: no test matches", complained)
        self.assertEqual(self.builds(), [])

    def test_name_of_a_case_runs_its_suite(self):
        (self.root / "tests" / "JsonTest.cpp").write_text(
            "\nTEST_F(JsonParser, ReadsTexts) {}\nTEST(JsonWriter,\n     WritesTexts) {}\n", encoding="utf-8")
        for case, suite in (("ReadsTexts", "JsonParser"), ("JsonWriter.Writes", "JsonWriter"), ("Texts", "JsonParser|JsonWriter")):
            with self.subTest(case):
                code, _, complained = self.run_script("test", "-R", case, FAKE_TESTS=self.described(["json_tests"]),
                                                      FAKE_TEST_COUNT="0")
                self.assertEqual(code, 0)
                self.assertIn(f"'{case}' names cases; running their suites, ^({suite})$", complained)
                self.assertTrue(self.calls("ctest")[-1].endswith(f"-R ^({suite})$"), self.calls("ctest")[-1])

    def test_count_comes_last_and_what_failed_is_kept_until_it_passes(self):
        failed = self.root / "build" / "release-ci" / "Testing" / "Temporary" / "LastTestsFailed.log"
        failed.parent.mkdir(parents=True)
        failed.write_text("1:Json\n", encoding="utf-8")
        half = "50% tests passed, 1 tests failed out of 2"
        printed = self.run_script("test", FAKE_TEST_RESULT=half)[1].splitlines()
        self.assertEqual((printed[-1], printed[-2].partition(".")[0]), (half, "test: what failed stands above, with its output"))
        self.assertTrue(failed.exists())
        self.assertEqual(self.run_script("test", "--rerun-failed", FAKE_TESTS=self.described(["json_tests"]))[0], 0)
        self.assertFalse(failed.exists())


class BenchCompare(ScriptsTest):
    """In a repository of its own, whose commits hold benchmarks that are built already."""

    BENCHMARK = """#!/bin/bash
while [[ $1 != --json ]]; do shift; done
cat >"$2" <<'RECORD'
[{"name": "parse", "base": "peer", "entries": [
  {"name": "peer", "nanoseconds": %d, "ratio": 1, "low": 1, "high": 1, "heap_calls": 7}]}]
RECORD
"""

    def setUp(self):
        super().setUp()
        shutil.copytree(ROOT / "bench", self.root / "bench")
        self.git("init", "--quiet")
        self.git("config", "user.name", "Test")
        self.git("config", "user.email", "test@example.org")

    def git(self, *arguments: str):
        subprocess.run(["git", *arguments], cwd=self.root, check=True, capture_output=True)

    def commit(self, tag: str, nanoseconds: int):
        program = self.root / "build" / "release-ci" / "bench" / "bench_json.exe"
        program.parent.mkdir(parents=True, exist_ok=True)
        program.write_text(self.BENCHMARK % nanoseconds, encoding="utf-8")
        self.git("add", "--force", "scripts", "bench", str(program))
        self.git("commit", "--quiet", "--message", tag)
        self.git("tag", tag)

    def test_each_commit_is_built_and_measured_by_its_own_benchmarks(self):
        self.commit("old", 200)
        self.commit("new", 50)
        code, printed, complained = self.run_script("bench-compare", "--turns", "1", "old", "new", "json")
        self.assertEqual(0, code, complained)
        self.assertIn("-75 %", printed)
        built = [re.search(r"bench-compare/(before|after)/build", call)[1] for call in self.calls("cmake --build")]
        self.assertEqual(["before", "after"], built)
        # Once more, with the sides changed: what is there is brought to the other commit.
        code, printed, complained = self.run_script("bench-compare", "--turns", "1", "new", "old")
        self.assertEqual(0, code, complained)
        self.assertIn("+300 %", printed)

    def test_commits_that_are_missing_unknown_or_without_benchmarks_are_refused(self):
        self.commit("old", 1)
        self.git("rm", "-r", "--quiet", "--cached", "bench")
        self.git("commit", "--quiet", "--message", "bare")
        for arguments, complaint in ((["old"], "two commits must be named"), (["old", "nosuch"], "no commit 'nosuch'"),
                                     (["HEAD", "old"], "HEAD has no benchmarks")):
            code, printed, complained = self.run_script("bench-compare", *arguments)
            self.assertEqual((2, ""), (code, printed), complained)
            self.assertIn(complaint, complained)


class FreshClone(unittest.TestCase):
    """The commands of the pages, tried in a new clone; here quick ones and a small tree, as those of the pages build for
    minutes."""

    def faults_of(self, command: str) -> tuple[int, str]:
        with tempfile.TemporaryDirectory() as folder:
            tree = pathlib.Path(folder) / "tree"
            program = pathlib.Path("tests") / "documentation" / "commands_test.py"
            (tree / program).parent.mkdir(parents=True)
            shutil.copy(ROOT / program, tree / program)
            shutil.copytree(ROOT / "scripts", tree / "scripts")
            for git in (["init", "--quiet"], ["add", "."], ["-c", "user.name=A", "-c", "user.email=a@b", "commit", "--quiet",
                                                            "--message=all"]):
                subprocess.run(["git", "-C", tree, *git], check=True)
            (tree / "build").mkdir()
            page = pathlib.Path(folder) / "page.md"
            page.write_text(f"```sh\n{command}\n```\n", encoding="utf-8")
            done = subprocess.run([sys.executable, tree / program, "--fresh-clone", page], capture_output=True, check=False,
                                  encoding="utf-8")
        return done.returncode, done.stdout

    def test_commands_run_where_nothing_is_built(self):
        code, printed = self.faults_of("test -x scripts/test && test ! -e build")
        self.assertEqual((code, printed.splitlines()[-1]), (0, "All 1 commands work."))
        code, printed = self.faults_of("ls build")
        self.assertEqual(code, 1)
        self.assertIn("ls build: the exit code is 2 and not 0", printed)


if __name__ == "__main__":
    unittest.main(verbosity=0)
