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
void StopCallingWhenACallHasFailed();
void CrashWhenACallHasFailed();
void MisuseTheHostAfterwards();

// For each message besides.
void ActAfterwards(const char* selector);

// Whether the plug-in acts as if it were still handling a message.
bool IsBusyForEver();
// Whether this library, when it was loaded before in the same process, has left its mark, and no call has failed since.
bool IsSpoilt();
