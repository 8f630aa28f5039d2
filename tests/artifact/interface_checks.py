"""What the file offers and what it asks for. Each check yields what is wrong."""

from pathlib import Path

from allowed_imports import allowed_imports

EXPORTS = ["PluginMain"]


def exports_the_entry_point_alone(file):
    if file.exports() != EXPORTS:
        yield f"exports {file.exports()}, expected {EXPORTS}"


def imports_what_is_allowed(file):
    allowed = allowed_imports(is_diagnostic=file.known.name.endswith("-diagnostic"))
    imported = file.imports()
    for library in sorted(imported.keys() | allowed.keys()):
        has, may = imported.get(library, set()), allowed.get(library, set())
        if has - may:
            yield f"imports {sorted(has - may)} of {library}: give a reason in allowed_imports.py, or do without"
        if may - has:
            yield f"does not import {sorted(may - has)} of {library}: take it out of allowed_imports.py"


def loads_nothing_late(file):
    if hasattr(file.pe, "DIRECTORY_ENTRY_DELAY_IMPORT"):
        yield "has libraries that are loaded at their first use"


def tells_nothing_of_the_building_machine(file):
    for folder in (file.known.source_folder, f"{Path.home()}/"):
        for encoding in ("utf-8", "utf-16-le"):
            if folder.encode(encoding) in file.bytes:
                yield f"holds {folder} as {encoding}"


def says_no_time_of_building(file):
    if file.pe.FILE_HEADER.TimeDateStamp != 0:
        yield f"was built at {file.pe.FILE_HEADER.TimeDateStamp}"
