#include "simhost/report/CallLines.h"

#include <cstdint>
#include <nlohmann/json.hpp>

#include "doubles/common/CallRecord.h"
#include "simhost/report/FittedJson.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kWidth = 100;

// A text that is compact JSON and too long for a line is shown as JSON, which says the same.
std::vector<std::string> ShownText(const std::string& text) {
    if (text.size() > kWidth) {
        const Json json = Json::parse(text, nullptr, false);
        if (json.is_structured() && json.dump() == text) {
            return FittedJson(json, kWidth);
        }
    }
    return {text.empty() ? "(empty)" : text};
}

using Shorten = std::function<std::string(const std::string&)>;

void AddText(std::vector<std::string>& lines, const std::string& name, const std::string& text) {
    std::string before = "    " + name + ": ";
    for (const std::string& line : ShownText(text)) {
        lines.push_back(before + line);
        before = std::string(8, ' ');
    }
}

// Numbers, and whatever else is short, go into the entry's line; texts and lists of texts get lines of their own.
class Values {
  public:
    Values(const Json& values, const Shorten& shorten, const std::string& mark = "") : mShorten(shorten) {
        for (const auto& [name, value] : values.items()) {
            if (!name.ends_with("_hex")) {
                Add(mark + name, value);
            }
        }
    }

    const std::string& Numbers() const { return mNumbers; }
    const std::vector<std::string>& Texts() const { return mTexts; }

  private:
    void Add(const std::string& name, const Json& value) {
        if (value.is_string()) {
            AddText(mTexts, name, mShorten(value.get<std::string>()));
        } else if (value.is_array()) {
            for (const Json& element : value) {
                AddText(mTexts, name, mShorten(element.is_string() ? element.get<std::string>() : element.dump()));
            }
        } else {
            mNumbers += (mNumbers.empty() ? "" : ", ") + name + " " + value.dump();
        }
    }

    const Shorten& mShorten;
    std::string mNumbers;
    std::vector<std::string> mTexts;
};

// What came back in numbers: ", disabled", ", port 49152".
std::string ResultsInWords(const PluginCoreCall& call) {
    std::string words;
    for (const auto& [name, value] : call.results.items()) {
        if (call.entry == "PluginIsEnabled" && name == "flag" && value.is_number()) {
            words += value == 1 ? ", enabled" : value == 0 ? ", disabled" : ", flag " + value.dump();
        } else if (!value.is_string() && !value.is_array()) {
            words += ", " + name + " " + value.dump();
        }
    }
    return words;
}

std::string Outcome(const PluginCoreCall& call) {
    return call.exception ? "threw " + *call.exception : doubles::AnswerInWords(call.answer) + ResultsInWords(call);
}

}  // namespace

std::vector<std::string> LinesOf(const PluginCoreCall& call, const Shorten& shorten) {
    const Values arguments(call.arguments, shorten);
    const Values results(call.results, shorten, "gives ");
    const std::string& numbers = arguments.Numbers();
    std::vector<std::string> lines{call.entry + (numbers.empty() ? "" : " (" + numbers + ")") + " -> " + Outcome(call)};
    lines.insert(lines.end(), arguments.Texts().begin(), arguments.Texts().end());
    lines.insert(lines.end(), results.Texts().begin(), results.Texts().end());
    return lines;
}

}  // namespace simhost
