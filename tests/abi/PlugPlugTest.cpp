// What crosses the border to PlugPlug, and the state that the PluginCore reads to use the same event bus.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "panel/PlugPlugBridge.h"

#define EXPECT_RECORD(record, size) \
    static_assert(sizeof(record) == (size) && alignof(record) == 8 && std::is_standard_layout_v<record>)
#define EXPECT_FIELD(record, field, offset, ...) \
    static_assert(offsetof(record, field) == (offset) && std::is_same_v<decltype(record::field), __VA_ARGS__>)

namespace {

EXPECT_RECORD(PlugPlugEvent, 40);
EXPECT_FIELD(PlugPlugEvent, type, 0, const char*);
EXPECT_FIELD(PlugPlugEvent, scope, 8, std::int32_t);
EXPECT_FIELD(PlugPlugEvent, applicationID, 16, const char*);
EXPECT_FIELD(PlugPlugEvent, extensionID, 24, const char*);
EXPECT_FIELD(PlugPlugEvent, data, 32, const char*);

static_assert(std::is_same_v<PlugPlugListener, void (*)(const PlugPlugEvent*, void*)>);
static_assert(std::is_same_v<PlugPlugLoadExtension, std::int32_t (*)(const char*)>);
static_assert(std::is_same_v<PlugPlugUnloadExtension, std::int32_t (*)(const char*)>);
static_assert(std::is_same_v<PlugPlugAddEventListener, std::int32_t (*)(const char*, PlugPlugListener, void*)>);
static_assert(std::is_same_v<PlugPlugRemoveEventListener, std::int32_t (*)(const char*, PlugPlugListener, void*)>);
static_assert(std::is_same_v<PlugPlugDispatchEvent, std::int32_t (*)(const PlugPlugEvent*)>);
static_assert(kPlugPlugApplicationScope == 1);

EXPECT_RECORD(PlugPlugState, 48);
EXPECT_FIELD(PlugPlugState, module, 0, HMODULE);
EXPECT_FIELD(PlugPlugState, loadExtension, 8, PlugPlugLoadExtension);
EXPECT_FIELD(PlugPlugState, unloadExtension, 16, PlugPlugUnloadExtension);
EXPECT_FIELD(PlugPlugState, addListener, 24, PlugPlugAddEventListener);
EXPECT_FIELD(PlugPlugState, removeListener, 32, PlugPlugRemoveEventListener);
EXPECT_FIELD(PlugPlugState, dispatch, 40, PlugPlugDispatchEvent);

TEST(PlugPlug, HasTheLayoutThatItAndThePluginCoreShare) { SUCCEED() << "checked by the compiler"; }

}  // namespace
