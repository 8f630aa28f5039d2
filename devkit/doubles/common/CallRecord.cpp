#include "doubles/common/CallRecord.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string_view>

namespace doubles {

namespace {

using Json = nlohmann::ordered_json;

template <class... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

bool HoldsControlCharacter(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; });
}

// Replaces what is not UTF-8, so that the result can always be written.
std::string AsUtf8(std::string_view text) {
    const std::string written = Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
    return Json::parse(written).get<std::string>();
}

std::string AsHexadecimal(std::string_view text) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string digits;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        digits += kDigits[byte >> 4];
        digits += kDigits[byte & 15];
    }
    return digits;
}

void AddText(Json& arguments, const std::string& name, const std::string& text) {
    std::string readable = AsUtf8(text);
    if (readable != text || HoldsControlCharacter(text)) {
        arguments[name + "_hex"] = AsHexadecimal(text);
    }
    arguments[name] = std::move(readable);
}

std::string Quoted(const std::string& text) { return "'" + text + "'"; }

}  // namespace

std::string AnswerInWords(std::int32_t answer) {
    char text[16];
    std::snprintf(text, sizeof text, answer >= -255 && answer <= 255 ? "%d" : "0x%08X", static_cast<unsigned>(answer));
    return text;
}

CallRecord& CallRecord::Add(const char* name, Value value) {
    mArguments.push_back({name, std::move(value)});
    return *this;
}

CallRecord& CallRecord::Text(const char* name, const char* text) {
    return text == nullptr ? Add(name, nullptr) : Add(name, std::string(text));
}

CallRecord& CallRecord::Texts(const char* name, const std::vector<std::string>& texts) { return Add(name, texts); }

CallRecord& CallRecord::Number(const char* name, std::int64_t number) { return Add(name, number); }

CallRecord& CallRecord::Buffer(const char* buffer, const std::uint64_t* size) {
    return AddBuffer(buffer, size == nullptr ? std::nullopt : std::optional(*size), true);
}

CallRecord& CallRecord::BufferOf(const char* buffer, std::uint64_t capacity) {
    return AddBuffer(buffer, capacity, false);
}

CallRecord& CallRecord::AddBuffer(const char* buffer, std::optional<std::uint64_t> capacity, bool hasSize) {
    GivenBuffer given{capacity, hasSize, std::nullopt, false};
    if (buffer != nullptr) {
        const std::uint64_t readable = capacity.value_or(0);
        given.content = std::string(buffer, strnlen(buffer, readable));
        given.isZeroed = std::all_of(buffer, buffer + readable, [](char c) { return c == 0; });
    }
    return Add("", given);
}

CallRecord& CallRecord::Pointer(const char* name, const void* pointer) {
    return Add(name, GivenPointer{pointer != nullptr});
}

nlohmann::ordered_json CallRecord::Arguments() const {
    Json arguments = Json::object();
    for (const Argument& argument : mArguments) {
        const std::string& name = argument.name;
        std::visit(Overloaded{[&](std::nullptr_t) { arguments[name] = nullptr; },
                              [&](const std::string& text) { AddText(arguments, name, text); },
                              [&](const std::vector<std::string>& texts) { arguments[name] = texts; },
                              [&](std::int64_t number) { arguments[name] = number; },
                              [&](GivenPointer pointer) { arguments[name] = pointer.isSet ? "set" : "null"; },
                              [&](const GivenBuffer& buffer) {
                                  if (!buffer.capacity) {
                                      arguments["capacity"] = nullptr;
                                      return;
                                  }
                                  arguments["capacity"] = *buffer.capacity;
                                  arguments["zeroed"] = buffer.content ? Json(buffer.isZeroed) : Json(nullptr);
                              }},
                   argument.value);
    }
    return arguments;
}

std::string CallRecord::AsJson() const {
    return Json{{"entry", mEntry}, {"arguments", Arguments()}, {"answer", mAnswer}}.dump();
}

std::string CallRecord::AsText() const {
    std::string list;
    const auto add = [&list](const std::string& text) { list += (list.empty() ? "" : ", ") + text; };
    for (const Argument& argument : mArguments) {
        std::visit(
            Overloaded{
                [&](std::nullptr_t) { add("null"); }, [&](const std::string& text) { add(Quoted(text)); },
                [&](const std::vector<std::string>&) {}, [&](std::int64_t n) { add(std::to_string(n)); },
                [&](GivenPointer pointer) {
                    if (!pointer.isSet) {
                        add("null");
                    }
                },
                [&](const GivenBuffer& buffer) {
                    const std::string capacity = buffer.capacity ? std::to_string(*buffer.capacity) : "null";
                    add(!buffer.content ? "null" : buffer.isZeroed ? capacity + " zeros" : Quoted(*buffer.content));
                    if (buffer.hasSize) {
                        add(capacity);
                    }
                }},
            argument.value);
    }
    return mEntry + "(" + list + ")";
}

}  // namespace doubles
