"""One mutant: compiled by itself, linked into test programs, played under Wine. Every file of it lies in a folder of its own."""

import os
import pathlib
import re
import shutil
import subprocess

from build import AR, LIBRARIES, Build, as_archive, as_source
from mutants import Mutant
from sampling import Outcome
from verdict import Ended, Fate, NoVerdict, fate_by

# Takes as long as all others together, and finds nothing that they do not.
LEFT_OUT = "*EveryOrder*"
# Of the folders beside a test program, those that it reads.
FOLDERS_BESIDE = ["libraries"]
SECONDS = 120


def link_all(source: pathlib.Path, target: pathlib.Path):
    """Makes the files of a folder visible in another: test programs read what lies beside them."""
    target.mkdir(parents=True, exist_ok=True)
    for file in source.iterdir():
        link = target / file.name
        if file.is_dir() and file.name in FOLDERS_BESIDE:
            link_all(file, link)
        elif file.is_file() and not link.exists():
            link.symlink_to(file)


def succeeds(command: str, folder: pathlib.Path) -> bool:
    return subprocess.run(command, shell=True, cwd=folder, capture_output=True, check=False).returncode == 0


class Trial:
    """One mutant, in a folder of its own."""

    def __init__(self, build: Build, mutant: Mutant, folder: pathlib.Path):
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
        return succeeds(command, self.build.folder)

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
        return succeeds(command, self.build.folder)

    def run(self, executable: pathlib.Path, desktop: int) -> Ended:
        command = [str(self.build.root / "scripts" / "run-in-wine"), "--expect-passed", "--time-limit", str(SECONDS),
                   str(executable), f"--gtest_filter=-{LEFT_OUT}"]
        environment = os.environ | {"CTEST_RESOURCE_GROUP_0_DESKTOPS": f"id:{desktop},slots:1"}
        # In its own folder: a mutant may write files to wherever it is.
        ended = subprocess.run(command, cwd=self.folder, env=environment, capture_output=True, encoding="utf-8",
                               errors="replace", check=False)
        return Ended(ended.returncode, ended.stdout, ended.stderr)

    def play_in(self, program: str, desktop: int) -> Fate:
        binary = LIBRARIES.get(self.mutant.file, program)
        if not self.compile(binary):
            return Fate.NOT_COMPILED
        executable = self.folder / self.build.binaries[program]
        link_all((self.build.folder / self.build.binaries[program]).parent, executable.parent)
        if not self.link(binary):
            raise RuntimeError(f"{self.mutant.key}: {binary} does not link")
        try:
            return fate_by(lambda: self.run(executable, desktop))
        except NoVerdict as error:
            raise NoVerdict(f"{self.mutant.key}: {program} could not be played: {error}") from error

    def play(self, desktop: int) -> Outcome:
        for program in self.build.programs(self.mutant.file):
            fate = self.play_in(program, desktop)
            if fate != Fate.SURVIVED:
                return Outcome(self.mutant, fate, program if fate.is_killed else "")
        return Outcome(self.mutant, Fate.SURVIVED)
