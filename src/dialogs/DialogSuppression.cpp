#include "dialogs/DialogSuppression.h"

#include "dialogs/PluginCoreSettings.h"
#include "dialogs/SuppressionHook.h"
#include "dialogs/SuppressionWords.h"
#include "support/Log.h"

namespace {

constexpr std::int32_t kLowestDisablingPreference = 2;

// Fills the word list; false when nothing at all is to be suppressed.
bool ChooseSuppressedDialogs() {
    bool hasEntries = true;
    if (ReadSuppressionFile(hasEntries)) {
        if (!hasEntries) {
            LogMessage(kLogNote, "DialogSuppression completely disabled by existence of empty DialogSuppression.tmp");
            return false;
        }
        LogMessage(kLogNote, "Suppressing only dialogs listed in DialogSuppression.tmp");
        return true;
    }
    const std::int32_t preference = ReadPluginCoreSettings().dialogSuppression;
    if (preference >= kLowestDisablingPreference) {
        LogMessage(kLogNote, "DialogSuppression overridden by preference value %d", preference);
        return false;
    }
    AddDefaultSuppressionWords();
    return true;
}

}  // namespace

void SetupIllustratorDialogSuppression(bool enable) {
    constexpr const char* kName = "SetupIllustratorDialogSuppression";
    const int enableForLog = enable ? 1 : 0;
    LogMessage(kLogEntry, "Entering %s(%d)", kName, enableForLog);
    bool suppress = false;
    try {
        suppress = ChooseSuppressedDialogs();
    } catch (...) {
        // Without a decision the hook must not stay installed.
        RemoveSuppressionHook();
        LogMessage(kLogExit, "Exiting %s(%d)", kName, 0);
        throw;
    }
    if (enable && suppress) {
        InstallSuppressionHook();
    } else {
        RemoveSuppressionHook();
    }
    LogMessage(kLogExit, "Exiting %s(%d)", kName, suppress ? enableForLog : 0);
}

bool PickBestMatchDisabled() { return ReadPluginCoreSettings().pickBestMatch == 0; }
