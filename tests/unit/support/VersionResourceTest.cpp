#include "support/VersionResource.h"

#include <gtest/gtest.h>
#include <windows.h>
// After windows.h, which it needs.
#include <winver.h>

#include <array>
#include <filesystem>

#include "doubles/common/ImportPatch.h"
#include "support/files/TemporaryFolder.h"
#include "support/log/RecordingLogSink.h"
#include "support/ResultCodes.h"
#include "support/TextConversion.h"

namespace {

constexpr char kUntouched = '\xA5';

// The reader's outcome: its code and every byte of the destination.
struct Reading {
    std::int32_t result;
    std::string bytes;
};

Reading Read(const std::filesystem::path& path, const std::string& field, std::size_t size) {
    std::array<char, 256> buffer;
    buffer.fill(kUntouched);
    const std::int32_t result = StringValueFromVersionResource(path.wstring(), field, buffer.data(), size);
    return {result, std::string(buffer.data(), buffer.size())};
}

// `text` in a buffer that was otherwise left alone.
std::string Written(const std::string& text) { return text + std::string(256 - text.size(), kUntouched); }

std::filesystem::path TestProgram() { return TestProgramFolder() / "support_tests.exe"; }
std::filesystem::path Module(const char* name) { return TestProgramFolder() / "libraries" / name; }

class VersionResourceTest : public testing::Test {
  protected:
    VersionResourceTest() { ClearRecordedLog(); }

    static std::string Entry(const std::filesystem::path& path, const std::string& field) {
        return "Entering StringValueFromVersionResource(dllPath='" + Utf8FromUtf16(path.wstring()) + "', fieldName='" +
               field + "')";
    }
    static std::string GotBlock(const std::filesystem::path& path) {
        DWORD ignored = 0;
        const DWORD size = GetFileVersionInfoSizeW(path.c_str(), &ignored);
        return "Got version resource info of size " + std::to_string(size) + " bytes.";
    }
    static RecordedLine NotFound() { return {-1, "StringValueFromVersionResource() returning 352321536"}; }
    static RecordedLine Found() { return {-1, "StringValueFromVersionResource() returning 0"}; }
};

TEST_F(VersionResourceTest, FieldIsCopiedWithItsTerminator) {
    const Reading reading = Read(TestProgram(), "FileVersion", 256);
    EXPECT_EQ(reading.result, 0);
    EXPECT_EQ(reading.bytes, Written(std::string("1.2.3-test") + '\0'));
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, Entry(TestProgram(), "FileVersion")}, {0, GotBlock(TestProgram())}, Found()}));
}

TEST_F(VersionResourceTest, NameAndValueAreUtf8) {
    EXPECT_EQ(Read(TestProgram(),
                   "Gr\xC3\xB6\xC3\x9F"
                   "e",
                   256)
                  .bytes,
              Written(std::string("\xE2\x82\xAC and \xF0\x9F\x98\x80") + '\0'));
}

TEST_F(VersionResourceTest, ValueThatFillsTheDestinationIsNotTerminated) {
    EXPECT_EQ(Read(TestProgram(), "FileVersion", 10).bytes, Written("1.2.3-test"));
}

TEST_F(VersionResourceTest, LongerValueIsCutAtTheDestinationsEnd) {
    const Reading reading = Read(TestProgram(), "FileVersion", 4);
    EXPECT_EQ(reading.result, 0);
    EXPECT_EQ(reading.bytes, Written("1.2."));
}

TEST_F(VersionResourceTest, FileWithoutAVersionResourceIsLogged) {
    const std::filesystem::path path = Module("without_version_resource.dll");
    ASSERT_TRUE(std::filesystem::exists(path));
    const Reading reading = Read(path, "FileVersion", 256);
    EXPECT_EQ(reading.result, kLookupNotFound);
    EXPECT_EQ(reading.bytes, Written(""));
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{{1, Entry(path, "FileVersion")},
                                                        {0, "*** Error:  GetFileVersionInfoSize returned 0.\n"},
                                                        NotFound()}));
}

TEST_F(VersionResourceTest, MissingFileIsLoggedTheSame) {
    const Reading reading = Read(L"Z:\\absent\x20AC.dll", "FileVersion", 256);
    EXPECT_EQ(reading.result, kLookupNotFound);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{{1, Entry(L"Z:\\absent\x20AC.dll", "FileVersion")},
                                                        {0, "*** Error:  GetFileVersionInfoSize returned 0.\n"},
                                                        NotFound()}));
}

