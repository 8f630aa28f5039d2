"""The fonts of the text in a PDF or PostScript file, run by run in the order in which one reads it."""

import pathlib
import tempfile

import gi
import kinds
import tools

gi.require_version("Poppler", "0.18")
# pylint: disable=wrong-import-position
from gi.repository import GLib, Poppler  # noqa: E402

# What Poppler says of a font without a name.
NAME_FOR_NONE = "Default"


def frames(file: pathlib.Path, kind: str) -> list[list[str]]:
    """A frame for each page, with one PostScript name for each run in another font than the one before."""
    if kind == kinds.PDF:
        return frames_of_pdf(file)
    # A language and not a format: only its interpreter knows which text it shows. The fonts keep the names that the
    # file asks for, also those that are not installed.
    with tempfile.TemporaryDirectory() as folder:
        pages = pathlib.Path(folder) / "pages.pdf"
        tools.run("gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-dEPSCrop", "-sDEVICE=pdfwrite", f"-sOutputFile={pages}",
                  str(file))
        return frames_of_pdf(pages)


def frames_of_pdf(file: pathlib.Path) -> list[list[str]]:
    try:
        document = Poppler.Document.new_from_file(file.resolve().as_uri())
    except GLib.Error as error:
        raise tools.ImportFailed(f"{file} cannot be read: {error.message}") from None
    names = names_of_fonts(document)
    return [runs_of(document.get_page(number), names, f"page {number + 1} of {file}")
            for number in range(document.get_n_pages())]


def names_of_fonts(document) -> set[str]:
    fonts = Poppler.FontInfo.new(document)
    found, font = fonts.scan(document.get_n_pages())
    names = set()
    while found:
        names.add(font.get_name() or "")
        found = font.next()
    return names


def runs_of(page, names: set[str], what: str) -> list[str]:
    if page is None:
        raise tools.ImportFailed(f"{what} cannot be read")
    runs: list[str] = []
    for run in page.get_text_attributes():
        name = run.font_name or ""
        if not name or (name == NAME_FOR_NONE and name not in names):
            tools.warn(f"{what}: a font that is drawn by the document itself has no name, and is left out")
        elif not runs or runs[-1] != name:
            runs.append(name)
    return runs
