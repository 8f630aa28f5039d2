"""How Windows places the file in memory and guards it. Each check yields what is wrong."""

EX_DLL_CHARACTERISTICS = 20  # the kind of debug entry that holds the shadow stack's mark


def is_a_64_bit_library(file):
    if file.flags.Magic != 0x20B or file.pe.FILE_HEADER.Machine != 0x8664:
        yield "is not for 64-bit Windows on x86-64"
    if not file.pe.FILE_HEADER.IMAGE_FILE_DLL:
        yield "is no library"


def is_placed_at_random(file):
    if not file.flags.IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE:
        yield "asks for a fixed place (no --dynamicbase)"
    # Without relocations the flag is a promise that cannot be kept.
    if file.pe.FILE_HEADER.IMAGE_FILE_RELOCS_STRIPPED or not getattr(file.pe, "DIRECTORY_ENTRY_BASERELOC", None):
        yield "has no relocations"


def is_placed_in_the_whole_address_space(file):
    if not file.flags.IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA:
        yield "is placed in the lower part only (no --high-entropy-va)"
    if file.flags.ImageBase < 2**32:
        yield f"has its base below 4 GiB: {file.flags.ImageBase:#x}"


def executes_no_data(file):
    if not file.flags.IMAGE_DLLCHARACTERISTICS_NX_COMPAT:
        yield "lets data be executed (no --nxcompat)"
    for section in file.pe.sections:
        if section.IMAGE_SCN_MEM_EXECUTE and section.IMAGE_SCN_MEM_WRITE:
            yield f"section {section.Name.decode()!r} is both writable and executable"


def shares_no_section(file):
    for section in file.pe.sections:
        if section.IMAGE_SCN_MEM_SHARED:
            yield f"section {section.Name.decode()!r} is shared with other processes"


def has_control_flow_guard(file):
    if not file.flags.IMAGE_DLLCHARACTERISTICS_GUARD_CF:
        yield "is not built with control-flow guard"


def has_shadow_stack_mark(file):
    entries = getattr(file.pe, "DIRECTORY_ENTRY_DEBUG", [])
    if not any(entry.struct.Type == EX_DLL_CHARACTERISTICS for entry in entries):
        yield "is not marked as fit for a shadow stack"
