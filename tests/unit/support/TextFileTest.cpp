#include "support/TextFile.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

#include "doubles/common/ImportPatch.h"
#include "support/files/TemporaryFolder.h"

namespace {

using Text = std::optional<std::string>;

class TextFileTest : public testing::Test {
  protected:
    // The file's text, read under both kinds of path.
    Text TextOf(const std::string& bytes) const {
        WriteWholeFile(path, bytes);
        Text text = ReadTextFile(path.c_str());
        EXPECT_EQ(text, ReadTextFile(path.string().c_str()));
        return text;
    }

    // What the standard library's stream reads, which is what was read before.
    std::string TextOfStream() const {
        std::ifstream stream(path);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }

    const TemporaryFolder folder;
    const std::filesystem::path path = folder.Path() / "text.txt";
};

TEST_F(TextFileTest, TextComesAsItStandsButForItsLineEnds) {
    EXPECT_EQ(TextOf("one\r\ntwo\nthree\r"), Text("one\ntwo\nthree\r"));
    EXPECT_EQ(TextOf("\xEF\xBB\xBF\xFF\xC3\xA4"), Text("\xEF\xBB\xBF\xFF\xC3\xA4"));
    EXPECT_EQ(TextOf(std::string("a\0b", 3)), Text(std::string("a\0b", 3)));
    EXPECT_EQ(TextOf(""), Text(""));
}

TEST_F(TextFileTest, ControlZEndsTheText) { EXPECT_EQ(TextOf("one\n\x1Atwo\n"), Text("one\n")); }

// Line ends across the borders of the pieces in which a file is read.
TEST_F(TextFileTest, LongTextIsThatOfTheStandardLibrary) {
    for (const std::size_t length : {511U, 512U, 4094U, 4095U, 4096U, 4097U, 8191U, 8192U, 100000U}) {
        for (const char* end : {"\r\nx", "\r", "\n", "\r\r\n", "\x1Ax"}) {
            const Text text = TextOf(std::string(length, 'x') + end);
            EXPECT_EQ(text, Text(TextOfStream())) << length << " and " << std::strlen(end);
        }
    }
}

TEST_F(TextFileTest, FileThatCannotBeOpenedHasNoText) {
    EXPECT_EQ(ReadTextFile(path.c_str()), std::nullopt);
    EXPECT_EQ(ReadTextFile(path.string().c_str()), std::nullopt);
    EXPECT_EQ(ReadTextFile(folder.Path().c_str()), std::nullopt);
}

TEST_F(TextFileTest, FileIsClosedAfterReading) {
    EXPECT_EQ(TextOf("text"), Text("text"));
    EXPECT_TRUE(std::filesystem::remove(path));
}

const char* sReadable = "";

std::size_t __cdecl ReadInPart(void* buffer, std::size_t, std::size_t, std::FILE*) {
    std::memcpy(buffer, sReadable, std::strlen(sReadable));
    return std::strlen(sReadable);
}

int __cdecl TellError(std::FILE*) { return 1; }

TEST_F(TextFileTest, OfAFileThatCannotBeReadToItsEndTheWholeLinesCount) {
    WriteWholeFile(path, "one\ntwo\nthree\n");
    const ImportPatch read("fread", AsReplacement(ReadInPart));
    const ImportPatch error("ferror", AsReplacement(TellError));
    sReadable = "one\ntw";
    EXPECT_EQ(ReadTextFile(path.c_str()), Text("one\n"));
    sReadable = "one\n";
    EXPECT_EQ(ReadTextFile(path.c_str()), Text("one\n"));
    sReadable = "on";
    EXPECT_EQ(ReadTextFile(path.c_str()), Text(""));
}

}  // namespace
