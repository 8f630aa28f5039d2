// A PlugPlug for unit tests: the test program itself exports the five functions, and is what the plug-in gets when it
// loads the library while a LoadablePlugPlug lives. Every function records its call and answers from what the test has
// set.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "host/PlugPlug.h"
#include "support/fakes/CallLog.h"
#include "support/fakes/ImportPatch.h"

struct FakePlugPlug {
    // Loading the library is recorded as "LoadLibraryW()", an event dispatched with all its fields.
    CallLog calls;
    // What PlugPlugAddEventListener was given last, whatever it answered.
    PlugPlugListener listener = nullptr;
    void* context = nullptr;
    // The text of the event dispatched last: the address that it came with, not a copy.
    const char* lastData = nullptr;
    // Called from inside PlugPlugAddEventListener and PlugPlugDispatchEvent, before they answer.
    std::function<void()> duringListening;
    std::function<void()> duringDispatch;

    // Sends the plug-in's listener a request, as the library does for a panel.
    void SendRequest() const;
};

// The one that the exported functions use.
FakePlugPlug& ThePlugPlug();

class LoadablePlugPlug {
  public:
    LoadablePlugPlug();

  private:
    ImportPatch mPatch;
};
