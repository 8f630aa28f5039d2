#!/usr/bin/env python3
"""What all scenario files must keep to, and what must not be forgotten.

 - every file names the schema, and the schema accepts it
 - the schema and the reader know the same verbs, keys, functions and rules
 - every rule is broken by a scenario in faults/, every fault of the faulty plug-in is committed by one, or
   by the scenario of the sweeps
 - every library and plug-in that is built for scenarios is used by one
 - every entry of the PluginCore throws in a shipped scenario, both sorts of exceptions, and answers extreme results
 - no other file lies among the scenarios

The folder of the built files and the command that prints what the reader knows follow on the command line.
"""

import json
import pathlib
import re
import subprocess
import sys

import scenario_schema

ROOT = scenario_schema.ROOT
SCENARIOS = ROOT / "devkit" / "scenarios"
FAULTS = ROOT / "tests" / "scenario" / "faults"
# What a plug-in does wrong only when a call fails.
SWEEP_FAULTS = ROOT / "tests" / "sweep" / "faulty.json"
FAULTY_PLUGINS = ROOT / "devkit" / "faulty_plugins"
# Not for scenarios: the shipped plug-in is what they play to; the diagnostic one and what collects its logs are tested by
# themselves.
NOT_FOR_SCENARIOS = {
    "QuorvelTypeAgentAI20.aip",
    "QuorvelTypeAgentAI20-diagnostic.aip",
    "QuorvelSupportBundle.exe",
    "simhost.exe",
    # Version resources that the unit tests read.
    "PluginCoreOfLongPrivateBuild.dll",
    "PluginCoreOfOtherLanguage.dll",
    "PluginCoreOfPrivateBuild.dll",
}


# Nobody calls them: nobody knows their arguments.
NEVER_CALLED = {"GetDocumentFontUsage", "SetPathForDocument"}
# What an entry must do somewhere, by key of an answer.
FAULTS_OF_EACH_ENTRY = {"throw": {"cpp", "foreign"}, "result": {-(2**31), 2**31 - 1, -1}}


def scenario_files(folder: pathlib.Path) -> list[pathlib.Path]:
    return sorted(path for path in folder.glob("*.json") if path != scenario_schema.SCHEMA)


def texts_in(value):
    """All texts of a scenario, keys not among them."""
    if isinstance(value, str):
        yield value
    elif isinstance(value, dict):
        for member in value.values():
            yield from texts_in(member)
    elif isinstance(value, list):
        for member in value:
            yield from texts_in(member)


def members_named(value, name: str):
    if isinstance(value, dict):
        for key, member in value.items():
            if key == name:
                yield member
            yield from members_named(member, name)
    elif isinstance(value, list):
        for member in value:
            yield from members_named(member, name)


def check_file(path: pathlib.Path, scenario: dict):
    named = scenario.get("$schema", "")
    if (path.parent / named).resolve() != scenario_schema.SCHEMA:
        yield f"{path}: \"$schema\" is {named!r} and not the way to {scenario_schema.SCHEMA.name}"
    fault = scenario_schema.fault_of(scenario)
    if fault:
        yield f"{path}: {fault}"


def check_same_keys(what: str, of_schema, of_reader):
    for key in sorted(set(of_reader) - set(of_schema)):
        yield f"{what}: the reader knows {key!r}, the schema does not"
    for key in sorted(set(of_schema) - set(of_reader)):
        yield f"{what}: the schema knows {key!r}, the reader does not"


def check_schema_and_reader(known: dict):
    definitions = scenario_schema.load()["$defs"]
    for name in ("verbs", "nested_verbs"):
        verbs = definitions[name]["$defs"]
        yield from check_same_keys(name, verbs, known[name])
        step = definitions["step" if name == "verbs" else "nested_step"]
        yield from check_same_keys(f"\"do\" of {name}", step["properties"]["do"]["enum"], known[name])
        for verb, keys in known[name].items():
            listed = verbs.get(verb, {}).get("propertyNames", {}).get("enum", [])
            yield from check_same_keys(f"verb {verb!r} of {name}", listed, keys)
    for kind, keys in known["objects"].items():
        yield from check_same_keys(kind, definitions.get(kind, {}).get("properties", {}), keys)
    for name in ("function", "bus_function"):
        yield from check_same_keys(name, definitions[name]["enum"], known["functions"][name])
    rules = definitions["expect"]["properties"]["violations"]["propertyNames"]["enum"]
    yield from check_same_keys("rules", rules, known["rules"])


