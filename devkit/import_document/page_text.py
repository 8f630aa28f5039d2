"""The fonts of the text in a PDF or PostScript file, run by run in the order in which one reads it."""

import pathlib
import tempfile

import gi
import kinds
import tools

gi.require_version("Poppler", "0.18")
# pylint: disable=wrong-import-position
from gi.repository import GLib, Poppler  # noqa: E402


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
    return [runs_of(document.get_page(number)) for number in range(document.get_n_pages())]


def runs_of(page) -> list[str]:
    runs: list[str] = []
    for run in page.get_text_attributes():
        name = run.font_name or ""
        # A font that is drawn by the document itself has no name.
        if name and (not runs or runs[-1] != name):
            runs.append(name)
    return runs
