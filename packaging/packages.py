#!/usr/bin/env python3
"""Makes all packages from a folder in which everything has been built. scripts/package builds, then calls this.

usage: packages.py --build-folder FOLDER --output FOLDER [--only NAME] [--sign ARGUMENT...]
  --only    only the packages whose names hold that text; the others that are in the output folder stay
  --sign    what follows goes to scripts/sign, for the plug-ins and programs that go into packages
"""

import argparse
import hashlib
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
from collections.abc import Callable

import archive
import notices
import setup_program

ROOT = pathlib.Path(__file__).parents[1]
SIGN = ROOT / "scripts" / "sign"
PLUGIN = "QuorvelTypeAgentAI20.aip"
DIAGNOSTIC_PLUGIN = "QuorvelTypeAgentAI20-diagnostic.aip"
SUPPORT_BUNDLE = "QuorvelSupportBundle.exe"
# Signed before anything is made of them; by the folder of the build where they are.
SIGNED = {PLUGIN: "shipped", DIAGNOSTIC_PLUGIN: "shipped", SUPPORT_BUNDLE: "bin"}
# In the host's folder for plug-ins.
FOLDER = "Quorvel Type Agent"
# What the diagnostic package holds, by its name there.
DIAGNOSTIC = {f"{FOLDER}/{DIAGNOSTIC_PLUGIN}": DIAGNOSTIC_PLUGIN, SUPPORT_BUNDLE: SUPPORT_BUNDLE}
CHECKSUMS = "SHA256SUMS"


class Packer:
    def __init__(self, build: pathlib.Path, work: pathlib.Path, sign: list[str]):
        facts = json.loads((build / "packaging" / "facts.json").read_text(encoding="utf-8"))
        self.version = facts["version"]
        self.cmake = facts["cmake"]
        self.build = build
        self.work = work
        self.sign_arguments = sign
        self.files = {name: pathlib.Path(shutil.copy(build / place / name, work)) for name, place in SIGNED.items()}
        self.sign(*self.files.values())

    def sign(self, *files: pathlib.Path) -> None:
        if self.sign_arguments:
            run(SIGN, *self.sign_arguments, *files)

    def readme(self, template: str) -> archive.Member:
        return archive.Member("README.txt", archive.readme(template, self.version))

    @staticmethod
    def licence() -> archive.Member:
        return archive.Member("LICENSE.txt", archive.licence())

    @staticmethod
    def notices(packages: list[str]) -> archive.Member:
        return archive.Member("THIRD-PARTY.txt", archive.text_for_windows(notices.text(packages)))

    def plugin(self, output: pathlib.Path) -> None:
        members = [archive.Member(f"{FOLDER}/{PLUGIN}", self.files[PLUGIN].read_bytes())]
        texts = [self.readme("plugin.txt"), self.licence(), self.notices(notices.IN_PLUGIN)]
        archive.write_zip(output, [*members, *texts])

    def symbols(self, output: pathlib.Path) -> None:
        names = [f"{plugin}.debug" for plugin in (PLUGIN, DIAGNOSTIC_PLUGIN)]
        members = [archive.Member(name, (self.build / "shipped" / name).read_bytes()) for name in names]
        archive.write_zip(output, [*members, self.readme("symbols.txt")])

    def diagnostic(self, output: pathlib.Path) -> None:
        members = [archive.Member(name, self.files[file].read_bytes()) for name, file in DIAGNOSTIC.items()]
        texts = [self.readme("diagnostic.txt"), self.licence(), self.notices(notices.IN_DIAGNOSTIC)]
        archive.write_zip(output, [*members, *texts])

    def kit(self, output: pathlib.Path) -> None:
        kit = self.work / "kit"
        run(self.cmake, "--install", self.build, "--component", "kit", "--prefix", kit)
        shutil.copy(self.files[PLUGIN], kit / "bin")
        texts = [self.readme("kit.txt"), self.licence(), self.notices(notices.IN_KIT)]
        archive.write_zip(output, [*archive.members_of_folder(kit), *texts])

    def setup(self, output: pathlib.Path) -> None:
        # makensis works in the folder of its script, and the names of keys may begin in this one.
        sign = f"cd {shlex.quote(os.getcwd())} && {shlex.join([str(SIGN), *self.sign_arguments])}"
        setup_program.make(output, self.version, self.files[PLUGIN], sign if self.sign_arguments else "")
        self.sign(output)


def run(*command: str | pathlib.Path) -> None:
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          check=False, encoding="utf-8")
    if done.returncode != 0:
        sys.exit(f"package: {command[0]} ended with {done.returncode}:\n{done.stdout}")


def packages_of(packer: Packer) -> dict[str, Callable[[pathlib.Path], None]]:
    plugin, kit = f"QuorvelTypeAgentAI20-{packer.version}", f"QuorvelTypeAgentKit-{packer.version}"
    return {
        f"{plugin}.zip": packer.plugin,
        f"{plugin}-setup.exe": packer.setup,
        f"{plugin}-symbols.zip": packer.symbols,
        f"QuorvelTypeAgentAI20-diagnostic-{packer.version}.zip": packer.diagnostic,
        f"{kit}.zip": packer.kit,
    }


def in_any_version(folder: pathlib.Path, names: list[str], version: str) -> list[pathlib.Path]:
    """The packages in a folder that have these names, but for the version."""
    patterns = [re.escape(name).replace(re.escape(version), r"\d+\.\d+\.\d+") for name in names]
    ours = re.compile("|".join(patterns))
    return sorted(file for file in folder.iterdir() if ours.fullmatch(file.name) and file.is_file())


def put_in_place(made: pathlib.Path, output: pathlib.Path, version: str) -> None:
    """Each in the place of those of its kind. Whatever else is in the folder is not ours to delete."""
    output.mkdir(parents=True, exist_ok=True)
    for old in in_any_version(output, [new.name for new in made.iterdir()], version):
        old.unlink()
    for new in made.iterdir():
        if (output / new.name).exists():
            sys.exit(f"package: {output / new.name} is in the way. Remove it, or name another folder with --output.")
        shutil.copyfile(new, output / new.name)


def write_sums(packages: list[pathlib.Path], sums: pathlib.Path) -> None:
    """As sha256sum --check reads them."""
    lines = [f"{hashlib.sha256(package.read_bytes()).hexdigest()}  {package.name}\n" for package in packages]
    sums.write_text("".join(lines), encoding="utf-8")


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build-folder", type=pathlib.Path, required=True)
    parser.add_argument("--output", type=pathlib.Path, required=True)
    parser.add_argument("--only", default="")
    parser.add_argument("--sign", nargs=argparse.REMAINDER)
    options = parser.parse_args()
    if options.sign == []:
        parser.error("--sign needs a certificate and its key behind it: scripts/sign --help says how")
    with tempfile.TemporaryDirectory() as work:
        packer = Packer(options.build_folder.resolve(), pathlib.Path(work), options.sign or [])
        made = pathlib.Path(work) / "packages"
        made.mkdir()
        packages = packages_of(packer)
        chosen = [name for name in packages if options.only in name]
        if not chosen:
            parser.error(f"--only: no name holds '{options.only}'. There are {', '.join(packages)}.")
        for name in chosen:
            packages[name](made / name)
        put_in_place(made, options.output, packer.version)
        write_sums(in_any_version(options.output, list(packages), packer.version), options.output / CHECKSUMS)
    return 0


if __name__ == "__main__":
    sys.exit(main())
