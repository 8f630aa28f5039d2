#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "doubles/common/AnswerScript.h"

struct Answer : BasicAnswer {
    std::optional<std::string> text;  // for the caller's buffer; nothing is written without it
    std::uint8_t enabled = 1;
    std::uint32_t port = 0;
};

// The entry's next answer in the script.
Answer NextAnswer(const char* entry);
