// The entry points of the PluginCore. Each records what it was called with, answers as the script says, and does
// nothing else; only the one that creates menus calls back. The order is that of the names.
#include <cstdint>
#include <optional>
#include <string>

#include "doubles/common/OwnMemory.h"
#include "doubles/plugincore/MessagingState.h"
#include "doubles/plugincore/PluginCoreDouble.h"
#include "plugincore/PluginCore.h"

namespace {

using doubles::CallRecord;
using doubles::ReceivedCall;
using doubles::Return;
using doubles::WriteText;
using Flag = std::uint8_t;
using Outcome = ReceivedCall::Outcome;

// Where a caller has no size to pass, the buffer of these entries is this long by contract.
constexpr std::uint64_t kShortBuffer = kPluginCoreCommandDialogSize;

std::uint64_t CapacityOf(const std::uint64_t* size) { return size == nullptr ? 0 : *size; }

// For a call that is only recorded and answered.
Outcome Answer(CallRecord record) { return ReceivedCall(ThePluginCore(), std::move(record)).Conclude(); }

// For one that is answered by a text as well.
Outcome AnswerWithText(CallRecord record, char* buffer, std::uint64_t capacity) {
    ReceivedCall call(ThePluginCore(), std::move(record));
    WriteText(call.GetAnswer(), buffer, capacity);
    return call.Conclude();
}

// And whose caller passes the capacity, where the length of the text may be told.
Outcome AnswerWithText(CallRecord record, char* buffer, std::uint64_t* size) {
    ReceivedCall call(ThePluginCore(), std::move(record));
    WriteText(call.GetAnswer(), buffer, CapacityOf(size));
    if (size != nullptr && call.GetAnswer().size) {
        *size = *call.GetAnswer().size;
    }
    return call.Conclude();
}

Outcome Plain(const char* entry) {
    const OwnMemory own;
    return Answer(CallRecord(entry));
}

Outcome OneText(const char* entry, const char* name, const char* text) {
    const OwnMemory own;
    return Answer(CallRecord(entry).Text(name, text));
}

Outcome TwoTexts(const char* entry, const char* firstName, const char* first, const char* secondName,
                 const char* second) {
    const OwnMemory own;
    return Answer(CallRecord(entry).Text(firstName, first).Text(secondName, second));
}

Outcome Reply(const char* entry, char* buffer, std::uint64_t* size) {
    const OwnMemory own;
    return AnswerWithText(CallRecord(entry).Buffer(buffer, size), buffer, size);
}

Outcome PathAndReply(const char* entry, const char* path, char* buffer, std::uint64_t* size) {
    const OwnMemory own;
    return AnswerWithText(CallRecord(entry).Text("path", path).Buffer(buffer, size), buffer, size);
}

Outcome PathAndShortReply(const char* entry, const char* path, char* buffer) {
    const OwnMemory own;
    return AnswerWithText(CallRecord(entry).Text("path", path).BufferOf(buffer, kShortBuffer), buffer, kShortBuffer);
}

// These two get a text in the buffer, together with its capacity.
Outcome ActivateChosen(const char* path, char* text, std::uint64_t* size) {
    const OwnMemory own;
    return AnswerWithText(
        CallRecord("ActivateChosenFonts").Text("path", path).Text("text", text).NumberAt("capacity", size), text, size);
}

Outcome Resolve(char* text, std::uint64_t* size) {
    const OwnMemory own;
    return AnswerWithText(CallRecord("InvokeResolveDialog").Text("text", text).NumberAt("capacity", size), text, size);
}

Outcome CreateMenus(const char* json, PluginCoreMenuCallback callback, void* context) {
    const OwnMemory own;
    ThePluginCore().menuCallback = callback;
    ThePluginCore().menuContext = context;
    ReceivedCall call(ThePluginCore(), CallRecord("CreateMenusFromJSONBuffer")
                                           .Text("json", json)
                                           .Pointer("callback", reinterpret_cast<const void*>(callback))
                                           .Pointer("context", context));
    if (call.GetAnswer().createsItems) {
        const NotOwnMemory notOwn;
        call.Record().Texts("items", CreateMenuItems(json, callback, context));
    }
    return call.Conclude();
}

Outcome ApiVersion(const std::uint32_t* value, std::int32_t interfaceVersion) {
    const OwnMemory own;
    return Answer(CallRecord("GetAPIVersion").NumberAt("preset", value).Number("interface_version", interfaceVersion));
}

Outcome SocketPort(std::uint32_t* port) {
    const OwnMemory own;
    ReceivedCall call(ThePluginCore(), CallRecord("GetSocketPort").NumberAt("preset", port));
    if (port != nullptr) {
        *port = call.GetAnswer().port;
    }
    return call.Conclude();
}

Outcome Enabled(Flag flag, Flag* enabled) {
    const OwnMemory own;
    ReceivedCall call(ThePluginCore(), CallRecord("PluginIsEnabled").Number("flag", flag).NumberAt("preset", enabled));
    if (enabled != nullptr) {
        *enabled = call.GetAnswer().enabled;
    }
    return call.Conclude();
}

Outcome MenuSelection(const char* documentId, const char* menuJson, const char* itemId) {
    const OwnMemory own;
    return Answer(
        CallRecord("HandleMenuSelection").Text("document", documentId).Text("json", menuJson).Text("item", itemId));
}

Outcome PanelMessages(Flag flag) {
    const OwnMemory own;
    return Answer(CallRecord("ProcessPanelMessages").Number("flag", flag));
}

Outcome RegisterBus(PlugPlugState* state) {
    const OwnMemory own;
    ThePluginCore().plugPlug = state;
    const std::optional<std::string> description = DescribeMessagingState(state);
    return Answer(CallRecord("RegisterPlugPlug").Text("state", description ? description->c_str() : nullptr));
}

}  // namespace

