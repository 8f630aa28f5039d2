#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "devkit/LoadedDouble.h"
#include "plugincore/PluginCore.h"

namespace {

constexpr std::int32_t kRefused = 22;

// The functions of a library that answers from the script.
struct Library {
    explicit Library(const std::string& script = "{}") : loaded(L"PlugPlugOwl.dll", L"QUORVEL_PLUGPLUG", script) {}

    LoadedDouble loaded;
    PlugPlugLoadExtension loadExtension = loaded.Get<PlugPlugLoadExtension>("PlugPlugLoadExtension");
    PlugPlugUnloadExtension unloadExtension = loaded.Get<PlugPlugUnloadExtension>("PlugPlugUnloadExtension");
    PlugPlugAddEventListener add = loaded.Get<PlugPlugAddEventListener>("PlugPlugAddEventListener");
    PlugPlugRemoveEventListener remove = loaded.Get<PlugPlugRemoveEventListener>("PlugPlugRemoveEventListener");
    PlugPlugDispatchEvent dispatch = loaded.Get<PlugPlugDispatchEvent>("PlugPlugDispatchEvent");
    PlugPlugAddEventListener hostAdd = loaded.Get<PlugPlugAddEventListener>("HostAddEventListener");
    PlugPlugDispatchEvent hostDispatch = loaded.Get<PlugPlugDispatchEvent>("HostDispatchEvent");
};

std::string TextOrNull(const char* text) { return text == nullptr ? "null" : text; }

// What a listener heard, as one line per event; the context is where it goes.
using Heard = std::vector<std::string>;

void Listen(const PlugPlugEvent* event, void* context) {
    static_cast<Heard*>(context)->push_back(TextOrNull(event->type) + " " + std::to_string(event->scope) + " " +
                                            TextOrNull(event->applicationID) + " " + TextOrNull(event->extensionID) +
                                            " " + TextOrNull(event->data));
}

PlugPlugEvent EventOf(const char* type) { return {type, 1, "app", nullptr, "data"}; }

std::int32_t DispatchOf(const Library& library, const char* type) {
    const PlugPlugEvent event = EventOf(type);
    return library.dispatch(&event);
}

TEST(PlugPlugLibrary, EventReachesEveryListenerOfItsTypeAndNoOther) {
    const Library library;
    Heard first, second, other;
    EXPECT_EQ(library.add("a", &Listen, &first), 0);
    EXPECT_EQ(library.add("a", &Listen, &second), 0);
    EXPECT_EQ(library.add("b", &Listen, &other), 0);
    const PlugPlugEvent event{"a", -2147483647, "app", "extension", "data"};
    EXPECT_EQ(library.dispatch(&event), 0);
    EXPECT_EQ(first, Heard{"a -2147483647 app extension data"});
    EXPECT_EQ(second, first);
    EXPECT_EQ(other, Heard{});
}

TEST(PlugPlugLibrary, ListenersAreCalledInTheOrderOfTheirAdding) {
    const Library library;
    static Heard order;
    const PlugPlugListener sayFirst = [](const PlugPlugEvent*, void*) { order.emplace_back("first"); };
    const PlugPlugListener saySecond = [](const PlugPlugEvent*, void*) { order.emplace_back("second"); };
    library.add("a", sayFirst, nullptr);
    library.add("a", saySecond, nullptr);
    DispatchOf(library, "a");
    EXPECT_EQ(order, (Heard{"first", "second"}));
}

TEST(PlugPlugLibrary, ListenerSeesACopyInWhichMissingTextsStayMissing) {
    const Library library;
    static const char* sSeenType = nullptr;
    Heard heard;
    library.add("a", &Listen, &heard);
    library.add(
        "a", [](const PlugPlugEvent* event, void*) { sSeenType = event->type; }, nullptr);
    const PlugPlugEvent event{"a", 0, nullptr, nullptr, nullptr};
    library.dispatch(&event);
    EXPECT_EQ(heard, Heard{"a 0 null null null"});
    EXPECT_NE(sSeenType, event.type);
}

TEST(PlugPlugLibrary, ListenerThatIsAddedWhileAnEventIsDeliveredHearsTheNextOneFirst) {
    const Library library;
    static const Library* sLibrary = nullptr;
    static Heard heard;
    sLibrary = &library;
    library.add(
        "a", [](const PlugPlugEvent*, void*) { sLibrary->add("a", &Listen, &heard); }, nullptr);
    DispatchOf(library, "a");
    EXPECT_EQ(heard, Heard{});
    DispatchOf(library, "a");
    EXPECT_EQ(heard, Heard{"a 1 app null data"});
}

TEST(PlugPlugLibrary, RemovedListenerHearsNothingAndCannotBeRemovedTwice) {
    const Library library;
    Heard heard, stays;
    library.add("a", &Listen, &heard);
    library.add("a", &Listen, &stays);
    EXPECT_EQ(library.remove("a", &Listen, &heard), 0);
    EXPECT_EQ(library.remove("a", &Listen, &heard), kRefused);
    EXPECT_EQ(DispatchOf(library, "a"), 0);
    EXPECT_EQ(heard, Heard{});
    EXPECT_EQ(stays, Heard{"a 1 app null data"});
}

TEST(PlugPlugLibrary, SenselessCallsAreRefused) {
    const Library library;
    EXPECT_EQ(library.add(nullptr, &Listen, nullptr), kRefused);
    EXPECT_EQ(library.add("a", nullptr, nullptr), kRefused);
    EXPECT_EQ(library.remove(nullptr, &Listen, nullptr), kRefused);
    EXPECT_EQ(library.remove("a", nullptr, nullptr), kRefused);
    EXPECT_EQ(library.dispatch(nullptr), kRefused);
    EXPECT_EQ(DispatchOf(library, nullptr), kRefused);
    EXPECT_EQ(library.hostDispatch(nullptr), kRefused);
}

TEST(PlugPlugLibrary, EveryCallIsRecordedWithItsArgumentsAndItsAnswer) {
    const Library library(R"({"PlugPlugLoadExtension": [{"result": 7}]})");
    Heard heard;
    EXPECT_EQ(library.loadExtension("x"), 7);
    EXPECT_EQ(library.unloadExtension(nullptr), 0);
    library.add("a", &Listen, &heard);
    DispatchOf(library, "a");
    DispatchOf(library, nullptr);
    library.dispatch(nullptr);
    library.remove("b", &Listen, nullptr);
    EXPECT_EQ(library.loaded.Record(), R"({"entry":"PlugPlugLoadExtension","arguments":{"extension":"x"},"answer":7}
{"entry":"PlugPlugUnloadExtension","arguments":{"extension":null},"answer":0}
{"entry":"PlugPlugAddEventListener","arguments":{"type":"a","listener":"set","context":"set"},"answer":0}
{"entry":"PlugPlugDispatchEvent","arguments":{"type":"a","scope":1,"application":"app","extension":null,"data":"data"},"answer":0}
{"entry":"PlugPlugDispatchEvent","arguments":{"type":null,"scope":1,"application":"app","extension":null,"data":"data"},"answer":22}
{"entry":"PlugPlugDispatchEvent","arguments":{"event":"null"},"answer":22}
{"entry":"PlugPlugRemoveEventListener","arguments":{"type":"b","listener":"set","context":"null"},"answer":22}
)");
}

TEST(PlugPlugLibrary, ScriptedRefusalsKeepTheBusAsItWas) {
    const Library library(R"({"PlugPlugAddEventListener": [{"result": 5}, {}],
                              "PlugPlugDispatchEvent": [{}, {"result": -1}, {}],
                              "PlugPlugRemoveEventListener": [{"result": 6}]})");
    Heard heard;
    EXPECT_EQ(library.add("a", &Listen, &heard), 5);
    EXPECT_EQ(DispatchOf(library, "a"), 0);
    EXPECT_EQ(heard, Heard{});
    EXPECT_EQ(library.add("a", &Listen, &heard), 0);
    EXPECT_EQ(DispatchOf(library, "a"), -1);
    EXPECT_EQ(heard, Heard{});
    EXPECT_EQ(library.remove("a", &Listen, &heard), 6);
    EXPECT_EQ(DispatchOf(library, "a"), 0);
    EXPECT_EQ(heard, Heard{"a 1 app null data"});
}

TEST(PlugPlugLibrary, TheHostsOwnWayToTheBusIsNeitherRecordedNorScripted) {
    const Library library(R"({"PlugPlugAddEventListener": [{"result": 5}], "PlugPlugDispatchEvent": [{"result": 5}]})");
    Heard heard;
    EXPECT_EQ(library.hostAdd("a", &Listen, &heard), 0);
    const PlugPlugEvent event = EventOf("a");
    EXPECT_EQ(library.hostDispatch(&event), 0);
    EXPECT_EQ(heard, Heard{"a 1 app null data"});
    EXPECT_EQ(library.loaded.Record(), "");
}

}  // namespace
