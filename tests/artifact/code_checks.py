"""What the compiler made of the plug-in's own code. Each check yields what is wrong."""

import re

# Functions of ours that hold a buffer which something else fills: texts of Windows, texts of the PluginCore, numbers.
# Without their namespaces and arguments.
FILLED_BUFFERS = (
    "AboutPlugin",  # the PluginCore's answer
    "AddAllQuorvelMenuItems",  # the PluginCore's menus
    "AppendShellFolder",  # a folder of application data
    "CheckHeap",  # a text with a caller's name in it
    "CurrentDocumentFontUsage",
    "GetDocumentFileSpec",
    "GetFileVersion",  # version texts of our own file
    "GetFileVersionString",  # and of the PluginCore's
    "GoMenuItem",  # the PluginCore's menus
    "HandleDocumentClosedNotifier",  # the PluginCore's identifier of a document
    "HandleDocumentNewNotifier",  # the PluginCore's answer
    "HandleDocumentOpenedNotifier",  # fonts that the PluginCore names
    "LibraryPath",  # the host's folder
    "LoadLibraryWithVersion",
    "LogLine",
    "LogMessage",  # whatever is logged
    "ReadAll",  # the launch-info and the word file
    "ReadModulePath",  # our own path
    "ReadPluginCoreSettings",  # the PluginCore's settings
    "SearchProcesses",  # names of programs
    "StopAtFirstMatch",  # titles of windows
    "SuppressionHookProc",  # titles of dialogs
    "TellPluginCore",  # a path that the host wrote
    "updateMenuItem",  # the PluginCore's menus
)

# A text that only the operation's own code holds; the symbols of a shipped file are elsewhere.
PARTS_THAT_NOTHING_CALLS = {
    "CacheFindFontMenuItem": "CacheFindFontMenuItem",
    "DisplayFindFontDialog": "DisplayFindFontDialog",
    "CrossPluginUtils::HandleOpenExistingDocument": "CrossPluginUtils::HandleOpenExistingDocument",
    "CrossPluginUtils::Startup": "CrossPluginUtils::Startup",
    "CrossPluginUtils::RefreshActiveFontList": "CrossPluginUtils::RefreshActiveFontList",
    "CheckHeap": "Heap corruption %d detected in '%s' line %d",
    "ForciblyCloseWindow": "Forcibly closing HWND 0x%08x (title='%s', text='%s')",
}


def buffers_are_guarded(file):
    functions, guarded = file.functions
    for name in FILLED_BUFFERS:
        if name not in functions:
            yield f"has no function {name}: take it out of code_checks.py, or find what it has become"
        elif name not in guarded:
            yield f"does not guard the buffers of {name}"


def all_of_our_code_is_built_with_the_stack_protector(file):
    """Each source has left the compiler's options in the file."""
    producers = re.findall(rb"GNU C\+\+[^\0]*", file.bytes)
    if not producers:
        yield "does not say how it was compiled: it has no debug information"
    if any(b"-fstack-protector-strong" not in each for each in producers):
        yield "holds sources that were compiled without -fstack-protector-strong"


def holds_the_parts_that_nothing_calls_yet(file):
    constants = file.constants()
    for operation, text in PARTS_THAT_NOTHING_CALLS.items():
        if text.encode() + b"\0" not in constants:
            yield f"does not hold {operation}: {text} is not in the file"
