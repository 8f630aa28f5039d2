"""What is measured for docs/reliability.md: by which command, and what of its figures the page tells.

Each command writes its figures as JSON. Here is no number but those of the commands' arguments.
"""

import dataclasses
import json
import pathlib
from collections.abc import Callable

SCENARIO_FAULTS = "tests/scenario/faults"
# Stories in which the PluginCore does what it must not.
PLUGINCORE_STORIES = ["dialog-from-within-the-plugincore", "entry-missing", "incompatible", "incompatible-four-entries",
                      "location-nowhere", "message-from-within-the-plugincore", "replies-that-fill-the-buffer",
                      "settings-broken", "settings-refused", "throws", "throws-from-start-to-end", "tick-throws"]
PLUGINCORE_TESTS = {"frame_tests": "*PluginCoreTest.*:*MissingEntryTest.*:WorkingDayTest.Reply*"}
BOUNDARY_TESTS = {
    "frame_tests": "*BadTextTest.*:WorkingDayTest.PathThatIsNoUtf16*:DllMainTest.*",
    "dialogs/dialogs_tests": "ActiveHookTest.TitleWith*:ActiveHookTest.Memory*:SuppressionFileTest.Line*",
    "documents_tests": "FileFormatHookTest.*:FileModificationDateTest.NoMemory*",
    "menus_tests": "MenuTreeTest.Memory*:MenuTreeTest.Text*",
    "panel_tests": "*PortNumberExchangeTest.Exception*:*PortNumberExchangeTest.Memory*",
    "support_tests": "ForeignExceptionGuard.*:CallForeignCodeTest.*:ThreadVariables.*",
}


@dataclasses.dataclass(frozen=True)
class Row:
    what: str
    tried: str
    outcome: str


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
    rows: Callable[[dict], list[Row]]


def only(written: list) -> dict:
    return written[0]


def number(count: float) -> str:
    return f"{count:,}"


def of_unit_tests(tests: dict[str, str]) -> tuple[Run, ...]:
    return tuple(Run(("scripts/run-in-wine", f"{{built}}/tests/{program}.exe", f"--gtest_filter={names}",
                      "--gtest_output=json:")) for program, names in tests.items())


def count_of_unit_tests(written: list) -> dict:
    if not all(one["tests"] for one in written):
        raise RuntimeError("a pattern of unit tests matches none")
    return {"tests": sum(one["tests"] for one in written),
            "failed": sum(one["failures"] + one["errors"] for one in written)}


def count_of_stories(written: dict) -> dict:
    return {"cases": len(written), "failed": sum(not case["passed"] for case in written.values())}


def play(*stories: str) -> Run:
    return Run(("scripts/simhost", "play", *stories, "--quiet", "--record"))


def none_or(count: int, what: str) -> str:
    return f"{number(count)} {what}" if count else f"no {what}"


def failed(count: int) -> str:
    return f"{number(count)} failed" if count else "all passed"


# --- the subjects, each with its rows ---

KINDS_OF_CALLS = {"host": "operations of the host and suites", "import": "functions of Windows and of the C runtime",
                  "allocation": "allocations"}
MODES_OF_FAULTS = {"once": "once", "filled": "once, its outputs filled", "from-here": "from there on"}


def sweep_rows(figures: dict) -> list[Row]:
    rows = []
    for kind, modes in figures["by_kind"].items():
        for mode, counts in modes.items():
            rows.append(Row(f"faults: {KINDS_OF_CALLS[kind]}, {MODES_OF_FAULTS[mode]}",
                            f"{number(counts['played'] - counts['not_reached'])} injected, "
                            f"{number(counts['not_reached'])} not reached any more; "
                            f"{number(counts['left_out_same_way'])} on the way of one of these",
                            none_or(counts["with_findings"], "findings")))
    never = figures["imports_never_called"]
    rows.append(Row(f"all faults: {number(figures['cases'])} cases of {number(figures['scenarios'])} stories"
                    + (", every call" if not figures["distinct"] else ", each way to a call once"),
                    f"{number(figures['injected'])} injected in {number(figures['operations'])} operations; "
                    f"{number(len(figures['unplayable']))} cases not playable, "
                    f"{number(figures['left_out']['not_played'])} faults not played",
                    none_or(figures["with_findings"], "findings")))
    rows.append(Row("imports that can fail and that no story calls",
                    f"{number(len(never))} of {number(figures['imports_that_can_fail'])}",
                    ", ".join(f"`{name}`" for name in never) or "none"))
    return rows


def sweep_digest(written: list) -> dict:
    """Without the texts of findings, which are told by the command and mended."""
    return {key: value for key, value in written[0].items() if key not in ("findings", "explained", "seconds")}


def random_rows(figures: dict) -> list[Row]:
    counts = figures["counts"]
    told = ", ".join(f"{name.replace('_', ' ')} {number(count)}" for name, count in counts.items() if name != "messages")
    return [Row(f"random messages, from {number(figures['seeds'])} seeds, to a PluginCore with hostile answers",
                f"{number(counts['messages'])} messages: {told}", f"{number(len(figures['failed']))} seeds failed"
                if figures["failed"] else "all passed")]


def random_digest(written: list) -> dict:
    return {key: written[0][key] for key in ("seeds", "failed", "counts")}


