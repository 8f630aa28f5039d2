#include "documents/FileFormatHook.h"

#include "doubles/common/AllocationFaults.h"
#include "frame/base/PluginGlobals.h"
#include "plugincore/PCILoader.h"
#include "support/host/HostFixture.h"
#include "support/plugincore/FakePluginCore.h"
#include "support/plugincore/MissingPluginCore.h"

namespace {

using Calls = std::vector<std::string>;
using Log = std::vector<RecordedLine>;

const std::string kAcquire = "AcquireSuite('AI File Format Suite', 14)";
const std::string kAdd =
    "AddFileFormatEx('Quorvel', 4 types ART5 EPSF PDF  AITm, title 'Quorvel', order 0, 'ai,eps,pdf,ait', 1, 0)";
const std::string kRelease = "ReleaseSuite('AI File Format Suite', 14)";

class FileFormatHookTest : public HostTest {
  protected:
    FileFormatHookTest() {
        LoadFakePluginCore();
        sGlobals = &globals;
        ClearRecordedLog();
    }
    ~FileFormatHookTest() override { sGlobals = nullptr; }

    std::int32_t Register() {
        SPInterfaceMessage startup{host.MessageData()};
        return AddFileFormat(&startup);
    }

    std::string SetPriority() const { return "SetFileFormatPriority(" + HandleText(host.FileFormat()) + ", 10000)"; }

    // The lines of a registration with `inner` in between.
    static Log Framed(const Log& inner) {
        Log lines = {{1, "Entering AddFileFormat"}};
        lines.insert(lines.end(), inner.begin(), inner.end());
        lines.push_back({-1, "Exiting AddFileFormat"});
        return lines;
    }

    PluginGlobals globals{};

