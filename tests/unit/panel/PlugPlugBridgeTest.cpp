#include "panel/PlugPlugBridge.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "doubles/common/ForeignException.h"
#include "doubles/common/ImportPatch.h"
#include "support/files/TemporaryFolder.h"
#include "support/ForeignExceptionGuard.h"
#include "support/plugplug/FakePlugPlug.h"

namespace {

namespace fs = std::filesystem;

// Where the host's program is said to be, and how that was asked.
std::wstring sHostProgram;
std::vector<std::pair<HMODULE, DWORD>> sProgramQueries;

DWORD WINAPI TellHostProgram(HMODULE module, LPWSTR path, DWORD size) {
    sProgramQueries.emplace_back(module, size);
    const std::size_t length = std::min<std::size_t>(sHostProgram.size(), size);
    std::copy_n(sHostProgram.data(), length, path);
    if (length < size) {
        path[length] = L'\0';
    }
    return static_cast<DWORD>(length);
}

// The library is looked for in a folder of the test's own, whose name no code page holds.
class PlugPlugBridgeTest : public testing::Test {
  protected:
    PlugPlugBridgeTest() {
        fs::create_directories(hostFolder);
        sHostProgram = (hostFolder / "host.exe").wstring();
        sProgramQueries.clear();
    }
    ~PlugPlugBridgeTest() override {
        for (const char* name : {"PlugPlugOwl.dll", "PlugPlug.dll"}) {
            while (const HMODULE module = Loaded(name)) {
                FreeLibrary(module);
            }
        }
    }

    void Install(const std::string& library, const std::string& name) const {
        fs::copy_file(libraries / library, hostFolder / name);
    }
    HMODULE Loaded(const std::string& name) const { return GetModuleHandleW((hostFolder / name).c_str()); }