def fuzzing_rows(figures: dict) -> list[Row]:
    return [Row("fuzzing of the code that needs no Windows, with sanitizers and a second parser beside it",
                f"{number(figures['targets'])} targets, {number(figures['inputs'])} inputs",
                none_or(figures["found"], "findings")),
            Row("their corpora again, under Wine", f"{number(figures['corpus_files'])} files", "in each run of the tests")]


def growth_rows(figures: dict) -> list[Row]:
    rows = []
    for what, one in figures.items():
        grown = [f"{kind} {number(count)}" for kind, count in one.items() if kind not in ("times", "right") and count]
        outcome = "nothing grew" if not grown else "grown: " + ", ".join(grown)
        verdict = {True: "", False: ", which is WRONG", None: ", for comparison"}[one.get("right")]
        rows.append(Row(f"growth: {what}", number(one["times"]), outcome + verdict))
    return rows


def coverage_rows(figures: dict) -> list[Row]:
    def of(part: str) -> str:
        return (f"{figures[part + '_lines_percent']} % of the lines, "
                f"{figures[part + '_branches_percent']} % of the branches")
    tried = f"{number(figures['all_lines'])} lines, {number(figures['all_branches'])} branches"
    return [Row("coverage of `src/`: the shipped library in the simulated host", tried, of("simhost")),
            Row("the same, and the unit tests", tried, of("all"))]


def mutation_rows(figures: dict) -> list[Row]:
    survivors = figures["survivors"]
    unexplained = sum(not survivor["reason"] for survivor in survivors)
    return [Row(f"mutants of the logic, sampled of {number(figures['mutants'])}",
                f"{number(figures['sampled'] - figures['not_compiled'])}",
                f"{number(figures['killed'])} killed ({figures['percent_killed']} %), "
                f"{number(len(survivors))} survived, {none_or(unexplained, 'of them without a reason')}")]


def binary_rows(figures: dict) -> list[Row]:
    return [Row("checks of the built files: addresses, memory, exports, imports, stack protector, version",
                f"{number(figures['checks'])} checks of {number(figures['files'])} files, "
                f"{number(figures['waivers'])} waived", none_or(figures["findings"], "findings"))]


def plugincore_rows(figures: dict) -> list[Row]:
    return [Row("a PluginCore that is at fault, to the shipped library", f"{number(figures['cases'])} stories",
                failed(figures["failed"])),
            Row("a PluginCore that crashes, in each entry that is called", f"{number(figures['crashes'])} stories",
                f"the host ends, the library is named in {number(figures['named'])}"),
            Row("the same and more at every call of a day, in unit tests", f"{number(figures['tests'])} tests",
                failed(figures["failed_tests"]))]


def plugincore_digest(written: list) -> dict:
    stories, crashes, *tests = written
    units = count_of_unit_tests(tests)
    named = sum(any(violation.get("module") == "PluginCoreX64.dll" for violation in case["violations"])
                for case in crashes.values())
    return count_of_stories(stories) | {"crashes": len(crashes), "named": named, "tests": units["tests"],
                                        "failed_tests": units["failed"]}


def boundary_rows(figures: dict) -> list[Row]:
    return [Row("every other boundary: menu callback, hook, panel's listener, file check, `DllMain`; no memory, broken texts",
                f"{number(figures['tests'])} tests", failed(figures["failed"]))]


def manners_rows(figures: dict) -> list[Row]:
    return [Row("good manners: the host's state around every message, load, unload, hook, listener and callback",
                f"{number(figures['cases'])} stories", failed(figures["failed"])),
            Row("plug-ins without manners", f"{number(figures['faults'])} stories",
                f"{number(figures['caught'])} caught as expected")]


def manners_digest(written: list) -> dict:
    every, faults = written
    caught = count_of_stories(faults)
    return count_of_stories(every) | {"faults": caught["cases"], "caught": caught["cases"] - caught["failed"]}


MEASURES = [
    Measure("faults", (Run(("scripts/fault-sweep", "--json")),), sweep_digest, sweep_rows),
    Measure("plugincore-faults",
            (play(*(f"devkit/scenarios/{story}.json" for story in PLUGINCORE_STORIES)), play(f"{SCENARIO_FAULTS}/crash-plugincore.json"),
             *of_unit_tests(PLUGINCORE_TESTS)), plugincore_digest, plugincore_rows),
    Measure("boundaries", of_unit_tests(BOUNDARY_TESTS), count_of_unit_tests, boundary_rows),
    Measure("random-messages", (Run(("scripts/random-messages", "--seeds", "20", "--json")),), random_digest, random_rows),
    Measure("fuzzing", (Run(("scripts/fuzz", "--seconds", "600", "--json")),), only, fuzzing_rows),
    Measure("growth", (Run(("--json",), "Growth"),), only, growth_rows),
    Measure("manners", (play("devkit/scenarios"), play(f"{SCENARIO_FAULTS}/host-state.json")), manners_digest, manners_rows),
    Measure("coverage", (Run(("scripts/coverage", "--json")),), only, coverage_rows),
    Measure("mutation", (Run(("scripts/mutation", "--json")),), only, mutation_rows),
    Measure("binary", (Run(("--json",), "PluginFile"),), only, binary_rows),
]


def figures_file(folder: pathlib.Path, measure: Measure) -> pathlib.Path:
    return folder / f"{measure.name}.json"


def read_figures(folder: pathlib.Path, measure: Measure) -> dict:
    return json.loads(figures_file(folder, measure).read_text(encoding="utf-8"))
