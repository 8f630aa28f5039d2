"""Tables that are read as they are, and that are Markdown as well."""

from collections.abc import Sequence

from measuring import Entry


def ratio(value: float) -> str:
    """With three digits that mean something."""
    if value >= 99.95:
        return f"{value:.0f}"
    if value >= 9.995:
        return f"{value:.1f}"
    return f"{value:.2f}"


def table(head: Sequence[str], rows: Sequence[Sequence[str]]) -> str:
    """The first two columns are words, the others numbers."""
    widths = [max(len(row[i]) for row in [head, *rows]) for i in range(len(head))]
    rule = ["-" * width if i < 2 else "-" * (width - 1) + ":" for i, width in enumerate(widths)]

    def line(cells: Sequence[str]) -> str:
        padded = [cell.ljust(width) if i < 2 else cell.rjust(width) for i, (cell, width) in enumerate(zip(cells, widths))]
        return f"| {' | '.join(padded)} |"

    return "\n".join([line(head), line(rule), *map(line, rows)])


def of_run(entries: Sequence[Entry]) -> str:
    """What one run has measured. The name of a comparison stands in its first row."""
    rows = []
    told = None
    for entry in entries:
        comparison = (entry.subject, entry.comparison)
        rows.append([f"{entry.subject}: {entry.comparison}" if comparison != told else "", entry.name,
                     "1" if entry.is_base else ratio(entry.ratio),
                     "" if entry.is_base else f"{ratio(entry.low)} to {ratio(entry.high)}", f"{entry.heap_calls:,}"])
        told = comparison
    return table(["what", "by", "time, × the base", "middle half", "heap calls"], rows)


def of_change(before: Sequence[Entry], after: Sequence[Entry]) -> str:
    """Two commits. What only one of them has is named as well."""
    sides = [{entry.key: entry for entry in side} for side in (before, after)]
    keys = list(dict.fromkeys([entry.key for entry in after] + [entry.key for entry in before]))
    rows = []
    told = None
    for key in keys:
        old, new = (side.get(key) for side in sides)
        comparison = key[:2]
        rows.append([": ".join(comparison) if comparison != told else "", key[2],
                     ratio(old.ratio) if old else "", ratio(new.ratio) if new else "",
                     f"{100 * (new.nanoseconds / old.nanoseconds - 1):+.0f} %" if old and new else "",
                     f"{old.heap_calls:,}" if old else "", f"{new.heap_calls:,}" if new else ""])
        told = comparison
    return table(["what", "by", "before, × the base", "after, × the base", "change of the median", "heap calls before",
                  "after"], rows)
