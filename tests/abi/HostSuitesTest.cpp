// The host's suites: plain tables of function pointers. Slot n, counted from 0, lies at 8 * n; the compiler checks
// place and signature of every operation that the plug-in uses.
#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

#include "host/ArtSuites.h"
#include "host/BasicSuite.h"
#include "host/DocumentSuite.h"
#include "host/FileFormatSuite.h"
#include "host/FontSuite.h"
#include "host/MatchingArtSuite.h"
#include "host/MdMemorySuite.h"
#include "host/MenuSuite.h"
#include "host/NotifierSuite.h"
#include "host/SPSuites.h"
#include "host/StringSuites.h"
#include "host/TextEngineSuites.h"
#include "host/TimerSuite.h"

#define EXPECT_SLOTS(suite, count) static_assert(sizeof(suite) == 8 * (count) && std::is_standard_layout_v<suite>)
#define EXPECT_SLOT(suite, slot, operation, ...) \
    static_assert(offsetof(suite, operation) == 8 * (slot) && std::is_same_v<decltype(suite::operation), __VA_ARGS__>)

namespace {

EXPECT_SLOTS(SPBasicSuite, 7);
EXPECT_SLOT(SPBasicSuite, 0, AcquireSuite, SPErr (*)(const char*, std::int32_t, const void**));
EXPECT_SLOT(SPBasicSuite, 1, ReleaseSuite, SPErr (*)(const char*, std::int32_t));
EXPECT_SLOT(SPBasicSuite, 2, IsEqual, SPBoolean (*)(const char*, const char*));

EXPECT_SLOTS(SPBlocksSuite, 3);
EXPECT_SLOT(SPBlocksSuite, 0, AllocateBlock, SPErr (*)(std::size_t, const char*, void**));
EXPECT_SLOT(SPBlocksSuite, 1, FreeBlock, SPErr (*)(void*));

EXPECT_SLOTS(SPPluginsSuite, 28);
EXPECT_SLOT(SPPluginsSuite, 24, GetNamedPlugin, SPErr (*)(const char*, SPPluginRef*));

EXPECT_SLOTS(SPInterfaceSuite, 4);
EXPECT_SLOT(SPInterfaceSuite, 0, SendMessage, SPErr (*)(SPPluginRef, const char*, const char*, void*, SPErr*));
EXPECT_SLOT(SPInterfaceSuite, 1, SetupMessageData, SPErr (*)(SPPluginRef, SPMessageData*));

EXPECT_SLOTS(AINotifierSuite, 9);
EXPECT_SLOT(AINotifierSuite, 0, AddNotifier, AIErr (*)(SPPluginRef, const char*, const char*, AINotifierHandle*));

EXPECT_SLOTS(AITimerSuite, 9);
EXPECT_SLOT(AITimerSuite, 0, AddTimer, AIErr (*)(SPPluginRef, const char*, std::int32_t, AITimerHandle*));
EXPECT_SLOT(AITimerSuite, 2, GetTimerActive, AIErr (*)(AITimerHandle, AIBoolean*));
EXPECT_SLOT(AITimerSuite, 3, SetTimerActive, AIErr (*)(AITimerHandle, AIBoolean));

EXPECT_SLOTS(AIMenuSuite, 35);
EXPECT_SLOT(AIMenuSuite, 0, AddMenuItem,
            AIErr (*)(SPPluginRef, const char*, AIPlatformAddMenuItemDataUS*, std::int32_t, AIMenuItemHandle*));
EXPECT_SLOT(AIMenuSuite, 2, GetMenuItemKeyboardShortcutDictionaryKey, AIErr (*)(AIMenuItemHandle, const char**));
EXPECT_SLOT(AIMenuSuite, 5, GetMenuItemPlugin, AIErr (*)(AIMenuItemHandle, SPPluginRef*));
EXPECT_SLOT(AIMenuSuite, 6, CountMenuItems, AIErr (*)(std::int32_t*));
EXPECT_SLOT(AIMenuSuite, 7, GetNthMenuItem, AIErr (*)(std::int32_t, AIMenuItemHandle*));
EXPECT_SLOT(AIMenuSuite, 11, EnableItem, AIErr (*)(AIMenuItemHandle));
EXPECT_SLOT(AIMenuSuite, 12, DisableItem, AIErr (*)(AIMenuItemHandle));
EXPECT_SLOT(AIMenuSuite, 13, GetItemText, AIErr (*)(AIMenuItemHandle, ai::UnicodeStringData&));
EXPECT_SLOT(AIMenuSuite, 16, CheckItem, AIErr (*)(AIMenuItemHandle, AIBoolean));
EXPECT_SLOT(AIMenuSuite, 19, AddMenuGroupAsSubMenu,
            AIErr (*)(const char*, std::int32_t, AIMenuItemHandle, AIMenuGroupHandle*));

EXPECT_SLOTS(AIFileFormatSuite, 24);
EXPECT_SLOT(AIFileFormatSuite, 8, AddFileFormatEx,
            AIErr (*)(SPPluginRef, const char*, PlatformAddFileFormatExData*, std::int32_t, AIFileFormatHandle*,
                      std::int32_t));
EXPECT_SLOT(AIFileFormatSuite, 14, SetFileFormatPriority, AIErr (*)(AIFileFormatHandle, std::int32_t));

EXPECT_SLOTS(AIDocumentSuite, 74);
EXPECT_SLOT(AIDocumentSuite, 0, GetDocumentFileSpecification, AIErr (*)(ai::FilePathData&));
EXPECT_SLOT(AIDocumentSuite, 12, GetDocumentModified, AIErr (*)(AIBoolean*));
EXPECT_SLOT(AIDocumentSuite, 19, GetDocument, AIErr (*)(AIDocumentHandle*));

EXPECT_SLOTS(AIMatchingArtSuite, 8);
EXPECT_SLOT(AIMatchingArtSuite, 1, GetMatchingArt,
            AIErr (*)(AIMatchingArtSpec*, std::int16_t, AIArtHandle***, std::int32_t*));

EXPECT_SLOTS(AITextFrameSuite, 26);
EXPECT_SLOT(AITextFrameSuite, 13, GetATETextRange, AIErr (*)(AIArtHandle, ATE::TextRangeRef*));

EXPECT_SLOTS(AIPlacedSuite, 22);
EXPECT_SLOT(AIPlacedSuite, 14, GetPlacedFilePathFromArt, AIErr (*)(AIArtHandle, ai::UnicodeStringData&));

EXPECT_SLOTS(AIFontSuite, 64);
EXPECT_SLOT(AIFontSuite, 17, GetDefaultFont, AIErr (*)(std::int32_t, AIFontKey*));
EXPECT_SLOT(AIFontSuite, 19, GetPostScriptFontName, AIErr (*)(AIFontKey, char*, std::int16_t));
EXPECT_SLOT(AIFontSuite, 27, FontKeyFromFont, AIErr (*)(ATE::FontRef, AIFontKey*));

EXPECT_SLOTS(AIMdMemorySuite, 6);
EXPECT_SLOT(AIMdMemorySuite, 1, MdMemoryDisposeHandle, AIErr (*)(AIMdMemoryHandle));

EXPECT_SLOTS(AIFilePathSuite, 29);
EXPECT_SLOT(AIFilePathSuite, 1, DeleteFilePath, AIErr (*)(ai::FilePathData&));
EXPECT_SLOT(AIFilePathSuite, 2, Copy, AIErr (*)(const ai::FilePathData&, ai::FilePathData&));
EXPECT_SLOT(AIFilePathSuite, 3, IsEmpty, AIBool8 (*)(const ai::FilePathData&));
EXPECT_SLOT(AIFilePathSuite, 17, GetFileName, AIErr (*)(const ai::FilePathData&, AIBool8, ai::UnicodeStringData&));
EXPECT_SLOT(AIFilePathSuite, 20, GetFullPath, AIErr (*)(const ai::FilePathData&, AIBool8, ai::UnicodeStringData&));

EXPECT_SLOTS(AIUnicodeStringSuite, 38);
EXPECT_SLOT(AIUnicodeStringSuite, 0, Initialize,
            AIErr (*)(ai::UnicodeStringData&, const char*, std::int64_t, std::int32_t));
EXPECT_SLOT(AIUnicodeStringSuite, 3, Destroy, AIErr (*)(ai::UnicodeStringData&));
EXPECT_SLOT(AIUnicodeStringSuite, 6, Assign, AIErr (*)(ai::UnicodeStringData&, const ai::UnicodeStringData&));
EXPECT_SLOT(AIUnicodeStringSuite, 7, Copy, AIErr (*)(ai::UnicodeStringData&, const ai::UnicodeStringData&));
EXPECT_SLOT(AIUnicodeStringSuite, 16, Length, std::size_t (*)(const ai::UnicodeStringData&));
EXPECT_SLOT(AIUnicodeStringSuite, 34, UTF_16, std::size_t (*)(const ai::UnicodeStringData&, const HostUtf16Unit*&));

EXPECT_SLOTS(ATE::TextRangeSuite, 53);
EXPECT_SLOT(ATE::TextRangeSuite, 0, AddRef, void (*)(ATE::TextRangeRef));
EXPECT_SLOT(ATE::TextRangeSuite, 1, Release, void (*)(ATE::TextRangeRef));
EXPECT_SLOT(ATE::TextRangeSuite, 2, IsNull, ATEBool8 (*)(ATE::TextRangeRef));
EXPECT_SLOT(ATE::TextRangeSuite, 13, GetTextRunsIterator, ATEErr (*)(ATE::TextRangeRef, ATE::TextRunsIteratorRef*));
EXPECT_SLOT(ATE::TextRangeSuite, 22, GetUniqueCharFeatures, ATEErr (*)(ATE::TextRangeRef, ATE::CharFeaturesRef*));

EXPECT_SLOTS(ATE::TextRunsIteratorSuite, 11);
EXPECT_SLOT(ATE::TextRunsIteratorSuite, 0, AddRef, void (*)(ATE::TextRunsIteratorRef));
EXPECT_SLOT(ATE::TextRunsIteratorSuite, 1, Release, void (*)(ATE::TextRunsIteratorRef));
EXPECT_SLOT(ATE::TextRunsIteratorSuite, 2, IsNull, ATEBool8 (*)(ATE::TextRunsIteratorRef));
EXPECT_SLOT(ATE::TextRunsIteratorSuite, 4, IsNotDone, ATEErr (*)(ATE::TextRunsIteratorRef, ATEBool8*));
EXPECT_SLOT(ATE::TextRunsIteratorSuite, 9, Next, ATEErr (*)(ATE::TextRunsIteratorRef));
EXPECT_SLOT(ATE::TextRunsIteratorSuite, 10, Item, ATEErr (*)(ATE::TextRunsIteratorRef, ATE::TextRangeRef*));

EXPECT_SLOTS(ATE::CharFeaturesSuite, 246);
EXPECT_SLOT(ATE::CharFeaturesSuite, 0, AddRef, void (*)(ATE::CharFeaturesRef));
EXPECT_SLOT(ATE::CharFeaturesSuite, 1, Release, void (*)(ATE::CharFeaturesRef));
EXPECT_SLOT(ATE::CharFeaturesSuite, 2, IsNull, ATEBool8 (*)(ATE::CharFeaturesRef));
EXPECT_SLOT(ATE::CharFeaturesSuite, 5, GetFont, ATEErr (*)(ATE::CharFeaturesRef, ATEBool8*, ATE::FontRef*));

EXPECT_SLOTS(ATE::FontSuite, 6);
EXPECT_SLOT(ATE::FontSuite, 0, AddRef, void (*)(ATE::FontRef));
EXPECT_SLOT(ATE::FontSuite, 1, Release, void (*)(ATE::FontRef));
EXPECT_SLOT(ATE::FontSuite, 2, IsNull, ATEBool8 (*)(ATE::FontRef));

static_assert(kSPBlocksSuiteVersion == 2 && kSPPluginsSuiteVersion == 6 && kSPInterfaceSuiteVersion == 2);
static_assert(kAINotifierSuiteVersion == 4 && kAITimerSuiteVersion == 5 && kAIMenuSuiteVersion == 11);
static_assert(kAIFileFormatSuiteVersion == 14);
static_assert(kAIPlatformCharacterEncoding == 0 && kAIUTF8CharacterEncoding == 1 && kAIUTF16CharacterEncoding == 2);

TEST(HostSuites, HaveTheHostsSlots) { SUCCEED() << "checked by the compiler"; }

}  // namespace
