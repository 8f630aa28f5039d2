#include "plugincore/LibraryLoading.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "doubles/common/ImportPatch.h"
#include "support/log/RecordingLogSink.h"
#include "TestLibraries.h"

namespace {

constexpr wchar_t kPrivateBuild[] = L"\\StringFileInfo\\040904b0\\PrivateBuild";
constexpr char kUntouched = '\xA5';

RecordedLine Loaded(const std::string& path, HMODULE module) {
    return {0, "SUCCESS: LoadLibraryA('" + path + "') returned " + Hex(module)};
}

DWORD WINAPI RefuseVersionSize(LPCSTR, LPDWORD) {
    SetLastError(1813);
    return 0;
}

RecordedLine NoVersion(const std::string& path) {
    return {0, "GetFileVersionInfoA('" + path + "', ...) returned error code 0x00000715 (1813)"};
}

class LibraryLoadingTest : public testing::Test {
  protected:
    LibraryLoadingTest() {
        ClearRecordedLog();
        version.fill(kUntouched);
    }

    // Every byte of the buffer when its first ones were written.
    static std::string Written(const std::string& text) { return text + std::string(256 - text.size(), kUntouched); }
    std::string Version() const { return {version.data(), version.size()}; }

    std::array<char, 256> version;
};

// --- LoadLibraryWithVersion -----------------------------------------------------------------------------------------

TEST_F(LibraryLoadingTest, LibraryIsLoadedAndItsPrivateBuildIsUtf8) {
    const std::string path = Library("PluginCoreOfPrivateBuild.dll");
    const HMODULE module = LoadLibraryWithVersion(path, version.data(), version.size());
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(module, GetModuleHandleA(path.c_str()));
    EXPECT_EQ(Version(), Written(kVersion + '\0'));
    EXPECT_EQ(RecordedLog(), std::vector{Loaded(path, module)});
}

TEST_F(LibraryLoadingTest, PrivateBuildIsCutToTheGivenSizeAndTerminated) {
    LoadLibraryWithVersion(Library("PluginCoreOfPrivateBuild.dll"), version.data(), 4);
    EXPECT_EQ(Version(), Written(std::string("bui") + '\0'));
}

TEST_F(LibraryLoadingTest, PrivateBuildFitsWithItsTerminatorExactly) {
    LoadLibraryWithVersion(Library("PluginCoreOfPrivateBuild.dll"), version.data(), 12);
    EXPECT_EQ(Version(), Written(kVersion + '\0'));
}

TEST_F(LibraryLoadingTest, LongPrivateBuildIsCutBeforeASurrogatePair) {
    LoadLibraryWithVersion(Library("PluginCoreOfLongPrivateBuild.dll"), version.data(), version.size());
    EXPECT_EQ(Version(), Written(std::string(126, 'x') + '\0'));
}

TEST_F(LibraryLoadingTest, LibraryWithoutAVersionResourceIsLoadedAllTheSame) {
    const ImportPatch patch("GetFileVersionInfoSizeA", AsReplacement(RefuseVersionSize));
    const std::string path = Library("PluginCoreWithoutVersionResource.dll");
    const HMODULE module = LoadLibraryWithVersion(path, version.data(), version.size());
    EXPECT_NE(module, nullptr);
    EXPECT_EQ(Version(), Written(""));
    EXPECT_EQ(RecordedLog(), (std::vector{Loaded(path, module), NoVersion(path)}));
}

TEST_F(LibraryLoadingTest, LibraryWithTextsInAnotherLanguageHasNoVersion) {
    const std::string path = Library("PluginCoreOfOtherLanguage.dll");
    const HMODULE module = LoadLibraryWithVersion(path, version.data(), version.size());
    EXPECT_NE(module, nullptr);
    EXPECT_EQ(Version(), Written(""));
    EXPECT_EQ(RecordedLog(), std::vector{Loaded(path, module)});
}

TEST_F(LibraryLoadingTest, MissingLibraryIsLoggedWithWindowsErrorTwice) {
    const ImportPatch patch("GetFileVersionInfoSizeA", AsReplacement(RefuseVersionSize));
    EXPECT_EQ(LoadLibraryWithVersion("C:\\absent\\a.dll", version.data(), version.size()), nullptr);
    EXPECT_EQ(Version(), Written(""));
    EXPECT_EQ(RecordedLog(),
              (std::vector<RecordedLine>{{0, "LoadLibraryA('C:\\absent\\a.dll') returned error code 0x0000007e (126)"},
                                         NoVersion("C:\\absent\\a.dll")}));
}

HMODULE WINAPI LoadNothing(LPCSTR) {
    SetLastError(0xC000007B);
    return nullptr;
}

TEST_F(LibraryLoadingTest, VersionIsReadOfALibraryThatCannotBeLoaded) {
    const ImportPatch patch("LoadLibraryA", AsReplacement(LoadNothing));
    const std::string path = Library("PluginCoreOfPrivateBuild.dll");
    EXPECT_EQ(LoadLibraryWithVersion(path, version.data(), version.size()), nullptr);
    EXPECT_EQ(Version(), Written(kVersion + '\0'));
    EXPECT_EQ(
        RecordedLog(),
        (std::vector<RecordedLine>{{0, "LoadLibraryA('" + path + "') returned error code 0xc000007b (-1073741701)"}}));
}

// --- GetFileVersionString -------------------------------------------------------------------------------------------

class FileVersionStringTest : public LibraryLoadingTest {
  protected:
    FileVersionStringTest() { text.fill(L'\xA5A5'); }

