#include "simhost/report/CallJson.h"

namespace simhost {

using Json = nlohmann::ordered_json;

Json AsJson(const PluginCoreCall& call) {
    Json json = {{"entry", call.entry}, {"arguments", call.arguments}};
    if (!call.hasReturned) {
        json["returned"] = false;
        return json;
    }
    json["answer"] = call.answer;
    if (!call.results.empty()) {
        json["results"] = call.results;
    }
    if (call.exception) {
        json["exception"] = *call.exception;
    }
    if (call.milliseconds) {
        json["ms"] = *call.milliseconds;
    }
    return json;
}

PluginCoreCall CallOf(const Json& json) {
    PluginCoreCall call{json.at("entry").get<std::string>(), json.at("arguments")};
    call.hasReturned = json.value("returned", true);
    call.answer = json.value("answer", 0);
    call.results = json.value("results", Json::object());
    if (json.contains("exception")) {
        call.exception = json.at("exception").get<std::string>();
    }
    if (json.contains("ms")) {
        call.milliseconds = json.at("ms").get<double>();
    }
    return call;
}

}  // namespace simhost