    // Read before the program is said to be elsewhere.
    const fs::path libraries = TestProgramFolder().parent_path() / "bin";
    const TemporaryFolder temporary;
    const fs::path hostFolder = temporary.Path() / L"Gr\u00F6\u00DFe \u2603 \u6587\u5B57";
    const ImportPatch patch{"GetModuleFileNameW", AsReplacement(TellHostProgram)};
    PlugPlugState state{};
};

template <class Function>
Function Exported(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

// --- Load: the file -------------------------------------------------------------------------------------------------

TEST_F(PlugPlugBridgeTest, NewerNameIsLoadedWhenBothAreThere) {
    Install("PlugPlug.dll", "PlugPlugOwl.dll");
    Install("PlugPlug.dll", "PlugPlug.dll");
    EXPECT_EQ(PlugPlugBridge::Load(state), 0);
    ASSERT_NE(state.module, nullptr);
    EXPECT_EQ(state.module, Loaded("PlugPlugOwl.dll"));
    EXPECT_EQ(Loaded("PlugPlug.dll"), nullptr);
}

TEST_F(PlugPlugBridgeTest, OlderNameIsLoadedWhenItIsAloneThere) {
    Install("PlugPlug.dll", "PlugPlug.dll");
    EXPECT_EQ(PlugPlugBridge::Load(state), 0);
    ASSERT_NE(state.module, nullptr);
    EXPECT_EQ(state.module, Loaded("PlugPlug.dll"));
}

TEST_F(PlugPlugBridgeTest, NewerNameIsLoadedWhenItIsAloneThere) {
    Install("PlugPlug.dll", "PlugPlugOwl.dll");
    EXPECT_EQ(PlugPlugBridge::Load(state), 0);
    ASSERT_NE(state.module, nullptr);
    EXPECT_EQ(state.module, Loaded("PlugPlugOwl.dll"));
}

TEST_F(PlugPlugBridgeTest, NewerNameThatCannotBeLoadedIsNotReplacedByTheOlder) {
    WriteWholeFile(hostFolder / "PlugPlugOwl.dll", "no library");
    Install("PlugPlug.dll", "PlugPlug.dll");
    EXPECT_EQ(PlugPlugBridge::Load(state), 31);
    EXPECT_EQ(state.module, nullptr);
    EXPECT_EQ(Loaded("PlugPlug.dll"), nullptr);
}

TEST_F(PlugPlugBridgeTest, FolderWithNeitherLeavesTheStateEmpty) {
    EXPECT_EQ(PlugPlugBridge::Load(state), 31);
    EXPECT_EQ(state.module, nullptr);
    EXPECT_EQ(state.loadExtension, nullptr);
    EXPECT_EQ(state.unloadExtension, nullptr);
    EXPECT_EQ(state.addListener, nullptr);
    EXPECT_EQ(state.removeListener, nullptr);
    EXPECT_EQ(state.dispatch, nullptr);
}

TEST_F(PlugPlugBridgeTest, PathOfTheProcessIsAskedFor2048Units) {
    PlugPlugBridge::Load(state);
    EXPECT_EQ(sProgramQueries, (std::vector<std::pair<HMODULE, DWORD>>{{nullptr, 2048}}));
}

TEST_F(PlugPlugBridgeTest, FolderEndsAtTheLastBackslash) {
    fs::create_directories(hostFolder / "inner");
    sHostProgram = hostFolder.wstring() + L"\\inner\\..\\host.exe/with/slashes";
    Install("PlugPlug.dll", "PlugPlug.dll");
    EXPECT_EQ(PlugPlugBridge::Load(state), 0);
    EXPECT_NE(Loaded("PlugPlug.dll"), nullptr);
}

// What Windows was asked to find, and then to load; it has neither.
std::vector<std::wstring> sNamesAsked;

HANDLE WINAPI FindNothing(LPCWSTR name, LPWIN32_FIND_DATAW) {
    sNamesAsked.push_back(std::wstring(L"find ") + name);
    return INVALID_HANDLE_VALUE;
}
HMODULE WINAPI LoadNothing(LPCWSTR name) {
    sNamesAsked.push_back(std::wstring(L"load ") + name);
    return nullptr;
}

TEST_F(PlugPlugBridgeTest, PathWithoutABackslashHasNoFolder) {
    const ImportPatch find("FindFirstFileW", AsReplacement(FindNothing));
    const ImportPatch load("LoadLibraryW", AsReplacement(LoadNothing));
    sNamesAsked.clear();
    sHostProgram = L"C:/host/host.exe";
    EXPECT_EQ(PlugPlugBridge::Load(state), 31);
    EXPECT_EQ(sNamesAsked, (std::vector<std::wstring>{L"find PlugPlugOwl.dll", L"load PlugPlug.dll"}));
}

HANDLE sSearch = INVALID_HANDLE_VALUE;
HANDLE(WINAPI* sRealFindFirst)(LPCWSTR, LPWIN32_FIND_DATAW) = nullptr;

HANDLE WINAPI RememberSearch(LPCWSTR name, LPWIN32_FIND_DATAW found) { return sSearch = sRealFindFirst(name, found); }

TEST_F(PlugPlugBridgeTest, SearchStaysOpen) {
    Install("PlugPlug.dll", "PlugPlugOwl.dll");
    const ImportPatch find("FindFirstFileW", AsReplacement(RememberSearch));
    sRealFindFirst = find.Original<decltype(sRealFindFirst)>();
    PlugPlugBridge::Load(state);
    ASSERT_NE(sSearch, INVALID_HANDLE_VALUE);
    WIN32_FIND_DATAW next;
    EXPECT_FALSE(FindNextFileW(sSearch, &next));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NO_MORE_FILES});
    FindClose(sSearch);
}

TEST_F(PlugPlugBridgeTest, EveryCallLoadsTheLibraryOnceMore) {
    Install("PlugPlug.dll", "PlugPlug.dll");
    EXPECT_EQ(PlugPlugBridge::Load(state), 0);
    EXPECT_EQ(PlugPlugBridge::Load(state), 0);
    FreeLibrary(state.module);
    ASSERT_NE(Loaded("PlugPlug.dll"), nullptr);
    FreeLibrary(state.module);
    EXPECT_EQ(Loaded("PlugPlug.dll"), nullptr);
}

