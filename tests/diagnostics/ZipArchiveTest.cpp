#include "ZipArchive.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace {

constexpr SYSTEMTIME kTime{2026, 11, 0, 22, 17, 50, 4, 0};

std::string ArchiveOf(const std::string& name, const std::string& content) {
    ZipArchive archive(kTime);
    archive.Add(name, content);
    return archive.Finish();
}

// What Python's zipfile reads out of archives of this program is tested in support_bundle_test.py.

TEST(ZipArchive, EmptyOneIsItsEndAlone) {
    EXPECT_EQ(ZipArchive(kTime).Finish(), std::string("PK\x05\x06", 4) + std::string(18, '\0'));
}

TEST(ZipArchive, SameFilesGiveTheSameArchive) { EXPECT_EQ(ArchiveOf("a", "text"), ArchiveOf("a", "text")); }

TEST(ZipArchive, CompressesWhatRepeats) { EXPECT_LT(ArchiveOf("a", std::string(1'000'000, 'x')).size(), 2000u); }

TEST(ZipArchive, NameAndTimeStandInBothPlaces) {
    const std::string bytes = ArchiveOf("logs/\xC3\xBC.log", "");
    const std::string name = "logs/\xC3\xBC.log";
    EXPECT_EQ(bytes.substr(30, name.size()), name);
    EXPECT_NE(bytes.find(name, 40), std::string::npos);
    // 2026-11-22 17:50:04 as DOS writes it.
    const std::string time("\x42\x8E\x76\x5D", 4);
    EXPECT_EQ(bytes.substr(10, 4), time);
    const std::size_t directory = bytes.find("PK\x01\x02");
    ASSERT_NE(directory, std::string::npos);
    EXPECT_EQ(bytes.substr(directory + 12, 4), time);
    EXPECT_EQ(bytes.substr(6, 2), std::string("\x00\x08", 2));  // names are UTF-8
}

TEST(ZipArchive, TooLongNameIsRefused) {
    ZipArchive archive(kTime);
    EXPECT_THROW(archive.Add(std::string(0x10000, 'x'), "text"), std::runtime_error);
}

}  // namespace
