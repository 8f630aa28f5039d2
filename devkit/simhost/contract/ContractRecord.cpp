#include "simhost/contract/ContractRecord.h"

#include <fstream>
#include <nlohmann/json.hpp>

namespace simhost::contract {

namespace {

using Json = nlohmann::ordered_json;

void Take(const Json& line, ContractRecord& record, std::vector<EntryCall>& stack) {
    if (line.contains("tried")) {
        record.tried.insert(FindClause(line.at("tried").get<std::string>())->id);
    } else if (line.contains("clause")) {
        record.findings.push_back({FindClause(line.at("clause").get<std::string>())->id,
                                   line.at("entry").get<std::string>(), line.at("call").get<int>(),
                                   line.at("seen").get<std::string>()});
    } else if (line.contains("begin")) {
        stack.push_back({line.at("begin").get<std::string>(), line.at("call").get<int>()});
    } else if (line.contains("end") && !stack.empty()) {
        stack.pop_back();
    } else if (line.contains("note")) {
        record.notes.push_back(line.at("note").get<std::string>());
    } else if (line.contains("refused")) {
        record.refusal = line.at("refused").get<std::string>();
    } else if (line.contains("done")) {
        record.isDone = true;
    }
}

}  // namespace

ContractRecord ReadContractRecord(const std::filesystem::path& file) {
    ContractRecord record;
    std::vector<EntryCall> stack;
    std::ifstream stream(file, std::ios::binary);
    std::string text;
    while (std::getline(stream, text)) {
        const Json line = Json::parse(text, nullptr, false);
        // The last line may be cut.
        if (line.is_object()) {
            Take(line, record, stack);
        }
    }
    if (!stack.empty()) {
        record.underWay = stack.back();
    }
    return record;
}

}  // namespace simhost::contract
