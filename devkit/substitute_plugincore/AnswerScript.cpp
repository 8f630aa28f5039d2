#include "AnswerScript.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace {

using Json = nlohmann::json;

// Lives as long as the library: the script last read and how many answers of each entry are used up.
struct ScriptState {
    std::string text;
    Json answers = Json::object();
    std::map<std::string, std::size_t> used;
};

ScriptState& State() {
    static ScriptState sState;
    return sState;
}

std::string ReadScriptText() {
    const wchar_t* path = _wgetenv(L"QUORVEL_PLUGINCORE_SCRIPT");
    if (path == nullptr) {
        return {};
    }
    std::FILE* file = _wfopen(path, L"rb");
    if (file == nullptr) {
        return {};
    }
    std::string text;
    char part[4096];
    while (const std::size_t count = std::fread(part, 1, sizeof part, file)) {
        text.append(part, count);
    }
    std::fclose(file);
    return text;
}

void RefreshScript() {
    ScriptState& state = State();
    std::string text = ReadScriptText();
    if (text == state.text) {
        return;
    }
    state.answers = text.empty() ? Json::object() : Json::parse(text);
    state.text = std::move(text);
    state.used.clear();
}

Throw ThrowNamed(const std::string& name) {
    if (name == "foreign") {
        return Throw::kForeignException;
    }
    if (name == "cpp") {
        return Throw::kCppException;
    }
    throw std::runtime_error("\"throw\" must be \"foreign\" or \"cpp\", not \"" + name + "\"");
}

Answer ReadAnswer(const Json& description) {
    Answer answer;
    for (const auto& [key, value] : description.items()) {
        if (key == "result") {
            answer.result = value.get<std::int32_t>();
        } else if (key == "text") {
            answer.text = value.get<std::string>();
        } else if (key == "enabled") {
            answer.enabled = value.get<std::uint8_t>();
        } else if (key == "port") {
            answer.port = value.get<std::uint32_t>();
        } else if (key == "throw") {
            answer.throws = ThrowNamed(value.get<std::string>());
        } else {
            throw std::runtime_error("unknown key \"" + key + "\"");
        }
    }
    return answer;
}

Answer ReadNextAnswer(const char* entry) {
    RefreshScript();
    ScriptState& state = State();
    const auto answers = state.answers.find(entry);
    if (answers == state.answers.end() || answers->empty()) {
        return {};
    }
    std::size_t& used = state.used[entry];
    const Json& description = answers->at(std::min(used, answers->size() - 1));
    ++used;
    return ReadAnswer(description);
}

}  // namespace

Answer NextAnswer(const char* entry) {
    try {
        return ReadNextAnswer(entry);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "substitute PluginCore: answers of %s: %s\n", entry, error.what());
        std::abort();
    }
}
