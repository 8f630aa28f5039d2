#!/usr/bin/env python3
"""The examples of docs/settings.md do what the page says: its files and answers are played in the simulated host.

The command that plays a scenario follows on the command line.
"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile

PAGE = pathlib.Path(__file__).parents[2] / "docs" / "settings.md"
WORD_FILE = "DialogSuppression.tmp"
LAUNCH_INFO = "com.quorvel.Lumet-LaunchInfo.conf"
# What the page has in place of the folder of the run.
FOLDER_ON_PAGE = "C:\\Quorvel\\"
EXPECTED = {"dismissed": "clicked OK", "left alone": "untouched"}
FONT = "Futura-Book"


def opened(document: str, *more) -> dict:
    path = f"${{work}}\\{document}.ai"
    return {"do": "open", "document": document,
            "calls": ["PluginIsEnabled", {"HandleOpenExistingDocument": {"path": path}}, *more]}


def dialog(title: str, outcome: str) -> dict:
    return {"do": "dialog", "title": title, "expect": EXPECTED[outcome]}


def word_files(page: str) -> dict[str, dict]:
    """Each example of a word file, with the table of titles that follows it."""
    cases = {}
    examples = re.findall(rf"^```text {re.escape(WORD_FILE)}\n(.*?)^```\n\n\|[^\n]*\n\|[-|]*\n((?:\|[^\n]*\n)+)", page,
                          re.MULTILINE | re.DOTALL)
    for number, (text, table) in enumerate(examples, start=1):
        rows = re.findall(r"^\| `(.*)` \| (dismissed|left alone) \|$", table, re.MULTILINE)
        if len(rows) != table.count("\n"):
            sys.exit(f"{PAGE.name}: a table of titles cannot be read:\n{table}")
        cases[f"words-{number}"] = {
            "files": [{"path": f"App/{WORD_FILE}", "text": text}],
            "copies": [{"copy": "PluginCoreX64.dll", "to": "App/PluginCoreX64.dll"}],
            "launch_info": {"local": "lumet.path=${work}\\App\\Lumet.exe\n"},
            "begin": {"calls": [{"usual": "start-up with a word file"}]},
            "end": [{"do": "application_shutdown", "calls": [{"usual": "shut-down with a word file"}]},
                    {"do": "shutdown", "calls": []}, {"do": "unload", "calls": []}],
            "steps": [opened("A"), *(dialog(*row) for row in rows)]}
    return cases


def built_in_words(page: str) -> dict[str, dict]:
    words = re.search(r"The built-in words are ((?:`[^`]*`|,|\s|and)+)\.", page)
    steps = [dialog(f"({word})", "dismissed") for word in re.findall(r"`([^`]*)`", words[1])] if words else []
    return {"built-in-words": {"steps": [opened("A"), *steps, dialog("Schriftart", "left alone")]}} if steps else {}


def settings(page: str) -> dict[str, dict]:
    """Each row of the table of answers: a document without fonts to choose, and one with."""
    cases = {}
    begin_of_broken = page.index("Answers that break the contract")
    for number, row in enumerate(re.finditer(r"^\| `(.*)` \| (dismissed|left alone) \| (shown|not shown) \|$", page,
                                             re.MULTILINE), start=1):
        answer, hosts, plugincores = row.groups()
        asked = [] if plugincores == "not shown" else [
            {"InvokeResolveDialog": {"text": FONT}}, {"ActivateChosenFonts": {"path": "${work}\\B.ai", "text": FONT}}]
        cases[f"settings-{number}"] = {
            "answers": {"GetSettings": [{"text": answer}], "HandleOpenExistingDocument": [{}, {"text": FONT}]},
            "steps": [opened("A"), dialog("Missing Fonts", hosts), opened("B", "GetSettings", *asked)],
            "expect": {"violations": {"contract": 1} if row.start() > begin_of_broken else {}}}
    return cases


def launch_info(page: str) -> dict[str, dict]:
    found = re.search(rf"^```text {re.escape(LAUNCH_INFO)}\n(.*?)^```\n\nloads `(.*?)`, or, if there is no such file, `(.*?)`\.",
                      page, re.MULTILINE | re.DOTALL)
    cases = {}
    for number, place in enumerate(found.groups()[1:] if found else [], start=1):
        library = place.removeprefix(FOLDER_ON_PAGE).replace("\\", "/")
        cases[f"launch-info-{number}"] = {
            "launch_info": {"local": found[1].replace(FOLDER_ON_PAGE, "${work}\\")},
            "copies": [{"copy": "PluginCoreX64.dll", "to": library}],
            "steps": [], "expect": {"library": library}}
    return cases


def main() -> int:
    page = PAGE.read_text(encoding="utf-8")
    cases = {}
    for read, least in ((word_files, 3), (built_in_words, 1), (settings, 9), (launch_info, 2)):
        found = read(page)
        if len(found) < least:
            print(f"{PAGE.name}: {read.__name__}: {len(found)} examples, expected {least} or more")
            return 1
        cases |= found
    scenario = {"title": f"The examples of {PAGE.name}", "host": {"documents": {"A": {}, "B": {}}}, "cases": cases}
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "settings-page.json"
        path.write_text(json.dumps(scenario), encoding="utf-8")
        run = subprocess.run([*sys.argv[1:], str(path), "--brief"], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                             check=False, encoding="utf-8")
    if run.returncode != 0 or "Passed: everything came as expected" not in run.stdout:
        print(run.stdout)
        return 1
    print(f"All {len(cases)} examples of {PAGE.name} do what it says.")
    return 0


if __name__ == "__main__":
    sys.exit(main())
