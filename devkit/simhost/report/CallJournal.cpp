#include "simhost/report/CallJournal.h"

#include <fstream>
#include <map>
#include <string>

#include "simhost/report/CallJson.h"

namespace simhost {

using Json = nlohmann::ordered_json;

void CallJournal::KeepIn(const std::filesystem::path& file) { mFile.Open(file, L"wb"); }

void CallJournal::Write(std::size_t number, const PluginCoreCall& call) {
    if (mFile.IsOpen()) {
        const Json line = {{"number", number}, {"call", AsJson(call)}};
        mFile.Write(line.dump(-1, ' ', false, Json::error_handler_t::replace));
    }
}

std::vector<PluginCoreCall> ReadJournal(const std::filesystem::path& file, std::size_t first) {
    std::ifstream stream(file, std::ios::binary);
    std::map<std::size_t, PluginCoreCall> byNumber;
    for (std::string text; std::getline(stream, text);) {
        // The last line may be cut.
        const Json line = Json::parse(text, nullptr, false);
        if (line.is_object() && line.at("number").get<std::size_t>() >= first) {
            byNumber[line.at("number").get<std::size_t>()] = CallOf(line.at("call"));
        }
    }
    std::vector<PluginCoreCall> calls;
    calls.reserve(byNumber.size());
    for (auto& [number, call] : byNumber) {
        calls.push_back(std::move(call));
    }
    return calls;
}

}  // namespace simhost
