#include "diagnostic/LineText.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "doubles/common/ImportPatch.h"

namespace {

int (*sOriginal)(UINT, DWORD, LPCCH, int, LPWSTR, int) = nullptr;

// The ANSI code page of Western Europe, whatever the machine's is.
int WINAPI WithWesternCodePage(UINT codePage, DWORD flags, LPCCH text, int size, LPWSTR out, int outSize) {
    return sOriginal(codePage == CP_ACP ? 1252 : codePage, flags, text, size, out, outSize);
}

class LineTextTest : public testing::Test {
  protected:
    LineTextTest() { sOriginal = mPatch.Original<decltype(sOriginal)>(); }

    std::string Utf8(const std::string& text) { return std::string(AsUtf8(text, mWide, mUtf8)); }

    wchar_t mWide[64];
    char mUtf8[64];

  private:
    ImportPatch mPatch{"MultiByteToWideChar", AsReplacement(WithWesternCodePage)};
};

TEST_F(LineTextTest, Utf8StaysAsItIs) {
    EXPECT_EQ(Utf8(""), "");
    EXPECT_EQ(Utf8("plain"), "plain");
    EXPECT_EQ(Utf8("\xE2\x82\xAC \xF0\x9F\x98\x80"), "\xE2\x82\xAC \xF0\x9F\x98\x80");
}

TEST_F(LineTextTest, TextOfTheAnsiCodePageBecomesUtf8) { EXPECT_EQ(Utf8("C:\\J\xF6rg\\a"), "C:\\J\xC3\xB6rg\\a"); }

TEST_F(LineTextTest, CharacterThatWasCutIsDropped) { EXPECT_EQ(Utf8("long\xC3\xB6\xE2\x82"), "long\xC3\xB6"); }

TEST_F(LineTextTest, WideTextIsTerminated) {
    EXPECT_STREQ(AsWide("\xE2\x82\xAC", mWide), L"\u20AC");
    EXPECT_STREQ(AsWide("", mWide), L"");
    EXPECT_STREQ(AsWide(std::string(64, 'x'), mWide), L"");
    EXPECT_STREQ(AsWide(std::string(63, 'x'), mWide), std::wstring(63, L'x').c_str());
}

}  // namespace
