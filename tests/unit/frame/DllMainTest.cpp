#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "documents/DocumentRegistry.h"
#include "doubles/common/AllocationFaults.h"
#include "menus/MenuItemRegistry.h"
#include "plugincore/PCILoader.h"
#include "support/log/RecordingLogSink.h"
#include "support/plugincore/FakePluginCore.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);

namespace {

const auto kModule = reinterpret_cast<HINSTANCE>(0x1234567890ABCDEF);
const auto kReserved = reinterpret_cast<LPVOID>(0x10);

TEST(DllMainTest, ProcessAttachIsLoggedAndSucceeds) {
    EXPECT_EQ(DllMain(kModule, DLL_PROCESS_ATTACH, kReserved), TRUE);
    EXPECT_EQ(
        RecordedLog(),
        (std::vector<RecordedLine>{{0,
                                    "QuorvelTypeAgentAICS?.aip DllMain(hModule 0x90abcdef, reason DLL_PROCESS_ATTACH, "
                                    "lpReserved 0x00000010) returning TRUE"}}));
}

TEST(DllMainTest, ProcessDetachIsLoggedAndSucceeds) {
    EXPECT_EQ(DllMain(kModule, DLL_PROCESS_DETACH, kReserved), TRUE);
    EXPECT_EQ(
        RecordedLog(),
        (std::vector<RecordedLine>{{0,
                                    "QuorvelTypeAgentAICS?.aip DllMain(hModule 0x90abcdef, reason DLL_PROCESS_DETACH, "
                                    "lpReserved 0x00000010) returning TRUE"}}));
}

TEST(DllMainTest, LogEndsWithTheProcess) {
    DllMain(kModule, DLL_PROCESS_ATTACH, kReserved);
    DllMain(kModule, DLL_THREAD_DETACH, nullptr);
    EXPECT_EQ(EndOfRecordedLog(), RecordedEnd::kNone);
    DllMain(kModule, DLL_PROCESS_DETACH, kReserved);
    EXPECT_EQ(EndOfRecordedLog(), RecordedEnd::kProcessEnds);
}

TEST(DllMainTest, ThreadsComeAndGoWithoutALine) {
    EXPECT_EQ(DllMain(kModule, DLL_THREAD_ATTACH, nullptr), TRUE);
    EXPECT_EQ(DllMain(kModule, DLL_THREAD_DETACH, nullptr), TRUE);
    EXPECT_TRUE(RecordedLog().empty());
}

TEST(DllMainTest, MemoryThatHasRunOutIsNotNeeded) {
    const FailingAllocation memory;
    for (const DWORD reason : {DLL_PROCESS_ATTACH, DLL_THREAD_ATTACH, DLL_THREAD_DETACH, DLL_PROCESS_DETACH}) {
        EXPECT_EQ(DllMain(kModule, reason, kReserved), TRUE);
    }
    EXPECT_FALSE(memory.HasHappened());
}

const auto kDocument = reinterpret_cast<AIDocumentHandle>(0x10);
const std::string kLongPath(100, 'a');  // more than a string holds in itself

void FillObjects() {
    SetFilePathForDocumentHandle(kDocument, kLongPath);
    MenuItemID(nullptr) = kLongPath;
}

// Libraries that end after the plug-in may still send messages.
TEST(DllMainTest, EndOfTheProcessTouchesNothing) {
    LoadFakePluginCore();
    const PCILoader* const pluginCore = PCILoader::GetSharedInstance();
    FillObjects();
    const std::ptrdiff_t before = LiveAllocations();
    DllMain(kModule, DLL_PROCESS_DETACH, kReserved);
    EXPECT_EQ(LiveAllocations(), before);
    ClearRecordedLog();
    EXPECT_EQ(PCILoader::GetSharedInstance(), pluginCore);
    EXPECT_TRUE(RecordedLog().empty());
    EXPECT_EQ(GetFilePathForDocumentHandle(kDocument), kLongPath);
    EXPECT_EQ(MenuItemID(nullptr), kLongPath);
}

// The only unloading of this program: the C++ runtime does without its reserve for exceptions afterwards.
TEST(DllMainUnloadTest, ObjectsOfTheModuleAndTheRuntimesReserveForExceptionsAreFreedAndTheLogEnds) {
    const std::ptrdiff_t before = LiveAllocations();
    LoadFakePluginCore();
    FillObjects();
    ASSERT_GT(LiveAllocations(), before);
    EXPECT_EQ(DllMain(kModule, DLL_PROCESS_DETACH, nullptr), TRUE);
    EXPECT_EQ(LiveAllocations(), before - 1);
    EXPECT_EQ(EndOfRecordedLog(), RecordedEnd::kModuleIsUnloaded);
}

}  // namespace
