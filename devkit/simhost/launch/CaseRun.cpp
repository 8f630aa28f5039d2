#include "simhost/launch/CaseRun.h"

#include <windows.h>

#include <algorithm>
#include <stdexcept>
#include <variant>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/launch/CaseSetting.h"
#include "simhost/launch/FileChanges.h"
#include "simhost/launch/InProcessRun.h"
#include "simhost/plugin/LibraryFile.h"
#include "simhost/report/CallsOfRun.h"
#include "simhost/run/FlightRecorder.h"
#include "simhost/run/PerformCommand.h"
#include "simhost/watch/HostWatch.h"

namespace simhost {

namespace {

constexpr std::int64_t kUsualSeconds = 60;
constexpr std::int64_t kUsualStepSeconds = 20;

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

WatchLimits LimitsOf(const Scenario& scenario, const RunOptions& options) {
    const std::int64_t run = options.timeLimitSeconds.value_or(scenario.timeLimitSeconds.value_or(kUsualSeconds));
    const std::int64_t step =
        options.stepTimeLimitSeconds.value_or(scenario.stepTimeLimitSeconds.value_or(kUsualStepSeconds));
    const bool hasPerson = std::any_of(scenario.steps.begin(), scenario.steps.end(), [](const Step& each) {
        return std::holds_alternative<OperateByHand>(each.action);
    });
    return {run, step, true, hasPerson};
}

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
    std::filesystem::path plugin = options.plugin.empty() ? KitFolder() / Wide(file.PluginOf(caseName))
                                                          : std::filesystem::absolute(options.plugin);
    CheckPluginFile(plugin);
    return plugin;
}

Verdict RunCase(const ScenarioFile& file, const std::string& caseName, const RunOptions& options) {
    const CaseSetting setting(file, caseName, options);
    const RunFolder& folder = setting.Folder();
    const std::filesystem::path record =
        options.record.empty() ? folder.Root() / L"result.json" : std::filesystem::absolute(options.record);
    RemoveFile(record);
    std::error_code noEvents;
    const std::uintmax_t size = std::filesystem::file_size(options.tell.events, noEvents);
    const std::size_t offset = noEvents ? 0 : static_cast<std::size_t>(size);
    if (options.inProcess) {
        const InProcessRun underWay;
        Perform({file.Path(), caseName, folder.Root(), folder.Plugin().filename(), record, options.tell,
                 options.variation});
    } else {
        RunHost(setting.Story(), folder,
                ArgumentsOfHost(file.Path(), caseName, folder, record, options.tell, options.variation),
                LimitsOf(setting.Story(), options), record);
        TellLostCalls(options.tell.events, offset, folder.Calls());
    }
    AddCalls(record, options.tell.events, offset);
    return ReadResult(record);
}

}  // namespace simhost
