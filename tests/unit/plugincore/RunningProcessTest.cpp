#include "plugincore/RunningProcess.h"

#include <gtest/gtest.h>
#include <windows.h>
// After windows.h, which they need.
#include <psapi.h>
#include <tlhelp32.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>

#include "doubles/common/ImportPatch.h"
#include "IdleProcess.h"
#include "support/files/TemporaryFolder.h"
#include "support/log/RecordingLogSink.h"
#include "support/ResultCodes.h"

namespace {

using Calls = std::vector<std::string>;

// The outcome of a search; an output that stays as it was is "before".
struct Search {
    std::int32_t result;
    std::string directory;

    bool operator==(const Search&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Search& search) {
    return stream << search.result << " '" << search.directory << "'";
}

const Search kNothing{kLookupNotFound, "before"};

Search Find(const std::string& name) {
    ClearRecordedLog();
    Search search{0, "before"};
    search.result = GetPathToRunningProcessExe(name, search.directory);
    return search;
}

std::string FolderText(const std::filesystem::path& folder) { return folder.string() + "\\"; }

// --- real processes -------------------------------------------------------------------------------------------------

class RealProcessTest : public testing::Test {
  protected:
    TemporaryFolder folder;
};

TEST_F(RealProcessTest, FolderOfTheExecutableIsFound) {
    const IdleProcess process(folder.Path() / "app" / "Lumet.exe");
    EXPECT_EQ(Find("Lumet"), (Search{0, FolderText(folder.Path() / "app")}));
}

TEST_F(RealProcessTest, SearchIsLoggedWithItsOutcome) {
    const IdleProcess process(folder.Path() / "QuorvelLogged.exe");
    Find("QuorvelLogged");
    EXPECT_EQ(RecordedLog(),
              (std::vector<RecordedLine>{{1, "Entering GetPathToRunningProcessExe('QuorvelLogged', ...)"},
                                         {-1, "GetPathToRunningProcessExe('QuorvelLogged', '" +
                                                  FolderText(folder.Path()) + "') returned 0"}}));
}

TEST_F(RealProcessTest, NameThatNobodyHasIsNotFound) {
    EXPECT_EQ(Find("QuorvelNobody"), kNothing);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering GetPathToRunningProcessExe('QuorvelNobody', ...)"},
                                 {-1, "GetPathToRunningProcessExe('QuorvelNobody', 'before') returned 352321536"}}));
}

TEST_F(RealProcessTest, ProcessThatHasEndedIsNotFound) {
    { const IdleProcess process(folder.Path() / "QuorvelEnded.exe"); }
    EXPECT_EQ(Find("QuorvelEnded"), kNothing);
}

TEST_F(RealProcessTest, CaseOfTheNameDoesNotCount) {
    const IdleProcess process(folder.Path() / "QUORVELCASE.EXE");
    EXPECT_EQ(Find("quorvelcase").result, 0);
    EXPECT_EQ(Find("QuorvelCase.exe").result, 0);
}

TEST_F(RealProcessTest, OtherNamesDoNotMatch) {
    const IdleProcess longer(folder.Path() / "QuorvelOther2.exe");
    const IdleProcess shorter(folder.Path() / "QuorvelOthe.exe");
    const IdleProcess before(folder.Path() / "xQuorvelOther.exe");
    EXPECT_EQ(Find("QuorvelOther"), kNothing);
}

// Windows lists the processes in the order in which they were made; this one turns it round.
BOOL WINAPI ListBackwards(DWORD* identifiers, DWORD size, DWORD* used) {
    using Function = BOOL(WINAPI*)(DWORD*, DWORD, DWORD*);
    static const auto original = reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "K32EnumProcesses")));
    const BOOL result = original(identifiers, size, used);
    std::sort(identifiers, identifiers + *used / sizeof(DWORD), std::greater<>());
    return result;
}

TEST_F(RealProcessTest, LowerIdentifierWinsWhateverTheCase) {
    const IdleProcess upper(folder.Path() / "upper" / "LUMET.EXE");
    const IdleProcess lower(folder.Path() / "lower" / "lumet.exe");
    const bool upperIsFirst = upper.Identifier() < lower.Identifier();
    const Search winner{0, FolderText(folder.Path() / (upperIsFirst ? "upper" : "lower"))};
    EXPECT_EQ(Find("Lumet"), winner);
    const ImportPatch patch("K32EnumProcesses", AsReplacement(ListBackwards));
    EXPECT_EQ(Find("Lumet"), winner);
}

