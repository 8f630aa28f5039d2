#include "doubles/plugincore/MessagingState.h"

#include <windows.h>

namespace {

// The field, what it is called in the record, and the name that the module exports the function under.
struct Field {
    const char* name;
    const char* exportedAs;
    void* function;
};

template <class Function>
void* Address(Function function) {
    return reinterpret_cast<void*>(function);
}

void Append(std::string& text, const std::string& word) { text += (text.empty() ? "" : ", ") + word; }

}  // namespace

std::optional<std::string> DescribeMessagingState(const PlugPlugState* state) {
    if (state == nullptr) {
        return std::nullopt;
    }
    const Field fields[] = {{"load", "PlugPlugLoadExtension", Address(state->loadExtension)},
                            {"unload", "PlugPlugUnloadExtension", Address(state->unloadExtension)},
                            {"add", "PlugPlugAddEventListener", Address(state->addListener)},
                            {"remove", "PlugPlugRemoveEventListener", Address(state->removeListener)},
                            {"dispatch", "PlugPlugDispatchEvent", Address(state->dispatch)}};
    std::string text = state->module == nullptr ? "" : "module";
    for (const Field& field : fields) {
        if (field.function != nullptr) {
            const bool isExported = field.function == Address(GetProcAddress(state->module, field.exportedAs));
            Append(text, std::string(field.name) + (isExported ? "" : "?"));
        }
    }
    return text;
}
