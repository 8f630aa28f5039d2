#include "simhost/checks/EndChecks.h"

#include <windows.h>

#include "doubles/common/Text.h"
#include "doubles/host/Host.h"
#include "simhost/checks/ImportWatch.h"
#include "simhost/checks/LoadedLibraries.h"
#include "simhost/contract/ContractBook.h"
#include "simhost/contract/ContractChecks.h"
#include "simhost/contract/PluginCoreWatch.h"
#include "simhost/contract/RecordedCalls.h"
#include "simhost/windows/HostDialog.h"

namespace simhost {

namespace {

void CheckFile(Rule rule, const char* what, const std::optional<std::string>& expected, const std::string& loaded,
               const RunFolder& folder) {
    if (!expected) {
        return;
    }
    const std::string path = expected->empty() ? "" : Utf8(folder.At(*expected).wstring());
    if (CompareStringOrdinal(Wide(loaded).c_str(), -1, Wide(path).c_str(), -1, TRUE) != CSTR_EQUAL) {
        Host().rules.Broken(rule, std::string(what) + " is \"" + loaded + "\", expected \"" + path + "\"");
    }
}

void CheckLibraries(const Expectations& expect, const RunFolder& folder) {
    CheckFile(Rule::kLibrary, "the PluginCore", expect.library, PluginCoreInProcess(), folder);
    CheckFile(Rule::kMessagingLibrary, "the plug-in's messaging library", expect.messagingLibrary,
              Utf8(MessagingLibraryOfPlugin().wstring()), folder);
}

void CheckHooks() {
    if (HooksInPlace() != 0) {
        Host().rules.Broken(Rule::kHookLeft, "message hooks left: " + std::to_string(HooksInPlace()), HooksInPlace());
    }
    // What a person would meet: a dialog of their own, treated as if the plug-in were still there.
    const DialogRecord record = ShowHostDialog({"Font", DialogKind::kStandard, true, ""});
    if (!record.received.empty() || record.endedWithOk) {
        Host().rules.Broken(Rule::kHookLeft, "a dialog after the end was " + Describe(record));
    }
}

// A run must not pass because nobody looked: the plug-in may have found the entries in another way.
void CheckRecorded() {
    if (contract::WatchedLibrary() == nullptr && !PluginCoreInProcess().empty()) {
        Host().rules.Broken(Rule::kUnrecorded, "a PluginCore is loaded, and no call of it was recorded");
    }
}

}  // namespace

void CheckOwnLibraryWasPlayed() {
    if (contract::IsOwnLibraryAsked() && !(contract::IsOwnLibraryWatched() && contract::WasAnyCalled())) {
        Host().rules.Broken(Rule::kUnrecorded, "the library of --plugincore was never called");
    }
}

void CheckEnd(const Expectations& expect, const RunFolder& folder) {
    CheckLibraries(expect, folder);
    CheckRecorded();
    contract::ReportFindings("at the end");
    Host().ReportLeftovers();
    CheckHooks();
    contract::Book().Done();
}

}  // namespace simhost
