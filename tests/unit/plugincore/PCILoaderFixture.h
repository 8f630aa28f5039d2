// Loading a PluginCore library made for the tests, and what that logs.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <ostream>

#include "plugincore/PCILoader.h"
#include "support/log/RecordingLogSink.h"
#include "support/patches/ShownBoxes.h"
#include "support/plugincore/EntryNames.h"
#include "support/plugincore/FakePluginCore.h"
#include "TestLibraries.h"

// What IsLoaded said.
struct Answer {
    bool isLoaded = false;
    std::string path = "before";
    std::string version = "before";
    std::uint32_t missingCount = 77;

    bool operator==(const Answer&) const = default;
};

inline std::ostream& operator<<(std::ostream& stream, const Answer& answer) {
    return stream << answer.isLoaded << " '" << answer.path << "' '" << answer.version << "' " << answer.missingCount;
}

inline Answer Ask(const PCILoader& loader) {
    Answer answer;
    answer.isLoaded = loader.IsLoaded(&answer.path, &answer.version, &answer.missingCount);
    return answer;
}

// Every test begins and ends without a shared instance.
class PCILoaderTest : public testing::Test {
  protected:
    PCILoaderTest() {
        ClearRecordedLog();
        ResetFakePluginCore();
    }

    PCILoader& Load(const std::string& path) {
        loader.reset(PCILoader::LoadSharedInstance(path));
        return *loader;
    }
    PCILoader& LoadAndForgetLog(const std::string& name) {
        Load(Library(name));
        ClearRecordedLog();
        return *loader;
    }

    std::unique_ptr<PCILoader> loader;
    const ShownBoxes boxes;
};

// The lines of a load and of the binding of all names.
inline std::vector<RecordedLine> LoadLines(const std::string& path, HMODULE module) {
    std::vector<RecordedLine> lines = {{0, "SUCCESS: LoadLibraryA('" + path + "') returned " + Hex(module)},
                                       {0, "Loaded " + path}};
    for (const std::string& name : kEntryNames) {
        const auto* const address = reinterpret_cast<const void*>(GetProcAddress(module, name.c_str()));
        lines.push_back({0, "GetProcAddress(" + Hex(module) + ", '" + name + "') returned " + Hex(address)});
    }
    return lines;
}

// As of a library without version information.
inline DWORD WINAPI RefuseVersionSize(LPCSTR, LPDWORD) {
    SetLastError(2);
    return 0;
}
