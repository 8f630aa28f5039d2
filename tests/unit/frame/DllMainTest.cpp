#include <gtest/gtest.h>
#include <windows.h>

#include "doubles/common/AllocationFaults.h"
#include "support/log/RecordingLogSink.h"

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

}  // namespace
