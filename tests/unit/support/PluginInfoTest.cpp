#include "support/PluginInfo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <type_traits>

#include "doubles/common/ImportPatch.h"
#include "support/files/TemporaryFolder.h"
#include "support/Log.h"
#include "support/log/RecordingLogSink.h"
#include "support/ResultCodes.h"
#include "support/TextConversion.h"

namespace {

std::string Hex(std::uint32_t number) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%08x", static_cast<unsigned>(number));
    return text;
}

std::string TestProgramPath() { return Utf8FromUtf16((TestProgramFolder() / "support_tests.exe").wstring()); }

RecordedLine HandleLine() {
    return {0, "GetModuleHandleEx returned module handle " + Hex(Low32(GetModuleHandleW(nullptr)))};
}

// Leaves the state as it is at load.
class PluginInfoTest : public testing::Test {
  protected:
    PluginInfoTest() { Reset(); }
    ~PluginInfoTest() override { Reset(); }

    static void Reset() {
        PluginInfo::Initialize();
        PluginInfo::SetPluginIsFunctional(false);
        ClearRecordedLog();
    }
};

// --- state ----------------------------------------------------------------------------------------------------------

TEST(PluginInfoAtLoadTest, IsZero) {
    ClearRecordedLog();
    EXPECT_FALSE(PluginInfo::PluginIsFunctional());
    EXPECT_EQ(PluginInfo::GetIdentityText(), "");
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(PluginInfoTest, InitialiserMarksThePluginFunctionalAndEmptiesTheRest) {
    PluginInfo::Initialize("identity");
    PluginInfo::SetPluginModuleHandle(reinterpret_cast<HMODULE>(0x1234));
    PluginInfo::SetPluginIsFunctional(false);
    PluginInfo::Initialize();
    EXPECT_TRUE(PluginInfo::PluginIsFunctional());
    EXPECT_EQ(PluginInfo::GetIdentityText(), "");
    EXPECT_EQ(GetPluginModuleHandle(), GetModuleHandleW(nullptr));  // looked up again
}

TEST_F(PluginInfoTest, InitialiserWithATextKeepsIt) {
    PluginInfo::Initialize("identity");
    EXPECT_TRUE(PluginInfo::PluginIsFunctional());
    EXPECT_EQ(PluginInfo::GetIdentityText(), "identity");
}

TEST_F(PluginInfoTest, IdentityTextIsCutAt64Bytes) {
    const std::string text = std::string(63, 'x') + "yz";
    PluginInfo::Initialize(text.substr(0, 63).c_str());
    EXPECT_EQ(PluginInfo::GetIdentityText(), text.substr(0, 63));
    PluginInfo::Initialize(text.substr(0, 64).c_str());
    EXPECT_EQ(PluginInfo::GetIdentityText(), text.substr(0, 64));
    PluginInfo::Initialize(text.c_str());
    EXPECT_EQ(PluginInfo::GetIdentityText(), text.substr(0, 64));
}

TEST_F(PluginInfoTest, FunctionalFlagIsLoggedAndKept) {
    PluginInfo::SetPluginIsFunctional(true);
    EXPECT_TRUE(PluginInfo::PluginIsFunctional());
    PluginInfo::SetPluginIsFunctional(false);
    EXPECT_FALSE(PluginInfo::PluginIsFunctional());
    EXPECT_EQ(RecordedLog(),
              (std::vector<RecordedLine>{{0, "Calling PluginInfo::SetPluginIsFunctional( isFunctional=1 )"},
                                         {0, "Calling PluginInfo::SetPluginIsFunctional( isFunctional=0 )"}}));
}

TEST_F(PluginInfoTest, IdentifierIsThePluginsAndWritable) {
    EXPECT_STREQ(sPluginIdentifier, "com.quorvel.AutoActivationPlugin.AI20");
    static_assert(std::is_same_v<decltype((sPluginIdentifier)), const char*&>);
}

// --- module handle --------------------------------------------------------------------------------------------------

int sLookups = 0;
DWORD sLookupFlags = 0;
std::uint32_t sLookupAddress = 0;
std::uint32_t sLookupOutput = 0;
bool sAddressIsOurs = false;

BOOL WINAPI RefuseLookup(DWORD flags, LPCWSTR address, HMODULE* output) {
    ++sLookups;
    sLookupFlags = flags;
    sLookupAddress = Low32(address);
    sLookupOutput = Low32(output);
    HMODULE module = nullptr;
    GetModuleHandleExA(flags | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, reinterpret_cast<LPCSTR>(address),
                       &module);
    sAddressIsOurs = module == GetModuleHandleW(nullptr);
    SetLastError(126);
    return FALSE;
}

RecordedLine LookupErrorLine() {
    return {0, "Error 126 (0x0000007e) in call to GetModuleHandleEx(0x00000004, " + Hex(sLookupAddress) + ", " +
                   Hex(sLookupOutput) + ")"};
}

TEST_F(PluginInfoTest, ModuleIsTheOneThatHoldsThisCode) {
    EXPECT_EQ(GetPluginModuleHandle(), GetModuleHandleW(nullptr));
    EXPECT_EQ(RecordedLog(), std::vector{HandleLine()});
}

TEST_F(PluginInfoTest, ModuleIsLookedUpOnce) {
    GetPluginModuleHandle();
    sLookups = 0;
    const ImportPatch patch("GetModuleHandleExW", AsReplacement(RefuseLookup));
    EXPECT_EQ(GetPluginModuleHandle(), GetModuleHandleW(nullptr));
    EXPECT_EQ(sLookups, 0);
    EXPECT_EQ(RecordedLog(), std::vector{HandleLine()});
}

TEST_F(PluginInfoTest, StoredModuleIsNotLookedUp) {
    PluginInfo::SetPluginModuleHandle(reinterpret_cast<HMODULE>(0x1234));
    EXPECT_EQ(GetPluginModuleHandle(), reinterpret_cast<HMODULE>(0x1234));
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(PluginInfoTest, FailedLookupIsLoggedAndTriedAgain) {
    sLookups = 0;
    {
        const ImportPatch patch("GetModuleHandleExW", AsReplacement(RefuseLookup));
        for (int i = 1; i <= 2; ++i) {
            ClearRecordedLog();
            EXPECT_EQ(GetPluginModuleHandle(), nullptr);
            EXPECT_EQ(sLookups, i);
            EXPECT_EQ(RecordedLog(), std::vector{LookupErrorLine()});
        }
    }
    // The flag alone: the module's count is raised, so that it stays.
    EXPECT_EQ(sLookupFlags, 4u);
    EXPECT_TRUE(sAddressIsOurs);
    EXPECT_EQ(GetPluginModuleHandle(), GetModuleHandleW(nullptr));
}

// --- path -----------------------------------------------------------------------------------------------------------

const RecordedLine kPathEntry{1, "Entering PluginInfo::GetPluginPath()"};
const RecordedLine kTooSmall{0, "*** ERROR:  Buffer not large enough for plugin DLL file path!"};

RecordedLine PathExit(const std::string& path) { return {-1, "PluginInfo::GetPluginPath() returning '" + path + "'"}; }

// What Windows answers for a module's path; like Windows, a path that does not fit is cut and answered with the size.
std::wstring sModulePath;
DWORD sModulePathBuffer = 0;

DWORD WINAPI AnswerModulePath(HMODULE, LPWSTR buffer, DWORD size) {
    sModulePathBuffer = size;
    const std::size_t length = std::min<std::size_t>(sModulePath.size(), size - 1);
    std::memcpy(buffer, sModulePath.data(), length * sizeof(wchar_t));
    buffer[length] = L'\0';
    return sModulePath.size() < size ? static_cast<DWORD>(length) : size;
}

// As older systems answered: the buffer full, without a terminator.
DWORD WINAPI AnswerUnterminatedModulePath(HMODULE, LPWSTR buffer, DWORD size) {
    std::fill(buffer, buffer + size, L'p');
    return size;
}

TEST_F(PluginInfoTest, PathIsTheWholePathOfTheModule) {
    EXPECT_EQ(PluginInfo::GetPluginPath(sPluginIdentifier), TestProgramPath());
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{kPathEntry, HandleLine(), PathExit(TestProgramPath())}));
}

