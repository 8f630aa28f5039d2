"""A built plug-in as Windows and the host read it, and what is known of it beforehand."""

import dataclasses
import functools
from pathlib import Path

import pefile

from disassembly import disassemble, guarded_functions

ENGLISH_US = 1033

# All but the table of exceptions, which costs more to read than the rest.
DIRECTORIES = [f"IMAGE_DIRECTORY_ENTRY_{each}" for each in
               ("EXPORT", "IMPORT", "RESOURCE", "BASERELOC", "DEBUG", "DELAY_IMPORT")]


@dataclasses.dataclass(frozen=True)
class Known:
    """What the build says; nothing of it is read from the file."""

    name: str  # the file's name without its suffix
    version: str  # three numbers
    source_folder: str
    objdump: str


class PluginFile:
    def __init__(self, path, known):
        self.path = Path(path)
        self.known = known
        self.bytes = self.path.read_bytes()
        self.pe = pefile.PE(data=self.bytes, fast_load=True)
        self.pe.parse_data_directories([pefile.DIRECTORY_ENTRY[each] for each in DIRECTORIES])
        self.flags = self.pe.OPTIONAL_HEADER

    def resource(self, kind, identifier):
        """The bytes of one resource in English; kind is a name or a number."""
        for type_entry in self.pe.DIRECTORY_ENTRY_RESOURCE.entries:
            if kind not in (str(type_entry.name), type_entry.id):
                continue
            for id_entry in type_entry.directory.entries:
                for language_entry in id_entry.directory.entries:
                    if id_entry.id == identifier and language_entry.id == ENGLISH_US:
                        place = language_entry.data.struct
                        return self.pe.get_data(place.OffsetToData, place.Size)
        return None

    def string(self, identifier):
        """One text of the string table, which holds blocks of 16: a length in UTF-16 units, then the units."""
        block = self.resource(pefile.RESOURCE_TYPE["RT_STRING"], identifier // 16 + 1)
        offset = 0
        for _ in range(identifier % 16):
            offset += 2 + 2 * int.from_bytes(block[offset : offset + 2], "little")
        length = int.from_bytes(block[offset : offset + 2], "little")
        return block[offset + 2 : offset + 2 + 2 * length].decode("utf-16-le")

    def exports(self):
        return [symbol.name.decode() for symbol in self.pe.DIRECTORY_ENTRY_EXPORT.symbols]

    def imports(self):
        """The functions by library, whose names are in lower case."""
        return {
            library.dll.decode().lower(): {symbol.name.decode() for symbol in library.imports}
            for library in self.pe.DIRECTORY_ENTRY_IMPORT
        }

    def constants(self):
        return b"".join(part.get_data() for part in self.pe.sections if part.Name.rstrip(b"\0") == b".rdata")

    @functools.cached_property
    def functions(self):
        """The names of all functions, and of those that are guarded."""
        return guarded_functions(disassemble(self.known.objdump, self.path))
