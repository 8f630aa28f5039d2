// Whether anything grows: lives of the plug-in in one process, and messages to it, against a plug-in that does nothing.
//
//   growth.exe PLUGIN [--cycles N] [--messages N] [--json FILE]
//
// Beside the program lie the libraries that the plug-in loads, the core application that it finds running, and the
// plug-in that does nothing. Takes the whole desktop for itself: another process called Lumet would be found instead.
#include <windows.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "growth/Measurements.h"

namespace {

using growth::Measurement;

struct Options {
    std::string plugin;
    int cycles = 1'000;
    int messages = 100'000;
    std::string json;
};

// Ends with this process, and after two minutes: more cycles than fit in are found out by their count.
DWORD StartCoreApplication(const std::filesystem::path& folder) {
    std::wstring command = L"\"" + (folder / L"Lumet.exe").wstring() + L"\" " + std::to_wstring(GetCurrentProcessId());
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process) ==
        0) {
        throw std::runtime_error("Lumet.exe cannot be started");
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return process.dwProcessId;
}

std::vector<Measurement> MeasureAll(const Options& options) {
    const growth::Libraries libraries = growth::Libraries::BesideProgram();
    const std::filesystem::path folder = libraries.pluginCore.parent_path();
    const std::filesystem::path idle = folder / L"IdlePlugin.aip";
    const std::filesystem::path plugin = std::filesystem::absolute(options.plugin);

    std::vector<Measurement> all;
    all.push_back(growth::MeasureIdleCycles(idle, libraries, options.cycles));
    const growth::Counts idleGrowth = all.back().grown;
    const growth::Counts open = growth::CostOfOpenHandles(libraries, StartCoreApplication(folder));
    all.push_back({"the two handles that stay open", 1, open, open});
    all.push_back(growth::MeasureCycles(plugin, libraries, options.cycles, open, idleGrowth));
    all.push_back(growth::MeasureMessages(plugin, libraries, options.messages));
    // Last: what they leave is left for good.
    for (Measurement& leak : growth::MeasureLeaks(idle)) {
        all.push_back(std::move(leak));
    }
    return all;
}

void Tell(const Measurement& measurement) {
    const std::string grown = growth::InWords(measurement.grown);
    const std::string verdict = measurement.isComparison ? ", for comparison"
                                : measurement.IsRight()  ? ""
                                                         : ", expected " + growth::InWords(measurement.expected);
    std::printf("%s: %lld: grown by %s%s\n", measurement.what.c_str(), measurement.times, grown.c_str(),
                verdict.c_str());
}

void Write(const std::string& file, const std::vector<Measurement>& all) {
    nlohmann::ordered_json json;
    for (const Measurement& measurement : all) {
        nlohmann::ordered_json& row = json[measurement.what];
        row["times"] = measurement.times;
        for (std::size_t i = 0; i < growth::kKinds; ++i) {
            row[growth::kKindNames[i]] = measurement.grown.of[i];
        }
        if (!measurement.isComparison) {
            row["right"] = measurement.IsRight();
        }
    }
    std::ofstream(file) << json.dump(2) << '\n';
}

}  // namespace

// An exception ends the program, and with it the test. NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
    Options options;
    CLI::App app("Whether anything grows.");
    // A path may begin with a slash.
    app.allow_windows_style_options(false);
    app.add_option("plugin", options.plugin, "the plug-in's file")->required();
    app.add_option("--cycles", options.cycles, "how often it is loaded, started, stopped and unloaded");
    app.add_option("--messages", options.messages, "how many messages it is sent");
    app.add_option("--json", options.json, "write the counts there");
    CLI11_PARSE(app, argc, argv);
    try {
        const std::vector<Measurement> all = MeasureAll(options);
        bool isRight = true;
        for (const Measurement& measurement : all) {
            Tell(measurement);
            isRight = isRight && measurement.IsRight();
        }
        if (!options.json.empty()) {
            Write(options.json, all);
        }
        std::puts(isRight ? "Passed: nothing grows." : "FAILED: something grows.");
        std::fflush(stdout);
        // The leaked thread waits in a library's code.
        TerminateProcess(GetCurrentProcess(), isRight ? 0 : 1);
    } catch (const std::exception& error) {
        std::printf("FAILED: %s\n", error.what());
    }
    return 1;
}
