// What a plug-in can leave changed in the host's process and thread. Chosen so that the host lives on.
#pragma once

void LeaveFolder();
void LeaveLibraryFolder();
void LeaveLocale();
void LeaveThreadLocale();
void LeaveRounding();
void LeaveX87Precision();
void LeaveErrorMode();
void LeaveThreadErrorMode();
void LeaveExceptionFilter();
void LeaveEnvironment();
// Each as it is when a process begins, and not as it was.
void LeaveWhatWindowsBeginsWith();
// The state is as it was when the message ends.
void PutEverythingBack();
// At the next dialog.
void LeaveErrorModeInHook();
// When the library is freed.
void LeaveErrorModeWhenUnloaded();
// To be called then.
void OnUnload();
