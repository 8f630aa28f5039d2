#include "simhost/checks/PluginCoreCalls.h"

#include <fstream>

namespace simhost {

std::vector<PluginCoreCall> CallLog::TakeNew() {
    std::ifstream stream(mFile, std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(mRead));
    std::vector<PluginCoreCall> calls;
    std::string line;
    while (std::getline(stream, line)) {
        mRead += line.size() + 1;
        const auto record = nlohmann::ordered_json::parse(line);
        calls.push_back(
            {record.at("entry").get<std::string>(), record.at("arguments"), record.at("answer").get<std::int32_t>()});
    }
    return calls;
}

}  // namespace simhost