DWORD WINAPI RefusePath(HANDLE, HMODULE, LPSTR, DWORD) { return 0; }

TEST_F(RealProcessTest, MatchWhosePathCannotBeReadEndsTheSearch) {
    const IdleProcess one(folder.Path() / "one" / "Lumet.exe");
    const IdleProcess other(folder.Path() / "other" / "Lumet.exe");
    {
        const ImportPatch patch("K32GetModuleFileNameExA", AsReplacement(RefusePath));
        EXPECT_EQ(Find("Lumet"), kNothing);
    }
    EXPECT_EQ(Find("Lumet").result, 0);
}

// --- processes as a test wants them ---------------------------------------------------------------------------------

struct FakeProcess {
    std::string baseName;  // empty: cannot be read from the process itself
    std::string path;      // empty: cannot be read
    bool canBeOpened = true;
    bool hasModules = true;
    std::string listedAs{};  // empty: as the base name
    bool isTold = true;      // among the names
};

std::map<DWORD, FakeProcess> sProcesses;
std::vector<DWORD> sListing;
bool sListFails = false;
bool sNamesFail = false;
Calls sCalls;

DWORD IdentifierOf(HANDLE process) { return static_cast<DWORD>(reinterpret_cast<std::uintptr_t>(process) - 0x10000); }
std::string Name(DWORD identifier) { return std::to_string(identifier); }

BOOL WINAPI List(DWORD* identifiers, DWORD size, DWORD* used) {
    sCalls.push_back("list " + Name(size));
    if (sListFails) {
        return FALSE;
    }
    const std::size_t count = std::min<std::size_t>(sListing.size(), size / sizeof(DWORD));
    std::copy_n(sListing.begin(), count, identifiers);
    *used = static_cast<DWORD>(count * sizeof(DWORD));
    return TRUE;
}

const HANDLE kSnapshot = reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(0x5A));
std::size_t sTold = 0;

HANDLE WINAPI TakeSnapshot(DWORD what, DWORD process) {
    sCalls.push_back(what == TH32CS_SNAPPROCESS && process == 0 ? "names" : "names otherwise");
    sTold = 0;
    return sNamesFail ? INVALID_HANDLE_VALUE : kSnapshot;
}

BOOL WINAPI NextName(HANDLE snapshot, PROCESSENTRY32* entry) {
    while (sTold != sListing.size() && !sProcesses[sListing[sTold]].isTold) {
        ++sTold;
    }
    if (snapshot != kSnapshot || entry->dwSize != sizeof(*entry) || sTold == sListing.size()) {
        return FALSE;
    }
    const DWORD identifier = sListing[sTold++];
    const FakeProcess& process = sProcesses[identifier];
    entry->th32ProcessID = identifier;
    std::strcpy(entry->szExeFile, (process.listedAs.empty() ? process.baseName : process.listedAs).c_str());
    return TRUE;
}

HANDLE WINAPI Open(DWORD access, BOOL inherit, DWORD identifier) {
    sCalls.push_back("open " + Name(identifier) + (access == 0x410 && inherit == FALSE ? "" : " otherwise"));
    const auto process = sProcesses.find(identifier);
    return process != sProcesses.end() && process->second.canBeOpened
               ? reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(0x10000 + identifier))
               : nullptr;
}

BOOL WINAPI Close(HANDLE process) {
    sCalls.push_back(process == kSnapshot ? "end of names" : "close " + Name(IdentifierOf(process)));
    return TRUE;
}

BOOL WINAPI Modules(HANDLE process, HMODULE* modules, DWORD size, LPDWORD needed) {
    const DWORD identifier = IdentifierOf(process);
    sCalls.push_back("modules " + Name(identifier) + ", " + Name(size));
    *needed = 5 * sizeof(HMODULE);  // more than was asked for
    modules[0] = reinterpret_cast<HMODULE>(static_cast<std::uintptr_t>(identifier * 2));
    return sProcesses[identifier].hasModules ? TRUE : FALSE;
}

DWORD GiveText(const std::string& what, HANDLE process, HMODULE module, const std::string& text, LPSTR out,
               DWORD size) {
    const DWORD identifier = IdentifierOf(process);
    const bool isMainModule = reinterpret_cast<std::uintptr_t>(module) == identifier * 2;
    sCalls.push_back(what + " " + Name(identifier) + ", " + Name(size) + (isMainModule ? "" : " of another module"));
    if (text.empty()) {
        return 0;
    }
    std::strcpy(out, text.c_str());
    return static_cast<DWORD>(text.size());
}

