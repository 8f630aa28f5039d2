"""What the page tells of each measure: its rows, and what is kept of the figures that the commands have written."""

import dataclasses
from collections.abc import Callable


@dataclasses.dataclass(frozen=True)
class Row:
    what: str
    tried: str  # empty: nothing, it was not measured yet
    outcome: str


def only(written: list) -> dict:
    return written[0]


def number(count: float) -> str:
    return f"{count:,}"


def count_of_unit_tests(written: list) -> dict:
    if not all(one["tests"] for one in written):
        raise RuntimeError("a pattern of unit tests matches none")
    return {"tests": sum(one["tests"] for one in written),
            "failed": sum(one["failures"] + one["errors"] for one in written)}


def count_of_stories(written: dict) -> dict:
    return {"cases": len(written), "failed": sum(not case["passed"] for case in written.values())}


def none_or(count: int, what: str) -> str:
    return f"{number(count)} {what}" if count else f"no {what}"


def failed(count: int) -> str:
    return f"{number(count)} failed" if count else "all passed"


def row_of(what: str, figures: dict | None, tell: Callable[[dict], tuple[str, str]]) -> Row:
    """For figures that older records of the same measure lack."""
    return Row(what, *tell(figures)) if figures else Row(what, "", "")


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
    rows.append(row_of("the same story once more, without a fault, to the plug-in as the fault has left it",
                       figures if "played_again" in figures else None, played_again))
    rows.append(Row("imports that can fail and that no story calls once the library is loaded",
                    f"{number(len(never))} of {number(figures['imports_that_can_fail'])}",
                    ", ".join(f"`{name}`" for name in never) or "none"))
    return rows


def played_again(figures: dict) -> tuple[str, str]:
    # "<case>: <why>", once for each process that has tried it; why may name the process.
    cases = len({case.split(": ")[0] for case in figures["not_replayable_in_one_instance"]})
    return (f"after {number(figures['played_again'])} faults; {none_or(cases, 'cases not playable twice')}",
            "findings count with those of the fault")


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


# What may grow and must, by how the measurement's name begins: its cost is told, whatever it is.
MEANT_TO_GROW = {
    "the two handles that stay open": "what they cost: ",
    "cycles of the plug-in": "exactly the handles that are meant to stay, and what they cost: ",
    "one of the ": "noticed: ",
}


def growth_rows(figures: dict) -> list[Row]:
    return [Row(f"growth: {what}", number(one["times"]), growth_outcome(what, one)) for what, one in figures.items()]


def growth_outcome(what: str, one: dict) -> str:
    grown = ", ".join(f"{kind} {number(count)}" for kind, count in one.items() if kind not in ("times", "right") and count)
    if "right" not in one:
        return (f"grown: {grown}" if grown else "nothing grew") + ", for comparison"
    if not one["right"]:
        return (f"grown: {grown}" if grown else "nothing grew") + ", which is WRONG"
    meant = next((words for name, words in MEANT_TO_GROW.items() if what.startswith(name)), "grown: ")
    return meant + grown if grown else "nothing grew"


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
                f"{number(figures['sampled'])}; {number(figures['not_compiled'])} that do not compile were replaced",
                f"{number(figures['killed'])} killed ({figures['percent_killed']} %), "
                f"{none_or(len(figures['killed_by_time_out']), 'of them by the time limit')}; "
                f"{number(len(survivors))} survived, {none_or(unexplained, 'of them without a reason')}")]


def binary_rows(figures: dict) -> list[Row]:
    return [Row("checks of the built files: addresses, memory, exports, imports, stack protector, version",
                f"{number(figures['checks'])} checks of {number(figures['files'])} files, "
                f"{number(figures['waivers'])} waived", none_or(figures["findings"], "findings")),
            row_of("builds of the plug-in from the same sources, each in a folder of its own", figures.get("builds"),
                   lambda builds: (f"{number(builds['builds'])} builds", "the same hash" if builds["hashes"] == 1
                                   else f"{number(builds['hashes'])} DIFFERENT hashes")),
            row_of("stack protector, live: an overrun ends the process before the function returns",
                   figures.get("stack_protector"), lambda tests: (f"{number(tests['tests'])} tests", failed(tests["failed"])))]


def binary_digest(written: list) -> dict:
    checks, builds, *tests = written
    return checks | {"builds": builds, "stack_protector": count_of_unit_tests(tests)}


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
