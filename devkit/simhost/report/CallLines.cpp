#include "simhost/report/CallLines.h"

#include <cmath>
#include <cstdint>
#include <nlohmann/json.hpp>

#include "doubles/common/CallRecord.h"
#include "simhost/report/FittedJson.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kWidth = 100;
constexpr const char* kMenuItems = "items";
// What is quicker is nobody's business.
constexpr double kWorthTellingMilliseconds = 10;

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

std::string Quoted(const Json& text) { return text.is_null() ? "null" : "\"" + text.get<std::string>() + "\""; }

// Of a flag of 0 or 1 what is not usual; whatever else it may be.
std::string FlagInWords(const Json& item, const char* name, int usual, const char* otherwise) {
    const int value = item[name].get<int>();
    return value == usual ? "" : ", " + (value == 1 - usual ? otherwise : name + (" " + std::to_string(value)));
}

// What the menu callback was passed: bold "Bold", checked, in "Fonts" -> 0.
std::string ItemInWords(const Json& item) {
    return (item["id"].is_null() ? "null" : item["id"].get<std::string>()) + " " + Quoted(item["label"]) +
           (item["text"] == item["label"] ? "" : " shown as " + Quoted(item["text"])) +
           FlagInWords(item, "checked", 0, "checked") + FlagInWords(item, "enabled", 1, "disabled") +
           FlagInWords(item, "has_sub_menu", 0, "a sub-menu") +
           (item["parent"].is_null() ? "" : ", in " + Quoted(item["parent"])) + " -> " +
           doubles::AnswerInWords(item["answer"].get<std::int32_t>());
}

void AddText(std::vector<std::string>& lines, const std::string& name, const std::string& text) {
    std::string before = "    " + name + ": ";
    for (const std::string& line : ShownText(text)) {
        lines.push_back(before + line);
        before = std::string(8, ' ');
    }
}

void AddItems(std::vector<std::string>& lines, const PluginCoreCall& call, const Shorten& shorten) {
    const auto items = call.results.find(kMenuItems);
    for (const Json& item : items == call.results.end() ? Json::array() : *items) {
        AddText(lines, "item", shorten(ItemInWords(item)));
    }
}

// Numbers, and whatever else is short, go into the entry's line; texts and lists of texts get lines of their own.
class Values {
  public:
    Values(const Json& values, const Shorten& shorten, const std::string& mark = "") : mShorten(shorten) {
        for (const auto& [name, value] : values.items()) {
            // They are told in full elsewhere.
            if (!name.ends_with("_hex") && name != kMenuItems) {
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
    if (!call.hasReturned) {
        return "did not return";
    }
    const double took = call.milliseconds.value_or(0);
    return (call.exception ? "threw " + *call.exception : doubles::AnswerInWords(call.answer) + ResultsInWords(call)) +
           (took < kWorthTellingMilliseconds ? "" : ", " + std::to_string(std::llround(took)) + " ms");
}

}  // namespace

std::vector<std::string> LinesOf(const PluginCoreCall& call, const Shorten& shorten) {
    const Values arguments(call.arguments, shorten);
    const Values results(call.results, shorten, "gives ");
    const std::string& numbers = arguments.Numbers();
    std::vector<std::string> lines{call.entry + (numbers.empty() ? "" : " (" + numbers + ")") + " -> " + Outcome(call)};
    lines.insert(lines.end(), arguments.Texts().begin(), arguments.Texts().end());
    AddItems(lines, call, shorten);
    lines.insert(lines.end(), results.Texts().begin(), results.Texts().end());
    return lines;
}

}  // namespace simhost
