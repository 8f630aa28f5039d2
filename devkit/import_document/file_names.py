"""Names of files as Windows has them: the kit opens the document there, on Linux through Wine."""

import pathlib
import re

import tools

DEVICES = re.compile(r"(CON|PRN|AUX|NUL|CONIN\$|CONOUT\$|CLOCK\$|(COM|LPT)[0-9])(\..*)?", re.IGNORECASE)
# A colon is forbidden on Windows as well, but Wine finds such files.
FORBIDDEN = re.compile(r'[\x00-\x1f\\*?"<>|]')


def title_of(file: pathlib.Path) -> str:
    """Its name as Windows can have it."""
    return file.name.replace(":", "_")


def check_can_be_opened(file: pathlib.Path) -> None:
    """The kit copies the file when it plays the document."""
    for part in file.resolve().parts:
        # A scenario would put the value of that name there.
        if DEVICES.fullmatch(part) or part.endswith((".", " ")) or "${" in part or FORBIDDEN.search(part):
            raise tools.ImportFailed(f"{ascii(str(file))}: Windows or a scenario cannot name {ascii(part)}; rename it")
