// For each entry there is a library that lacks it and has all others.
#include <gtest/gtest.h>
#include <windows.h>

#include "support/files/TemporaryFolder.h"
#include "support/plugincore/EntryNames.h"

namespace {

std::vector<std::string> EntriesOf(const std::string& file) {
    const HMODULE module = LoadLibraryW((TestProgramFolder().parent_path() / "bin" / file).c_str());
    EXPECT_NE(module, nullptr) << file;
    std::vector<std::string> found;
    for (const std::string& entry : kEntryNames) {
        if (module != nullptr && GetProcAddress(module, entry.c_str()) != nullptr) {
            found.push_back(entry);
        }
    }
    FreeLibrary(module);
    return found;
}

TEST(PluginCoreVariants, EachEntryIsMissingFromOneLibraryAlone) {
    for (const std::string& missing : kEntryNames) {
        std::vector<std::string> expected = kEntryNames;
        std::erase(expected, missing);
        EXPECT_EQ(EntriesOf("PluginCoreWithout" + missing + ".dll"), expected) << missing;
    }
}

TEST(PluginCoreVariants, OtherLibrariesExportWhatTheirNamesSay) {
    EXPECT_EQ(EntriesOf("PluginCoreX64.dll"), kEntryNames);
    EXPECT_EQ(EntriesOf("PluginCoreWithoutVersionResource.dll"), kEntryNames);
    EXPECT_EQ(EntriesOf("PluginCoreOfPrivateBuild.dll"), kEntryNames);
    EXPECT_EQ(EntriesOf("PluginCoreOfFourEntries.dll").size(), 4u);
    EXPECT_EQ(EntriesOf("PluginCoreWithoutEntries.dll").size(), 0u);
}

}  // namespace
