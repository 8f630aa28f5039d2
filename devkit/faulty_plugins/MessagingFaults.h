// What a plug-in can do wrong with the host's messaging library, which must lie beside the host's program.
#pragma once

void LoadMessagingLibrary();
void ListenToPanel();
void ThrowAtPanel();
void TellPanel();
void TellPanelOnOtherThread();
void DispatchWithoutType();
