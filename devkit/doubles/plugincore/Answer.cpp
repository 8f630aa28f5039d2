#include "Answer.h"

Answer NextAnswer(const char* entry) {
    Answer answer;
    static_cast<BasicAnswer&>(answer) = NextBasicAnswer(entry, [&](const std::string& key, const auto& value) {
        if (key == "text") {
            answer.text = value.template get<std::string>();
        } else if (key == "enabled") {
            answer.enabled = value.template get<std::uint8_t>();
        } else if (key == "port") {
            answer.port = value.template get<std::uint32_t>();
        } else {
            return false;
        }
        return true;
    });
    return answer;
}
