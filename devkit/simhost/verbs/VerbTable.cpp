#include "simhost/verbs/VerbTable.h"

#include <algorithm>
#include <iterator>

#include "host/Messages.h"

namespace simhost {

namespace {

template <class Struct>
void PerformAs(const Action& action, Performance& performance) {
    Perform(std::get<Struct>(action), performance);
}

// A row for a verb whose reader makes a `Struct`.
template <class Struct>
constexpr Verb Row(std::string_view name, std::string_view keys, Action (*read)(ObjectReader& reader)) {
    return {name, keys, read, &PerformAs<Struct>};
}

// A row for a verb of which the plug-in is told nothing.
template <class Struct>
constexpr Verb SilentRow(std::string_view name, std::string_view keys, Action (*read)(ObjectReader& reader)) {
    return {name, keys, read, &PerformAs<Struct>, false, false, false};
}

using Reader = ObjectReader;

constexpr Verb kVerbs[] = {
    Row<SendInterface>("startup", "", [](Reader&) -> Action { return SendInterface{kSPInterfaceStartupSelector}; }),
    Row<SendInterface>("about", "", [](Reader&) -> Action { return SendInterface{kSPInterfaceAboutSelector}; }),
    Row<SendInterface>("shutdown", "", [](Reader&) -> Action { return SendInterface{kSPInterfaceShutdownSelector}; }),
    Row<UnloadPlugin>("unload", "", [](Reader&) -> Action { return UnloadPlugin{}; }),
    Row<SendPlain>("message", "caller selector basic_suite", [](Reader& r) -> Action { return ReadSendPlain(r); }),

    Row<Notify>("notify", "type document", [](Reader& r) -> Action { return ReadNotify(r); }),
    Row<Notify>("application_started", "", [](Reader&) -> Action { return Notify{"AI Application Started Notifier"}; }),
    Row<Notify>("application_shutdown", "",
                [](Reader&) -> Action { return Notify{"AI Application Shutdown Notifier"}; }),
    Row<Notify>("font_list_changed", "", [](Reader&) -> Action { return Notify{"AI Font List Changed Notifier"}; }),
    Row<Notify>("menu_changed", "", [](Reader&) -> Action { return Notify{"AI Menu Changed Notifier"}; }),

    Row<OpenDocument>("open", "document",
                      [](Reader& r) -> Action {
                          return OpenDocument{r.NeedDocument("document"), "AI Document Opened Notifier"};
                      }),
    Row<OpenDocument>("new", "document",
                      [](Reader& r) -> Action {
                          return OpenDocument{r.NeedDocument("document"), "AI Document New Notifier"};
                      }),
    Row<EditDocument>("change", "document path modified frames placed",
                      [](Reader& r) -> Action { return ReadEditDocument(r, "AI Document Changed Notifier"); }),
    Row<SaveDocument>("save", "document file_written", [](Reader& r) -> Action { return ReadSave(r); }),
    Row<SaveDocument>("save_as", "document file_written path modified frames placed",
                      [](Reader& r) -> Action { return ReadSaveAs(r); }),
    Row<Notify>("about_to_close", "document",
                [](Reader& r) -> Action {
                    return Notify{"AI Document About To Close Notifier", r.NeedDocument("document")};
                }),
    Row<CloseDocument>("close", "document document_gone", [](Reader& r) -> Action { return ReadCloseDocument(r); }),
    SilentRow<EditDocument>("edit", "document path modified frames placed",
                            [](Reader& r) -> Action { return ReadEditDocument(r, ""); }),
    SilentRow<SwitchTo>("switch_to", "document",
                        [](Reader& r) -> Action { return SwitchTo{r.NeedDocument("document")}; }),

    Row<ChooseItem>("menu_update", "item nth", [](Reader& r) -> Action { return ReadChooseItem(r, true); }),
    Row<ChooseItem>("menu_go", "item nth", [](Reader& r) -> Action { return ReadChooseItem(r, false); }),
    Row<Tick>("tick", "times sent", [](Reader& r) -> Action { return ReadTick(r); }),
    SilentRow<Wait>("wait", "seconds",
                    [](Reader& r) -> Action { return Wait{r.NeedNumber("seconds", ranges::kSeconds)}; }),
    Row<CheckFile>("check_file", "path", [](Reader& r) -> Action { return ReadCheckFile(r); }),

    {"panel_request", "", [](Reader&) -> Action { return RequestPort{}; }, &PerformAs<RequestPort>, true, false},
    SilentRow<OpenPanel>("panel_open", "", [](Reader&) -> Action { return OpenPanel{}; }),

    SilentRow<WriteFiles>("write", "files", [](Reader& r) -> Action { return ReadWriteFiles(r); }),
    SilentRow<MoveWithin>("move", "from to", [](Reader& r) -> Action { return ReadMoveWithin(r); }),
    SilentRow<ReplaceAnswers>("answers", "set", [](Reader& r) -> Action { return ReadReplaceAnswers(r); }),

    SilentRow<CheckState>("check", "menu timers file_formats messages",
                          [](Reader& r) -> Action { return ReadCheckState(r); }),
    // The hook sees it also while a message is being handled.
    {"dialog", "title class ok_button created_before expect", [](Reader& r) -> Action { return ReadShowDialog(r); },
     &PerformAs<ShowDialog>, false, false},
    {"random_messages", "times seed at_least missing_to_the_end",
     [](Reader& r) -> Action { return ReadRandomMessages(r); }, &PerformAs<SendRandomMessages>, false, true, false},
    SilentRow<OperateByHand>("window", "", [](Reader&) -> Action { return OperateByHand{}; }),
};

}  // namespace

std::span<const Verb> AllVerbs() { return kVerbs; }

const Verb* FindVerb(std::string_view name) {
    const auto* const row =
        std::find_if(std::begin(kVerbs), std::end(kVerbs), [&](const Verb& verb) { return verb.name == name; });
    return row == std::end(kVerbs) ? nullptr : row;
}

std::vector<std::string> VerbNames() {
    std::vector<std::string> names;
    for (const Verb& verb : kVerbs) {
        names.emplace_back(verb.name);
    }
    return names;
}

std::string KeysOf(const Verb& verb, bool nested) {
    std::string all = std::string(keys::kOfStep) + " " + std::string(verb.keys);
    if (verb.reachesPlugin) {
        all += " " + std::string(keys::kOfMessage);
    }
    if (verb.reachesPlugin && !nested) {
        all += " " + std::string(keys::kOfOuterMessage);
    }
    return all;
}

}  // namespace simhost