TEST_F(PlugPlugBridgeTest, FailureAfterASuccessClearsTheModuleAndLeavesTheFunctionsAsTheyWere) {
    Install("PlugPlug.dll", "PlugPlug.dll");
    ASSERT_EQ(PlugPlugBridge::Load(state), 0);
    const PlugPlugState before = state;
    {
        const ImportPatch load("LoadLibraryW", AsReplacement(LoadNothing));
        EXPECT_EQ(PlugPlugBridge::Load(state), 31);
    }
    EXPECT_EQ(state.module, nullptr);
    ASSERT_NE(before.dispatch, nullptr);
    EXPECT_EQ(state.loadExtension, before.loadExtension);
    EXPECT_EQ(state.unloadExtension, before.unloadExtension);
    EXPECT_EQ(state.addListener, before.addListener);
    EXPECT_EQ(state.removeListener, before.removeListener);
    EXPECT_EQ(state.dispatch, before.dispatch);
}

// --- Load: the functions --------------------------------------------------------------------------------------------

TEST_F(PlugPlugBridgeTest, EachFunctionIsBoundToItsField) {
    Install("PlugPlug.dll", "PlugPlug.dll");
    EXPECT_EQ(PlugPlugBridge::Load(state), 0);
    ASSERT_NE(state.module, nullptr);
    ASSERT_NE(GetProcAddress(state.module, "PlugPlugLoadExtension"), nullptr);
    EXPECT_EQ(state.loadExtension, Exported<PlugPlugLoadExtension>(state.module, "PlugPlugLoadExtension"));
    EXPECT_EQ(state.unloadExtension, Exported<PlugPlugUnloadExtension>(state.module, "PlugPlugUnloadExtension"));
    EXPECT_EQ(state.addListener, Exported<PlugPlugAddEventListener>(state.module, "PlugPlugAddEventListener"));
    EXPECT_EQ(state.removeListener, Exported<PlugPlugRemoveEventListener>(state.module, "PlugPlugRemoveEventListener"));
    EXPECT_EQ(state.dispatch, Exported<PlugPlugDispatchEvent>(state.module, "PlugPlugDispatchEvent"));
}

const std::vector<std::string> kFunctionNames = {"PlugPlugLoadExtension", "PlugPlugUnloadExtension",
                                                 "PlugPlugAddEventListener", "PlugPlugRemoveEventListener",
                                                 "PlugPlugDispatchEvent"};

std::vector<std::string> sLookedUp;
FARPROC(WINAPI* sRealGetProcAddress)(HMODULE, LPCSTR) = nullptr;

FARPROC WINAPI RememberLookUp(HMODULE module, LPCSTR name) {
    sLookedUp.emplace_back(name);
    return sRealGetProcAddress(module, name);
}

// Lacks the function of the parameter's place.
class PlugPlugThatLacksTest : public PlugPlugBridgeTest, public testing::WithParamInterface<std::size_t> {
  protected:
    // The fields in their order, as addresses.
    void* Field(std::size_t n) const {
        void* const fields[] = {reinterpret_cast<void*>(state.loadExtension),
                                reinterpret_cast<void*>(state.unloadExtension),
                                reinterpret_cast<void*>(state.addListener),
                                reinterpret_cast<void*>(state.removeListener), reinterpret_cast<void*>(state.dispatch)};
        return fields[n];
    }
    void FillFieldsWith(std::uintptr_t value) {
        state.loadExtension = reinterpret_cast<PlugPlugLoadExtension>(value);
        state.unloadExtension = reinterpret_cast<PlugPlugUnloadExtension>(value);
        state.addListener = reinterpret_cast<PlugPlugAddEventListener>(value);
        state.removeListener = reinterpret_cast<PlugPlugRemoveEventListener>(value);
        state.dispatch = reinterpret_cast<PlugPlugDispatchEvent>(value);
    }
};