    std::int32_t Check(const std::string& path) {
        AIFileFormatMessage message{};
        message.d = host.MessageData();
        message.file = host.MakePath(path);
        return CheckFileFormat(&message);
    }
};

TEST_F(FileFormatHookTest, PathGoesToThePluginCoreAndTheAnswerIsMinus1WhateverItSays) {
    ThePluginCore().script.Fail("HandleOpenExistingDocument", 0x12000000);
    EXPECT_EQ(Check("C:/\xC3\xA4.pdf"), -1);
    EXPECT_EQ(ThePluginCore().calls.Calls(),
              std::vector<std::string>{"HandleOpenExistingDocument('C:/\xC3\xA4.pdf', 32767 zeros, 32767)"});
}

TEST_F(FileFormatHookTest, EmptyPathIsNotHandedOn) {
    EXPECT_EQ(Check(""), -1);
    EXPECT_TRUE(ThePluginCore().calls.Calls().empty());
}

TEST_F(FileFormatHookTest, HostsPathIsReadInPlaceAndNeverDestroyed) {
    Check("C:/a.ai");
    EXPECT_EQ(host.calls.Calls(), (std::vector<std::string>{"GetFullPath(0)", "Destroy()"}));
}

TEST_F(FileFormatHookTest, ConversionThatTheHostRefusesIsAnsweredMinus1WithoutAskingThePluginCore) {
    host.calls.Fail("GetFullPath", 5);
    EXPECT_EQ(Check("C:/a.ai"), -1);
    EXPECT_TRUE(ThePluginCore().calls.Calls().empty());
}

TEST_F(FileFormatHookTest, ExceptionOfThePluginCoreIsAnsweredMinus1) {
    ThePluginCore().script["HandleOpenExistingDocument"].throws = doubles::Throw::kForeignException;
    EXPECT_EQ(Check("C:/a.ai"), -1);
}

TEST_F(FileFormatHookTest, PathThatIsNoTextIsAnsweredMinus1AndTheNextOneHandedOn) {
    EXPECT_EQ(Check("C:/\xED\xA0\x80.pdf"), -1);
    EXPECT_EQ(Check("C:/\xED\xA0\xBD"), -1);
    EXPECT_TRUE(ThePluginCore().calls.Calls().empty());
    EXPECT_EQ(host.LiveStrings(), 0);
    EXPECT_EQ(Check("C:/a.pdf"), -1);
    EXPECT_EQ(ThePluginCore().calls.Count("HandleOpenExistingDocument"), 1);
}

TEST_F(FileFormatHookTest, MemoryThatRunsOutAnywhereIsAnsweredMinus1AndGivesTheTextBack) {
    int attempts = 0;
    bool hasRunOut = true;
    for (int nth = 1; hasRunOut; ++nth) {
        AIFileFormatMessage message{};
        message.d = host.MessageData();
        message.file = host.MakePath("C:/a path that is long enough to need memory/a.pdf");
        ThePluginCore().calls.Clear();
        std::int32_t result = 0;
        {
            const FailingAllocation memory(nth);
            result = CheckFileFormat(&message);
            hasRunOut = memory.HasHappened();
        }
        EXPECT_EQ(result, -1) << nth;
        EXPECT_EQ(host.LiveStrings(), 0) << nth;
        EXPECT_EQ(ThePluginCore().calls.Calls().empty(), hasRunOut) << nth;
        ++attempts;
    }
    EXPECT_EQ(attempts, 2);  // the path is the one block that is needed
}

TEST_F(FileFormatHookTest, LibraryThatLacksTheEntryIsAnsweredMinus1AndNothingElseHappens) {
    PCILoader::GetSharedInstance()->BindEntryPoints(nullptr);
    EXPECT_EQ(Check("C:/a.ai"), -1);
    EXPECT_EQ(host.calls.Calls(), (Calls{"GetFullPath(0)", "Destroy()"}));
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(FileFormatHookTest, WithoutAPluginCoreTheAnswerIsMinus1AndNothingElseHappens) {
    const MissingPluginCore missing;
    ThePluginCore().calls.Clear();
    EXPECT_EQ(Check("C:/a.ai"), -1);
    EXPECT_EQ(host.calls.Calls(), (Calls{"GetFullPath(0)", "Destroy()"}));
    EXPECT_TRUE(ThePluginCore().calls.Calls().empty());
}

// --- AddFileFormat --------------------------------------------------------------------------------------------------

TEST_F(FileFormatHookTest, FormatIsRegisteredGetsItsPriorityAndIsKept) {
    EXPECT_EQ(Register(), 0);
    EXPECT_EQ(host.calls.Calls(), (Calls{kAcquire, kAdd, SetPriority(), kRelease}));
    EXPECT_NE(globals.fileFormat, nullptr);
    EXPECT_EQ(globals.fileFormat, host.FileFormat());
    EXPECT_EQ(host.model.fileFormats.Find(host.FileFormat())->priority, 10000);
    EXPECT_EQ(RecordedLog(), Framed({}));
}

TEST_F(FileFormatHookTest, SuiteGoesBackBeforeTheExitIsLogged) {
    Log whenReleased;
    host.calls.During("ReleaseSuite", [&] { whenReleased = RecordedLog(); });
    Register();
    EXPECT_EQ(whenReleased, (Log{{1, "Entering AddFileFormat"}}));
}

TEST_F(FileFormatHookTest, AnswerToTheRegistrationIsNotLookedAtWhenThereIsAHandle) {
    host.calls.FailAfterWork("AddFileFormatEx", 12);
    EXPECT_EQ(Register(), 0);
    EXPECT_EQ(host.calls.Calls(), (Calls{kAcquire, kAdd, SetPriority(), kRelease}));
    EXPECT_EQ(globals.fileFormat, host.FileFormat());
    EXPECT_EQ(RecordedLog(), Framed({}));
}

TEST_F(FileFormatHookTest, FormatWithoutAHandleHasNoPriorityAndIsNotKept) {
    const auto before = reinterpret_cast<AIFileFormatHandle>(0x77);
    globals.fileFormat = before;
    host.calls.SkipWork("AddFileFormatEx");
    EXPECT_EQ(Register(), 0);
    EXPECT_EQ(host.calls.Calls(), (Calls{kAcquire, kAdd, kRelease}));
    EXPECT_EQ(globals.fileFormat, before);
}

TEST_F(FileFormatHookTest, RefusedPriorityDoesNotCount) {
    host.calls.Fail("SetFileFormatPriority", 12);
    EXPECT_EQ(Register(), 0);
    EXPECT_EQ(globals.fileFormat, host.FileFormat());
    EXPECT_EQ(RecordedLog(), Framed({}));
}

TEST_F(FileFormatHookTest, SuiteThatIsRefusedOnceIsAcquiredByTheSecondTry) {
    host.calls.Fail("AcquireSuite", 11);
    EXPECT_EQ(Register(), 0);
    EXPECT_EQ(host.calls.Calls(), (Calls{kAcquire, kAcquire, kAdd, SetPriority(), kRelease}));
    EXPECT_EQ(globals.fileFormat, host.FileFormat());
    EXPECT_EQ(RecordedLog(), Framed({{0, "ERROR:  throwing 11."}}));
}

TEST_F(FileFormatHookTest, SuiteThatIsRefusedTwiceIsGivenUpAndAnswered0) {
    host.calls.Fail("AcquireSuite", 11, 1);
    host.calls.Fail("AcquireSuite", 12, 2);
    EXPECT_EQ(Register(), 0);
    EXPECT_EQ(host.calls.Calls(), (Calls{kAcquire, kAcquire}));
    EXPECT_EQ(globals.fileFormat, nullptr);
    EXPECT_EQ(
        RecordedLog(),
        Framed({{0, "ERROR:  throwing 11."}, {0, "ERROR:  throwing 12."}, {-1, "Error thrown in AddFileFormat()"}}));
}

}  // namespace
