// The 24 entries of the PluginCore: their order and their signatures.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "plugincore/PCILoader.h"
#include "support/plugincore/EntryNames.h"
#include "support/plugincore/FakePluginCore.h"

#define EXPECT_ENTRY(name, ...) \
    static_assert(std::is_same_v<decltype(PCILoader::pf##name)::Function, std::int32_t (*)(__VA_ARGS__)>)

namespace {

using Flag = std::uint8_t;
using Size = std::uint64_t*;

EXPECT_ENTRY(ActivateChosenFonts, const char*, char*, Size);
EXPECT_ENTRY(CreateMenusFromJSONBuffer, const char*, PluginCoreMenuCallback, void*);
EXPECT_ENTRY(GetAPIVersion, std::uint32_t*, std::int32_t);
EXPECT_ENTRY(GetDocumentFontUsage);
EXPECT_ENTRY(GetIDForDocument, const char*, char*, Size);
EXPECT_ENTRY(GetMenus, const char*, char*, Size);
EXPECT_ENTRY(GetSettings, char*, Size);
EXPECT_ENTRY(GetSocketPort, std::uint32_t*);
EXPECT_ENTRY(HandleCloseDocument, const char*, const char*);
EXPECT_ENTRY(HandleCreateNewDocument, char*, Size);
EXPECT_ENTRY(HandleMenuSelection, const char*, const char*, const char*);
EXPECT_ENTRY(HandleOpenExistingDocument, const char*, char*, Size);
EXPECT_ENTRY(HandleSaveDocument, const char*, const char*);
EXPECT_ENTRY(IdleEvent);
EXPECT_ENTRY(InitializePluginCoreInterface, const char*);
EXPECT_ENTRY(InvokeCommandDialog, const char*, char*);
EXPECT_ENTRY(InvokeResolveDialog, char*, Size);
EXPECT_ENTRY(InvokeRestrictedFontsDialog, const char*, char*);
EXPECT_ENTRY(PluginIsEnabled, Flag, Flag*);
EXPECT_ENTRY(ProcessPanelMessages, Flag);
EXPECT_ENTRY(RegisterPlugPlug, PlugPlugState*);
EXPECT_ENTRY(SetPathForDocument);
EXPECT_ENTRY(TerminatePluginCoreInterface);
EXPECT_ENTRY(UpdateDocumentFontUsage, const char*, const char*);

static_assert(std::is_same_v<PluginCoreMenuCallback, std::int32_t (*)(const char*, const char*, const char*, Flag, Flag,
                                                                      Flag, const char*, void*)>);
static_assert(sizeof(EntryPoint<std::int32_t()>) == 8);
static_assert(sizeof(bool) == 1 && sizeof(Flag) == 1);

TEST(PluginCoreEntries, StandInTheLoaderInTheOrderOfTheContract) {
    LoadFakePluginCore();
    const PCILoader* const loader = PCILoader::GetSharedInstance();
    ASSERT_NE(loader, nullptr);
    ASSERT_EQ(kEntryNames.size(), 24u);
    // One virtual operation: the entries begin behind the pointer to its table.
    const auto* const pointers = reinterpret_cast<void* const*>(loader) + 1;
    for (std::size_t i = 0; i < kEntryNames.size(); ++i) {
        const FARPROC exported = GetProcAddress(GetModuleHandleW(nullptr), kEntryNames[i].c_str());
        ASSERT_NE(exported, nullptr) << kEntryNames[i];
        EXPECT_EQ(pointers[i], reinterpret_cast<void*>(exported)) << kEntryNames[i];
    }
}

}  // namespace
