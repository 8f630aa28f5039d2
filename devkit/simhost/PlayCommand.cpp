#include "simhost/PlayCommand.h"

#include <windows.h>

#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <system_error>

#include "doubles/common/Text.h"
#include "simhost/report/ResultRecord.h"
#include "simhost/run/ChildProcess.h"
#include "simhost/run/LaunchInfoFiles.h"
#include "simhost/run/RunFolder.h"
#include "simhost/scenario/ScenarioReader.h"

namespace simhost {

namespace {

std::filesystem::path OwnFolder() {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path();
}

std::filesystem::path FreshFolder(const PlayOptions& options) {
    if (!options.workFolder.empty()) {
        return std::filesystem::absolute(options.workFolder).make_preferred();
    }
    const std::wstring name =
        L"simhost-" + options.scenario.stem().wstring() + L"-" + std::to_wstring(GetCurrentProcessId());
    return std::filesystem::temp_directory_path() / name;
}

std::filesystem::path PluginFile(const PlayOptions& options) {
    std::filesystem::path file =
        options.plugin.empty() ? OwnFolder() / L"QuorvelTypeAgentAI20.aip" : std::filesystem::absolute(options.plugin);
    if (!std::filesystem::is_regular_file(file)) {
        throw std::runtime_error("there is no plug-in " + Utf8(file.wstring()) +
                                 "; build it, or name one with --plugin");
    }
    return file;
}

// Removes the run's folder when it was made for this run alone.
class FolderForOneRun {
  public:
    FolderForOneRun(std::filesystem::path folder, bool keep) : mFolder(std::move(folder)), mKeep(keep) {}
    ~FolderForOneRun() {
        std::error_code ignored;
        if (!mKeep) {
            std::filesystem::remove_all(mFolder, ignored);
        }
    }
    FolderForOneRun(const FolderForOneRun&) = delete;
    FolderForOneRun& operator=(const FolderForOneRun&) = delete;

  private:
    std::filesystem::path mFolder;
    bool mKeep;
};

// The host's process has run, or was ended; there is a result in any case afterwards.
void RunHost(const Scenario& scenario, const RunFolder& folder, const PlayOptions& options,
             const std::filesystem::path& record) {
    SetEnvironmentVariableW(L"QUORVEL_PLUGINCORE_RECORD", folder.Calls().c_str());
    SetEnvironmentVariableW(L"QUORVEL_PLUGINCORE_SCRIPT", folder.Answers().c_str());
    SetEnvironmentVariableW(L"QUORVEL_PLUGPLUG_RECORD", folder.BusCalls().c_str());
    SetEnvironmentVariableW(L"QUORVEL_PLUGPLUG_SCRIPT", folder.BusAnswers().c_str());
    std::vector<std::wstring> arguments = {L"perform",       std::filesystem::absolute(options.scenario).wstring(),
                                           L"--work-folder", folder.Root().wstring(),
                                           L"--plugin-name", folder.Plugin().filename().wstring(),
                                           L"--record",      record.wstring()};
    if (options.quiet) {
        arguments.emplace_back(L"--quiet");
    }
    const ChildProcess host(folder.Program(), arguments);
    const auto exitCode = host.WaitFor(options.timeLimitSeconds * 1000);
    if (!exitCode) {
        WriteResultForLostRun(record, scenario, Rule::kTimeLimit,
                              "the run was ended after " + std::to_string(options.timeLimitSeconds) + " seconds");
    } else if (!std::filesystem::exists(record)) {
        WriteResultForLostRun(record, scenario, Rule::kTimeLimit,
                              "the host's process left no result; its exit code is " + std::to_string(*exitCode));
    }
}

std::vector<std::filesystem::path> Programs(const Scenario& scenario, const RunFolder& folder) {
    std::vector<std::filesystem::path> programs;
    for (const std::string& program : scenario.processes) {
        programs.push_back(folder.At(program));
    }
    return programs;
}

Verdict PlayOrThrow(const PlayOptions& options) {
    const std::filesystem::path plugin = PluginFile(options);
    const RunFolder folder(FreshFolder(options), plugin);
    const Scenario scenario = ReadScenario(options.scenario, folder.PlaceholdersForScenarios());
    const FolderForOneRun forOneRun(folder.Root(), !options.workFolder.empty());
    folder.LayOut(scenario, plugin, OwnFolder());
    const LaunchInfoFiles launchInfo(scenario.launchInfo);
    const std::vector<ChildProcess> processes = StartInOrder(Programs(scenario, folder));

    const std::filesystem::path record =
        options.record.empty() ? folder.Root() / L"result.json" : std::filesystem::absolute(options.record);
    std::filesystem::remove(record);
    RunHost(scenario, folder, options, record);
    return ReadResult(record);
}

}  // namespace

int Play(const PlayOptions& options) {
    try {
        const Verdict verdict = PlayOrThrow(options);
        for (const std::string& complaint : verdict.complaints) {
            std::fprintf(stderr, "FAILED %s\n", complaint.c_str());
        }
        if (verdict.passed) {
            std::printf("%sPassed: everything came as expected, and nothing is left over.\n",
                        options.quiet ? "" : "\n");
        }
        return verdict.passed ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "simhost: %s\n", error.what());
        return 2;
    }
}

}  // namespace simhost
