// What a plug-in can do wrong in the host's process: hooks, boxes, calls of the PluginCore.
#pragma once

void LeaveHook();
void ShowBox();
void CallPluginCore();
// Without finding its entry as a plug-in does.
void CallPluginCoreUnseen();
// For every tick, which is too often.
void AskWhetherEnabled();
