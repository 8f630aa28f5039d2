#!/usr/bin/env python3
"""Each line of the log that docs/troubleshooting.md quotes is one that the plug-in writes, word for word but for what its
format leaves open. And the numbers in it are those of the sources."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).parents[2]
PAGE = (ROOT / "docs" / "troubleshooting.md").read_text(encoding="utf-8")
SOURCES = "\n".join(path.read_text(encoding="utf-8") for path in sorted((ROOT / "src").rglob("*.cpp")))
LITERAL = r'"(?:\\.|[^"\\])*"'
# What a conversion of a format becomes in a line.
CONVERSIONS = {"%s": ".*", "%d": r"-?\d+", "%u": r"\d+", "%03u": r"\d{3}", "%08x": "[0-9a-f]{8}", "%.*s": ".*"}


def text_of(literals: str) -> str:
    """Of literals side by side, as the compiler joins them."""
    joined = "".join(each[1:-1] for each in re.findall(LITERAL, literals))
    return re.sub(r"\\(.)", lambda found: {"n": "\n"}.get(found[1], found[1]), joined)


def formats() -> list[str]:
    """Of all calls that log; a call that chooses between two texts has two."""
    found = []
    for begun in re.finditer(r"LogMessage\(\s*\w+,\s*", SOURCES):
        rest = SOURCES[begun.end():]
        if chosen := re.match(rf"\w+ \? ({LITERAL}) : ({LITERAL})", rest):
            found += [text_of(each) for each in chosen.groups()]
        elif literals := re.match(rf"(?:{LITERAL}\s*)+", rest):
            found.append(text_of(literals[0]))
    # The wrappers of handlers write the lines of theirs.
    headers = "\n".join(path.read_text(encoding="utf-8") for path in sorted((ROOT / "src").rglob("*.h")))
    return found + [text_of(each) for each in re.findall(rf"LogMessage\(\s*\w+,\s*((?:{LITERAL}\s*)+)", headers)]


def pattern_of(text: str) -> re.Pattern:
    parts = re.split(r"(%(?:\.\*)?(?:0\d)?[sdux])", text)
    return re.compile("".join(CONVERSIONS.get(part, re.escape(part)) for part in parts))


def names_in(line: str) -> list[str]:
    """Of operations and libraries, which a format may leave open, so that they are looked for by themselves."""
    return [name for name in re.findall(r"\b(?:Handle|Add|Remove|PCI|Startup|Suppress|Get)\w*[a-z]\w*", line)
            if not name.startswith("GetAPI")]


def main() -> int:
    known = [pattern_of(text) for text in formats()]
    faults = [] if len(known) > 90 else [f"{len(known)} formats were found in the sources"]
    # A format that leaves everything open would take any line.
    known = [each for each in known if not re.fullmatch(r"[.*\s]*", each.pattern)]
    lines = [line for block in re.findall(r"^```log\n(.*?)^```$", PAGE, re.MULTILINE | re.DOTALL)
             for line in block.splitlines()]
    if len(lines) < 15:
        faults.append(f"the page quotes {len(lines)} lines")
    for line in lines:
        if not any(each.fullmatch(line) for each in known):
            faults.append(f"nobody writes: {line}")
        faults += [f"the sources do not know {name}, as in: {line}" for name in names_in(line) if name not in SOURCES]
    codes = dict(re.findall(r"constexpr std::int32_t (k\w+) = (0x[0-9a-fA-F]+);",
                            (ROOT / "src" / "support" / "ResultCodes.h").read_text(encoding="utf-8")))
    for name, number in (("kLookupNotFound", "returned 352321536"), ("kDuplicateMenuItem", "returning 150994944")):
        if name not in codes or str(int(codes[name], 16)) not in number or number not in PAGE:
            faults.append(f"{name} is {codes.get(name)}, and the page says {number}")
    print("\n".join(faults) or f"All {len(lines)} lines are those of the log.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
