#!/usr/bin/env python3
"""The tables of docs/host-interface.md are those of the sources: suites with versions and slots, notifications, messages,
the property list, and what else is registered."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).parents[2]
PAGE = (ROOT / "docs" / "host-interface.md").read_text(encoding="utf-8")


def source(name: str) -> str:
    return (ROOT / "src" / name).read_text(encoding="utf-8")


HEADERS = "\n".join(path.read_text(encoding="utf-8") for path in sorted((ROOT / "src" / "host").glob("*.h")))
SOURCES = "\n".join(path.read_text(encoding="utf-8") for path in sorted((ROOT / "src").rglob("*.cpp")))


def table_below(heading: str, number: int = 1) -> list[tuple[str, ...]]:
    """The rows of a section's first (or later) table, without the marks of code."""
    section = re.search(rf"^## {re.escape(heading)}\n(.*?)(?=^## |\Z)", PAGE, re.MULTILINE | re.DOTALL)[1]
    tables = re.findall(r"^\|[^\n]*\|\n\|[-|]+\|\n((?:\|[^\n]*\|\n)+)", section, re.MULTILINE)
    return [tuple(cell.strip().strip("`") for cell in row[1:-1].split("|")) for row in tables[number - 1].splitlines()]


def slots_of(suite: str) -> str:
    """As the page writes them: the declared ones with their numbers."""
    body = re.sub(r"//[^\n]*", "", re.search(rf"^struct {suite} \{{\n(.*?)^\}};", HEADERS, re.MULTILINE | re.DOTALL)[1])
    slot, told = 0, []
    for unused, name in re.findall(r"void\* unused\d+\[(\d+)\];|\(\*(\w+)\)\(", body):
        if name:
            told.append(f"{slot} `{name}`")
        slot += int(unused) if unused else 1
    return ", ".join(told)


def suites() -> tuple[set, dict]:
    """The rows of the table of suites, and the text engine's suites that are never called, by version."""
    rows, uncalled = set(), {}
    held = [(f"ATE {word} Suite", version, kind.removeprefix("ATE::"))
            for word, version, kind in re.findall(r"\bSUITE\((\w+), (\d+), ([\w:]+)\)", HEADERS)]
    held += re.findall(r'\bSUITE\("([^"]+)", (\d+), (\w+), \w+\)', HEADERS)
    if f"size() == {len(held)}" not in source("frame/base/Suites.cpp") or f"\n{len(held)} of them are held" not in PAGE:
        sys.exit(f"{len(held)} suites were read, which is not the number that the source or the page says")
    momentary = {name: (constant, version) for constant, name, version in re.findall(
        r'const char\* k(\w+) = "([^"]+)";\nconstexpr std::int32_t k\1Version = (\d+);', HEADERS)}
    for name, version, kind in held:
        if kind == "OpaqueSuite" and name.startswith("ATE"):
            uncalled.setdefault(version, []).append(name.split()[1])
        else:
            how = "both" if name in momentary else "yes"
            rows.add((name, version, how, "–" if kind == "OpaqueSuite" else slots_of(kind)))
    for name, (constant, version) in momentary.items():
        if f"k{constant}, k{constant}Version" not in SOURCES:
            sys.exit(f"{name} is declared, and nobody acquires it")
        if name not in {each for each, _, _ in held}:
            rows.add((name, version, "no", slots_of(constant)))
    return rows, {version: ", ".join(words) for version, words in uncalled.items()}


def notifications() -> list[tuple[str, ...]]:
    text = source("frame/Notifiers.cpp")
    handlers = dict(re.findall(r"Route\{&PluginGlobals::(\w+), (\w+)\}", text))
    return [(name, kind, handlers.get(handle, "–")) for name, kind, handle in
            re.findall(r'Registration\{"([^"]+)", "([^"]+)", &PluginGlobals::(\w+),', text)]


def messages() -> set[tuple[str, str]]:
    """Callers and selectors; a selector's constant stands below that of its caller."""
    caller, pairs = "", set()
    for constant, text in re.findall(r'constexpr const char\* k(\w+) = "([^"]+)";', source("host/Messages.h")):
        if "Selector" in constant:
            pairs.add((caller, text))
        else:
            caller = text
    return pairs


def properties() -> list[tuple[str, str]]:
    text = source("resources/plugin.rc.in")
    codes = {name: bytes.fromhex(number).decode() for name, number in re.findall(r"#define (\w+) 0x([0-9A-F]{8})L", text)}
    rows = []
    for name, values in re.findall(r"ADBE, (PROPERTY_\w+), 0L, \d+L, ([^\n]*)", text):
        value = values.rstrip(",").removesuffix("L").strip('"').replace("\\0", "")
        if name == "PROPERTY_EXPORTS":
            value = "{}`, version {}".format(*re.search(r'"(\w+)", 0L, (\d)L', values).groups())
        rows.append((codes[name], codes.get(value, value)))
    return rows


def registered() -> list[str]:
    """Texts that the section about the rest must hold, as code."""
    formats, timer = source("documents/FileFormatHook.cpp"), source("frame/IdleTimer.cpp")
    texts = re.findall(r'FourCharCode\("(.{4})"\)', formats) + re.findall(r'"(ai,[\w,]+)"', formats)
    texts += re.findall(r'kFormatName = "(\w+)"', formats) + re.findall(r'AddTimer\([^"]*"([^"]+)"', timer)
    return texts + re.findall(r'kTopLevelGroup = "([^"]+)"', source("menus/MenuTree.cpp"))


def differences(what: str, on_page, in_sources):
    for each in sorted(set(on_page) - set(in_sources)):
        yield f"{what}: the page has {each}, the sources do not"
    for each in sorted(set(in_sources) - set(on_page)):
        yield f"{what}: the sources have {each}, the page does not"


def main() -> int:
    rows, uncalled = suites()
    # Cells with several words of code keep their inner marks.
    told = [(name, version, how, "–" if slots == "–" else slots + "`") for name, version, how, slots in table_below("Suites")]
    faults = [*differences("suites", told, rows),
              *differences("uncalled suites", table_below("Suites", 2), uncalled.items()),
              *differences("messages", [row[:2] for row in table_below("Messages")], messages()),
              *differences("the property list", [row[:2] for row in table_below("The file")], properties())]
    if table_below("Notifications") != notifications():
        faults.append(f"notifications: the sources register {notifications()}")
    section = PAGE.partition("## What else is registered")[2].partition("\n## ")[0]
    faults += [f"what else is registered: `{each}` is missing" for each in registered() if f"`{each}`" not in section]
    priority = re.search(r"kPriority = (\d+)", source("documents/FileFormatHook.cpp"))[1]
    if f"priority {priority} " not in section:
        faults.append(f"the priority of the format is {priority}")
    if re.findall(r"^    (\w+)$", source("resources/plugin.def"), re.MULTILINE) != ["PluginMain"]:
        faults.append("something else than PluginMain is exported")
    print("\n".join(faults) or f"{len(rows)} suites and all the rest are as the sources have them.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
