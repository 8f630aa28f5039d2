"""Turns a real file into a document for the developer kit.

What is printed is JSON: the document as a scenario describes one, and where the file itself lies. `simhost open` plays it.
"""

import argparse
import json
import pathlib
import sys

import file_names
import kinds
import links
import page_text
import svg
import tools


def document_of(file: pathlib.Path) -> dict:
    kind = kinds.kind_of(file)
    file_names.check_can_be_opened(file)
    if kind == kinds.SVG:
        drawing = svg.Drawing(file)
        frames, linked = drawing.frames(), drawing.linked_files()
    else:
        frames, linked = page_text.frames(file, kind), links.linked_files(file, kind)
    name = file_names.title_of(file)
    return {
        "title": name,
        "source": links.as_placed(str(file.resolve())),
        "document": {
            "path": links.as_placed(name),
            "frames": frames,
            "placed": [links.as_placed(link) for link in linked],
        },
    }


def check_can_be_replaced(output: pathlib.Path) -> None:
    """Nobody's own file is lost to a slip of the hand, least of all the document itself."""
    if not output.exists():
        return
    try:
        is_document = {"title", "source", "document"} <= set(json.loads(output.read_text(encoding="utf-8")))
    except (ValueError, TypeError):
        is_document = not output.stat().st_size
    if not is_document:
        raise tools.ImportFailed(f"{output} is there and is no imported document; name another file")


def write_whole(output: pathlib.Path, text: str) -> None:
    """All or nothing."""
    unfinished = output.with_name(output.name + ".unfinished")
    try:
        unfinished.write_bytes(text.encode("utf-8"))
        unfinished.replace(output)
    finally:
        unfinished.unlink(missing_ok=True)


def main() -> int:
    parser = argparse.ArgumentParser(prog="import-document", description=__doc__.splitlines()[0])
    parser.add_argument("file", type=pathlib.Path, metavar="FILE", help="a PDF, a PDF-based .ai, an EPS or an SVG")
    parser.add_argument("-o", "--output", type=pathlib.Path, help="where to write the document; else standard output")
    arguments = parser.parse_args()
    try:
        if arguments.output:
            check_can_be_replaced(arguments.output)
        document = document_of(arguments.file)
        text = json.dumps(document, indent=2, ensure_ascii=False) + "\n"
        if arguments.output:
            write_whole(arguments.output, text)
        else:
            sys.stdout.reconfigure(encoding="utf-8")
            sys.stdout.write(text)
    except (tools.ImportFailed, OSError) as error:
        print(f"import-document: {error}", file=sys.stderr)
        return 2
    except UnicodeEncodeError:
        print(f"import-document: {ascii(str(arguments.file))}: a name that is not UTF-8 cannot be told; rename it",
              file=sys.stderr)
        return 2
    except RecursionError:
        print(f"import-document: {arguments.file}: its elements are nested too deep", file=sys.stderr)
        return 2
    if not any(document["document"]["frames"]):
        print(f"import-document: there is no text in {arguments.file}; is it all outlines or pixels?", file=sys.stderr)
    return 0


if __name__ == "__main__":
    sys.exit(main())
