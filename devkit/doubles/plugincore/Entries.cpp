// The entry points of the PluginCore. Each records what it was called with, takes its answer from the script, and does
// nothing else; only the one that creates menus calls back. The order is that of the names.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

#include "Answer.h"
#include "doubles/common/CallRecord.h"
#include "doubles/common/ForeignException.h"
#include "MenuCreation.h"
#include "MessagingState.h"

namespace {

using Flag = std::uint8_t;

// Where a caller has no size to pass, the buffer of these entries is this long by contract.
constexpr std::uint64_t kShortBuffer = 256;

// What is left of an answer when nothing has to be destroyed any more, so that an exception can be thrown.
struct Outcome {
    std::int32_t result;
    Throw throws;
};

Outcome Conclude(const CallRecord& record, const Answer& answer) {
    record.Write(answer.result);
    return {answer.result, answer.throws};
}

std::int32_t Return(Outcome outcome) {
    ThrowAsAsked(outcome.throws);
    return outcome.result;
}

// Never more than fits, the end mark included.
void WriteText(const Answer& answer, char* buffer, std::uint64_t capacity) {
    if (!answer.text || buffer == nullptr || capacity == 0) {
        return;
    }
    const std::size_t length = std::min<std::size_t>(answer.text->size(), capacity - 1);
    std::memcpy(buffer, answer.text->data(), length);
    buffer[length] = '\0';
}

void WriteText(const Answer& answer, char* buffer, const std::uint64_t* size) {
    WriteText(answer, buffer, size == nullptr ? 0 : *size);
}

Outcome RecordPlain(const char* entry) { return Conclude(CallRecord(entry), NextAnswer(entry)); }

Outcome RecordTwoTexts(const char* entry, const char* firstName, const char* first, const char* secondName,
                       const char* second) {
    return Conclude(CallRecord(entry).Text(firstName, first).Text(secondName, second), NextAnswer(entry));
}

Outcome RecordPathAndReply(const char* entry, const char* path, char* buffer, const std::uint64_t* size) {
    const CallRecord record = CallRecord(entry).Text("path", path).Buffer(buffer, size);
    const Answer answer = NextAnswer(entry);
    WriteText(answer, buffer, size);
    return Conclude(record, answer);
}

Outcome RecordReply(const char* entry, char* buffer, const std::uint64_t* size) {
    const CallRecord record = CallRecord(entry).Buffer(buffer, size);
    const Answer answer = NextAnswer(entry);
    WriteText(answer, buffer, size);
    return Conclude(record, answer);
}

// The text that a caller hands in together with the capacity of its buffer.
CallRecord& AddFilledBuffer(CallRecord& record, const char* text, const std::uint64_t* size) {
    return record.Text("text", text).NumberAt("capacity", size);
}

Outcome RecordActivateChosenFonts(const char* path, const char* text, const std::uint64_t* size) {
    CallRecord record = CallRecord("ActivateChosenFonts").Text("path", path);
    return Conclude(AddFilledBuffer(record, text, size), NextAnswer("ActivateChosenFonts"));
}

Outcome RecordInvokeResolveDialog(char* text, const std::uint64_t* size) {
    CallRecord record("InvokeResolveDialog");
    AddFilledBuffer(record, text, size);
    const Answer answer = NextAnswer("InvokeResolveDialog");
    WriteText(answer, text, size);
    return Conclude(record, answer);
}

Outcome RecordCreateMenus(const char* json, MenuCallback callback, void* context) {
    const CallRecord record = CallRecord("CreateMenusFromJSONBuffer")
                                  .Text("json", json)
                                  .Pointer("callback", reinterpret_cast<const void*>(callback))
                                  .Pointer("context", context)
                                  .Texts("items", CreateMenuItems(json, callback, context));
    return Conclude(record, NextAnswer("CreateMenusFromJSONBuffer"));
}

Outcome RecordGetSocketPort(std::uint32_t* port) {
    const CallRecord record = CallRecord("GetSocketPort").NumberAt("preset", port);
    const Answer answer = NextAnswer("GetSocketPort");
    if (port != nullptr) {
        *port = answer.port;
    }
    return Conclude(record, answer);
}

Outcome RecordRegisterPlugPlug(const void* state) {
    const std::optional<std::string> description = DescribeMessagingState(state);
    return Conclude(CallRecord("RegisterPlugPlug").Text("state", description ? description->c_str() : nullptr),
                    NextAnswer("RegisterPlugPlug"));
}

Outcome RecordPluginIsEnabled(Flag flag, Flag* enabled) {
    const CallRecord record = CallRecord("PluginIsEnabled").Number("flag", flag).NumberAt("preset", enabled);
    const Answer answer = NextAnswer("PluginIsEnabled");
    if (enabled != nullptr) {
        *enabled = answer.enabled;
    }
    return Conclude(record, answer);
}

Outcome RecordPathAndPlainBuffer(const char* entry, const char* path, char* buffer, std::uint64_t capacity) {
    const CallRecord record = CallRecord(entry).Text("path", path).BufferOf(buffer, capacity);
    const Answer answer = NextAnswer(entry);
    WriteText(answer, buffer, capacity);
    return Conclude(record, answer);
}

}  // namespace

