"""The commands by which the build folder was built: how each source was compiled, and which test programs hold it."""

import collections
import functools
import json
import pathlib
import re
import subprocess

# Looked at after the folder's own program, which kills nearly all.
PROGRAM_OF_ALL = "frame_tests"
# What is tried in a library that a test program loads, instead of in the program itself.
LIBRARIES = {"src/support/StackGuardGnu.cpp": "guarded", "src/support/ThreadVariablesGnu.cpp": "thread_variables"}
AR = "x86_64-w64-mingw32-ar"


class Build:
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
