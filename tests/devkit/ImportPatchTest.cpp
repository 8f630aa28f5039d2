#include "doubles/common/ImportPatch.h"

#include <gtest/gtest.h>

#include "support/files/TemporaryFolder.h"

namespace {

DWORD WINAPI FortyTwo() { return 42; }
DWORD WINAPI FortyThree() { return 43; }

// The code under test. Called through a pointer that may change: within one function the compiler may read an imported
// address once and use it again.
DWORD Ask() { return GetCurrentProcessId(); }
DWORD (*volatile sAsk)() = Ask;

HMODULE Program() { return GetModuleHandleW(nullptr); }

TEST(ImportPatch, ReplacesTheFunctionAsLongAsItLives) {
    const DWORD before = sAsk();
    {
        const ImportPatch patch("GetCurrentProcessId", AsReplacement(FortyTwo));
        EXPECT_EQ(sAsk(), 42u);
        EXPECT_EQ(patch.Original<DWORD(WINAPI*)()>()(), before);
    }
    EXPECT_EQ(sAsk(), before);
}

TEST(ImportPatch, SecondPatchOfAFunctionGivesBackTheFirst) {
    const ImportPatch first("GetCurrentProcessId", AsReplacement(FortyTwo));
    {
        const ImportPatch second("GetCurrentProcessId", AsReplacement(FortyThree));
        EXPECT_EQ(sAsk(), 43u);
    }
    EXPECT_EQ(sAsk(), 42u);
}

TEST(ImportPatch, OtherModulesKeepTheFunction) {
    const ImportPatch patch("GetCurrentProcessId", AsReplacement(FortyTwo));
    const auto direct = reinterpret_cast<DWORD(WINAPI*)()>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetCurrentProcessId")));
    EXPECT_NE(direct(), 42u);
}

TEST(ImportPatch, ImportsOfAnotherModuleAreFoundAndReplaced) {
    const HMODULE library = LoadLibraryW((TestProgramFolder().parent_path() / "bin" / "PluginCoreX64.dll").c_str());
    ASSERT_NE(library, nullptr);
    void* const before = ImportedFunction(library, "RaiseException");
    ASSERT_NE(before, nullptr);
    {
        const ImportPatch patch(library, "RaiseException", AsReplacement(FortyTwo));
        EXPECT_EQ(ImportedFunction(library, "RaiseException"), AsReplacement(FortyTwo));
    }
    EXPECT_EQ(ImportedFunction(library, "RaiseException"), before);
    EXPECT_TRUE(ReplaceImport(library, "RaiseException", AsReplacement(FortyThree)));
    EXPECT_EQ(ImportedFunction(library, "RaiseException"), AsReplacement(FortyThree));
    FreeLibrary(library);
}

TEST(ImportPatch, FunctionThatIsNotImportedIsNotReplaced) {
    EXPECT_EQ(ImportedFunction(Program(), "NoSuchFunction"), nullptr);
    EXPECT_FALSE(ReplaceImport(Program(), "NoSuchFunction", AsReplacement(FortyTwo)));
}

}  // namespace
