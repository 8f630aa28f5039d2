#include "json/JsonValue.h"

JsonValue::JsonValue() noexcept = default;

JsonValue::JsonValue(std::wstring text) noexcept : mPayload(std::move(text)) {}

JsonValue::JsonValue(double number) noexcept : mPayload(number) {}

JsonValue::JsonValue(Array elements) : mPayload(std::move(elements)) {}

JsonValue::JsonValue(Object members) : mPayload(std::move(members)) {}

// Were the children left to their own containers, each level of a deep tree would take a stack frame. So the tree is
// unhooked node by node into one chain, linked through the nodes themselves: a destructor must not need memory.
JsonValue::~JsonValue() {
    Owner doomed;
    MoveChildrenTo(doomed);
    while (doomed) {
        Owner rest = std::move(doomed->mNextDoomed);
        doomed->MoveChildrenTo(rest);
        doomed = std::move(rest);
    }
}

// Prepends the children to the chain. Their places stay behind as null pointers, which cost nothing to destroy.
void JsonValue::MoveChildrenTo(Owner& doomed) noexcept {
    const auto prepend = [&doomed](Owner& child) {
        if (child) {
            child->mNextDoomed = std::move(doomed);
            doomed = std::move(child);
        }
    };
    if (auto* elements = std::get_if<Array>(&mPayload)) {
        for (Owner& element : *elements) {
            prepend(element);
        }
    } else if (auto* members = std::get_if<Object>(&mPayload)) {
        for (auto& [key, member] : *members) {
            prepend(member);
        }
    }
}
