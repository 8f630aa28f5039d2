"""What is measured for docs/reliability.md: by which command, and what tells its figures (rows.py).

Each command writes its figures as JSON. Here is no number but those of the commands' arguments.
"""

import dataclasses
import json
import pathlib
from collections.abc import Callable

import rows
from stories import PLUGINCORE_STORIES
from tree import DIAGNOSTIC

SCENARIO_FAULTS = "tests/scenario/faults"
PLUGINCORE_TESTS = {"frame_tests": "*PluginCoreTest.*:*MissingEntryTest.*:WorkingDayTest.Reply*"}
BOUNDARY_TESTS = {
    "frame_tests": "*BadTextTest.*:WorkingDayTest.PathThatIsNoUtf16*:DllMainTest.*",
    "dialogs/dialogs_tests": "ActiveHookTest.TitleWith*:ActiveHookTest.Memory*:SuppressionFileTest.Line*",
    "documents_tests": "FileFormatHookTest.*:FileModificationDateTest.NoMemory*",
    "menus_tests": "MenuTreeTest.Memory*:MenuTreeTest.Text*",
    "panel_tests": "*PortNumberExchangeTest.Exception*:*PortNumberExchangeTest.Memory*",
    "support_tests": "ForeignExceptionGuard.*:CallForeignCodeTest.*:ThreadVariables.*",
}
STACK_PROTECTOR_TESTS = {"support_tests": "StackGuard.*"}


@dataclasses.dataclass(frozen=True)
class Run:
    """A command that writes JSON to the path that is appended to it. {built} is the folder that was built in."""

    command: tuple[str, ...]
    # The test of ctest by that name, to whose command these words are added.
    test: str = ""


@dataclasses.dataclass(frozen=True)
class Measure:
    name: str
    runs: tuple[Run, ...]
    digest: Callable[[list], dict]  # of what the runs have written
    rows: Callable[[dict], list[rows.Row]]
    # The folders of src/ on which the figures do not depend.
    without: tuple[str, ...] = ()


def of_unit_tests(tests: dict[str, str]) -> tuple[Run, ...]:
    return tuple(Run(("scripts/run-in-wine", f"{{built}}/tests/{program}.exe", f"--gtest_filter={names}",
                      "--gtest_output=json:")) for program, names in tests.items())


def play(*stories: str) -> Run:
    return Run(("scripts/simhost", "play", *stories, "--quiet", "--record"))


# For what measures the shipped plug-in, or unit tests that know no other.
WITHOUT_DIAGNOSTIC = (DIAGNOSTIC,)

MEASURES = [
    Measure("faults", (Run(("scripts/fault-sweep", "--json")),), rows.sweep_digest, rows.sweep_rows,
            WITHOUT_DIAGNOSTIC),
    Measure("plugincore-faults",
            (play(*PLUGINCORE_STORIES), play(f"{SCENARIO_FAULTS}/crash-plugincore.json"), *of_unit_tests(PLUGINCORE_TESTS)),
            rows.plugincore_digest, rows.plugincore_rows, WITHOUT_DIAGNOSTIC),
    Measure("boundaries", of_unit_tests(BOUNDARY_TESTS), rows.count_of_unit_tests, rows.boundary_rows,
            WITHOUT_DIAGNOSTIC),
    Measure("random-messages", (Run(("scripts/random-messages", "--seeds", "20", "--json")),), rows.random_digest,
            rows.random_rows, WITHOUT_DIAGNOSTIC),
    Measure("fuzzing", (Run(("scripts/fuzz", "--seconds", "600", "--json")),), rows.only, rows.fuzzing_rows,
            WITHOUT_DIAGNOSTIC),
    Measure("growth", (Run(("--json",), "Growth"),), rows.only, rows.growth_rows, WITHOUT_DIAGNOSTIC),
    Measure("manners", (play("devkit/scenarios"), play(f"{SCENARIO_FAULTS}/host-state.json")), rows.manners_digest,
            rows.manners_rows, WITHOUT_DIAGNOSTIC),
    Measure("coverage", (Run(("scripts/coverage", "--json")),), rows.only, rows.coverage_rows),
    Measure("mutation", (Run(("scripts/mutation", "--json")),), rows.only, rows.mutation_rows),
    Measure("binary", (Run(("--json",), "PluginFile"), Run(("--json",), "ReproducibleBuild"),
                       *of_unit_tests(STACK_PROTECTOR_TESTS)), rows.binary_digest, rows.binary_rows),
]


def figures_file(folder: pathlib.Path, measure: Measure) -> pathlib.Path:
    return folder / f"{measure.name}.json"


def read_figures(folder: pathlib.Path, measure: Measure) -> dict:
    return json.loads(figures_file(folder, measure).read_text(encoding="utf-8"))
