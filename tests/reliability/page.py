"""The parts of docs/reliability.md that are written from figures."""

import json
import pathlib

import measures

REASONS = pathlib.Path(__file__).resolve().parents[1] / "mutation" / "survivors.json"


def begin_of(name: str) -> str:
    return f"<!-- from figures: {name} -->\n"


END = "<!-- end -->"


def not_measured(what: str) -> str:
    return f"| {what} | | not measured yet | |"


def table(figures: dict[str, dict]) -> str:
    lines = ["| what | how much | outcome | with `src/` |", "|---|---|---|---|"]
    for measure in measures.MEASURES:
        if measure.name not in figures:
            lines.append(not_measured(measure.name))
            continue
        record = figures[measure.name]
        lines += [f"| {row.what} | {row.tried} | {row.outcome} | {record['source']} |" if row.tried
                  else not_measured(row.what) for row in measure.rows(record["figures"])]
    return "\n".join(lines) + "\n"


def survivors(figures: dict[str, dict]) -> str:
    if "mutation" not in figures:
        return "Not measured yet.\n"
    rows = [f"| `{survivor['mutant'].split(':', maxsplit=1)[0]}` | `{escaped(survivor['mutant'].split(': ', maxsplit=1)[1])}` "
            f"| {survivor['reason'] or 'none is known'} |" for survivor in figures["mutation"]["figures"]["survivors"]]
    return "\n".join(["| file | line, and what was changed in it | why no test can notice it |", "|---|---|---|", *rows]) + "\n"


def escaped(text: str) -> str:
    return text.replace("|", "\\|")


PARTS = {"table": table, "survivors": survivors}


def written_into(page: str, figures: dict[str, dict]) -> str:
    """The page with its parts as the figures have them. Throws ValueError when the page lacks one."""
    for name, text_of in PARTS.items():
        before, found, rest = page.partition(begin_of(name))
        _, closed, after = rest.partition(END)
        if not found or not closed:
            raise ValueError(f"the page has no part '{begin_of(name).strip()}' that ends with '{END}'")
        page = before + found + text_of(figures) + closed + after
    return page


def all_figures(folder: pathlib.Path) -> dict[str, dict]:
    """Of the measures that were taken at least once."""
    figures = {measure.name: measures.read_figures(folder, measure) for measure in measures.MEASURES
               if measures.figures_file(folder, measure).exists()}
    if "mutation" in figures:
        add_reasons(figures["mutation"]["figures"]["survivors"], json.loads(REASONS.read_text(encoding="utf-8")))
    return figures


def add_reasons(found: list[dict], reasons: dict[str, str]):
    """Reasons are no figures: those of now count, also for survivors of an earlier run."""
    for survivor in found:
        survivor["reason"] = reasons.get(survivor["mutant"], "")