DWORD WINAPI BaseName(HANDLE process, HMODULE module, LPSTR out, DWORD size) {
    return GiveText("name", process, module, sProcesses[IdentifierOf(process)].baseName, out, size);
}

DWORD WINAPI FullPath(HANDLE process, HMODULE module, LPSTR out, DWORD size) {
    return GiveText("path", process, module, sProcesses[IdentifierOf(process)].path, out, size);
}

class FakeProcessTest : public testing::Test {
  protected:
    FakeProcessTest() {
        sProcesses.clear();
        sListing.clear();
        sListFails = false;
        sNamesFail = false;
        sCalls.clear();
    }

    static void Add(DWORD identifier, const FakeProcess& process) {
        sProcesses[identifier] = process;
        sListing.push_back(identifier);
    }

    static Search FindAmongThem(const std::string& name) {
        const ImportPatch list("K32EnumProcesses", AsReplacement(List));
        const ImportPatch names("CreateToolhelp32Snapshot", AsReplacement(TakeSnapshot));
        const ImportPatch first("Process32First", AsReplacement(NextName));
        const ImportPatch next("Process32Next", AsReplacement(NextName));
        const ImportPatch open("OpenProcess", AsReplacement(Open));
        const ImportPatch close("CloseHandle", AsReplacement(Close));
        const ImportPatch modules("K32EnumProcessModules", AsReplacement(Modules));
        const ImportPatch baseName("K32GetModuleBaseNameA", AsReplacement(BaseName));
        const ImportPatch fullPath("K32GetModuleFileNameExA", AsReplacement(FullPath));
        return Find(name);
    }
};

TEST_F(FakeProcessTest, AreVisitedInAscendingOrderAndTheMatchAloneIsOpenedAndStaysOpen) {
    Add(30, {"other.exe", "C:\\o\\other.exe"});
    Add(40, {"Lumet.exe", "C:\\fourty\\Lumet.exe"});
    Add(8, {"other.exe", "C:\\o\\other.exe"});
    Add(32, {"lumet.EXE", "C:\\thirty-two\\lumet.EXE"});
    EXPECT_EQ(FindAmongThem("Lumet"), (Search{0, "C:\\thirty-two\\"}));
    EXPECT_EQ(sCalls, (Calls{"list 4096", "names", "end of names", "open 32", "modules 32, 8", "name 32, 261",
                             "path 32, 261"}));
}

TEST_F(FakeProcessTest, ListThatCannotBeReadEndsTheSearch) {
    Add(8, {"Lumet.exe", "C:\\a\\Lumet.exe"});
    sListFails = true;
    EXPECT_EQ(FindAmongThem("Lumet"), kNothing);
    EXPECT_EQ(sCalls, Calls{"list 4096"});
    EXPECT_EQ(RecordedLog(),
              (std::vector<RecordedLine>{{1, "Entering GetPathToRunningProcessExe('Lumet', ...)"},
                                         {-1, "GetPathToRunningProcessExe('Lumet', 'before') returned 352321536"}}));
}

TEST_F(FakeProcessTest, EmptyListFindsNothing) {
    EXPECT_EQ(FindAmongThem("Lumet"), kNothing);
    EXPECT_EQ(sCalls, (Calls{"list 4096", "names", "end of names"}));
}

// The names only tell where to look: the process itself is asked as well.
TEST_F(FakeProcessTest, MatchOfTheNamesThatHasAnotherNameItselfIsClosedAndPassedOver) {
    Add(8, {.baseName = "other.exe", .path = "C:\\8\\other.exe", .listedAs = "Lumet.exe"});
    Add(12, {"Lumet.exe", "C:\\12\\Lumet.exe"});
    EXPECT_EQ(FindAmongThem("Lumet"), (Search{0, "C:\\12\\"}));
    EXPECT_EQ(sCalls, (Calls{"list 4096", "names", "end of names", "open 8", "modules 8, 8", "name 8, 261", "close 8",
                             "open 12", "modules 12, 8", "name 12, 261", "path 12, 261"}));
}

TEST_F(FakeProcessTest, WithoutNamesEachIsOpenedAndClosed) {
    Add(12, {"Lumet.exe", "C:\\12\\Lumet.exe"});
    Add(8, {"other.exe", "C:\\8\\other.exe"});
    sNamesFail = true;
    EXPECT_EQ(FindAmongThem("Lumet"), (Search{0, "C:\\12\\"}));
    EXPECT_EQ(sCalls, (Calls{"list 4096", "names", "open 8", "modules 8, 8", "name 8, 261", "close 8", "open 12",
                             "modules 12, 8", "name 12, 261", "path 12, 261"}));
}

