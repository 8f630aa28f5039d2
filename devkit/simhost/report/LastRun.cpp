#include "simhost/report/LastRun.h"

#include <shlobj.h>
#include <windows.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <system_error>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

std::filesystem::path StateFile() {
    wchar_t folder[MAX_PATH] = L"";
    SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder);
    return std::filesystem::path(folder) / L"simhost" / L"last-run.json";
}

void Remember(const std::vector<FailedCase>& failed) {
    Json entries = Json::array();
    for (const FailedCase& one : failed) {
        entries.push_back({{"file", Utf8(one.file.wstring())}, {"case", one.caseName}});
    }
    std::error_code ignored;
    const std::filesystem::path file = StateFile();
    std::filesystem::create_directories(file.parent_path(), ignored);
    std::ofstream(file, std::ios::binary | std::ios::trunc) << Json{{"failed", entries}}.dump(2) << "\n";
}

}  // namespace

std::optional<std::vector<FailedCase>> FailedLastTime() {
    std::ifstream stream(StateFile(), std::ios::binary);
    const Json state = stream ? Json::parse(stream, nullptr, false) : Json();
    if (!state.is_object() || !state.contains("failed") || !state["failed"].is_array()) {
        return std::nullopt;
    }
    std::vector<FailedCase> failed;
    for (const Json& entry : state["failed"]) {
        if (entry.is_object()) {
            failed.push_back({Wide(entry.value("file", std::string())), entry.value("case", std::string())});
        }
    }
    return failed;
}

void ForgetFailures(const std::vector<FailedCase>& gone) {
    std::vector<FailedCase> failed = FailedLastTime().value_or(std::vector<FailedCase>());
    std::erase_if(failed, [&](const FailedCase& one) { return std::ranges::find(gone, one) != gone.end(); });
    Remember(failed);
}

void RememberFailures(const std::vector<RunOutcome>& runs, bool keepsOthers) {
    std::vector<FailedCase> failed;
    if (keepsOthers) {
        failed = FailedLastTime().value_or(failed);
    }
    std::error_code ignored;
    for (const RunOutcome& run : runs) {
        const FailedCase played{std::filesystem::absolute(run.file).lexically_normal(), run.caseName};
        // Of a file that could not be read nobody knew the cases.
        std::erase_if(failed, [&](const FailedCase& one) {
            return one.file == played.file && (one.caseName == played.caseName || one.caseName.empty());
        });
        // A file that is gone would fail for ever.
        if (!run.passed && std::filesystem::exists(played.file, ignored)) {
            failed.push_back(played);
        }
    }
    Remember(failed);
}

}  // namespace simhost