TEST_F(PluginInfoTest, PathDoesNotDependOnTheIdentifier) {
    EXPECT_EQ(PluginInfo::GetPluginPath(nullptr), TestProgramPath());
}

TEST_F(PluginInfoTest, PathIsUtf8) {
    sModulePath = L"C:\\\x20AC\\\xD83D\xDE00.aip";
    const ImportPatch patch("GetModuleFileNameW", AsReplacement(AnswerModulePath));
    EXPECT_EQ(PluginInfo::GetPluginPath(nullptr), "C:\\\xE2\x82\xAC\\\xF0\x9F\x98\x80.aip");
    EXPECT_EQ(sModulePathBuffer, 1024u);
}

TEST_F(PluginInfoTest, PathOf1023CharactersIsReturned) {
    sModulePath = std::wstring(1023, L'p');
    const ImportPatch patch("GetModuleFileNameW", AsReplacement(AnswerModulePath));
    EXPECT_EQ(PluginInfo::GetPluginPath(nullptr), std::string(1023, 'p'));
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{kPathEntry, HandleLine(), PathExit(std::string(1023, 'p'))}));
}

TEST_F(PluginInfoTest, PathOf1024OrMoreCharactersBecomesTheFallbackText) {
    const ImportPatch patch("GetModuleFileNameW", AsReplacement(AnswerModulePath));
    for (const std::size_t length : {1024, 5000}) {
        Reset();
        sModulePath = std::wstring(length, L'p');
        EXPECT_EQ(PluginInfo::GetPluginPath(nullptr), "./QuorvelTypeAgent...");
        EXPECT_EQ(RecordedLog(),
                  (std::vector<RecordedLine>{kPathEntry, HandleLine(), kTooSmall, PathExit("./QuorvelTypeAgent...")}));
    }
}

