"""What CMake has configured in a folder, as its file API tells it."""

import dataclasses
import json
import re
from pathlib import Path

QUERY = Path(".cmake") / "api" / "v1" / "query" / "codemodel-v2"


@dataclasses.dataclass(frozen=True)
class Target:
    kind: str
    sources: frozenset[str]
    definitions: frozenset[str]
    includes: frozenset[str]
    compiling: frozenset[tuple[str, str]]  # language, option
    linking: frozenset[str]


def ask(build: Path) -> None:
    """Before CMake configures."""
    query = build / QUERY
    query.parent.mkdir(parents=True)
    query.touch()


def words(fragment: str) -> list[str]:
    return re.findall(r'(?:[^\s"]|"[^"]*")+', fragment)


def read_target(told: dict, place_of) -> Target:
    groups = told.get("compileGroups", [])
    return Target(
        kind=told["type"],
        sources=frozenset(place_of(each["path"]) for each in told.get("sources", [])),
        definitions=frozenset(each["define"] for group in groups for each in group.get("defines", [])),
        includes=frozenset(place_of(each["path"]) for group in groups for each in group.get("includes", [])),
        compiling=frozenset((group["language"], word) for group in groups
                            for each in group.get("compileCommandFragments", []) for word in words(each["fragment"])),
        linking=frozenset(word for each in told.get("link", {}).get("commandFragments", []) if each["role"] == "flags"
                          for word in words(each["fragment"])))


def targets_of(source: Path, build: Path) -> dict[str, Target]:
    def place_of(path: str) -> str:
        """Paths of both configurations compare equal."""
        whole = (source / path).as_posix()
        for folder, name in ((build, "<build>"), (source, "")):
            if whole.startswith(folder.as_posix() + "/"):
                return name + whole[len(folder.as_posix()):].removeprefix("" if name else "/")
        return whole

    replies = build / ".cmake" / "api" / "v1" / "reply"
    model = json.loads(next(replies.glob("codemodel-v2-*.json")).read_text(encoding="utf-8"))
    (configuration,) = model["configurations"]
    return {each["name"]: read_target(json.loads((replies / each["jsonFile"]).read_text(encoding="utf-8")), place_of)
            for each in configuration["targets"]}
