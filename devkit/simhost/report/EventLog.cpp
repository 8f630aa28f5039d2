#include "simhost/report/EventLog.h"

#include <fstream>

namespace simhost {

using Json = nlohmann::ordered_json;

EventLog::EventLog(const std::filesystem::path& file) {
    if (!file.empty()) {
        mFile.Open(file, L"ab");
    }
}

void EventLog::Write(const std::string& event, const Json& members) {
    if (mFile.IsOpen()) {
        mFile.Write(LineOfEvent(event, members));
    }
}

void EndLine(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary | std::ios::ate);
    if (!stream || stream.tellg() <= 0) {
        return;
    }
    stream.seekg(-1, std::ios::end);
    if (stream.get() != '\n') {
        std::ofstream(file, std::ios::binary | std::ios::app) << "\n";
    }
}

std::string LineOfEvent(const std::string& event, const Json& members) {
    Json line = {{"event", event}};
    line.update(members);
    return line.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace simhost
