#include "doubles/common/AnswerScript.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <map>
#include <stdexcept>

#include "doubles/common/ThisLibrary.h"

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
    const wchar_t* path = _wgetenv(kThisLibrary.scriptVariable);
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

BasicAnswer ReadAnswer(const Json& description, const OwnKeyReader& readOwnKey) {
    BasicAnswer answer;
    for (const auto& [key, value] : description.items()) {
        if (key == "result") {
            answer.result = value.get<std::int32_t>();
        } else if (key == "throw") {
            answer.throws = ThrowNamed(value.get<std::string>());
        } else if (!readOwnKey(key, value)) {
            throw std::runtime_error("unknown key \"" + key + "\"");
        }
    }
    return answer;
}

// An empty object when the script says nothing about the entry.
Json NextDescription(const char* entry) {
    RefreshScript();
    ScriptState& state = State();
    const auto answers = state.answers.find(entry);
    if (answers == state.answers.end() || answers->empty()) {
        return Json::object();
    }
    std::size_t& used = state.used[entry];
    const Json& description = answers->at(std::min(used, answers->size() - 1));
    ++used;
    return description;
}

}  // namespace

BasicAnswer NextBasicAnswer(const char* entry, const OwnKeyReader& readOwnKey) {
    try {
        return ReadAnswer(NextDescription(entry), readOwnKey);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "substitute %s: answers of %s: %s\n", kThisLibrary.name, entry, error.what());
        std::abort();
    }
}
