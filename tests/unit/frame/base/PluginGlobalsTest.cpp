#include "frame/base/PluginGlobals.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

namespace {

TEST(PluginGlobalsTest, FreshBlockGetsItsValuesWhateverItHeld) {
    PluginGlobals globals;
    std::memset(&globals, 0xA5, sizeof(globals));
    void* const garbage = globals.unused1;
    auto* const plugin = reinterpret_cast<SPPluginRef>(0x1234);

    InitializeGlobals(globals, plugin);

    const std::unique_ptr<std::string> text(globals.text);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(*text, "");
    EXPECT_EQ(globals.plugin, plugin);
    EXPECT_EQ(globals.unused1, garbage);
    EXPECT_EQ(globals.unused3, garbage);
    EXPECT_EQ(globals.findFontOwner, nullptr);
    EXPECT_EQ(globals.findFontItem, nullptr);
    EXPECT_EQ(globals.idleTimer, nullptr);
    EXPECT_EQ(globals.fileFormat, nullptr);
    for (const auto notifier :
         {globals.documentChanged, globals.documentOpened, globals.documentAboutToClose, globals.documentClosed,
          globals.documentNew, globals.applicationStarted, globals.applicationShutdown, globals.menuChanged,
          globals.documentSaved, globals.documentSavedAs, globals.fontListChanged}) {
        EXPECT_EQ(notifier, nullptr);
    }
}

}  // namespace