def check_rules_and_faults(known: dict, faults: list[dict]):
    broken = {rule for scenario in faults for member in members_named(scenario, "violations") for rule in member}
    for rule in known["rules"]:
        if rule not in broken:
            yield f"no scenario in {FAULTS.name}/ breaks the rule {rule!r}"
    source = (FAULTY_PLUGINS / "FaultyPlugin.cpp").read_text(encoding="utf-8")
    table = re.findall(r'^    \{"([^"]+)", &\w+\},$', source, re.MULTILINE)
    if len(table) < 10:
        yield f"the table of faults in {FAULTY_PLUGINS.name}/FaultyPlugin.cpp cannot be read"
    used = {text for scenario in faults for text in texts_in(scenario)}
    for fault in table:
        if fault not in used:
            yield f"no scenario in {FAULTS.name}/ commits the fault {fault!r}"


def faults_of_entries(scenario: dict, key: str):
    """Each entry with what its answers have under the key, in all cases."""
    for case in scenario.get("cases", {"": {}}).values():
        values = {f"${{{name}}}": value for name, value in {**scenario.get("values", {}), **case.get("values", {})}.items()}
        for entry, answers in (case.get("answers") or scenario.get("answers") or {}).items():
            for written in (answer[key] for answer in answers if key in answer):
                yield entry, values.get(written, written)


def check_entries(entries: list[str], scenarios: list[dict]):
    for key, wanted in FAULTS_OF_EACH_ENTRY.items():
        found = {fault for scenario in scenarios for fault in faults_of_entries(scenario, key)}
        for entry in sorted(set(entries) - NEVER_CALLED):
            for fault in sorted(wanted - {what for of, what in found if of == entry}):
                yield f"no scenario in {SCENARIOS.name}/ has {entry} answer with {key} {fault!r}"


def check_built_files(folder: pathlib.Path, scenarios: list[dict]):
    used = {text for scenario in scenarios for text in texts_in(scenario)} | {"PluginCoreX64.dll"}
    for path in sorted(folder.iterdir()):
        if path.suffix in (".aip", ".dll", ".exe") and path.name not in NOT_FOR_SCENARIOS | used:
            yield f"no scenario uses {path.name}"


def main() -> int:
    built, *command = sys.argv[1:]
    listed = subprocess.run(command, capture_output=True, check=True)
    known = json.loads(listed.stdout)
    faults = []
    scenarios = {}
    for folder in (SCENARIOS, FAULTS):
        for path in scenario_files(folder):
            scenarios[path] = json.loads(path.read_text(encoding="utf-8"))
            faults += check_file(path, scenarios[path])
        for path in sorted(set(folder.iterdir()) - set(scenario_files(folder)) - {scenario_schema.SCHEMA}):
            faults.append(f"{path}: is no scenario and used by none")
    scenarios[SWEEP_FAULTS] = json.loads(SWEEP_FAULTS.read_text(encoding="utf-8"))
    faults += check_file(SWEEP_FAULTS, scenarios[SWEEP_FAULTS])
    of_host = [scenario for path, scenario in scenarios.items() if path.parent == FAULTS or path == SWEEP_FAULTS]
    faults += check_schema_and_reader(known)
    faults += check_rules_and_faults(known, of_host)
    shipped = [scenario for path, scenario in scenarios.items() if path.parent == SCENARIOS]
    faults += check_entries(known["functions"]["function"], shipped)
    faults += check_built_files(pathlib.Path(built), list(scenarios.values()))
    print("\n".join(faults) or f"All {len(scenarios)} scenario files are in order.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
