"""What kind of file it is: by its contents, since an .ai may be a PDF or PostScript."""

import codecs
import gzip
import pathlib
import zlib

import tools

PDF = "PDF"
POSTSCRIPT = "PostScript"
SVG = "SVG"

# An EPS with a preview begins with a binary header.
EPS_WITH_PREVIEW = b"\xc5\xd0\xd3\xc6"
# Readers of PDF and PostScript look for the mark in the first kilobyte: mail programs put lines in front of it.
HEAD_LENGTH = 1024


def contents(file: pathlib.Path) -> bytes:
    data = file.read_bytes()
    return gzip.decompress(data) if data.startswith(b"\x1f\x8b") else data


def kind_of(file: pathlib.Path) -> str:
    head = file.read_bytes()[:HEAD_LENGTH]
    if b"%PDF-" in head:
        return PDF
    if b"%!PS" in head or head.startswith(EPS_WITH_PREVIEW):
        return POSTSCRIPT
    if is_svg(file):
        return SVG
    if not head:
        raise tools.ImportFailed(f"{file} is empty")
    raise tools.ImportFailed(f"{file} is neither a PDF (or an .ai based on one) nor an EPS nor an SVG")


def is_svg(file: pathlib.Path) -> bool:
    try:
        data = contents(file)
    except (gzip.BadGzipFile, zlib.error, EOFError):
        return False
    if data.startswith((codecs.BOM_UTF16_LE, codecs.BOM_UTF16_BE)):
        data = data.decode("utf-16", errors="replace").encode("utf-8")
    return b"<svg" in data
