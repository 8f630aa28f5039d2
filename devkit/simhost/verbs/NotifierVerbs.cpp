#include "simhost/verbs/NotifierVerbs.h"

#include "doubles/host/Host.h"
#include "simhost/run/Performance.h"

namespace simhost {

namespace {

// A notification that comes late still tells the handle that the document had.
void* HandleToTell(const std::string& name) {
    if (name.empty()) {
        return nullptr;
    }
    const Document& document = Host().model.Named(name);
    return document.handle == nullptr ? document.formerHandle : document.handle;
}

}  // namespace

Notify ReadNotify(ObjectReader& reader) {
    const bool aboutNone = reader.Text("document", "").empty();
    return {reader.NeedText("type"), aboutNone ? "" : reader.NeedDocument("document")};
}

void Perform(const Notify& action, Performance& performance) {
    void* const data = HandleToTell(action.document);
    const std::string message =
        "\"AI Notifier\"/\"AI Notify\" " + action.type + (action.document.empty() ? "" : ", " + action.document);
    bool sent = false;
    // A copy: a handler may register more.
    const auto notifiers = Host().model.notifiers.Objects();
    for (const auto& [handle, notifier] : notifiers) {
        if (notifier.type == action.type) {
            sent = true;
            void* const registered = reinterpret_cast<void*>(handle);
            performance.NoteAnswer(message, performance.driver.SendNotification(registered, action.type, data));
        }
    }
    if (!sent) {
        performance.NotReached("nobody is registered for \"" + action.type + "\"");
    }
}

}  // namespace simhost
