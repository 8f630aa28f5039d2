// A JSON text, read with the positions of its members.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "simhost/scenario/PositionIndex.h"

namespace simhost {

struct TextMistake {
    Position position;
    std::string member;  // as in "steps[0].calls"; may be empty
    std::string words;
};

struct JsonText {
    nlohmann::ordered_json value;
    PositionIndex positions;
    std::vector<TextMistake> mistakes;
    bool readable = false;  // else `value` is of no use, and `mistakes` tell why
};

// Never throws for what the text holds: no JSON, invalid UTF-8, too deep, too long, names that stand there twice.
JsonText ReadJsonText(std::string_view text);

}  // namespace simhost