// It may have been started in between.
TEST_F(FakeProcessTest, OneThatIsListedButHasNoNameIsOpened) {
    Add(8, {.baseName = "Lumet.exe", .path = "C:\\8\\Lumet.exe", .isTold = false});
    EXPECT_EQ(FindAmongThem("Lumet"), (Search{0, "C:\\8\\"}));
}

// The search that finds nothing opens nothing, however many processes there are.
TEST_F(FakeProcessTest, OthersAreNotOpened) {
    for (DWORD i = 1; i <= 300; ++i) {
        Add(i * 4, {"other.exe", "C:\\o\\other.exe"});
    }
    EXPECT_EQ(FindAmongThem("Lumet"), kNothing);
    EXPECT_EQ(sCalls, (Calls{"list 4096", "names", "end of names"}));
}

TEST_F(FakeProcessTest, OnesThatCannotBeAskedAreSkippedAndClosed) {
    Add(4, {.baseName = "Lumet.exe", .path = "C:\\4\\Lumet.exe", .canBeOpened = false});
    Add(8, {.baseName = "Lumet.exe", .path = "C:\\8\\Lumet.exe", .hasModules = false});
    Add(12, {.baseName = "", .path = "C:\\12\\Lumet.exe", .listedAs = "Lumet.exe"});
    Add(16, {"Lumet.exe", "C:\\16\\Lumet.exe"});
    EXPECT_EQ(FindAmongThem("Lumet"), (Search{0, "C:\\16\\"}));
    EXPECT_EQ(sCalls, (Calls{"list 4096", "names", "end of names", "open 4", "open 8", "modules 8, 8", "close 8",
                             "open 12", "modules 12, 8", "name 12, 261", "close 12", "open 16", "modules 16, 8",
                             "name 16, 261", "path 16, 261"}));
}

TEST_F(FakeProcessTest, MatchWhosePathCannotBeReadStaysOpenAndEndsTheSearch) {
    Add(8, {"Lumet.exe", ""});
    Add(12, {"Lumet.exe", "C:\\12\\Lumet.exe"});
    EXPECT_EQ(FindAmongThem("Lumet"), kNothing);
    EXPECT_EQ(sCalls,
              (Calls{"list 4096", "names", "end of names", "open 8", "modules 8, 8", "name 8, 261", "path 8, 261"}));
}

TEST_F(FakeProcessTest, MatchWhosePathHasNoBackslashStaysOpenAndEndsTheSearch) {
    Add(8, {"Lumet.exe", "C:/slashes/Lumet.exe"});
    Add(12, {"Lumet.exe", "C:\\12\\Lumet.exe"});
    EXPECT_EQ(FindAmongThem("Lumet"), kNothing);
    EXPECT_EQ(sCalls.back(), "path 8, 261");
}

TEST_F(FakeProcessTest, NameWithoutExeMatchesToo) {
    Add(8, {"LUMET", "C:\\8\\LUMET"});
    EXPECT_EQ(FindAmongThem("Lumet"), (Search{0, "C:\\8\\"}));
}

TEST_F(FakeProcessTest, NameWithADotIsNotGivenAnExe) {
    Add(8, {"Lumet.old.exe", "C:\\8\\Lumet.old.exe"});
    Add(12, {"lumet.OLD", "C:\\12\\lumet.OLD"});
    EXPECT_EQ(FindAmongThem("Lumet.old"), (Search{0, "C:\\12\\"}));
}

TEST_F(FakeProcessTest, At1024TheListEnds) {
    for (DWORD i = 1; i <= 1030; ++i) {
        Add(i * 4, {"other.exe", "C:\\o\\other.exe"});
    }
    sProcesses[1024 * 4] = {"Lumet.exe", "C:\\last\\Lumet.exe"};
    EXPECT_EQ(FindAmongThem("Lumet"), (Search{0, "C:\\last\\"}));
    sProcesses[1024 * 4] = {"other.exe", "C:\\o\\other.exe"};
    sProcesses[1025 * 4] = {"Lumet.exe", "C:\\beyond\\Lumet.exe"};
    EXPECT_EQ(FindAmongThem("Lumet"), kNothing);
}

}  // namespace
