// Keeps the host's missing-font dialogs away while the PluginCore activates a document's fonts.
// Thread: main.
#pragma once

// Decides which dialogs are suppressed, from the word file beside the PluginCore library or else from the PluginCore's
// settings, and installs the hook; removes it when `enable` is false or suppression is disabled. Every call appends the
// words again.
void SetupIllustratorDialogSuppression(bool enable);

// Whether a person is to resolve the fonts of an opened document: the setting "PickBestMatch" is 0 or cannot be read.
bool PickBestMatchDisabled();
