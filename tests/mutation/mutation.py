#!/usr/bin/env python3
"""Samples mutants of the plug-in's logic and tells which of them the unit tests kill.

Called by scripts/mutation, which has built the tests. Each mutant is compiled by itself and linked into the test programs
of its folder, in a copy of that folder's archive; no file of the tree changes.
"""

import argparse
import collections
import concurrent.futures
import dataclasses
import functools
import json
import os
import pathlib
import random
import re
import shlex
import shutil
import subprocess
import sys
import threading

import mutants

# Where the logic is; src/host only wraps the host's operations, src/resources holds no code.
FOLDERS = ["src/dialogs", "src/documents", "src/frame", "src/json", "src/menus", "src/panel", "src/plugincore",
           "src/support"]
# Looked at after the folder's own program, which kills nearly all.
PROGRAM_OF_ALL = "frame_tests"
# Takes as long as all others together, and finds nothing that they do not.
LEFT_OUT = "*EveryOrder*"
# No compiler of this build takes it.
OF_ANOTHER_COMPILER = "Msvc.cpp"
# Of the folders beside a test program, those that it reads.
FOLDERS_BESIDE = ["libraries"]
# What is tried in a library that a test program loads, instead of in the program itself.
LIBRARIES = {"src/support/StackGuardGnu.cpp": "guarded", "src/support/ThreadVariablesGnu.cpp": "thread_variables"}
SECONDS = 120
AR = "x86_64-w64-mingw32-ar"
SURVIVORS = pathlib.Path(__file__).with_name("survivors.json")


@dataclasses.dataclass
class Outcome:
    mutant: mutants.Mutant
    fate: str  # "killed", "survived" or "not compiled"
    by: str = ""  # the program that killed it


class Build:
    """The commands by which the build folder was built."""

    def __init__(self, root: pathlib.Path, folder: pathlib.Path):
        self.root = root
        self.folder = folder
        compiled = json.loads((folder / "compile_commands.json").read_text(encoding="utf-8"))
        # Some of the plug-in's sources are compiled more than once, for a test in another way.
        self.commands = collections.defaultdict(list)
        for command in compiled:
            file = pathlib.Path(command["file"])
            if file.is_relative_to(root / "src"):
                self.commands[file.relative_to(root).as_posix()].append(command["command"])
        # Where each test program, and each library that one of them loads, lies below the build folder.
        self.binaries = {pathlib.PurePosixPath(path).stem: path for path in
                         re.findall(r"^(tests/\S+\.(?:exe|dll)):", self.ninja("targets", "all"), re.MULTILINE)}

    def ninja(self, *tool: str) -> str:
        return subprocess.run(["ninja", "-t", *tool], cwd=self.folder, capture_output=True, text=True, check=True).stdout

    @functools.cache
    def linking(self, binary: str) -> str:
        command = self.ninja("commands", "-s", self.binaries[binary]).strip().splitlines()[-1]
        return command.removeprefix(": && ").removesuffix(" && :")

    def compiling(self, file: str, binary: str) -> str:
        """How the object was made that is linked into the binary, by itself or in an archive."""
        linked = self.linking(binary).split()
        commands = self.commands[file]
        return next((command for command in commands if command.split()[command.split().index("-o") + 1] in linked),
                    commands[0])

    @functools.cache
    def archives(self, file: str) -> list[str]:
        """The archives of the file's folder that hold its object."""
        path = pathlib.PurePosixPath(file)
        found = []
        for archive in sorted((self.folder / path.parent).glob("lib*.a")):
            members = subprocess.run([AR, "t", str(archive)], capture_output=True, text=True, check=True).stdout.split()
            if f"{path.name}.obj" in members:
                found.append(archive.relative_to(self.folder).as_posix())
        return found

    def is_part_of(self, file: str, binary: str) -> bool:
        command = self.linking(binary)
        return bool(re.search(as_source(file), command)) or any(re.search(as_archive(archive), command)
                                                                for archive in self.archives(file))

    def programs(self, file: str) -> list[str]:
        """The test programs that can kill a mutant of this file, the likeliest first."""
        own = f"{file.split('/')[1]}_tests"
        if file in LIBRARIES:
            return [own]
        found = [program for program in dict.fromkeys([own, PROGRAM_OF_ALL]) if self.is_part_of(file, program)]
        if not found:
            raise RuntimeError(f"{file} is in no test program: nothing could kill its mutants")
        return found