extern "C" {

std::int32_t ActivateChosenFonts(const char* path, char* text, std::uint64_t* size) {
    return Return(RecordActivateChosenFonts(path, text, size));
}

std::int32_t CreateMenusFromJSONBuffer(const char* json, MenuCallback callback, void* context) {
    return Return(RecordCreateMenus(json, callback, context));
}

std::int32_t GetAPIVersion(std::uint32_t* value, std::int32_t interfaceVersion) {
    return Return(
        Conclude(CallRecord("GetAPIVersion").NumberAt("preset", value).Number("interface_version", interfaceVersion),
                 NextAnswer("GetAPIVersion")));
}

// Nobody knows its arguments, so none are read.
std::int32_t GetDocumentFontUsage() { return Return(RecordPlain("GetDocumentFontUsage")); }

std::int32_t GetIDForDocument(const char* path, char* buffer, std::uint64_t* size) {
    return Return(RecordPathAndReply("GetIDForDocument", path, buffer, size));
}

std::int32_t GetMenus(const char* path, char* buffer, std::uint64_t* size) {
    return Return(RecordPathAndReply("GetMenus", path, buffer, size));
}

std::int32_t GetSettings(char* buffer, std::uint64_t* size) { return Return(RecordReply("GetSettings", buffer, size)); }

std::int32_t GetSocketPort(std::uint32_t* port) { return Return(RecordGetSocketPort(port)); }

std::int32_t HandleCloseDocument(const char* path, const char* report) {
    return Return(RecordTwoTexts("HandleCloseDocument", "path", path, "report", report));
}

std::int32_t HandleCreateNewDocument(char* buffer, std::uint64_t* size) {
    return Return(RecordReply("HandleCreateNewDocument", buffer, size));
}

std::int32_t HandleMenuSelection(const char* documentId, const char* menuJson, const char* itemId) {
    return Return(Conclude(
        CallRecord("HandleMenuSelection").Text("document", documentId).Text("json", menuJson).Text("item", itemId),
        NextAnswer("HandleMenuSelection")));
}

std::int32_t HandleOpenExistingDocument(const char* path, char* buffer, std::uint64_t* size) {
    return Return(RecordPathAndReply("HandleOpenExistingDocument", path, buffer, size));
}

std::int32_t HandleSaveDocument(const char* path, const char* report) {
    return Return(RecordTwoTexts("HandleSaveDocument", "path", path, "report", report));
}

std::int32_t IdleEvent() { return Return(RecordPlain("IdleEvent")); }

std::int32_t InitializePluginCoreInterface(const char* text) {
    return Return(Conclude(CallRecord("InitializePluginCoreInterface").Text("text", text),
                           NextAnswer("InitializePluginCoreInterface")));
}

std::int32_t InvokeCommandDialog(const char* path, char* buffer) {
    return Return(RecordPathAndPlainBuffer("InvokeCommandDialog", path, buffer, kShortBuffer));
}

std::int32_t InvokeResolveDialog(char* text, std::uint64_t* size) {
    return Return(RecordInvokeResolveDialog(text, size));
}

std::int32_t InvokeRestrictedFontsDialog(const char* path, char* buffer) {
    // The buffer holds the reply that the open call gave just before.
    return Return(Conclude(CallRecord("InvokeRestrictedFontsDialog").Text("path", path).Text("text", buffer),
                           NextAnswer("InvokeRestrictedFontsDialog")));
}

std::int32_t PluginIsEnabled(Flag flag, Flag* enabled) { return Return(RecordPluginIsEnabled(flag, enabled)); }

std::int32_t ProcessPanelMessages(Flag flag) {
    return Return(
        Conclude(CallRecord("ProcessPanelMessages").Number("flag", flag), NextAnswer("ProcessPanelMessages")));
}

std::int32_t RegisterPlugPlug(void* state) { return Return(RecordRegisterPlugPlug(state)); }

// Nobody knows its arguments, so none are read.
std::int32_t SetPathForDocument() { return Return(RecordPlain("SetPathForDocument")); }

std::int32_t TerminatePluginCoreInterface() { return Return(RecordPlain("TerminatePluginCoreInterface")); }

std::int32_t UpdateDocumentFontUsage(const char* documentId, const char* report) {
    return Return(RecordTwoTexts("UpdateDocumentFontUsage", "document", documentId, "report", report));
}

// The one export of the variant that has none of the entries.
std::int32_t SubstitutePluginCoreIsHere() { return 0; }

}  // extern "C"
