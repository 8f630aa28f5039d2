#include "FolderGuard.h"

#include <gtest/gtest.h>

#include "support/files/TemporaryFolder.h"

namespace {

TEST(FolderGuard, SetsAsideWhatIsThereAndBringsItBack) {
    const TemporaryFolder folder;
    WriteWholeFile(folder.Path() / "guarded" / "file", "original");
    {
        const FolderGuard guard(folder.Path() / "guarded");
        EXPECT_FALSE(std::filesystem::exists(folder.Path() / "guarded"));
        WriteWholeFile(folder.Path() / "guarded" / "other", "of the test");
    }
    EXPECT_EQ(ReadWholeFile(folder.Path() / "guarded" / "file"), "original");
    EXPECT_FALSE(std::filesystem::exists(folder.Path() / "guarded" / "other"));
}

TEST(FolderGuard, LeavesNothingWhereNothingWas) {
    const TemporaryFolder folder;
    {
        const FolderGuard guard(folder.Path() / "guarded");
        WriteWholeFile(folder.Path() / "guarded" / "file", "of the test");
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(FolderGuard, CleansUpAfterATestThatWasEndedBefore) {
    const TemporaryFolder folder;
    WriteWholeFile(folder.Path() / "guarded.set-aside-by-tests" / "file", "original");
    WriteWholeFile(folder.Path() / "guarded" / "file", "left behind");
    {
        const FolderGuard guard(folder.Path() / "guarded");
        EXPECT_FALSE(std::filesystem::exists(folder.Path() / "guarded"));
    }
    EXPECT_EQ(ReadWholeFile(folder.Path() / "guarded" / "file"), "original");
}

}  // namespace
