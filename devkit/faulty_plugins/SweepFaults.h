// What a plug-in can do wrong when a call fails. Each makes the same calls; what it does wrong, it does only then.
#pragma once

void BearFailures();
void LeakWhenACallFails();
void KeepAHandleWhenACallFails();
void KeepASuiteWhenACallFails();
void CrashWhenACallFails();
void HangWhenACallFails();
void ThrowWhenACallFails();
void StayBusyWhenACallFails();
void LeaveTheErrorModeWhenACallFails();
void SpoilTheNextRunWhenACallFails();
void UseWhatAFailedCallGave();
void LeaveAProcessWhenACallFails();

// Whether the plug-in acts as if it were still handling a message.
bool IsBusyForEver();
// Whether a run before this one, in the same process, has left its mark.
bool IsSpoilt();
