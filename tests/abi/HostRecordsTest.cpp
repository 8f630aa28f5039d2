// The records that cross the border to the host. A wrong number here is a crash there, so the compiler checks them.
#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

#include "frame/base/PluginGlobals.h"
#include "frame/PluginMain.h"
#include "host/FileFormatSuite.h"
#include "host/MatchingArtSuite.h"
#include "host/MenuSuite.h"
#include "host/Messages.h"

#define EXPECT_RECORD(record, size) \
    static_assert(sizeof(record) == (size) && alignof(record) <= 8 && std::is_standard_layout_v<record>)
#define EXPECT_FIELD(record, field, offset, size) \
    static_assert(offsetof(record, field) == (offset) && sizeof(record::field) == (size))

namespace {

static_assert(sizeof(AIErr) == 4 && std::is_signed_v<AIErr>);
static_assert(sizeof(SPErr) == 4 && std::is_signed_v<SPErr>);
static_assert(sizeof(ATEErr) == 4 && std::is_signed_v<ATEErr>);
static_assert(sizeof(AIBoolean) == 4 && sizeof(SPBoolean) == 4);
static_assert(sizeof(AIBool8) == 1 && sizeof(ATEBool8) == 1);
static_assert(std::is_unsigned_v<AIBool8> && std::is_unsigned_v<ATEBool8>);
static_assert(sizeof(HostUtf16Unit) == 2 && std::is_unsigned_v<HostUtf16Unit>);

static_assert(FourCharCode("PARM") == 0x5041524D);
static_assert(kBadParameterErr == 0x5041524D);
static_assert(kSPMessageCheck == 0x5350436B);

static_assert(sizeof(SPPluginRef) == 8 && sizeof(AIArtHandle) == 8 && sizeof(AIDocumentHandle) == 8);
static_assert(sizeof(AIMenuItemHandle) == 8 && sizeof(AIMenuGroupHandle) == 8 && sizeof(AINotifierHandle) == 8);
static_assert(sizeof(AITimerHandle) == 8 && sizeof(AIFileFormatHandle) == 8 && sizeof(AIFontKey) == 8);
static_assert(sizeof(AIMdMemoryHandle) == 8 && sizeof(ATE::TextRangeRef) == 8 && sizeof(ATE::FontRef) == 8);
static_assert(sizeof(ATE::TextRunsIteratorRef) == 8 && sizeof(ATE::CharFeaturesRef) == 8);

EXPECT_RECORD(ai::UnicodeStringData, 8);
EXPECT_RECORD(ai::FilePathData, 8);
EXPECT_RECORD(ai::UnicodeString, 8);
EXPECT_RECORD(ai::FilePath, 8);

EXPECT_RECORD(SPMessageData, 32);
EXPECT_FIELD(SPMessageData, SPCheck, 0, 4);
EXPECT_FIELD(SPMessageData, self, 8, 8);
EXPECT_FIELD(SPMessageData, globals, 16, 8);
EXPECT_FIELD(SPMessageData, basic, 24, 8);

EXPECT_RECORD(SPInterfaceMessage, 32);
EXPECT_FIELD(SPInterfaceMessage, d, 0, 32);

EXPECT_RECORD(SPAccessMessage, 40);
EXPECT_FIELD(SPAccessMessage, when, 32, 4);

EXPECT_RECORD(AINotifierMessage, 56);
EXPECT_FIELD(AINotifierMessage, d, 0, 32);
EXPECT_FIELD(AINotifierMessage, notifier, 32, 8);
EXPECT_FIELD(AINotifierMessage, type, 40, 8);
EXPECT_FIELD(AINotifierMessage, notifyData, 48, 8);

EXPECT_RECORD(AITimerMessage, 40);
EXPECT_FIELD(AITimerMessage, d, 0, 32);
EXPECT_FIELD(AITimerMessage, serviceTimer, 32, 8);

EXPECT_RECORD(AIMenuMessage, 40);
EXPECT_FIELD(AIMenuMessage, d, 0, 32);
EXPECT_FIELD(AIMenuMessage, menuItem, 32, 8);

EXPECT_RECORD(AIFileFormatMessage, 88);
EXPECT_FIELD(AIFileFormatMessage, d, 0, 32);
EXPECT_FIELD(AIFileFormatMessage, fileFormat, 32, 8);
EXPECT_FIELD(AIFileFormatMessage, option, 40, 4);
EXPECT_FIELD(AIFileFormatMessage, extendedData, 48, 8);
EXPECT_FIELD(AIFileFormatMessage, actionParameters, 56, 8);
EXPECT_FIELD(AIFileFormatMessage, file, 64, 8);
EXPECT_FIELD(AIFileFormatMessage, operationOptions, 72, 4);
EXPECT_FIELD(AIFileFormatMessage, artboardRange, 80, 8);
// The host owns the path in the message: nothing of ours may run when the record goes away.
static_assert(std::is_trivially_destructible_v<AIFileFormatMessage>);

EXPECT_RECORD(AIPlatformAddMenuItemDataUS, 16);
EXPECT_FIELD(AIPlatformAddMenuItemDataUS, groupName, 0, 8);
EXPECT_FIELD(AIPlatformAddMenuItemDataUS, itemText, 8, 8);

EXPECT_RECORD(PlatformAddFileFormatExData, 40);
EXPECT_FIELD(PlatformAddFileFormatExData, numTypes, 0, 4);
EXPECT_FIELD(PlatformAddFileFormatExData, types, 8, 8);
EXPECT_FIELD(PlatformAddFileFormatExData, title, 16, 8);
EXPECT_FIELD(PlatformAddFileFormatExData, titleOrder, 24, 4);
EXPECT_FIELD(PlatformAddFileFormatExData, extensions, 32, 8);

EXPECT_RECORD(AIMatchingArtSpec, 12);
EXPECT_FIELD(AIMatchingArtSpec, type, 0, 2);
EXPECT_FIELD(AIMatchingArtSpec, whichAttr, 4, 4);
EXPECT_FIELD(AIMatchingArtSpec, attr, 8, 4);

// 19 slots; slot n, counted from 1, lies at 8 * (n - 1).
EXPECT_RECORD(PluginGlobals, 152);
EXPECT_FIELD(PluginGlobals, unused1, 8 * 0, 8);
EXPECT_FIELD(PluginGlobals, text, 8 * 1, 8);
EXPECT_FIELD(PluginGlobals, unused3, 8 * 2, 8);
EXPECT_FIELD(PluginGlobals, findFontOwner, 8 * 3, 8);
EXPECT_FIELD(PluginGlobals, findFontItem, 8 * 4, 8);
EXPECT_FIELD(PluginGlobals, plugin, 8 * 5, 8);
EXPECT_FIELD(PluginGlobals, documentChanged, 8 * 6, 8);
EXPECT_FIELD(PluginGlobals, documentOpened, 8 * 7, 8);
EXPECT_FIELD(PluginGlobals, documentAboutToClose, 8 * 8, 8);
EXPECT_FIELD(PluginGlobals, documentClosed, 8 * 9, 8);
EXPECT_FIELD(PluginGlobals, documentNew, 8 * 10, 8);
EXPECT_FIELD(PluginGlobals, applicationStarted, 8 * 11, 8);
EXPECT_FIELD(PluginGlobals, applicationShutdown, 8 * 12, 8);
EXPECT_FIELD(PluginGlobals, menuChanged, 8 * 13, 8);
EXPECT_FIELD(PluginGlobals, documentSaved, 8 * 14, 8);
EXPECT_FIELD(PluginGlobals, documentSavedAs, 8 * 15, 8);
EXPECT_FIELD(PluginGlobals, fontListChanged, 8 * 16, 8);
EXPECT_FIELD(PluginGlobals, idleTimer, 8 * 17, 8);
EXPECT_FIELD(PluginGlobals, fileFormat, 8 * 18, 8);

static_assert(std::is_same_v<decltype(&PluginMain),
                             std::int32_t (*)(const char* caller, const char* selector, SPMessageData* message)>);

static_assert(kTextFrameArt == 12 && kPlacedArt == 7);
static_assert(kMenuItemWantsUpdateOption == 1 && kMenuItemIsSeparator == 4 && kFileFormatRead == 1);

TEST(HostRecords, HaveTheHostsLayout) { SUCCEED() << "checked by the compiler"; }

}  // namespace
