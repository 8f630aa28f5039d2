#include "simhost/report/EventLog.h"

#include <fstream>
#include <stdexcept>

#include "doubles/common/Text.h"

namespace simhost {

using Json = nlohmann::ordered_json;

EventLog::EventLog(const std::filesystem::path& file) : mFile(file.empty() ? nullptr : _wfopen(file.c_str(), L"ab")) {
    if (!file.empty() && mFile == nullptr) {
        throw std::runtime_error("cannot write " + Utf8(file.wstring()));
    }
}

void EventLog::Write(const std::string& event, const Json& members) {
    if (mFile != nullptr) {
        const std::string line = LineOfEvent(event, members) + "\n";
        std::fwrite(line.data(), 1, line.size(), mFile.get());
        std::fflush(mFile.get());
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