TEST_P(PlugPlugThatLacksTest, OneFunctionIsLoadedAndBoundUpToItAndLeavesTheLaterFieldsAsTheyWere) {
    constexpr std::uintptr_t kBefore = 0x1234;
    const std::size_t missing = GetParam();
    std::string library = kFunctionNames[missing];
    Install(library.insert(8, "Without") + ".dll", "PlugPlug.dll");
    FillFieldsWith(kBefore);
    sLookedUp.clear();
    {
        const ImportPatch lookUp("GetProcAddress", AsReplacement(RememberLookUp));
        sRealGetProcAddress = lookUp.Original<decltype(sRealGetProcAddress)>();
        EXPECT_EQ(PlugPlugBridge::Load(state), 31);
    }
    EXPECT_EQ(sLookedUp,
              std::vector<std::string>(kFunctionNames.begin(), kFunctionNames.begin() + static_cast<int>(missing) + 1));
    ASSERT_NE(state.module, nullptr);
    EXPECT_EQ(state.module, Loaded("PlugPlug.dll"));
    for (std::size_t n = 0; n < kFunctionNames.size(); ++n) {
        const FARPROC exported = GetProcAddress(state.module, kFunctionNames[n].c_str());
        EXPECT_EQ(exported == nullptr, n == missing) << n;
        EXPECT_EQ(Field(n), n > missing ? reinterpret_cast<void*>(kBefore) : reinterpret_cast<void*>(exported)) << n;
    }
}

INSTANTIATE_TEST_SUITE_P(EachFunction, PlugPlugThatLacksTest, testing::Range(std::size_t{0}, std::size_t{5}));

// --- Unload ---------------------------------------------------------------------------------------------------------

TEST_F(PlugPlugBridgeTest, UnloadingFreesTheLibraryAndClearsItsFieldAlone) {
    Install("PlugPlug.dll", "PlugPlug.dll");
    PlugPlugBridge::Load(state);
    const auto addListener = state.addListener;
    EXPECT_EQ(PlugPlugBridge::Unload(state), 0);
    EXPECT_EQ(state.module, nullptr);
    EXPECT_EQ(Loaded("PlugPlug.dll"), nullptr);
    EXPECT_EQ(state.addListener, addListener);
}

BOOL WINAPI RefuseToFree(HMODULE) { return FALSE; }

TEST_F(PlugPlugBridgeTest, UnloadingThatWindowsRefusesIsAnswered31) {
    Install("PlugPlug.dll", "PlugPlug.dll");
    PlugPlugBridge::Load(state);
    const ImportPatch free("FreeLibrary", AsReplacement(RefuseToFree));
    EXPECT_EQ(PlugPlugBridge::Unload(state), 31);
    EXPECT_EQ(state.module, nullptr);
}

TEST_F(PlugPlugBridgeTest, UnloadingNothingIsAnswered0AndAsksNothingOfWindows) {
    const ImportPatch free("FreeLibrary", AsReplacement(RefuseToFree));
    EXPECT_EQ(PlugPlugBridge::Unload(state), 0);
}

// --- the wrappers ---------------------------------------------------------------------------------------------------

void Listen(const PlugPlugEvent*, void*) {}

// The library answers as its script says, and its record tells what it was given. The panel's way to its bus shows that
// the listener and the context arrived as they were.
class BoundLibraryTest : public PlugPlugBridgeTest {
  protected:
    BoundLibraryTest() {
        WriteWholeFile(script, R"({"PlugPlugAddEventListener": [{}, {"result": 41}],
                                   "PlugPlugDispatchEvent": [{"result": 43}]})");
        _wputenv_s(L"QUORVEL_PLUGPLUG_SCRIPT", script.c_str());
        _wputenv_s(L"QUORVEL_PLUGPLUG_RECORD", record.c_str());
        Install("PlugPlug.dll", "PlugPlug.dll");
        EXPECT_EQ(PlugPlugBridge::Load(state), 0);
    }
    ~BoundLibraryTest() override {
        _wputenv_s(L"QUORVEL_PLUGPLUG_SCRIPT", L"");
        _wputenv_s(L"QUORVEL_PLUGPLUG_RECORD", L"");
    }

    std::string Record() const { return ReadWholeFile(record); }

    const fs::path script = temporary.Path() / "script.json";
    const fs::path record = temporary.Path() / "calls.jsonl";
};