TEST_F(VersionResourceTest, FieldThatIsMissingIsNamed) {
    const Reading reading = Read(TestProgram(), "Comments", 256);
    EXPECT_EQ(reading.result, kLookupNotFound);
    EXPECT_EQ(reading.bytes, Written(""));
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, Entry(TestProgram(), "Comments")},
                                 {0, GotBlock(TestProgram())},
                                 {0, "*** Error:  VerQueryValue returned FALSE for 'Comments' field in version info."},
                                 NotFound()}));
}

TEST_F(VersionResourceTest, FieldOfAnotherLanguageIsNotSeen) {
    const std::filesystem::path path = Module("without_internal_name.dll");
    EXPECT_EQ(Read(path, "FileVersion", 256).bytes, Written(std::string("3.4.5") + '\0'));
    EXPECT_EQ(Read(path, "InternalName", 256).result, kLookupNotFound);
}

// --- what a sound file never shows ----------------------------------------------------------------------------------

BOOL WINAPI RefuseBlock(LPCWSTR, DWORD, DWORD, LPVOID) { return FALSE; }

TEST_F(VersionResourceTest, BlockThatCannotBeReadIsLoggedWithItsSize) {
    DWORD ignored = 0;
    const std::string size = std::to_string(GetFileVersionInfoSizeW(TestProgram().c_str(), &ignored));
    const ImportPatch patch("GetFileVersionInfoW", AsReplacement(RefuseBlock));
    const Reading reading = Read(TestProgram(), "FileVersion", 256);
    EXPECT_EQ(reading.result, kLookupNotFound);
    EXPECT_EQ(reading.bytes, Written(""));
    EXPECT_EQ(RecordedLog(),
              (std::vector<RecordedLine>{
                  {1, Entry(TestProgram(), "FileVersion")},
                  {0, "*** Error:  GetFileVersionInfo returned FALSE for DLL file, version info size " + size + "."},
                  NotFound()}));
}

std::wstring sQuery;
wchar_t sValue[] = L"abcXYZ";
void* sValueAddress = sValue;
UINT sValueLength = 0;

BOOL WINAPI AnswerQuery(LPCVOID, LPCWSTR query, LPVOID* value, PUINT length) {
    sQuery = query;
    *value = sValueAddress;
    *length = sValueLength;
    return TRUE;
}

class VersionQueryTest : public VersionResourceTest {
  protected:
    Reading ReadAnswer(void* value, UINT length) {
        sValueAddress = value;
        sValueLength = length;
        return Read(TestProgram(), "FileVersion", 256);
    }

    void ExpectEmptyFieldLine() {
        EXPECT_EQ(RecordedLog(),
                  (std::vector<RecordedLine>{
                      {1, Entry(TestProgram(), "FileVersion")},
                      {0, GotBlock(TestProgram())},
                      {0,
                       "*** ERROR: Empty or NULL field data from VerQueryValue for 'FileVersion' field in version "
                       "info."},
                      NotFound()}));
    }

    ImportPatch query{"VerQueryValueW", AsReplacement(AnswerQuery)};
};

TEST_F(VersionQueryTest, AsksForTheEnglishUnicodeTable) {
    ReadAnswer(sValue, 7);
    EXPECT_EQ(sQuery, L"\\StringFileInfo\\040904b0\\FileVersion");
}

TEST_F(VersionQueryTest, ValueWithoutLengthIsLogged) {
    const Reading reading = ReadAnswer(sValue, 0);
    EXPECT_EQ(reading.result, kLookupNotFound);
    EXPECT_EQ(reading.bytes, Written(""));
    ExpectEmptyFieldLine();
}

TEST_F(VersionQueryTest, ValueWithoutAddressIsLogged) {
    const Reading reading = ReadAnswer(nullptr, 5);
    EXPECT_EQ(reading.result, kLookupNotFound);
    EXPECT_EQ(reading.bytes, Written(""));
    ExpectEmptyFieldLine();
}

TEST_F(VersionQueryTest, ValueEndsAtItsLastReportedPosition) {
    wchar_t value[] = L"abcXYZ";
    const Reading reading = ReadAnswer(value, 4);
    EXPECT_EQ(reading.result, 0);
    EXPECT_EQ(reading.bytes, Written(std::string("abc") + '\0'));
}

TEST_F(VersionQueryTest, ValueThatIsOnlyATerminatorIsAnEmptyText) {
    wchar_t value[] = L"";
    const Reading reading = ReadAnswer(value, 1);
    EXPECT_EQ(reading.result, 0);
    EXPECT_EQ(reading.bytes, Written(std::string(1, '\0')));
}

}  // namespace
