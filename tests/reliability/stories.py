"""The stories in which the PluginCore does what it must not."""

import json
import pathlib

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDER = pathlib.Path("devkit") / "scenarios"
# Those in which it throws are known by their text. A pattern may find none.
NAMED = ["dialog-from-within-the-plugincore", "entry-missing", "extreme-*", "incompatible*", "location-nowhere",
         "menu-update-incomplete", "menu-update-title-of-another-kind", "menu-update-unreadable",
         "message-from-within-the-plugincore", "replies-that-fill-the-buffer", "settings-broken", "settings-refused"]


def throws(scenario, of_plugincore: bool = False) -> bool:
    """Whether an answer of an entry is an exception; those of the messaging library stand elsewhere."""
    if isinstance(scenario, list):
        return any(throws(member, of_plugincore) for member in scenario)
    if isinstance(scenario, dict):
        return of_plugincore and "throw" in scenario or any(throws(member, of_plugincore or name == "answers")
                                                            for name, member in scenario.items())
    return False


def stories_of_a_faulty_plugincore(root: pathlib.Path) -> list[str]:
    """Relative to the tree."""
    files = [path for path in (root / FOLDER).glob("*.json") if not path.name.endswith(".schema.json")]
    throwing = {path for path in files if throws(json.loads(path.read_text(encoding="utf-8")))}
    named = {path for name in NAMED for path in (root / FOLDER).glob(f"{name}.json")}
    lost = [name for name in NAMED if "*" not in name and not (root / FOLDER / f"{name}.json").exists()]
    if lost:
        raise RuntimeError(f"there is no story '{lost[0]}' in {FOLDER}")
    return sorted(path.relative_to(root).as_posix() for path in throwing | named)


PLUGINCORE_STORIES = stories_of_a_faulty_plugincore(ROOT)
