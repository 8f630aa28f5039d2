"""Makes the installer with makensis, which is called directly: around it, CPack would write times into the file."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

import archive
import notices

SCRIPT = pathlib.Path(__file__).parent / "installer" / "setup.nsi"
UNINSTALLER_SIZE = 150_000


def texts(version: str) -> dict[str, bytes]:
    """What is laid beside the uninstaller, by its name there."""
    return {
        "README.txt": archive.readme("installed.txt", version),
        "LICENSE.txt": archive.licence(),
        "THIRD-PARTY.txt": archive.text_for_windows(notices.text(notices.IN_INSTALLED)),
    }


def make(output: pathlib.Path, version: str, plugin: pathlib.Path, sign: str = "") -> None:
    """Of the plug-in's file. `sign` is a command for a shell, to which a file's name is added."""
    if not shutil.which("makensis"):
        sys.exit("package: makensis is missing. Run: scripts/setup")
    with tempfile.TemporaryDirectory() as folder:
        size = plugin.stat().st_size + UNINSTALLER_SIZE
        for name, content in texts(version).items():
            (pathlib.Path(folder) / name).write_bytes(content)
            size += len(content)
        defines = {"VERSION": version, "PLUGIN": plugin.resolve(), "TEXTS": folder, "OUTPUT": output.resolve(),
                   "SIZE_IN_KB": size // 1024}
        if sign:
            defines["SIGN"] = sign
        # -WX: a warning is an error.
        command = ["makensis", "-V2", "-WX", *(f"-D{name}={value}" for name, value in defines.items()), str(SCRIPT)]
        environment = {**os.environ, "SOURCE_DATE_EPOCH": str(archive.EPOCH), "LC_ALL": "C.UTF-8"}
        run = subprocess.run(command, env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                             encoding="utf-8")
    if run.returncode != 0:
        sys.exit(f"package: makensis ended with {run.returncode}:\n{run.stdout}")
