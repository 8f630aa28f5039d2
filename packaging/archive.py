"""Archives and text files that are the same whenever and wherever they are made."""

import dataclasses
import pathlib
import zipfile

# The earliest time that an archive can hold; makensis takes it as well.
EPOCH = 315532800
TIME = (1980, 1, 1, 0, 0, 0)
COMPRESSION_LEVEL = 9
TEMPLATES = pathlib.Path(__file__).parent / "readme"
LICENCE = pathlib.Path(__file__).parents[1] / "LICENSE"


@dataclasses.dataclass(frozen=True)
class Member:
    name: str
    content: bytes


def text_for_windows(text: str) -> bytes:
    return text.replace("\r\n", "\n").replace("\n", "\r\n").encode("utf-8")


def readme(template: str, version: str) -> bytes:
    text = (TEMPLATES / template).read_text(encoding="utf-8").replace("@VERSION@", version)
    return text_for_windows(text)


def licence() -> bytes:
    return text_for_windows(LICENCE.read_text(encoding="utf-8"))


def members_of_folder(folder: pathlib.Path) -> list[Member]:
    files = (file for file in folder.rglob("*") if file.is_file())
    return [Member(file.relative_to(folder).as_posix(), file.read_bytes()) for file in files]


def write_zip(file: pathlib.Path, members: list[Member]) -> None:
    """In the order of the names, without the times and rights of the files that they come from."""
    with zipfile.ZipFile(file, "w", zipfile.ZIP_DEFLATED, compresslevel=COMPRESSION_LEVEL) as archive:
        for member in sorted(members, key=lambda each: each.name):
            info = zipfile.ZipInfo(member.name, TIME)
            info.compress_type = zipfile.ZIP_DEFLATED
            info.external_attr = 0o644 << 16
            archive.writestr(info, member.content)
