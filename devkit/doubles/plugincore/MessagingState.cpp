#include "doubles/plugincore/MessagingState.h"

#include <windows.h>

#include <array>

namespace {

// The messaging library and its functions, in the order that is part of the contract.
struct State {
    HMODULE module;
    std::array<void*, 5> functions;
};

struct Field {
    const char* name;
    const char* exportedAs;
};

constexpr std::array<Field, 5> kFields = {{
    {"load", "PlugPlugLoadExtension"},
    {"unload", "PlugPlugUnloadExtension"},
    {"add", "PlugPlugAddEventListener"},
    {"remove", "PlugPlugRemoveEventListener"},
    {"dispatch", "PlugPlugDispatchEvent"},
}};

void Append(std::string& text, const std::string& word) { text += (text.empty() ? "" : ", ") + word; }

}  // namespace

std::optional<std::string> DescribeMessagingState(const void* state) {
    if (state == nullptr) {
        return std::nullopt;
    }
    const State& fields = *static_cast<const State*>(state);
    std::string text = fields.module == nullptr ? "" : "module";
    for (std::size_t i = 0; i < kFields.size(); ++i) {
        if (fields.functions[i] != nullptr) {
            const auto exported = reinterpret_cast<void*>(GetProcAddress(fields.module, kFields[i].exportedAs));
            Append(text, std::string(kFields[i].name) + (fields.functions[i] == exported ? "" : "?"));
        }
    }
    return text;
}
