#include "simhost/scenario/CallTable.h"

#include <algorithm>
#include <iterator>

namespace simhost {

namespace {

constexpr auto kCore = Library::kPluginCore;
constexpr auto kBus = Library::kMessaging;

constexpr CallRow kCalls[] = {
    {kCore, "ActivateChosenFonts", "path text capacity", R"({"capacity": 32767})", "text text_hex repeated size"},
    {kCore, "CreateMenusFromJSONBuffer", "json callback context items",
     R"({"json": "", "callback": "set", "context": "set", "items": []})", ""},
    {kCore, "GetAPIVersion", "preset interface_version", R"({"preset": 0, "interface_version": 1})", ""},
    {kCore, "GetDocumentFontUsage", "", "{}", ""},
    {kCore, "GetIDForDocument", "path capacity zeroed", R"({"path": "", "capacity": 256, "zeroed": true})",
     "text text_hex repeated size"},
    {kCore, "GetMenus", "path capacity zeroed", R"({"path": "", "capacity": 4096, "zeroed": true})",
     "text text_hex repeated size"},
    {kCore, "GetSettings", "capacity zeroed", R"({"capacity": 8192, "zeroed": true})", "text text_hex repeated size"},
    {kCore, "GetSocketPort", "preset", R"({"preset": 0})", "port"},
    {kCore, "HandleCloseDocument", "path report", "{}", ""},
    {kCore, "HandleCreateNewDocument", "capacity zeroed", R"({"capacity": 256, "zeroed": true})",
     "text text_hex repeated size"},
    {kCore, "HandleMenuSelection", "document json item", "{}", ""},
    {kCore, "HandleOpenExistingDocument", "path capacity zeroed", R"({"capacity": 32767, "zeroed": true})",
     "text text_hex repeated size"},
    {kCore, "HandleSaveDocument", "path report", "{}", ""},
    {kCore, "IdleEvent", "", "{}", ""},
    {kCore, "InitializePluginCoreInterface", "text", "{}", ""},
    {kCore, "InvokeCommandDialog", "path capacity zeroed", R"({"capacity": 256, "zeroed": true})",
     "text text_hex repeated"},
    {kCore, "InvokeResolveDialog", "text capacity", R"({"capacity": 32767})", "text text_hex repeated size"},
    {kCore, "InvokeRestrictedFontsDialog", "path text", "{}", ""},
    {kCore, "PluginIsEnabled", "flag preset", R"({"flag": 1, "preset": 0})", "enabled"},
    {kCore, "ProcessPanelMessages", "flag", R"({"flag": 1})", ""},
    {kCore, "RegisterPlugPlug", "state", R"({"state": "module, load, unload, add, remove, dispatch"})", ""},
    {kCore, "SetPathForDocument", "", "{}", ""},
    {kCore, "TerminatePluginCoreInterface", "", "{}", ""},
    {kCore, "UpdateDocumentFontUsage", "document report", "{}", ""},

    {kBus, "PlugPlugAddEventListener", "type listener context",
     R"({"type": "com.quorvel.portnumberrequest", "listener": "set", "context": "null"})", ""},
    {kBus, "PlugPlugDispatchEvent", "type scope application extension data event",
     R"({"type": "com.quorvel.portnumberresponse", "scope": 1, "application": "test", "extension": null})", ""},
    {kBus, "PlugPlugLoadExtension", "extension", "{}", ""},
    {kBus, "PlugPlugRemoveEventListener", "type listener context", "{}", ""},
    {kBus, "PlugPlugUnloadExtension", "extension", "{}", ""},
};

}  // namespace

const CallRow* FindCall(std::string_view entry) {
    const auto* const row =
        std::find_if(std::begin(kCalls), std::end(kCalls), [&](const CallRow& r) { return r.entry == entry; });
    return row == std::end(kCalls) ? nullptr : row;
}

std::vector<std::string> EntriesOf(Library library) {
    std::vector<std::string> entries;
    for (const CallRow& row : kCalls) {
        if (row.library == library) {
            entries.emplace_back(row.entry);
        }
    }
    return entries;
}

}  // namespace simhost
