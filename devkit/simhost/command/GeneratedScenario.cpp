#include "simhost/command/GeneratedScenario.h"

#include <windows.h>

#include <algorithm>
#include <iterator>

#include "doubles/common/Text.h"
#include "simhost/report/WholeFile.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kWorkingDaySeconds = 86'400;
constexpr const wchar_t* kClaimed[] = {L".ai", L".eps", L".pdf", L".ait"};

// What a host has whose PluginCore says something: a menu with marks, a port, an identifier.
Json UsualHost(const char* title) {
    Json scenario = Json::parse(R"({
        "title": "",
        "copies": ["PluginCoreX64.dll", "PlugPlugOwl.dll"],
        "answers": {
            "GetMenus": [{"text": [
                {"id": "fonts", "title": "Fonts", "enabled": true, "checked": false, "child": [
                    {"id": "activate", "title": "Activate Document Fonts", "enabled": true, "checked": false, "child": []},
                    {"id": "automatic", "title": "Activate Automatically", "enabled": true, "checked": true, "child": []},
                    {"id": "later", "title": "Not Now", "enabled": false, "checked": false, "child": []}
                ]},
                {"id": "about", "title": "About the Font Manager", "enabled": true, "checked": false, "child": []}
            ]}],
            "GetIDForDocument": [{"text": "document-1"}],
            "GetSocketPort": [{"port": 49152}]
        },
        "host": {"documents": {}},
        "begin": {"calls": "any"},
        "steps": []
    })");
    scenario["title"] = title;
    return scenario;
}

Json UsualEnd() {
    return Json::parse(R"([
        {"do": "application_shutdown", "say": "The host quits", "calls": "any"},
        {"do": "shutdown", "calls": "any"},
        {"do": "unload", "calls": "any"}
    ])");
}

// The host asks the plug-in about files of these kinds alone before it opens one.
bool IsClaimed(const std::string& path) {
    const std::wstring extension = std::filesystem::path(Wide(path)).extension().wstring();
    return std::any_of(std::begin(kClaimed), std::end(kClaimed), [&](const wchar_t* claimed) {
        return CompareStringOrdinal(extension.c_str(), -1, claimed, -1, TRUE) == CSTR_EQUAL;
    });
}

// Lays out the document's file where the document says that it is, if that is in the folder of the run. The files that
// it links are not laid out: only their paths are used.
void AddDocument(Json& scenario, const ImportedDocument& imported) {
    const std::string path = imported.document.value("path", "");
    if (path.starts_with("${work}")) {
        scenario["files"].push_back({{"path", path}, {"from", imported.source}});
    }
    scenario["host"]["documents"][imported.title] = imported.document;
}

}  // namespace

GeneratedScenario::GeneratedScenario(const wchar_t* name, const Json& scenario, bool waits)
    : mFolder(L"scenario", waits), mPath(mFolder.At(name)) {
    WriteWholeFile(mPath, scenario.dump(2, ' ', false, Json::error_handler_t::replace));
}

Json ScenarioThatOpens(const ImportedDocument& imported) {
    Json scenario = UsualHost((imported.title + " is opened, changed, saved and closed").c_str());
    AddDocument(scenario, imported);
    const Json& name = imported.title;
    const Json path = imported.document.value("path", "");
    scenario["steps"] = {
        {{"do", "open"}, {"say", imported.title + " is opened"}, {"document", name}},
        {{"do", "change"}, {"say", "It is changed"}, {"document", name}, {"modified", true}},
        {{"do", "save"}, {"say", "It is saved"}, {"document", name}},
        {{"do", "about_to_close"}, {"say", "It is closed"}, {"document", name}},
        {{"do", "close"}, {"document", name}},
    };
    if (IsClaimed(path.get<std::string>())) {
        scenario["steps"].insert(
            scenario["steps"].begin(),
            Json{{"do", "check_file"}, {"say", "The host is about to open the file"}, {"path", path}, {"answer", -1}});
    }
    for (Json& step : scenario["steps"]) {
        step["calls"] = "any";
    }
    scenario["end"] = UsualEnd();
    return scenario;
}

Json ScenarioWithWindow(const std::vector<ImportedDocument>& documents) {
    Json scenario = UsualHost("A host to operate by hand");
    scenario["time_limit"] = kWorkingDaySeconds;
    for (const ImportedDocument& document : documents) {
        AddDocument(scenario, document);
    }
    if (documents.empty()) {
        scenario["host"]["documents"]["Brochure"] = {
            {"frames", {{"Garamond-Bold", "Frutiger-Light"}, {"Optima-Roman"}}}, {"placed", {"${work}\\Logo.pdf"}}};
    }
    scenario["steps"] = {{{"do", "panel_open"}, {"say", "The font manager's panel opens"}},
                         {{"do", "window"}, {"say", "A person operates the host"}}};
    scenario["end"] = UsualEnd();
    return scenario;
}

}  // namespace simhost