extern "C" {

std::int32_t ActivateChosenFonts(const char* path, char* text, std::uint64_t* size) {
    return Return(ActivateChosen(path, text, size));
}

std::int32_t CreateMenusFromJSONBuffer(const char* json, PluginCoreMenuCallback callback, void* context) {
    return Return(CreateMenus(json, callback, context));
}

std::int32_t GetAPIVersion(std::uint32_t* value, std::int32_t interfaceVersion) {
    return Return(ApiVersion(value, interfaceVersion));
}

// Nobody knows its arguments, so none are read.
std::int32_t GetDocumentFontUsage() { return Return(Plain("GetDocumentFontUsage")); }

std::int32_t GetIDForDocument(const char* path, char* buffer, std::uint64_t* size) {
    return Return(PathAndReply("GetIDForDocument", path, buffer, size));
}

std::int32_t GetMenus(const char* path, char* buffer, std::uint64_t* size) {
    return Return(PathAndReply("GetMenus", path, buffer, size));
}

std::int32_t GetSettings(char* buffer, std::uint64_t* size) { return Return(Reply("GetSettings", buffer, size)); }

std::int32_t GetSocketPort(std::uint32_t* port) { return Return(SocketPort(port)); }

std::int32_t HandleCloseDocument(const char* path, const char* report) {
    return Return(TwoTexts("HandleCloseDocument", "path", path, "report", report));
}

std::int32_t HandleCreateNewDocument(char* buffer, std::uint64_t* size) {
    return Return(Reply("HandleCreateNewDocument", buffer, size));
}

std::int32_t HandleMenuSelection(const char* documentId, const char* menuJson, const char* itemId) {
    return Return(MenuSelection(documentId, menuJson, itemId));
}

std::int32_t HandleOpenExistingDocument(const char* path, char* buffer, std::uint64_t* size) {
    return Return(PathAndReply("HandleOpenExistingDocument", path, buffer, size));
}

std::int32_t HandleSaveDocument(const char* path, const char* report) {
    return Return(TwoTexts("HandleSaveDocument", "path", path, "report", report));
}

std::int32_t IdleEvent() { return Return(Plain("IdleEvent")); }

std::int32_t InitializePluginCoreInterface(const char* text) {
    return Return(OneText("InitializePluginCoreInterface", "text", text));
}

std::int32_t InvokeCommandDialog(const char* path, char* buffer) {
    return Return(PathAndShortReply("InvokeCommandDialog", path, buffer));
}

std::int32_t InvokeResolveDialog(char* text, std::uint64_t* size) { return Return(Resolve(text, size)); }

// The buffer holds the reply that the open call gave just before.
std::int32_t InvokeRestrictedFontsDialog(const char* path, char* buffer) {
    return Return(TwoTexts("InvokeRestrictedFontsDialog", "path", path, "text", buffer));
}

std::int32_t PluginIsEnabled(Flag query, Flag* isEnabled) { return Return(Enabled(query, isEnabled)); }

std::int32_t ProcessPanelMessages(Flag process) { return Return(PanelMessages(process)); }

std::int32_t RegisterPlugPlug(PlugPlugState* state) { return Return(RegisterBus(state)); }

// Nobody knows its arguments, so none are read.
std::int32_t SetPathForDocument() { return Return(Plain("SetPathForDocument")); }

std::int32_t TerminatePluginCoreInterface() { return Return(Plain("TerminatePluginCoreInterface")); }

std::int32_t UpdateDocumentFontUsage(const char* documentId, const char* report) {
    return Return(TwoTexts("UpdateDocumentFontUsage", "document", documentId, "report", report));
}

// The one export of the variant that has none of the entries: the GNU linker exports every symbol of a library that
// names none.
std::int32_t PluginCoreDoubleIsHere() { return 0; }

}  // extern "C"
