// How a plug-in can be the end of the host's process, or keep it from going on or from ending. The tests look for the
// names of these functions in the verdicts.
#pragma once

void AccessViolation();
// Inside the C runtime, which is not to blame.
void PassBadPointer();
void JumpNowhere();
void OverflowStack();
void ThrowException();
void Abort();
void FailFast();
void Hang();
void Spin();
void HangWhenUnloaded();
void EndProcess();
void ExitThroughRuntime();
void ExitThroughWindows();
void EndMainThread();
void LetAnotherEndProcess();
void AskQuestion();
void ShowOwnDialog();
void LeaveProcess();
void LeaveThread();
