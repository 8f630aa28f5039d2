#include "support/files/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

TEST(TemporaryFolder, IsEmptyAndOfItsOwn) {
    const TemporaryFolder one;
    const TemporaryFolder other;
    EXPECT_TRUE(std::filesystem::is_empty(one.Path()));
    EXPECT_NE(one.Path(), other.Path());
}

TEST(TemporaryFolder, IsRemovedWithEverythingInIt) {
    std::filesystem::path path;
    {
        const TemporaryFolder folder;
        path = folder.Path();
        WriteWholeFile(path / "deeper" / "file", "text");
        EXPECT_TRUE(std::filesystem::exists(path / "deeper" / "file"));
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(TemporaryFolder, FilesKeepTheirBytes) {
    const TemporaryFolder folder;
    const std::string bytes("a\r\n\n\x1A\0b", 7);
    WriteWholeFile(folder.Path() / "file", bytes);
    EXPECT_EQ(ReadWholeFile(folder.Path() / "file"), bytes);
    EXPECT_EQ(ReadWholeFile(folder.Path() / "absent"), "");
}

TEST(TemporaryFolder, TestProgramFolderHoldsTheTestProgram) {
    EXPECT_TRUE(std::filesystem::exists(TestProgramFolder() / "test_support_tests.exe"));
}

}  // namespace
