#include "simhost/scenario/CallDefaults.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <vector>

#include "simhost/scenario/NearestWord.h"
#include "simhost/scenario/ObjectReader.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

// The record has lists under this name alone; any other array or object is a JSON text.
constexpr const char* kNameOfLists = "items";

Json FullArguments(const std::string& entry, const Json& written) {
    Json arguments = written;
    for (auto& [name, value] : arguments.items()) {
        if (value.is_structured() && name != kNameOfLists) {
            value = value.dump();
        }
    }
    const CallRow* const row = FindCall(entry);
    const Json always = row == nullptr ? Json::object() : Json::parse(row->always);
    for (const auto& [name, value] : always.items()) {
        if (!arguments.contains(name)) {
            arguments[name] = value;
        }
    }
    return arguments;
}

// Complains and answers null when the library has no such function.
const CallRow* NeedCall(const std::string& entry, Library library, const Place& place) {
    const CallRow* const row = FindCall(entry);
    if (row != nullptr && row->library == library) {
        return row;
    }
    place.Complain(std::string(library == Library::kPluginCore ? "the PluginCore" : "the messaging library") +
                   " has no function \"" + entry + "\"" + DidYouMean(entry, EntriesOf(library)));
    return nullptr;
}

struct NumberRow {
    std::string_view argument;
    Range range;
};

constexpr NumberRow kNumbers[] = {
    {"flag", ranges::kByte},    {"scope", ranges::kInt32},     {"interface_version", ranges::kInt32},
    {"preset", ranges::kInt32}, {"capacity", ranges::kUint32},
};
constexpr std::string_view kFlags[] = {"zeroed"};
// Null when the caller passed a null pointer.
constexpr std::string_view kBehindPointers[] = {"preset", "capacity", "zeroed"};

template <std::size_t Size>
bool IsOneOf(const std::string_view (&names)[Size], const std::string& name) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

// Of another kind than the record has it, an argument would differ from whatever comes.
void CheckKind(const std::string& name, const Json& value, const Place& place) {
    if (value.is_null() && IsOneOf(kBehindPointers, name)) {
        return;
    }
    const auto* const number = std::find_if(std::begin(kNumbers), std::end(kNumbers),
                                            [&](const NumberRow& row) { return row.argument == name; });
    if (number != std::end(kNumbers)) {
        NumberOf(value, place, number->range);
    } else if (IsOneOf(kFlags, name)) {
        if (!value.is_boolean()) {
            place.Complain("must be true or false");
        }
    } else if (name == kNameOfLists) {
        if (!value.is_array()) {
            place.Complain("must be an array");
        }
    } else if (value.is_number() || value.is_boolean()) {
        // Null stands for no text, and a text of JSON may be written as that.
        place.Complain("must be a text");
    }
}

void CheckArgument(const CallRow& row, const std::string& name, const Json& value, const Place& place) {
    const auto known = SplitKeys(row.arguments);
    // The digits of a text that is no UTF-8 may be expected as well.
    const std::string text = name.ends_with("_hex") ? name.substr(0, name.size() - 4) : name;
    if (!known.contains(text)) {
        place.ComplainOfKey("\"" + std::string(row.entry) + "\" has no argument \"" + name + "\"" +
                            DidYouMean(name, {known.begin(), known.end()}));
        return;
    }
    CheckKind(name, value, place);
}

void CheckAnswer(const CallRow& row, const Json& answer, const Place& place) {
    ObjectReader reader(answer, place, "result throw " + std::string(row.answers));
    reader.Int32("result", 0);
    if (reader.Find("throw") != nullptr) {
        reader.NeedChoice("throw", {"foreign", "cpp", "access violation"});
    }
    if (row.answers.starts_with("text")) {
        const Json* const text = reader.Find("text");
        if (text != nullptr && !text->is_structured()) {
            TextOf(*text, reader.PlaceOf("text"));
        }
        const std::string digits = reader.Text("text_hex", "");
        if (digits.size() % 2 != 0 || digits.find_first_not_of("0123456789ABCDEFabcdef") != std::string::npos) {
            reader.PlaceOf("text_hex").Complain("must be pairs of hexadecimal digits");
        }
        reader.Flag("repeated", false);
        if (row.answers.ends_with("size")) {
            reader.Number("size", 0, ranges::kSize);
        }
    } else if (row.answers == "enabled") {
        reader.Number("enabled", 1, ranges::kByte);
    } else if (row.answers == "port") {
        reader.Number("port", 0, ranges::kUint32);
    }
    reader.Finish();
}

}  // namespace

Json FullCall(const Json& call) {
    if (call.is_string()) {
        return {{call.get<std::string>(), FullArguments(call.get<std::string>(), Json::object())}};
    }
    if (!call.is_object() || call.size() != 1 || !call.begin().value().is_object()) {
        return call;
    }
    const std::string& entry = call.begin().key();
    return {{entry, FullArguments(entry, call.begin().value())}};
}

void CheckCall(const Json& call, Library library, const Place& place) {
    if (call.is_string()) {
        NeedCall(call.get<std::string>(), library, place);
        return;
    }
    if (!call.is_object() || call.size() != 1) {
        place.Complain("an expected call is a name or an object with one member");
        return;
    }
    const std::string& entry = call.begin().key();
    const Json& arguments = call.begin().value();
    const Place inside = place.Member(entry);
    const CallRow* const row = NeedCall(entry, library, inside);
    if (!arguments.is_object()) {
        inside.Complain("the arguments of a call are an object");
        return;
    }
    for (const auto& [name, value] : arguments.items()) {
        if (row != nullptr) {
            CheckArgument(*row, name, value, inside.Member(name));
        }
    }
}

void CheckAnswers(const Json& answers, Library library, const Place& place) {
    if (!answers.is_object()) {
        place.Complain("must be an object");
        return;
    }
    for (const auto& [entry, list] : answers.items()) {
        const Place inside = place.Member(entry);
        const CallRow* const row = NeedCall(entry, library, inside);
        if (!list.is_array() || list.empty()) {
            inside.Complain("must be an array of answers");
            continue;
        }
        for (std::size_t i = 0; row != nullptr && i < list.size(); ++i) {
            CheckAnswer(*row, list[i], inside.Element(i));
        }
    }
}

}  // namespace simhost
