#include "simhost/report/CallLines.h"

#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

std::string AnswerInWords(std::int32_t answer) {
    char text[16];
    // Codes are readable in hexadecimal only.
    std::snprintf(text, sizeof text, answer >= -255 && answer <= 255 ? "%d" : "0x%08X", static_cast<unsigned>(answer));
    return text;
}

// `value` is a text or a list of texts.
void AddTextLines(std::vector<std::string>& lines, const std::string& name, const Json& value) {
    const Json list = value.is_array() ? value : Json::array({value});
    for (const Json& element : list) {
        const auto text = element.get<std::string>();
        lines.push_back("    " + name + ": " + (text.empty() ? "(empty)" : text));
    }
}

}  // namespace

// Numbers, and whatever else is short, go into the entry's line; texts and lists of texts get lines of their own.
std::vector<std::string> LinesOf(const PluginCoreCall& call) {
    std::string numbers;
    std::vector<std::string> texts;
    for (const auto& [name, value] : call.arguments.items()) {
        if (name.ends_with("_hex")) {
            continue;
        }
        if (value.is_string() || value.is_array()) {
            AddTextLines(texts, name, value);
        } else {
            numbers += (numbers.empty() ? "" : ", ") + name + " " + value.dump();
        }
    }
    std::vector<std::string> lines{call.entry + (numbers.empty() ? "" : " (" + numbers + ")") + " -> " +
                                   AnswerInWords(call.answer)};
    lines.insert(lines.end(), texts.begin(), texts.end());
    return lines;
}

}  // namespace simhost
