#include "simhost/verbs/PanelVerbs.h"

#include "simhost/run/Performance.h"

namespace simhost {

namespace {

bool IsOpen(Performance& performance) {
    const bool open = performance.panel.Open();
    if (!open) {
        performance.NotReached("there is no messaging library for the panel");
    }
    return open;
}

}  // namespace

void Perform(const RequestPort&, Performance& performance) {
    if (IsOpen(performance)) {
        performance.NoteAnswer("the panel asks for the port", performance.panel.RequestPort());
    }
}

void Perform(const OpenPanel&, Performance& performance) { IsOpen(performance); }

}  // namespace simhost
