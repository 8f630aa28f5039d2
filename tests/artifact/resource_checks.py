"""The property list, the notice and the version resource. Each check yields what is wrong."""

PROPERTY_LIST_ID = 16000
STRING_ID = 105

# Byte for byte, because the host reads it with no tolerance: the count says 3, and four records follow.
PROPERTY_LIST = bytes.fromhex(
    "0100 00000000 03000000"
    # The kind: an Illustrator plug-in.
    "45424441 646e696b 00000000 04000000 41455053"
    # The interface version, 2.
    "45424441 73727669 00000000 04000000 02000000"
    # The entry point's name, PluginMain.
    "45424441 36387877 00000000 0c000000 506c7567 696e4d61 696e0000"
    # The exported suites: none.
    "45424441 74707865 00000000 14000000 01000000 0c000000 6e6f6e65 00000000 01000000"
)

ENGLISH_NOTICE = (
    "The Quorvel plug-in could not locate a running copy of the Lumet application. "
    "Auto-activation plug-in functionality will be disabled."
)
# What only this language's paragraph holds; the letters beyond ASCII show that the code page was right.
NOTICE_LANGUAGES = (
    ("English", "could not locate"),
    ("French", "n’a trouvé"),
    ("Japanese", "プラグイン"),
    ("German", "konnte keine"),
    ("Italian", "non ha trovato"),
    ("Spanish", "no encontró"),
    ("Portuguese", "não encontrou"),
)


def has_the_property_list(file):
    if file.resource("PIPL", PROPERTY_LIST_ID) != PROPERTY_LIST:
        yield "has another property list"


def has_the_notice_in_seven_languages(file):
    paragraphs = file.string(STRING_ID).split("\n\n")
    if len(paragraphs) != len(NOTICE_LANGUAGES) or paragraphs[0] != ENGLISH_NOTICE:
        yield f"has another notice: {paragraphs}"
    for paragraph, (language, words) in zip(paragraphs, NOTICE_LANGUAGES):
        if not all(each in paragraph for each in (words, "Quorvel", "Lumet")) or "\n" in paragraph:
            yield f"has another notice in {language}: {paragraph}"
        if paragraph != paragraph.strip():
            yield f"has blanks around the notice in {language}"


def version_texts_are_the_builds(file):
    version, name = file.known.version, file.known.name
    expected = {
        "CompanyName": "Quorvel",
        "FileDescription": "Font auto-activation plug-in for Adobe Illustrator",
        "FileVersion": version,
        "InternalName": name,
        "LegalCopyright": "Copyright the Quorvel Type Agent authors",
        "OriginalFilename": f"{name}.aip",
        "PrivateBuild": version,
        "ProductName": "Quorvel Type Agent",
        "ProductVersion": version,
    }
    blocks = file.pe.FileInfo[0]
    tables = [table for info in blocks if info.Key == b"StringFileInfo" for table in info.StringTable]
    if [table.LangID for table in tables] != [b"040904b0"]:
        yield f"has version texts for {[table.LangID for table in tables]}"
    texts = {key.decode(): value.decode("utf-8") for key, value in tables[0].entries.items()}
    if texts != expected:
        yield f"says {dict(texts.items() - expected.items())}, expected {dict(expected.items() - texts.items())}"
    translations = [var.entry for info in blocks if info.Key == b"VarFileInfo" for var in info.Var]
    if translations != [{b"Translation": "0x0409 0x04b0"}]:
        yield f"names the version texts as {translations}"


def version_numbers_are_the_builds(file):
    major, minor, patch = (int(number) for number in file.known.version.split("."))
    fixed = file.pe.VS_FIXEDFILEINFO[0]
    expected = (major << 16 | minor, patch << 16)
    if (fixed.FileVersionMS, fixed.FileVersionLS) != expected:
        yield "has another file version"
    if (fixed.ProductVersionMS, fixed.ProductVersionLS) != expected:
        yield "has another product version"
    if fixed.FileType != 2:
        yield "is not described as a library"
    if fixed.FileFlags != 0:
        yield "is described as a debug or special build"