TEST_F(PluginInfoTest, PathThatWindowsDoesNotTellIsTheFallbackText) {
    sModulePath.clear();
    const ImportPatch patch("GetModuleFileNameW", AsReplacement(AnswerModulePath));
    EXPECT_EQ(PluginInfo::GetPluginPath(nullptr), "./QuorvelTypeAgent...");
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{kPathEntry, HandleLine(), PathExit("./QuorvelTypeAgent...")}));
}

TEST_F(PluginInfoTest, PathWithoutAModuleIsTheFallbackText) {
    const ImportPatch patch("GetModuleHandleExW", AsReplacement(RefuseLookup));
    EXPECT_EQ(PluginInfo::GetPluginPath(nullptr), "./QuorvelTypeAgent...");
    EXPECT_EQ(RecordedLog(),
              (std::vector<RecordedLine>{kPathEntry, LookupErrorLine(), PathExit("./QuorvelTypeAgent...")}));
}

// --- version resource -----------------------------------------------------------------------------------------------

// The lines that the reader for one file writes about a field that it finds.
std::vector<RecordedLine> FileLines(const std::string& path, const std::string& field) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(Utf16FromUtf8(path).c_str(), &ignored);
    return {{1, "Entering StringValueFromVersionResource(dllPath='" + path + "', fieldName='" + field + "')"},
            {0, "Got version resource info of size " + std::to_string(size) + " bytes."},
            {-1, "StringValueFromVersionResource() returning 0"}};
}

