"""A desktop on which programs are installed: a Wine prefix, server and display that nothing else uses."""

import contextlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).parents[2]
LOADER = "/usr/lib/wine/wine64" if pathlib.Path("/usr/lib/wine/wine64").exists() else "wine"
TIME_LIMIT_SECONDS = 60
# As root, Linux lets everything be written. Without these rights, a folder that is not writable is one.
WITHOUT_OVERRIDE = ["setpriv", "--bounding-set", "-dac_override,-dac_read_search"] if os.geteuid() == 0 else []
REGISTRY_HEADER = "Windows Registry Editor Version 5.00\n\n"
# The windows of the command processor, and what Wine makes with the first window of all.
OF_WINDOWS = (r"[HKEY_CURRENT_USER\Console", r"[HKEY_CURRENT_USER\Software\Wine\Temporary System Parameters")
JOIN = """
source "$1/scripts/lib/wine-environment"
# A prefix in which nothing was ever installed: without this file it is made anew.
rm -f "$WINEPREFIX/quorvel-recipe"
wine_session_join
env --null >"$2"
echo joined
cat >/dev/null
wine_session_leave
"""


class Desktop:
    def __init__(self, start_program: pathlib.Path):
        self.start_program = start_program
        self.folder = pathlib.Path(tempfile.mkdtemp())
        environment = self.folder / "environment"
        self.holder = subprocess.Popen(
            [*WITHOUT_OVERRIDE, "bash", "-euo", "pipefail", "-c", JOIN, "-", str(ROOT), str(environment)],
            env={**os.environ, "CTEST_RESOURCE_GROUP_0_DESKTOPS": "id:installer,slots:1"}, stdin=subprocess.PIPE,
            stdout=subprocess.PIPE)
        if self.holder.stdout.readline() != b"joined\n":
            raise AssertionError("there is no desktop for the installer")
        pairs = (pair.partition("=") for pair in environment.read_text(encoding="utf-8").split("\0") if pair)
        self.environment = {name: value for name, _, value in pairs}
        self.drive = pathlib.Path(self.environment["WINEPREFIX"]) / "drive_c"

    def close(self) -> None:
        self.holder.communicate()
        shutil.rmtree(self.folder)

    def path(self, windows_path: str) -> pathlib.Path:
        """Of a path on drive C."""
        return self.drive / windows_path.removeprefix("C:\\").replace("\\", "/")

    def run(self, *command: str | pathlib.Path) -> subprocess.CompletedProcess:
        # Not through a pipe: processes that Wine starts beside the program hold it open for a while.
        with (self.folder / "output").open("w+b") as output:
            done = subprocess.run([LOADER, *map(str, command)], env=self.environment, stdin=subprocess.DEVNULL,
                                  stdout=output, stderr=subprocess.STDOUT, check=False, timeout=TIME_LIMIT_SECONDS)
            output.seek(0)
            done.stdout = output.read()
        return done

    def start(self, line: str, without_rights: bool = False) -> int:
        """By a command line, as it stands."""
        return self.run(*self.starter(line, without_rights)).returncode

    def start_and_wait_for_all(self, line: str, without_rights: bool = False) -> None:
        """Until whatever the program has started has ended as well: all of them hold the pipe."""
        command = [LOADER, *map(str, self.starter(line, without_rights))]
        subprocess.run(command, env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                       stderr=subprocess.STDOUT, check=False, timeout=TIME_LIMIT_SECONDS)

    def starter(self, line: str, without_rights: bool) -> list[str | pathlib.Path]:
        file = self.folder / "command line"
        file.write_text(line, encoding="utf-8")
        return [self.start_program, *(["--without-rights"] if without_rights else []), on_drive_z(file)]

    @contextlib.contextmanager
    def running(self, program: pathlib.Path, *arguments: str):
        """While the program runs, which says "ready"."""
        began = time.monotonic()
        process, said = self.begin(program, *arguments)
        if not said and time.monotonic() - began <= 1:
            # Once in some thousand starts Wine gives up before the program begins: at once, and without a word.
            process.kill()
            process.communicate()
            print(f"{program}: Wine did not start it (code {process.returncode}); once more", file=sys.stderr)
            process, said = self.begin(program, *arguments)
        try:
            if said != b"ready":
                raise AssertionError(f"{program} does not begin: {said!r}")
            yield
        finally:
            process.kill()
            process.communicate()

    def begin(self, program: pathlib.Path, *arguments: str) -> tuple[subprocess.Popen, bytes]:
        """With the first line that it says."""
        process = subprocess.Popen([LOADER, str(program), *arguments], env=self.environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE)
        return process, process.stdout.readline().strip()

    def set_values(self, key: str, values: dict[str, str]) -> None:
        """Texts; that of the name "" is the key's own."""
        lines = [f"{quoted(name) if name else '@'}={quoted(data)}\n" for name, data in values.items()]
        self.import_text(f"{REGISTRY_HEADER}[{whole_name(key)}]\n{''.join(lines)}")

    def delete_keys(self, *keys: str) -> None:
        self.import_text(REGISTRY_HEADER + "".join(f"[-{whole_name(key)}]\n" for key in keys))

    def values(self, key: str) -> dict[str, str]:
        """Of a key, without its subkeys; nothing when there is no such key."""
        exported = self.exported(key)
        own = exported.partition("\n\n")[2].partition("\n\n[")[0] if exported else ""
        pairs = re.findall(r'^"(.*?)"=(?:"(.*)"|dword:(.*))$', own, re.MULTILINE)
        return {name: re.sub(r"\\(.)", r"\1", text) or number for name, text, number in pairs}

    def exported(self, key: str) -> str:
        """As text, sorted by keys; nothing when there is no such key."""
        file = self.folder / "exported.reg"
        file.unlink(missing_ok=True)
        self.run("reg", "export", key, on_drive_z(file), "/y")
        return file.read_text(encoding="utf-16").replace("\r\n", "\n") if file.exists() else ""

    def registry(self) -> set[str]:
        """Keys with their values, without those that any window leaves behind."""
        keys = "".join(self.exported(root) for root in (r"HKLM\Software", "HKCU")).split("\n\n")
        return {key for key in keys if not key.startswith(OF_WINDOWS)}

    def import_text(self, exported: str) -> None:
        file = self.folder / "imported.reg"
        file.write_text(exported, encoding="utf-16", newline="\r\n")
        done = self.run("reg", "import", on_drive_z(file))
        if done.returncode != 0:
            raise AssertionError(done.stdout)

    def files(self) -> set[str]:
        """All files and folders of drive C."""
        return {os.path.join(folder, name) for folder, folders, files in os.walk(self.drive)
                for name in folders + files}


def whole_name(key: str) -> str:
    return key.replace("HKLM\\", "HKEY_LOCAL_MACHINE\\").replace("HKCU\\", "HKEY_CURRENT_USER\\")


def quoted(text: str) -> str:
    escaped = text.replace("\\", "\\\\").replace('"', '\\"')
    return f'"{escaped}"'


def on_drive_z(file: pathlib.Path) -> str:
    return "Z:" + str(file).replace("/", "\\")
