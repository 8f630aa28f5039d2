"""Which mutants are tried, and what is reported of them."""

import dataclasses
import pathlib
import random
from collections.abc import Callable, Iterable, Iterator

from mutants import Mutant
from verdict import Fate


@dataclasses.dataclass(frozen=True)
class Outcome:
    mutant: Mutant
    fate: Fate
    by: str = ""  # the program that killed it


def in_random_order(all_mutants: list[Mutant], seed: int) -> list[Mutant]:
    return random.Random(seed).sample(all_mutants, len(all_mutants))


def try_in_order(order: list[Mutant], count: int, play: Callable[[list[Mutant]], Iterable[Outcome]]) -> Iterator[Outcome]:
    """Tries the first `count` of them that compile. Yields those that do not as well."""
    tried = begun = 0
    while tried < count and begun < len(order):
        batch = order[begun:begun + count - tried]
        begun += len(batch)
        # Those of one file after each other: a reader of the output finds them.
        for outcome in play(sorted(batch, key=lambda mutant: (mutant.file, mutant.line, mutant.nth))):
            tried += outcome.fate != Fate.NOT_COMPILED
            yield outcome


def controls(all_mutants: list[Mutant]) -> list[Mutant]:
    """For each folder a change that changes nothing: who kills that one would kill every mutant."""
    first = {pathlib.PurePosixPath(mutant.file).parent: mutant for mutant in reversed(all_mutants)}
    return [dataclasses.replace(mutant, after=mutant.before) for mutant in first.values()]


def report(outcomes: list[Outcome], reasons: dict[str, str], seed: int, of: int) -> dict:
    tried = [outcome for outcome in outcomes if outcome.fate != Fate.NOT_COMPILED]
    killed = sum(outcome.fate.is_killed for outcome in tried)
    return {
        "seed": seed,
        "mutants": of,
        "sampled": len(tried),
        "not_compiled": len(outcomes) - len(tried),
        "killed": killed,
        "percent_killed": round(100 * killed / len(tried), 1) if tried else 0.0,
        "killed_by_time_out": [told(outcome.mutant) for outcome in tried if outcome.fate == Fate.KILLED_BY_TIME_OUT],
        "survivors": [told(outcome.mutant) | {"reason": reasons.get(outcome.mutant.key, "")}
                      for outcome in tried if outcome.fate == Fate.SURVIVED],
    }


def told(mutant: Mutant) -> dict[str, str]:
    return {"at": f"{mutant.file}:{mutant.line}", "mutant": mutant.key}
