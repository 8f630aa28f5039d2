#include "doubles/host/OperationList.h"

#include <iterator>
#include <set>
#include <sstream>

#include "doubles/host/suites/SuiteList.h"
#include "plugincore/PluginCore.h"

namespace simhost {

namespace {

struct OperationRow {
    const char* suite;
    const char* operations;  // separated by blanks
};

constexpr OperationRow kOperations[] = {
    {"AI Document Suite", "GetDocument GetDocumentFileSpecification GetDocumentModified"},
    {"AI File Format Suite", "AddFileFormatEx SetFileFormatPriority"},
    {"AI File Path Suite", "Copy DeleteFilePath GetFileName GetFullPath IsEmpty"},
    {"AI Font Suite", "FontKeyFromFont GetDefaultFont GetPostScriptFontName"},
    {"AI Matching Art Suite", "GetMatchingArt"},
    {"AI MdMemory Suite", "MdMemoryDisposeHandle"},
    {"AI Menu Suite",
     "AddMenuGroupAsSubMenu AddMenuItem CheckItem CountMenuItems DisableItem EnableItem GetItemText "
     "GetMenuItemKeyboardShortcutDictionaryKey GetMenuItemPlugin GetNthMenuItem"},
    {"AI Notifier Suite", "AddNotifier"},
    {"AI Placed Suite", "GetPlacedFilePathFromArt"},
    {"AI Text Frame Suite", "GetATETextRange"},
    {"AI Timer Suite", "AddTimer GetTimerActive SetTimerActive"},
    {"AI Unicode String Suite", "Assign Copy Destroy Initialize Length UTF_16"},
    {"ATE CharFeatures Suite", "AddRef GetFont IsNull Release"},
    {"ATE Font Suite", "AddRef IsNull Release"},
    {"ATE TextRange Suite", "AddRef GetTextRunsIterator GetUniqueCharFeatures IsNull Release"},
    {"ATE TextRunsIterator Suite", "AddRef IsNotDone IsNull Item Next Release"},
    {"SP Basic Suite", "AcquireSuite IsEqual ReleaseSuite"},
    {"SP Blocks Suite", "AllocateBlock FreeBlock"},
    {"SP Interface Suite", "SendMessage SetupMessageData"},
    {"SP Plug-ins Suite", "GetNamedPlugin"},
};

// What is no operation of a suite: the font manager's panel is told something, the PluginCore is called.
#define MOMENT_OF_ENTRY(name) "PluginCore/" #name,
constexpr const char* kOtherMoments[] = {"Panel/OnEvent", PLUGINCORE_ENTRIES(MOMENT_OF_ENTRY)};
#undef MOMENT_OF_ENTRY

const std::set<std::string, std::less<>>& Names() {
    static const auto* const sNames = [] {
        auto* const names = new std::set<std::string, std::less<>>;
        for (const OperationRow& row : kOperations) {
            std::istringstream words(row.operations);
            for (std::string operation; words >> operation;) {
                names->insert(std::string(row.suite) + "/" + operation);
            }
        }
        for (const std::string& suite : SuiteNames()) {
            names->insert("SP Basic Suite/AcquireSuite/" + suite);
            names->insert("SP Basic Suite/ReleaseSuite/" + suite);
        }
        return names;
    }();
    return *sNames;
}

}  // namespace

bool IsHostOperation(std::string_view name) { return Names().contains(name); }

std::vector<std::string> HostOperationNames() { return {Names().begin(), Names().end()}; }

std::vector<std::string> MomentNames() {
    std::vector<std::string> names = HostOperationNames();
    names.insert(names.end(), std::begin(kOtherMoments), std::end(kOtherMoments));
    return names;
}

std::vector<std::string> SuiteNames() {
    std::vector<std::string> names;
    for (const SuiteRow& row : AllSuites()) {
        names.emplace_back(row.name);
    }
    return names;
}

}  // namespace simhost
