#include "Files.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "support/files/TemporaryFolder.h"

namespace {

TEST(Files, FileThatIsBeingWrittenIsRead) {
    const TemporaryFolder folder;
    const auto path = folder.Path() / "a.log";
    const HANDLE writer = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW, 0, nullptr);
    ASSERT_NE(writer, INVALID_HANDLE_VALUE);
    const std::string text(200'000, 'x');
    DWORD written = 0;
    WriteFile(writer, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    EXPECT_EQ(ReadFileOrNothing(path), text);
    CloseHandle(writer);
}

TEST(Files, FileThatCannotBeReadIsNothing) {
    const TemporaryFolder folder;
    EXPECT_EQ(ReadFileOrNothing(folder.Path() / "missing"), std::nullopt);
    EXPECT_EQ(ReadFileOrNothing(folder.Path()), std::nullopt);
}

TEST(Files, WritesOverAFileAndLeavesNothingElse) {
    const TemporaryFolder folder;
    const auto path = folder.Path() / L"b\u00FCndel.zip";
    WriteFileWhole(path, "first");
    WriteFileWhole(path, "second");
    EXPECT_EQ(ReadWholeFile(path), "second");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

TEST(Files, TellsWhyItCannotWrite) {
    const TemporaryFolder folder;
    try {
        WriteFileWhole(folder.Path() / "missing" / "b.zip", "text");
        FAIL() << "it could be written";
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find("b.zip: "), std::string::npos) << error.what();
        EXPECT_TRUE(std::string(error.what()).ends_with("(3)")) << error.what();
    }
    std::filesystem::create_directory(folder.Path() / "b.zip");
    EXPECT_THROW(WriteFileWhole(folder.Path() / "b.zip", "text"), std::runtime_error);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

TEST(Files, TextsAreDecoded) {
    EXPECT_EQ(DecodedText(""), L"");
    EXPECT_EQ(DecodedText("\xE2\x82\xAC"), L"\u20AC");
    EXPECT_EQ(DecodedText("\xEF\xBB\xBF\xE2\x82\xAC"), L"\u20AC");
    EXPECT_EQ(DecodedText(std::string("\xFF\xFE\xAC\x20", 4)), L"\u20AC");
    // In the ANSI code page, whatever it is: nothing is lost.
    EXPECT_EQ(DecodedText("J\xF6rg").front(), L'J');
    EXPECT_GE(DecodedText("J\xF6rg").size(), 3u);
}

TEST(Files, LineThatIsNoUtf8LeavesTheOthersAlone) {
    const std::wstring text = DecodedText("J\xC3\xB6rg 1\r\nJ\xF6rg\r\n\nJ\xC3\xB6rg 2");
    EXPECT_TRUE(text.starts_with(L"J\u00F6rg 1\r\nJ")) << text.size();
    EXPECT_TRUE(text.ends_with(L"rg\r\n\nJ\u00F6rg 2")) << text.size();
}

}  // namespace
