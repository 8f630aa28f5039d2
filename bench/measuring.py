"""Runs the programs that measure, and knows what one has written."""

import dataclasses
import json
import os
import pathlib
import subprocess
import tempfile

PREFIX = "bench_"


@dataclasses.dataclass(frozen=True)
class Entry:
    subject: str
    comparison: str
    name: str
    base: str
    nanoseconds: float
    ratio: float  # of the medians, this one by the base's
    low: float  # between these two lies the middle half of the ratios of single rounds
    high: float
    heap_calls: int

    @property
    def key(self) -> tuple[str, str, str]:
        return self.subject, self.comparison, self.name

    @property
    def is_base(self) -> bool:
        return self.name == self.base


def subjects(built: pathlib.Path) -> list[str]:
    return sorted(program.stem.removeprefix(PREFIX) for program in (built / "bench").glob(f"{PREFIX}*.exe"))


def read(subject: str, record: list[dict]) -> list[Entry]:
    return [Entry(subject, comparison["name"], entry["name"], comparison["base"], entry["nanoseconds"], entry["ratio"],
                  entry["low"], entry["high"], entry["heap_calls"])
            for comparison in record for entry in comparison["entries"]]


def measure(command: list[str], built: pathlib.Path, subject: str, arguments: list[str]) -> list[Entry]:
    """Raises CalledProcessError when the program does not come to its end."""
    with tempfile.TemporaryDirectory(dir=built) as folder:
        # A relative path: the program is one of Windows.
        record = pathlib.Path(folder) / "record.json"
        subprocess.run([*command, built / "bench" / f"{PREFIX}{subject}.exe", "--json", os.path.relpath(record), *arguments],
                       check=True)
        return read(subject, json.loads(record.read_text(encoding="utf-8")))
