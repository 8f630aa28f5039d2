"""The state of the tree that is measured, by names that only what is committed has."""

import hashlib
import pathlib
import subprocess

# On which no figure depends: the pages, and the figures.
NOT_MEASURED = ["*.md", "tests/reliability/figures"]
MOST_NAMED = 5
# What only the diagnostic plug-in holds.
DIAGNOSTIC = "src/diagnostic"


def git(root: pathlib.Path, *arguments: str) -> str:
    ended = subprocess.run(["git", *arguments], cwd=root, capture_output=True, text=True, check=False)
    if ended.returncode != 0:
        raise RuntimeError(f"git {arguments[0]} ended with {ended.returncode}: {ended.stderr.strip()}")
    return ended.stdout.strip()


def source_of(root: pathlib.Path, commit: str, *without: str) -> str:
    """A checksum of src/ without these of its folders: the same as long as nothing else in it changes."""
    entries = git(root, "ls-tree", commit, "src/").splitlines()
    counted = [entry for entry in entries if entry.partition("\t")[2] not in without]
    return hashlib.sha256("\n".join(counted).encode()).hexdigest()[:10]


def refuse_changes(root: pathlib.Path, commit: str):
    """Throws RuntimeError when what is measured, or measures, is not as it was committed there."""
    paths = ["--", ".", *(f":(exclude){path}" for path in NOT_MEASURED)]
    changed = git(root, "diff", "--name-only", commit, *paths).splitlines()
    changed += git(root, "ls-files", "--others", "--exclude-standard", *paths).splitlines()
    if changed:
        named = ", ".join(changed[:MOST_NAMED]) + (" and more" if len(changed) > MOST_NAMED else "")
        raise RuntimeError(f"{named}: not as in commit {commit}, by which the figures would be named; commit it, or take it "
                           "away")


def commit_of(root: pathlib.Path) -> str:
    """That the whole tree is at, and so what measures as well. Throws RuntimeError as refuse_changes() does."""
    commit = git(root, "rev-parse", "--short=10", "HEAD")
    refuse_changes(root, commit)
    return commit
