#include "simhost/report/RunOutcome.h"

#include <fstream>

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

FailedStep AsFailed(const Json& begin) {
    FailedStep step;
    step.number = begin["step"].is_number() ? begin["step"].get<std::size_t>() : 0;
    step.line = begin.value("line", std::size_t{0});
    step.say = begin.value("say", begin.value("do", std::string()));
    return step;
}

}  // namespace

std::vector<Json> ReadEvents(const std::filesystem::path& file, std::size_t offset) {
    std::ifstream stream(file, std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(offset));
    std::vector<Json> events;
    for (std::string line; std::getline(stream, line);) {
        Json event = Json::parse(line, nullptr, false);
        if (event.is_object()) {
            events.push_back(std::move(event));
        }
    }
    return events;
}

bool WasLostWithinStep(const std::vector<Json>& events) {
    bool open = false;
    for (const Json& event : events) {
        const std::string kind = event.value("event", std::string());
        open = kind == "step_begin" || (open && kind != "step_end");
    }
    return open;
}

std::optional<FailedStep> FirstFailedStep(const std::vector<Json>& events) {
    std::optional<FailedStep> open;
    for (const Json& event : events) {
        const std::string kind = event.value("event", std::string());
        if (kind == "step_begin") {
            open = AsFailed(event);
        } else if (kind == "step_end") {
            if (open && !event.value("passed", true)) {
                return open;
            }
            open = std::nullopt;
        }
    }
    return open;
}

}  // namespace simhost