TEST_F(BoundLibraryTest, ListenerGoesToTheLibraryAndItsAnswerComesBack) {
    std::vector<std::string> heard;
    const PlugPlugListener listen = [](const PlugPlugEvent* event, void* context) {
        static_cast<std::vector<std::string>*>(context)->emplace_back(event->data);
    };
    EXPECT_EQ(PlugPlugBridge::AddEventListener(state, "com.quorvel.something", listen, &heard), 0);
    EXPECT_EQ(PlugPlugBridge::AddEventListener(state, "com.quorvel.other", listen, &heard), 41);
    const PlugPlugEvent event{"com.quorvel.something", 1, "test", nullptr, "data"};
    Exported<PlugPlugDispatchEvent>(state.module, "HostDispatchEvent")(&event);
    EXPECT_EQ(heard, std::vector<std::string>{"data"});
    EXPECT_EQ(
        Record(),
        R"({"entry":"PlugPlugAddEventListener","arguments":{"type":"com.quorvel.something","listener":"set","context":"set"},"answer":0}
{"entry":"PlugPlugAddEventListener","arguments":{"type":"com.quorvel.other","listener":"set","context":"set"},"answer":41}
)");
}

TEST_F(BoundLibraryTest, ListenerWithoutTheFunctionIsAnswered1) {
    state.addListener = nullptr;
    EXPECT_EQ(PlugPlugBridge::AddEventListener(state, "type", Listen, nullptr), 1);
    EXPECT_EQ(Record(), "");
}

TEST_F(BoundLibraryTest, EventGoesToTheLibraryAndItsAnswerComesBack) {
    const PlugPlugEvent event{"type", 1, "test", nullptr, "data"};
    EXPECT_EQ(PlugPlugBridge::DispatchEvent(state, event), 43);
    EXPECT_EQ(
        Record(),
        R"({"entry":"PlugPlugDispatchEvent","arguments":{"type":"type","scope":1,"application":"test","extension":null,"data":"data"},"answer":43}
)");
}

TEST_F(BoundLibraryTest, EventIsGuardedByTheFunctionThatRemovesListeners) {
    state.removeListener = nullptr;
    const PlugPlugEvent event{"type", 1, "test", nullptr, "data"};
    EXPECT_EQ(PlugPlugBridge::DispatchEvent(state, event), 1);
    EXPECT_EQ(Record(), "");
}

TEST_F(PlugPlugBridgeTest, ExceptionOfTheLibraryThatListensIsOneThatOurFramesSee) {
    ThePlugPlug().script["PlugPlugAddEventListener"].during = ThrowLikeAnotherCompiler;
    state.addListener = Exported<PlugPlugAddEventListener>(GetModuleHandleW(nullptr), "PlugPlugAddEventListener");
    EXPECT_THROW(PlugPlugBridge::AddEventListener(state, "type", Listen, nullptr), ForeignException);
}

TEST_F(PlugPlugBridgeTest, ExceptionOfTheLibraryThatDispatchesIsOneThatOurFramesSee) {
    ThePlugPlug().script["PlugPlugDispatchEvent"].during = ThrowLikeAnotherCompiler;
    const HMODULE program = GetModuleHandleW(nullptr);
    state.removeListener = Exported<PlugPlugRemoveEventListener>(program, "PlugPlugRemoveEventListener");
    state.dispatch = Exported<PlugPlugDispatchEvent>(program, "PlugPlugDispatchEvent");
    EXPECT_THROW(PlugPlugBridge::DispatchEvent(state, {}), ForeignException);
}

}  // namespace
