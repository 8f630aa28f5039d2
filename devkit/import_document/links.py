"""The files that a document links."""

import json
import pathlib
import re
import urllib.parse

import kinds
import tools

# What page-layout programs write beside the low-resolution stand-in of a linked image.
OPEN_PREPRESS_COMMENT = re.compile(rb"(?:^|[\r\n])%(?:ALD|%)ImageFileName: *\(?([^\r\n]+?)\)? *(?=[\r\n]|$)")

# Not among the files of the run itself.
BESIDE_DOCUMENT = "${work}\\Job\\"


def linked_files(file: pathlib.Path, kind: str) -> list[str]:
    """As the document names them, in its order."""
    found = files_in_metadata(file)
    if kind == kinds.POSTSCRIPT:
        found += [tools.text_of(name) for name in OPEN_PREPRESS_COMMENT.findall(file.read_bytes())]
    return list(dict.fromkeys(name for name in found if not re.match(r"^https?:", name)))


def files_in_metadata(file: pathlib.Path) -> list[str]:
    """Drawing programs list what a document is made from in its metadata."""
    tag = "ManifestReferenceFilePath"
    # An answer about no file at all is an error, one about a file without the tag is not.
    answers = json.loads(tools.run("exiftool", "-json", f"-XMP-xmpMM:{tag}", str(file)))
    value = answers[0].get(tag, [])
    return [str(name) for name in (value if isinstance(value, list) else [value])]


def as_placed(link: str) -> str:
    """As the plug-in meets it: a Windows path, and beside the document when the link says nothing else."""
    if link.startswith("file:"):
        parts = urllib.parse.urlsplit(link)
        link = re.sub(r"^/(?=[A-Za-z]:)", "", urllib.parse.unquote(parts.path))
        if parts.netloc not in ("", "localhost"):
            link = f"//{parts.netloc}{link}"
    if re.match(r"^[A-Za-z]:[\\/]|^\\\\|^//", link):
        return link.replace("/", "\\")
    if link.startswith("/"):
        # Where Wine shows the file system that it runs on.
        return "Z:" + link.replace("/", "\\")
    return BESIDE_DOCUMENT + re.sub(r"^(\./)+", "", link).replace("/", "\\")
