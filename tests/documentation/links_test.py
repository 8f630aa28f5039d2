#!/usr/bin/env python3
"""Links between the pages of the documentation lead to files and headings that exist.

usage: links_test.py [FOLDER]     the folder of the project, or that of an installed kit
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(sys.argv[1] if sys.argv[1:] else pathlib.Path(__file__).parents[2])
PAGES = [*ROOT.glob("README.md"), *ROOT.glob("CONTRIBUTING.md"), *sorted((ROOT / "docs").glob("*.md"))]
LINK = re.compile(r"\[[^\]]*\]\(([^)\s]+)\)")


def prose_of(page: pathlib.Path) -> str:
    return re.sub(r"^```.*?^```$", "", page.read_text(encoding="utf-8"), flags=re.MULTILINE | re.DOTALL)


def anchors_of(page: pathlib.Path) -> set[str]:
    headings = re.findall(r"^#+ (.*)$", prose_of(page), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).strip().replace(" ", "-") for heading in headings}


def fault_of(page: pathlib.Path, link: str) -> str:
    if re.match(r"\w+:", link):
        return ""
    path, _, anchor = link.partition("#")
    target = (page.parent / path).resolve() if path else page
    if not target.exists():
        return f"{page.name}: {link}: there is no such file"
    if anchor and anchor not in anchors_of(target):
        return f"{page.name}: {link}: there is no such heading"
    return ""


def main() -> int:
    links = [(page, link) for page in PAGES for link in LINK.findall(prose_of(page))]
    faults = list(filter(None, (fault_of(page, link) for page, link in links)))
    if not links:
        faults.append("there is no link in any page")
    print("\n".join(faults) or f"All {len(links)} links lead somewhere.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