def as_source(file: str) -> str:
    """How a command line names the object of a source of src/ that a test compiles itself."""
    return rf"\S*__/{re.escape(file)}\.obj"


def as_archive(archive: str) -> str:
    return rf"(?<=\s){re.escape(archive)}(?=\s|$)"


def link_all(source: pathlib.Path, target: pathlib.Path):
    """Makes the files of a folder visible in another: test programs read what lies beside them."""
    target.mkdir(parents=True, exist_ok=True)
    for file in source.iterdir():
        link = target / file.name
        if file.is_dir() and file.name in FOLDERS_BESIDE:
            link_all(file, link)
        elif file.is_file() and not link.exists():
            link.symlink_to(file)


def run(command: str, folder: pathlib.Path) -> bool:
    return subprocess.run(command, shell=True, cwd=folder, capture_output=True, check=False).returncode == 0


class Trial:
    """One mutant, in a folder of its own."""

    def __init__(self, build: Build, mutant: mutants.Mutant, folder: pathlib.Path):
        self.build = build
        self.mutant = mutant
        self.folder = folder
        # The linker gathers the plug-in's variables by the names of folders and archives.
        self.object = folder / "src" / "changed.cpp.obj"

    def compile(self, binary: str) -> bool:
        shutil.rmtree(self.folder, ignore_errors=True)
        self.object.parent.mkdir(parents=True)
        original = self.build.root / self.mutant.file
        # Beside the original as far as `#include` is concerned: all includes are relative to src/.
        changed = self.object.with_suffix("")
        changed.write_text(self.mutant.apply(original.read_text(encoding="utf-8")), encoding="utf-8")
        command = self.build.compiling(self.mutant.file, binary)
        command = command.replace(str(original), str(changed)).replace(" -Werror", "")
        command = re.sub(r" -o \S+", lambda _: f" -o {self.object}", command)
        return run(command, self.build.folder)

    def link(self, binary: str) -> bool:
        """Makes the binary with the mutant in it."""
        command = re.sub(as_source(self.mutant.file), lambda _: str(self.object), self.build.linking(binary))
        for archive in self.build.archives(self.mutant.file):
            copy = self.folder / archive
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(self.build.folder / archive, copy)
            member = self.folder / (pathlib.PurePosixPath(self.mutant.file).name + ".obj")
            shutil.copy(self.object, member)
            subprocess.run([AR, "r", str(copy), str(member)], capture_output=True, check=True)
            command = re.sub(as_archive(archive), lambda _: str(copy), command)
        linked = self.folder / self.build.binaries[binary]
        link_all(self.build.folder / "bin", self.folder / "bin")
        link_all((self.build.folder / self.build.binaries[binary]).parent, linked.parent)
        linked.unlink(missing_ok=True)
        command = re.sub(r" -o \S+", lambda _: f" -o {linked}", command)
        command = re.sub(r" -Wl,--out-implib,\S+", "", command)
        return run(command, self.build.folder)

    def play_in(self, program: str, desktop: int) -> str:
        binary = LIBRARIES.get(self.mutant.file, program)
        if not self.compile(binary):
            return "not compiled"
        executable = self.folder / self.build.binaries[program]
        link_all((self.build.folder / self.build.binaries[program]).parent, executable.parent)
        if not self.link(binary):
            raise RuntimeError(f"{self.mutant.key}: {binary} does not link")
        command = [str(self.build.root / "scripts" / "run-in-wine"), "--expect-passed", "--time-limit", str(SECONDS),
                   str(executable), f"--gtest_filter=-{LEFT_OUT}"]
        environment = os.environ | {"CTEST_RESOURCE_GROUP_0_DESKTOPS": f"id:{desktop},slots:1"}
        passed = subprocess.run(command, env=environment, capture_output=True, check=False).returncode == 0
        return "survived" if passed else "killed"

    def play(self, desktop: int) -> Outcome:
        for program in self.build.programs(self.mutant.file):
            fate = self.play_in(program, desktop)
            if fate != "survived":
                return Outcome(self.mutant, fate, program if fate == "killed" else "")
        return Outcome(self.mutant, "survived")


