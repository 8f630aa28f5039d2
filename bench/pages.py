"""Puts a table into a page, between two marks that no reader of the page sees."""

import pathlib


def with_table(page: str, script: str, table: str) -> str:
    begin, end = f"<!-- {script} -->", f"<!-- end of {script} -->"
    before, found_begin, rest = page.partition(begin)
    _, found_end, after = rest.partition(end)
    if not found_begin or not found_end:
        raise ValueError(f"the page has no place for the table: {begin} ... {end}")
    return f"{before}{begin}\n{table}\n{end}{after}"


def put(page: pathlib.Path, script: str, table: str) -> None:
    page.write_text(with_table(page.read_text(encoding="utf-8"), script, table), encoding="utf-8")
