#include "support/fakes/FakePluginCore.h"

#include <windows.h>

#include <algorithm>
#include <cstring>

#include "plugincore/PCILoader.h"
#include "support/ThrowLikeAnotherCompiler.h"

namespace {

std::int32_t Answer(const std::string& entry, const std::string& arguments) {
    const std::int32_t answer = ThePluginCore().calls.Record(entry, arguments);
    if (const auto during = ThePluginCore().duringEntry.find(entry); during != ThePluginCore().duringEntry.end()) {
        during->second();
    }
    if (ThePluginCore().throwingEntry == entry) {
        ThrowLikeAnotherCompiler();
    }
    return answer;
}

// How a buffer looked when it came in: its capacity, and whether it was zeroed or which text it held.
std::string BufferBefore(const char* buffer, std::uint64_t capacity) {
    if (buffer == nullptr) {
        return "null";
    }
    const bool isZeroed = std::all_of(buffer, buffer + capacity, [](char byte) { return byte == 0; });
    return isZeroed ? std::to_string(capacity) + " zeros" : "'" + std::string(buffer, strnlen(buffer, capacity)) + "'";
}

void Reply(const std::string& entry, char* buffer, std::uint64_t capacity) {
    const auto reply = ThePluginCore().replies.find(entry);
    if (reply != ThePluginCore().replies.end() && buffer != nullptr) {
        std::memcpy(buffer, reply->second.data(), std::min<std::size_t>(reply->second.size(), capacity));
    }
}

std::int32_t AnswerWithText(const std::string& entry, const std::string& before, char* buffer, std::uint64_t* size) {
    const std::uint64_t capacity = size == nullptr ? 0 : *size;
    std::string arguments = before;
    arguments += (before.empty() ? "" : ", ") + BufferBefore(buffer, capacity) + ", " +
                 (size == nullptr ? "null" : std::to_string(capacity));
    const std::int32_t answer = Answer(entry, arguments);
    Reply(entry, buffer, capacity);
    return answer;
}

constexpr std::uint64_t kDialogBufferSize = 256;

}  // namespace

FakePluginCore& ThePluginCore() {
    static FakePluginCore pluginCore;
    return pluginCore;
}

std::string FakePluginCorePath() {
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    return path;
}

void LoadFakePluginCore() { PCILoader::LoadSharedInstance(FakePluginCorePath()); }

#define ENTRY extern "C" __declspec(dllexport) std::int32_t

ENTRY ActivateChosenFonts(const char* path, char* text, std::uint64_t* size) {
    return AnswerWithText("ActivateChosenFonts", Quoted(path), text, size);
}
ENTRY CreateMenusFromJSONBuffer(const char* json, PluginCoreMenuCallback callback, void* context) {
    ThePluginCore().menuCallback = callback;
    ThePluginCore().menuContext = context;
    return Answer("CreateMenusFromJSONBuffer", Quoted(json));
}
ENTRY GetAPIVersion(std::uint32_t* value, std::int32_t interfaceVersion) {
    return Answer("GetAPIVersion", std::to_string(*value) + ", " + std::to_string(interfaceVersion));
}
ENTRY GetDocumentFontUsage() { return Answer("GetDocumentFontUsage", ""); }
ENTRY GetIDForDocument(const char* path, char* buffer, std::uint64_t* size) {
    return AnswerWithText("GetIDForDocument", Quoted(path), buffer, size);
}
ENTRY GetMenus(const char* path, char* buffer, std::uint64_t* size) {
    return AnswerWithText("GetMenus", Quoted(path), buffer, size);
}
ENTRY GetSettings(char* buffer, std::uint64_t* size) { return AnswerWithText("GetSettings", "", buffer, size); }
ENTRY GetSocketPort(std::uint32_t* port) {
    const std::int32_t answer = Answer("GetSocketPort", std::to_string(*port));
    *port = ThePluginCore().socketPort;
    return answer;
}
ENTRY HandleCloseDocument(const char* path, const char* report) {
    return Answer("HandleCloseDocument", Quoted(path) + ", " + Quoted(report));
}
ENTRY HandleCreateNewDocument(char* buffer, std::uint64_t* size) {
    return AnswerWithText("HandleCreateNewDocument", "", buffer, size);
}
ENTRY HandleMenuSelection(const char* documentID, const char* menuJson, const char* itemID) {
    return Answer("HandleMenuSelection", Quoted(documentID) + ", " + Quoted(menuJson) + ", " + Quoted(itemID));
}
ENTRY HandleOpenExistingDocument(const char* path, char* buffer, std::uint64_t* size) {
    return AnswerWithText("HandleOpenExistingDocument", Quoted(path), buffer, size);
}
ENTRY HandleSaveDocument(const char* path, const char* report) {
    return Answer("HandleSaveDocument", Quoted(path) + ", " + Quoted(report));
}
ENTRY IdleEvent() { return Answer("IdleEvent", ""); }
ENTRY InitializePluginCoreInterface(const char* text) { return Answer("InitializePluginCoreInterface", Quoted(text)); }
ENTRY InvokeCommandDialog(const char* path, char* buffer) {
    const std::int32_t answer =
        Answer("InvokeCommandDialog", Quoted(path) + ", " + BufferBefore(buffer, kDialogBufferSize));
    Reply("InvokeCommandDialog", buffer, kDialogBufferSize);
    return answer;
}
ENTRY InvokeResolveDialog(char* text, std::uint64_t* size) {
    return AnswerWithText("InvokeResolveDialog", "", text, size);
}
ENTRY InvokeRestrictedFontsDialog(const char* path, char* buffer) {
    return Answer("InvokeRestrictedFontsDialog", Quoted(path) + ", " + Quoted(buffer));
}
ENTRY PluginIsEnabled(std::uint8_t query, std::uint8_t* isEnabled) {
    if (ThePluginCore().recordEnabledQueries) {
        Answer("PluginIsEnabled", std::to_string(query) + ", " + std::to_string(*isEnabled));
    }
    *isEnabled = ThePluginCore().enabled ? 1 : 0;
    return 0;
}
ENTRY ProcessPanelMessages(std::uint8_t process) { return Answer("ProcessPanelMessages", std::to_string(process)); }
ENTRY RegisterPlugPlug(PlugPlugState* state) {
    ThePluginCore().plugPlug = state;
    return Answer("RegisterPlugPlug", "");
}
ENTRY SetPathForDocument() { return Answer("SetPathForDocument", ""); }
ENTRY TerminatePluginCoreInterface() { return Answer("TerminatePluginCoreInterface", ""); }
ENTRY UpdateDocumentFontUsage(const char* documentID, const char* report) {
    return Answer("UpdateDocumentFontUsage", Quoted(documentID) + ", " + Quoted(report));
}
