#include "simhost/launch/CaseSetting.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "doubles/common/Text.h"
#include "simhost/contract/PluginCoreWatch.h"
#include "simhost/launch/Leftovers.h"
#include "simhost/launch/OwnFolder.h"
#include "simhost/launch/StartInOrder.h"
#include "simhost/plugin/LibraryFile.h"

namespace simhost {

namespace {

// Absolute; empty for the kit's.
std::filesystem::path PluginCoreFile(const std::filesystem::path& named) {
    if (named.empty()) {
        return {};
    }
    std::filesystem::path file = std::filesystem::absolute(named).make_preferred();
    if (const std::string why = WhyNoLibrary(file); !why.empty()) {
        throw std::runtime_error("the PluginCore " + Utf8(file.wstring()) + " " + why);
    }
    return file;
}

// Whoever names a library wants to hear of that one.
void CheckIsLaidOut(const std::filesystem::path& pluginCore, const Scenario& scenario) {
    const bool isLaidOut = std::any_of(scenario.copies.begin(), scenario.copies.end(),
                                       [](const CopyToMake& copy) { return copy.what == kPluginCoreName; });
    if (!pluginCore.empty() && !isLaidOut) {
        throw std::runtime_error("the scenario lays out no PluginCoreX64.dll, so " + Utf8(pluginCore.wstring()) +
                                 " would never be called");
    }
}

// For the process that is started, and for this one: it may have read its variables already. An empty value is none.
void SetVariable(const wchar_t* name, const std::filesystem::path& value) {
    SetEnvironmentVariableW(name, value.empty() ? nullptr : value.c_str());
    _wputenv_s(name, value.c_str());
}

void NameRecordsAndScripts(const RunFolder& folder) {
    // Its calls are recorded on their way to it.
    SetVariable(L"QUORVEL_PLUGINCORE_RECORD", {});
    SetVariable(L"QUORVEL_PLUGINCORE_SCRIPT", folder.Answers());
    SetVariable(L"QUORVEL_PLUGPLUG_RECORD", folder.BusCalls());
    SetVariable(L"QUORVEL_PLUGPLUG_SCRIPT", folder.BusAnswers());
}

std::vector<std::filesystem::path> Programs(const Scenario& scenario, const RunFolder& folder) {
    std::vector<std::filesystem::path> programs;
    for (const std::string& program : scenario.processes) {
        programs.push_back(folder.At(program));
    }
    return programs;
}

// Before anything is laid out: see BeginRuns.
Scenario ReadInTurn(const ScenarioFile& file, const std::string& caseName, const RunFolder& folder,
                    const RunOptions& options) {
    Scenario scenario = file.Read(caseName, folder.PlaceholdersForScenarios());
    Vary(scenario, options.variation);
    BeginRuns(!options.noWait);
    return scenario;
}

}  // namespace

FolderForOneRun::~FolderForOneRun() {
    try {
        if (!mKeep) {
            RemoveOwnFolder(mFolder);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "simhost: %s\n", error.what());
    }
}

CaseSetting::LaidOut::LaidOut(const RunFolder& folder, const Scenario& scenario, const std::filesystem::path& plugin,
                              const RunOptions& options) {
    const std::filesystem::path pluginCore = PluginCoreFile(options.pluginCore);
    CheckIsLaidOut(pluginCore, scenario);
    folder.LayOut(scenario, plugin, KitFolder(), pluginCore);
    NameRecordsAndScripts(folder);
    SetVariable(contract::kPluginCoreFileVariable, pluginCore);
}

CaseSetting::CaseSetting(const ScenarioFile& file, const std::string& caseName, const RunOptions& options)
    : mOptions(options),
      mPlugin(PluginFileOf(file, caseName, options)),
      mFolder(options.workFolder, mPlugin),
      mScenario(ReadInTurn(file, caseName, mFolder, options)),
      // Libraries that are loaded in this process hold files there until it ends: the next run clears them away.
      mForOneRun(mFolder.Root(), options.keepFolder || options.inProcess),
      mLaidOut(mFolder, mScenario, mPlugin, options),
      mLaunchInfo(mScenario.launchInfo),
      mProcesses(StartInOrder(Programs(mScenario, mFolder), mJob)) {}

}  // namespace simhost
