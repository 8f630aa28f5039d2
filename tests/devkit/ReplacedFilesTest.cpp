#include "simhost/launch/ReplacedFiles.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace simhost {
namespace {

// Keeps others from what it does not share, as long as it lives.
class OpenHandle {
  public:
    OpenHandle(const std::filesystem::path& file, DWORD shared)
        : mHandle(CreateFileW(file.c_str(), GENERIC_READ, shared, nullptr, OPEN_EXISTING, 0, nullptr)) {}
    ~OpenHandle() { CloseHandle(mHandle); }
    OpenHandle(const OpenHandle&) = delete;
    OpenHandle& operator=(const OpenHandle&) = delete;

  private:
    HANDLE mHandle;
};

class ReplacedFilesTest : public testing::Test {
  protected:
    ReplacedFilesTest() {
        std::filesystem::create_directories(mFolder);
        Write(mOne, "one");
        Write(mTwo, "two");
    }
    ~ReplacedFilesTest() override {
        std::error_code ignored;
        std::filesystem::remove_all(mFolder, ignored);
    }

    static void Write(const std::filesystem::path& file, const std::string& text) {
        std::ofstream(file, std::ios::binary | std::ios::trunc) << text;
    }
    static std::string TextOf(const std::filesystem::path& file) {
        std::ifstream stream(file, std::ios::binary);
        return stream ? std::string(std::istreambuf_iterator<char>(stream), {}) : "(none)";
    }
    void ExpectBothAreBack() const {
        EXPECT_EQ(TextOf(mOne), "one");
        EXPECT_EQ(TextOf(mTwo), "two");
        EXPECT_FALSE(std::filesystem::exists(mJournal));
    }

    const std::filesystem::path mFolder =
        std::filesystem::temp_directory_path() / (L"replaced-files-" + std::to_wstring(GetCurrentProcessId()));
    const std::filesystem::path mJournal = mFolder / L"journal";
    const std::filesystem::path mOne = mFolder / L"one.conf";
    const std::filesystem::path mTwo = mFolder / L"two.conf";
    const std::vector<FileContents> mDuring = {{mOne, "of the run"}, {mTwo, std::nullopt}};
};

TEST_F(ReplacedFilesTest, WhatWasThereIsBackAfterwards) {
    {
        const ReplacedFiles files(mJournal, mDuring);
        EXPECT_EQ(TextOf(mOne), "of the run");
        EXPECT_EQ(TextOf(mTwo), "(none)");
    }
    ExpectBothAreBack();
}

TEST_F(ReplacedFilesTest, AFileThatCannotBeReadIsNoMissingOne) {
    {
        const OpenHandle reader(mTwo, FILE_SHARE_DELETE);
        EXPECT_THROW(ReplacedFiles(mJournal, mDuring), std::runtime_error);
    }
    ExpectBothAreBack();
    std::filesystem::remove(mTwo);
    std::filesystem::create_directory(mTwo);
    EXPECT_THROW(ReplacedFiles(mJournal, mDuring), std::runtime_error);
    EXPECT_TRUE(std::filesystem::is_directory(mTwo));
}

TEST_F(ReplacedFilesTest, AFileThatCannotBeRemovedEndsItBeforeItBegins) {
    {
        const OpenHandle reader(mTwo, FILE_SHARE_READ);
        EXPECT_THROW(ReplacedFiles(mJournal, mDuring), std::runtime_error);
        EXPECT_EQ(TextOf(mOne), "one");
    }
    ExpectBothAreBack();
}

TEST_F(ReplacedFilesTest, WhatCannotBePutBackStaysInTheJournal) {
    {
        const ReplacedFiles files(mJournal, mDuring);
        const OpenHandle reader(mOne, FILE_SHARE_READ);
        // The object goes last: its file is still held.
        EXPECT_THROW(ReplacedFiles::PutBack(mJournal), std::runtime_error);
    }
    ExpectBothAreBack();

    auto* const files = new ReplacedFiles(mJournal, mDuring);
    {
        const OpenHandle reader(mOne, FILE_SHARE_READ);
        delete files;
        EXPECT_TRUE(std::filesystem::exists(mJournal));
        EXPECT_EQ(TextOf(mTwo), "two");
        // The next one does not take what is left of this run for somebody's.
        EXPECT_THROW(ReplacedFiles(mJournal, mDuring), std::runtime_error);
    }
    ReplacedFiles::PutBack(mJournal);
    ExpectBothAreBack();
}

TEST_F(ReplacedFilesTest, AJournalOfAnotherKindIsLeftAlone) {
    Write(mJournal, "somebody's");
    EXPECT_THROW(ReplacedFiles(mJournal, mDuring), std::runtime_error);
    EXPECT_EQ(TextOf(mJournal), "somebody's");
    EXPECT_EQ(TextOf(mTwo), "two");
}

}  // namespace
}  // namespace simhost
