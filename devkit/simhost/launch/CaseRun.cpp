#include "simhost/launch/CaseRun.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <variant>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/contract/PluginCoreWatch.h"
#include "simhost/launch/ChildProcess.h"
#include "simhost/launch/FileChanges.h"
#include "simhost/launch/InProcessRun.h"
#include "simhost/launch/Job.h"
#include "simhost/launch/LaunchInfoFiles.h"
#include "simhost/launch/Leftovers.h"
#include "simhost/launch/OwnFolder.h"
#include "simhost/launch/RunFolder.h"
#include "simhost/launch/StartInOrder.h"
#include "simhost/plugin/LibraryFile.h"
#include "simhost/report/CallsOfRun.h"
#include "simhost/run/FlightRecorder.h"
#include "simhost/run/PerformCommand.h"
#include "simhost/watch/HostWatch.h"

namespace simhost {

namespace {

constexpr std::int64_t kUsualSeconds = 60;
constexpr std::int64_t kUsualStepSeconds = 20;

std::filesystem::path PluginFile(const std::filesystem::path& named, const std::string& ofScenario) {
    std::filesystem::path file = named.empty() ? KitFolder() / Wide(ofScenario) : std::filesystem::absolute(named);
    CheckPluginFile(file);
    return file;
}

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

// Removes the run's folder when it was made for this run alone.
class FolderForOneRun {
  public:
    FolderForOneRun(std::filesystem::path folder, bool keep) : mFolder(std::move(folder)), mKeep(keep) {}
    ~FolderForOneRun() {
        try {
            if (!mKeep) {
                RemoveOwnFolder(mFolder);
            }
        } catch (const std::exception& error) {
            std::fprintf(stderr, "simhost: %s\n", error.what());
        }
    }
    FolderForOneRun(const FolderForOneRun&) = delete;
    FolderForOneRun& operator=(const FolderForOneRun&) = delete;

  private:
    std::filesystem::path mFolder;
    bool mKeep;
};

// For the process that is started, and for this one: it may have read its variables already. An empty value is none.
void SetVariable(const wchar_t* name, const std::filesystem::path& value) {
    SetEnvironmentVariableW(name, value.empty() ? nullptr : value.c_str());
    _wputenv_s(name, value.c_str());
}

void NameRecordsAndScripts(const RunFolder& folder) {
    // Its calls are recorded on their way to it; kept nowhere else.
    SetVariable(L"QUORVEL_PLUGINCORE_RECORD", L"NUL");
    SetVariable(L"QUORVEL_PLUGINCORE_SCRIPT", folder.Answers());
    SetVariable(L"QUORVEL_PLUGPLUG_RECORD", folder.BusCalls());
    SetVariable(L"QUORVEL_PLUGPLUG_SCRIPT", folder.BusAnswers());
}

std::vector<std::wstring> ArgumentsOfHost(const std::filesystem::path& scenario, const std::string& caseName,
                                          const RunFolder& folder, const std::filesystem::path& record,
                                          const TellOptions& tell, const Variation& variation) {
    std::vector<std::wstring> arguments = {
        L"perform",       std::filesystem::absolute(scenario).wstring(), L"--work-folder", folder.Root().wstring(),
        L"--plugin-name", folder.Plugin().filename().wstring(),          L"--record",      record.wstring()};
    if (!caseName.empty()) {
        arguments.emplace_back(L"--case");
        arguments.push_back(Wide(caseName));
    }
    for (const std::string& argument : AsArguments(tell)) {
        arguments.push_back(Wide(argument));
    }
    for (const std::string& argument : AsArguments(variation)) {
        arguments.push_back(Wide(argument));
    }
    return arguments;
}

std::vector<std::filesystem::path> Programs(const Scenario& scenario, const RunFolder& folder) {
    std::vector<std::filesystem::path> programs;
    for (const std::string& program : scenario.processes) {
        programs.push_back(folder.At(program));
    }
    return programs;
}

WatchLimits LimitsOf(const Scenario& scenario, const RunOptions& options) {
    const std::int64_t run = options.timeLimitSeconds.value_or(scenario.timeLimitSeconds.value_or(kUsualSeconds));
    const std::int64_t step =
        options.stepTimeLimitSeconds.value_or(scenario.stepTimeLimitSeconds.value_or(kUsualStepSeconds));
    const bool hasPerson = std::any_of(scenario.steps.begin(), scenario.steps.end(), [](const Step& each) {
        return std::holds_alternative<OperateByHand>(each.action);
    });
    return {run, step, true, hasPerson};
}

// There is a result in any case afterwards.
void RunHost(const Scenario& scenario, const RunFolder& folder, const std::vector<std::wstring>& arguments,
             const WatchLimits& limits, const std::filesystem::path& record) {
    const FlightRecorder recorder;
    const HostEnd end = RunAndWatch({folder.Program(), arguments, folder.Root()}, limits, recorder);
    if (recorder.Read().lostLines != 0) {
        throw std::runtime_error("not all that was seen could be written, so nothing can be said of this run");
    }
    CompleteResult(record, scenario, end.concluded, folder.Violations(), end.findings);
}

}  // namespace

void CheckPluginFile(const std::filesystem::path& file) {
    if (const std::string why = WhyNoLibrary(file); !why.empty()) {
        throw std::runtime_error("the plug-in " + Utf8(std::filesystem::absolute(file).wstring()) + " " + why);
    }
}

std::filesystem::path KitFolder() {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path();
}

std::filesystem::path PluginFileOf(const ScenarioFile& file, const std::string& caseName, const RunOptions& options) {
    return PluginFile(options.plugin, file.PluginOf(caseName));
}

Verdict RunCase(const ScenarioFile& file, const std::string& caseName, const RunOptions& options) {
    const std::filesystem::path plugin = PluginFileOf(file, caseName, options);
    const RunFolder folder(options.workFolder, plugin);
    Scenario scenario = file.Read(caseName, folder.PlaceholdersForScenarios());
    Vary(scenario, options.variation);
    BeginRuns(!options.noWait);
    // Libraries that are loaded in this process hold files there until it ends: the next run clears them away.
    const FolderForOneRun forOneRun(folder.Root(), options.keepFolder || options.inProcess);
    const std::filesystem::path pluginCore = PluginCoreFile(options.pluginCore);
    CheckIsLaidOut(pluginCore, scenario);
    folder.LayOut(scenario, plugin, KitFolder(), pluginCore);
    const LaunchInfoFiles launchInfo(scenario.launchInfo);
    const Job job;
    const std::vector<ChildProcess> processes = StartInOrder(Programs(scenario, folder), job);

    const std::filesystem::path record =
        options.record.empty() ? folder.Root() / L"result.json" : std::filesystem::absolute(options.record);
    RemoveFile(record);
    NameRecordsAndScripts(folder);
    SetVariable(contract::kPluginCoreFileVariable, pluginCore);
    std::error_code noEvents;
    const std::uintmax_t size = std::filesystem::file_size(options.tell.events, noEvents);
    const std::size_t offset = noEvents ? 0 : static_cast<std::size_t>(size);
    if (options.inProcess) {
        const InProcessRun underWay;
        Perform({file.Path(), caseName, folder.Root(), folder.Plugin().filename(), record, options.tell,
                 options.variation});
    } else {
        RunHost(scenario, folder,
                ArgumentsOfHost(file.Path(), caseName, folder, record, options.tell, options.variation),
                LimitsOf(scenario, options), record);
        TellLostCalls(options.tell.events, offset, folder.Calls());
    }
    AddCalls(record, options.tell.events, offset);
    return ReadResult(record);
}

}  // namespace simhost