std::vector<RecordedLine> Joined(std::vector<RecordedLine> first, const std::vector<RecordedLine>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// The lines of a reading from the test program, from the field's name to its result.
std::vector<RecordedLine> OwnFieldLines(const std::string& field) {
    const std::string handle = Hex(Low32(GetModuleHandleW(nullptr)));
    std::vector<RecordedLine> lines = {{1, "Entering StringValueFromVersionResource(fieldName \"" + field + "\")"},
                                       HandleLine(),
                                       {0, "Plugin DLL file path corresponding to handle " + handle + ":"}};
    lines = Joined(lines, FileLines(TestProgramPath(), field));
    lines.push_back({-1, "StringValueFromVersionResource() returning 0"});
    return lines;
}

HMODULE LoadModule(const char* name) {
    const HMODULE module = LoadLibraryW((TestProgramFolder() / "libraries" / name).c_str());
    EXPECT_NE(module, nullptr) << name;
    return module;
}

TEST_F(PluginInfoTest, OwnFieldIsReadFromTheModulesFile) {
    std::array<char, 64> value{};
    EXPECT_EQ(StringValueFromVersionResource("InternalName", value.data(), value.size()), 0);
    EXPECT_STREQ(value.data(), "SupportTests");
    EXPECT_EQ(RecordedLog(), OwnFieldLines("InternalName"));
}

TEST_F(PluginInfoTest, OwnFieldIsNotFoundWithoutAModule) {
    const ImportPatch patch("GetModuleHandleExW", AsReplacement(RefuseLookup));
    std::array<char, 4> value = {'a', 'b', 'c', 'd'};
    EXPECT_EQ(StringValueFromVersionResource("InternalName", value.data(), value.size()), kLookupNotFound);
    EXPECT_EQ(value, (std::array<char, 4>{'a', 'b', 'c', 'd'}));
    EXPECT_EQ(RecordedLog(),
              (std::vector<RecordedLine>{{1, "Entering StringValueFromVersionResource(fieldName \"InternalName\")"},
                                         LookupErrorLine(),
                                         {-1, "StringValueFromVersionResource() returning 352321536"}}));
}

// The lines of a reading from a module whose path of 1023 'p' leads nowhere.
std::vector<RecordedLine> TruncatedLines() {
    return {{1, "Entering StringValueFromVersionResource(fieldName \"InternalName\")"},
            kTooSmall,
            {0, "Plugin DLL file path corresponding to handle 0x00001234 (TRUNCATED!!!):"},
            {1, "Entering StringValueFromVersionResource(dllPath='" + std::string(1023, 'p') +
                    "', fieldName='InternalName')"},
            {0, "*** Error:  GetFileVersionInfoSize returned 0.\n"},
            {-1, "StringValueFromVersionResource() returning 352321536"},
            {-1, "StringValueFromVersionResource() returning 352321536"}};
}

TEST_F(PluginInfoTest, TruncatedPathIsUsedAndLogged) {
    PluginInfo::SetPluginModuleHandle(reinterpret_cast<HMODULE>(0x1234));
    sModulePath = std::wstring(1024, L'p');
    const ImportPatch patch("GetModuleFileNameW", AsReplacement(AnswerModulePath));
    std::array<char, 8> value{};
    EXPECT_EQ(StringValueFromVersionResource("InternalName", value.data(), value.size()), kLookupNotFound);
    EXPECT_EQ(RecordedLog(), TruncatedLines());
}

TEST_F(PluginInfoTest, TruncatedPathEndsAtTheBuffersLastCharacter) {
    PluginInfo::SetPluginModuleHandle(reinterpret_cast<HMODULE>(0x1234));
    const ImportPatch patch("GetModuleFileNameW", AsReplacement(AnswerUnterminatedModulePath));
    std::array<char, 8> value{};
    EXPECT_EQ(StringValueFromVersionResource("InternalName", value.data(), value.size()), kLookupNotFound);
    EXPECT_EQ(RecordedLog(), TruncatedLines());
}

TEST_F(PluginInfoTest, CrossPluginFieldIsLoggedAroundTheReading) {
    const std::string name = "CrossPluginUtils::StringValueFromVersionResource";
    EXPECT_EQ(CrossPluginUtils::StringValueFromVersionResource("FileVersion"), "1.2.3-test");
    std::vector<RecordedLine> expected = {{1, "Entering " + name + "(fieldName \"FileVersion\")"}};
    expected = Joined(expected, OwnFieldLines("FileVersion"));
    expected.push_back({-1, name + "() returning '1.2.3-test'"});
    EXPECT_EQ(RecordedLog(), expected);
}

TEST_F(PluginInfoTest, CrossPluginFieldThatIsMissingIsEmpty) {
    EXPECT_EQ(CrossPluginUtils::StringValueFromVersionResource("Comments"), "");
    EXPECT_EQ(RecordedLog().back(),
              (RecordedLine{-1, "CrossPluginUtils::StringValueFromVersionResource() returning ''"}));
}

wchar_t sLongValue[2001];

BOOL WINAPI AnswerLongValue(LPCVOID, LPCWSTR, LPVOID* value, PUINT length) {
    std::fill(sLongValue, sLongValue + 2000, L'v');
    *value = sLongValue;
    *length = 2001;
    return TRUE;
}

TEST_F(PluginInfoTest, CrossPluginFieldIsReadIntoABufferOf1024Bytes) {
    const ImportPatch patch("VerQueryValueW", AsReplacement(AnswerLongValue));
    EXPECT_EQ(CrossPluginUtils::StringValueFromVersionResource("FileVersion"), std::string(1024, 'v'));
}

TEST_F(PluginInfoTest, InternalNameIsReadOnce) {
    EXPECT_EQ(PluginInfo::GetInternalName(), "SupportTests");
    EXPECT_EQ(RecordedLog(), OwnFieldLines("InternalName"));
    ClearRecordedLog();
    EXPECT_EQ(PluginInfo::GetInternalName(), "SupportTests");
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(PluginInfoTest, InternalNameIsLookedUpAgainWhileTheCacheIsEmpty) {
    PluginInfo::SetPluginModuleHandle(LoadModule("without_internal_name.dll"));
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(PluginInfo::GetInternalName(), "");
        EXPECT_EQ(CountRecorded("Entering StringValueFromVersionResource(fieldName \"InternalName\")"), i);
    }
    PluginInfo::SetPluginModuleHandle(GetModuleHandleW(nullptr));
    EXPECT_EQ(PluginInfo::GetInternalName(), "SupportTests");
}

TEST_F(PluginInfoTest, InternalNameOf64OrMoreCharactersFillsTheCache) {
    const std::string name = "0123456789012345678901234567890123456789012345678901234567890123456789";
    PluginInfo::SetPluginModuleHandle(LoadModule("long_internal_name.dll"));
    EXPECT_EQ(PluginInfo::GetInternalName(), name.substr(0, 64));
    ClearRecordedLog();
    EXPECT_EQ(PluginInfo::GetInternalName(), name.substr(0, 64));
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(PluginInfoTest, FileVersionIsReadOnEveryCall) {
    EXPECT_EQ(PluginInfo::GetFileVersion(), "1.2.3-test");
    PluginInfo::SetPluginModuleHandle(LoadModule("without_internal_name.dll"));
    EXPECT_EQ(PluginInfo::GetFileVersion(), "3.4.5");
    PluginInfo::SetPluginModuleHandle(LoadModule("without_version_resource.dll"));
    EXPECT_EQ(PluginInfo::GetFileVersion(), "");
}

}  // namespace