def try_all(build: Build, chosen: list[mutants.Mutant], folder: pathlib.Path, workers: int):
    """Yields outcomes as they come. Each worker has a desktop for itself."""
    desktops = list(range(workers))
    lock = threading.Lock()

    def play(mutant: mutants.Mutant) -> Outcome:
        with lock:
            desktop = desktops.pop()
        try:
            return Trial(build, mutant, folder / str(desktop)).play(desktop)
        finally:
            with lock:
                desktops.append(desktop)

    with concurrent.futures.ThreadPoolExecutor(workers) as executor:
        yield from executor.map(play, chosen)


def spread(all_mutants: list[mutants.Mutant], count: int, seed: int) -> list[mutants.Mutant]:
    chosen = random.Random(seed).sample(all_mutants, min(count, len(all_mutants)))
    return sorted(chosen, key=lambda mutant: (mutant.file, mutant.line, mutant.nth))


def controls(chosen: list[mutants.Mutant]) -> list[mutants.Mutant]:
    """For each folder a change that changes nothing: who kills that one would kill every mutant."""
    first = {pathlib.PurePosixPath(mutant.file).parent: mutant for mutant in reversed(chosen)}
    return [dataclasses.replace(mutant, after=mutant.before) for mutant in first.values()]


def report(outcomes: list[Outcome], reasons: dict[str, str], seed: int, of: int) -> dict:
    tried = [outcome for outcome in outcomes if outcome.fate != "not compiled"]
    survivors = [outcome.mutant for outcome in tried if outcome.fate == "survived"]
    killed = len(tried) - len(survivors)
    return {
        "seed": seed,
        "mutants": of,
        "sampled": len(outcomes),
        "not_compiled": len(outcomes) - len(tried),
        "killed": killed,
        "percent_killed": round(100 * killed / len(tried), 1) if tried else 0.0,
        "survivors": [{"at": f"{mutant.file}:{mutant.line}", "mutant": mutant.key, "reason": reasons.get(mutant.key, "")}
                      for mutant in survivors],
    }


def main() -> int:
    parser = argparse.ArgumentParser(prog="mutation", description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--sample", type=int, default=300, help="how many mutants (default 300)")
    parser.add_argument("--seed", type=int, default=1, help="which ones (default 1)")
    parser.add_argument("--only", default="", help="only of files whose path holds this text")
    parser.add_argument("--json", type=pathlib.Path, help="write the figures there")
    parser.add_argument("--root", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--built", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--workers", type=int, default=1, help=argparse.SUPPRESS)
    options = parser.parse_args()

    everything = [mutant for mutant in mutants.mutants_in(options.root, FOLDERS)
                  if options.only in mutant.file and not mutant.file.endswith(OF_ANOTHER_COMPILER)]
    chosen = spread(everything, options.sample, options.seed)
    if not chosen:
        parser.error(f"no mutant in a file whose path holds '{options.only}'")
    build = Build(options.root, options.built)
    folder = options.root / "build" / "mutation"
    for control in try_all(build, controls(chosen), folder, options.workers):
        if control.fate != "survived":
            print(f"mutation: without any change, {control.mutant.file} is {control.fate} {control.by}", file=sys.stderr)
            return 2
    outcomes = []
    for outcome in try_all(build, chosen, folder, options.workers):
        outcomes.append(outcome)
        mutant = outcome.mutant
        print(f"{len(outcomes)}/{len(chosen)} {outcome.fate}{' by ' + outcome.by if outcome.by else ''}: "
              f"{mutant.file}:{mutant.line}: {mutant.before.strip()} -> {mutant.after.strip() or 'nothing'}", flush=True)
    shutil.rmtree(folder, ignore_errors=True)

    figures = report(outcomes, json.loads(SURVIVORS.read_text(encoding="utf-8")), options.seed, len(everything))
    if options.json:
        options.json.write_text(json.dumps(figures, indent=2) + "\n", encoding="utf-8")
    unexplained = 0
    for survivor in figures["survivors"]:
        unexplained += not survivor["reason"]
        print(f"survived: {survivor['at']}: {survivor['mutant']}\n    {survivor['reason'] or 'no reason is known'}")
    print(f"{figures['killed']} of {len(outcomes) - figures['not_compiled']} mutants killed, "
          f"{figures['percent_killed']} %; {unexplained} survivors without a reason")
    return 0 if figures["percent_killed"] >= 90 and not unexplained else 1


if __name__ == "__main__":
    sys.exit(main())
