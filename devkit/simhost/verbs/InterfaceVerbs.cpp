#include "simhost/verbs/InterfaceVerbs.h"

#include "simhost/run/Performance.h"

namespace simhost {

namespace {

constexpr std::int32_t kStayLoaded = 1;

}  // namespace

void Perform(const SendInterface& action, Performance& performance) {
    performance.NoteAnswer("\"SP Interface\"/\"" + action.selector + "\"",
                           performance.driver.SendInterface(action.selector.c_str()));
}

void Perform(const UnloadPlugin&, Performance& performance) {
    const std::int32_t answer = performance.driver.SendAccess(kSPAccessUnloadSelector);
    performance.NoteAnswer("\"SP Access\"/\"Unload\"", answer);
    if (answer != kStayLoaded) {
        performance.plugin.Unload();
    }
}

SendPlain ReadSendPlain(ObjectReader& reader) {
    return {reader.NeedText("caller"), reader.NeedText("selector"), reader.Flag("basic_suite", true)};
}

void Perform(const SendPlain& action, Performance& performance) {
    performance.NoteAnswer("\"" + action.caller + "\"/\"" + action.selector + "\"",
                           performance.driver.SendPlain(action.caller, action.selector, action.withBasicSuite));
}

}  // namespace simhost