    bool Read(const std::string& library, const wchar_t* query, std::size_t size) {
        return GetFileVersionString(Library(library), query, size, text.data());
    }
    static std::wstring Units(const std::wstring& start) { return start + std::wstring(256 - start.size(), L'\xA5A5'); }
    std::wstring Text() const { return {text.data(), text.size()}; }

    std::array<wchar_t, 256> text;
};

TEST_F(FileVersionStringTest, TextIsCopiedWithItsTerminator) {
    EXPECT_TRUE(Read("PluginCoreOfPrivateBuild.dll", kPrivateBuild, 256));
    EXPECT_EQ(Text(), Units(std::wstring(L"build \x20AC 7") + L'\0'));
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(FileVersionStringTest, QueryNamesTheField) {
    EXPECT_TRUE(Read("PluginCoreOfPrivateBuild.dll", L"\\StringFileInfo\\040904b0\\FileVersion", 256));
    EXPECT_EQ(Text(), Units(std::wstring(L"2.0") + L'\0'));
}

TEST_F(FileVersionStringTest, LongTextIsCutTo127UnitsOf256Bytes) {
    EXPECT_TRUE(Read("PluginCoreOfLongPrivateBuild.dll", L"\\StringFileInfo\\040904b0\\Comments", 256));
    EXPECT_EQ(Text(), Units(std::wstring(127, L'y') + L'\0'));
}

TEST_F(FileVersionStringTest, SurrogatePairAcrossTheCutIsLeftOut) {
    EXPECT_TRUE(Read("PluginCoreOfLongPrivateBuild.dll", kPrivateBuild, 256));
    EXPECT_EQ(Text(), Units(std::wstring(126, L'x') + L'\0'));
}

TEST_F(FileVersionStringTest, SurrogatePairBeforeTheCutStays) {
    EXPECT_TRUE(Read("PluginCoreOfLongPrivateBuild.dll", L"\\StringFileInfo\\040904b0\\LegalTrademarks", 256));
    EXPECT_EQ(Text(), Units(std::wstring(125, L'z') + L"\xD83D\xDE00" + L'\0'));
}

TEST_F(FileVersionStringTest, FieldThatIsMissingYieldsNothingInSilence) {
    EXPECT_FALSE(Read("PluginCoreOfPrivateBuild.dll", L"\\StringFileInfo\\040904b0\\Comments", 256));
    EXPECT_FALSE(Read("PluginCoreOfOtherLanguage.dll", kPrivateBuild, 256));
    EXPECT_EQ(Text(), Units(L""));
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(FileVersionStringTest, FileWithoutAVersionResourceIsLogged) {
    DWORD ignored = 0;
    const std::string path = Library("PluginCoreWithoutVersionResource.dll");
    ASSERT_EQ(GetFileVersionInfoSizeA(path.c_str(), &ignored), 0u);
    EXPECT_FALSE(Read("PluginCoreWithoutVersionResource.dll", kPrivateBuild, 256));
    EXPECT_EQ(Text(), Units(L""));
    ASSERT_EQ(RecordedLog().size(), 1u);
    EXPECT_EQ(RecordedLog()[0].text.rfind("GetFileVersionInfoA('" + path + "', ...) returned error code 0x", 0), 0u);

    ClearRecordedLog();
    const ImportPatch patch("GetFileVersionInfoSizeA", AsReplacement(RefuseVersionSize));
    EXPECT_FALSE(Read("PluginCoreWithoutVersionResource.dll", kPrivateBuild, 256));
    EXPECT_EQ(RecordedLog(), std::vector{NoVersion(path)});
}

constexpr wchar_t kBeyondTheText[] =
    L"\xD83D"
    L"eyond the block";

BOOL WINAPI AnswerThreeUnits(LPCVOID, LPCWSTR, LPVOID* text, PUINT length) {
    *text = const_cast<wchar_t*>(kBeyondTheText);
    *length = 3;
    return TRUE;
}

TEST_F(FileVersionStringTest, TextWithoutItsTerminatorEndsWithTheBlock) {
    const ImportPatch patch("VerQueryValueW", AsReplacement(AnswerThreeUnits));
    EXPECT_TRUE(Read("PluginCoreOfPrivateBuild.dll", kPrivateBuild, 256));
    EXPECT_EQ(Text(), Units(std::wstring(kBeyondTheText, 3) + L'\0'));
    text.fill(L'\xA5A5');
    EXPECT_TRUE(Read("PluginCoreOfPrivateBuild.dll", kPrivateBuild, 8));
    EXPECT_EQ(Text(), Units(std::wstring(kBeyondTheText, 3) + L'\0'));
}

const wchar_t* sValue = L"";
UINT sValueLength = 0;  // with the terminator

BOOL WINAPI AnswerValue(LPCVOID, LPCWSTR, LPVOID* text, PUINT length) {
    *text = const_cast<wchar_t*>(sValue);
    *length = sValueLength;
    return TRUE;
}

TEST_F(FileVersionStringTest, ValueWithoutEvenATerminatorIsNone) {
    const ImportPatch patch("VerQueryValueW", AsReplacement(AnswerValue));
    sValueLength = 0;
    EXPECT_FALSE(Read("PluginCoreOfPrivateBuild.dll", kPrivateBuild, 256));
    EXPECT_EQ(Text(), Units(L""));
    sValueLength = 1;
    EXPECT_TRUE(Read("PluginCoreOfPrivateBuild.dll", kPrivateBuild, 256));
    EXPECT_EQ(Text(), Units(std::wstring(1, L'\0')));
    sValue = nullptr;
    EXPECT_FALSE(Read("PluginCoreOfPrivateBuild.dll", kPrivateBuild, 256));
    sValue = L"";
}

TEST_F(FileVersionStringTest, TextWithoutItsTerminatorEndsWhereTheBlockDoes) {
    const ImportPatch patch("VerQueryValueW", AsReplacement(AnswerValue));
    sValue = L"7.0 and what is behind the block";
    sValueLength = 3;
    for (const std::size_t size : {256u, 8u}) {
        text.fill(L'\xA5A5');
        EXPECT_TRUE(Read("PluginCoreOfPrivateBuild.dll", kPrivateBuild, size));
        EXPECT_EQ(Text(), Units(std::wstring(L"7.0") + L'\0'));
    }
    // A surrogate at the block's end is not cut off.
    sValue = L"7.\xD83D\xDE00";
    EXPECT_TRUE(Read("PluginCoreOfPrivateBuild.dll", kPrivateBuild, 8));
    EXPECT_EQ(Text(), Units(std::wstring(L"7.\xD83D") + L'\0'));
    sValue = L"";
}

TEST_F(FileVersionStringTest, HighSurrogatesAreThoseFromD800ToDBFF) {
    const ImportPatch patch("VerQueryValueW", AsReplacement(AnswerValue));
    const auto cutAfterOne = [&](const wchar_t* value) {
        sValue = value;
        sValueLength = 3;
        EXPECT_TRUE(Read("PluginCoreOfPrivateBuild.dll", kPrivateBuild, 2 * sizeof(wchar_t)));
        return std::wstring(text.data());
    };
    EXPECT_EQ(cutAfterOne(L"\xD800\xDC00"), L"");
    EXPECT_EQ(cutAfterOne(L"\xDBFF\xDC00"), L"");
    EXPECT_EQ(cutAfterOne(L"\xD7FF\xDC00"), L"\xD7FF");
    EXPECT_EQ(cutAfterOne(L"\xDC00\xDC00"), L"\xDC00");
    sValue = L"";
}

BOOL WINAPI RefuseBlock(LPCSTR, DWORD, DWORD, LPVOID) { return FALSE; }

TEST_F(FileVersionStringTest, BlockThatCannotBeReadYieldsNothing) {
    const ImportPatch patch("GetFileVersionInfoA", AsReplacement(RefuseBlock));
    EXPECT_FALSE(Read("PluginCoreOfPrivateBuild.dll", kPrivateBuild, 256));
    EXPECT_EQ(Text(), Units(L""));
}

TEST_F(FileVersionStringTest, PathIsCutTo259Characters) {
    const ImportPatch patch("GetFileVersionInfoSizeA", AsReplacement(RefuseVersionSize));
    const std::string path = "C:\\" + std::string(256, 'p');
    for (const char* more : {"", "q", "qqqqq"}) {
        ClearRecordedLog();
        EXPECT_FALSE(GetFileVersionString(path + more, kPrivateBuild, 256, text.data()));
        EXPECT_EQ(RecordedLog(), std::vector{NoVersion(path)}) << more;
    }
}

// --- GetProcAddressLogged -------------------------------------------------------------------------------------------

TEST_F(LibraryLoadingTest, AddressIsLoggedByItsLowHalf) {
    const HMODULE module = LoadLibraryA(Library("PluginCoreOfPrivateBuild.dll").c_str());
    const FARPROC address = GetProcAddressLogged(module, "GetMenus");
    EXPECT_NE(address, nullptr);
    EXPECT_EQ(address, GetProcAddress(module, "GetMenus"));
    EXPECT_EQ(RecordedLog(),
              (std::vector<RecordedLine>{{0, "GetProcAddress(" + Hex(module) + ", 'GetMenus') returned " +
                                                 Hex(reinterpret_cast<const void*>(address))}}));
}

TEST_F(LibraryLoadingTest, NameThatTheModuleLacksIsLoggedAsZero) {
    const HMODULE module = LoadLibraryA(Library("PluginCoreWithoutEntries.dll").c_str());
    EXPECT_EQ(GetProcAddressLogged(module, "GetMenus"), nullptr);
    EXPECT_EQ(RecordedLog(),
              (std::vector<RecordedLine>{{0, "GetProcAddress(" + Hex(module) + ", 'GetMenus') returned 0x00000000"}}));
}

TEST_F(LibraryLoadingTest, NullModuleHasNoAddressesInSilence) {
    // Windows itself would take null for the program, which exports this.
    EXPECT_NE(GetProcAddress(GetModuleHandleW(nullptr), "GetMenus"), nullptr);
    EXPECT_EQ(GetProcAddressLogged(nullptr, "GetMenus"), nullptr);
    EXPECT_TRUE(RecordedLog().empty());
}

}  // namespace
