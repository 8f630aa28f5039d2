#include "simhost/contract/ForwardedEntries.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <string>

#include "plugincore/PluginCore.h"
#include "simhost/contract/CallStack.h"
#include "support/ForeignExceptionGuard.h"

namespace simhost::contract {

namespace {

constexpr DWORD kVisualCppException = 0xE06D7363;

// The library's own entries; null until the plug-in has asked for them.
struct RealEntries {
// A name to be declared takes no parentheses. NOLINTNEXTLINE(bugprone-macro-parentheses)
#define DECLARE_ENTRY(name) decltype(&::name) name = nullptr;
    PLUGINCORE_ENTRIES(DECLARE_ENTRY)
#undef DECLARE_ENTRY
};

RealEntries sReal;

// Calls the library and ends the call. False when an exception of another compiler was stopped.
template <class Run>
bool Perform(GuardedCall& call, Run run) {
    struct Frame {
        GuardedCall& call;
        Run& run;
    } frame{call, run};
    const auto perform = [](void* context) {
        auto* const self = static_cast<Frame*>(context);
        self->call.Calling();
        self->call.Returned(self->run());
    };
    bool isStopped = false;
    try {
        isStopped = RunStoppingForeignExceptions(perform, &frame) != 0;
    } catch (const std::exception& error) {
        call.LeftBy(std::string("a C++ exception (") + error.what() + ")");
        EndCall();
        throw;
    } catch (...) {
        call.LeftBy("a C++ exception");
        EndCall();
        throw;
    }
    if (isStopped) {
        call.LeftBy("a C++ exception of another compiler");
    }
    return !isStopped;
}

// Answers as the library does, or throws what it threw: of an exception of another compiler the plug-in sees only the
// code. Nothing here has to be cleaned up by then.
template <class Run>
std::int32_t Through(GuardedCall& call, Run run) {
    std::int32_t answer = 0;
    const bool hasReturned = Perform(call, [&] { return answer = run(); });
    EndCall();
    if (!hasReturned) {
        RaiseException(kVisualCppException, EXCEPTION_NONCONTINUABLE, 0, nullptr);
    }
    return answer;
}

namespace forward {

// Of the arguments: one text, two texts, a reply, a path and a reply.
template <class Entry>
std::int32_t OneText(const char* name, const char* argument, Entry real, const char* text) {
    GuardedCall& call = BeginCall(name);
    const char* const lent = call.Text(argument, text);
    return Through(call, [=] { return real(lent); });
}

template <class Entry>
std::int32_t TwoTexts(const char* name, Entry real, const char* firstName, const char* first, const char* secondName,
                      const char* second) {
    GuardedCall& call = BeginCall(name);
    const char* const lentFirst = call.Text(firstName, first);
    const char* const lentSecond = call.Text(secondName, second);
    return Through(call, [=] { return real(lentFirst, lentSecond); });
}

template <class Entry>
std::int32_t ReplyAlone(const char* name, Entry real, char* buffer, std::uint64_t* size) {
    GuardedCall& call = BeginCall(name);
    const LentReply reply = call.Reply(buffer, size);
    return Through(call, [=] { return real(reply.text, reply.size); });
}

template <class Entry>
std::int32_t PathAndReply(const char* name, Entry real, const char* path, char* buffer, std::uint64_t* size) {
    GuardedCall& call = BeginCall(name);
    const char* const lentPath = call.Text("path", path);
    const LentReply reply = call.Reply(buffer, size);
    return Through(call, [=] { return real(lentPath, reply.text, reply.size); });
}

template <class Entry>
std::int32_t Plain(const char* name, Entry real) {
    return Through(BeginCall(name), real);
}

std::int32_t ActivateChosenFonts(const char* path, char* text, std::uint64_t* size) {
    GuardedCall& call = BeginCall("ActivateChosenFonts");
    const char* const lentPath = call.Text("path", path);
    const LentReply reply = call.TextAndReply(text, size);
    return Through(call, [=] { return sReal.ActivateChosenFonts(lentPath, reply.text, reply.size); });
}

std::int32_t CreateMenusFromJSONBuffer(const char* json, PluginCoreMenuCallback callback, void* context) {
    GuardedCall& call = BeginCall("CreateMenusFromJSONBuffer");
    const char* const lentJson = call.Text("json", json);
    CallbackGuard* const guard = call.Callback(callback, context);
    const PluginCoreMenuCallback onItem = guard == nullptr ? nullptr : &CallbackGuard::OnItem;
    return Through(call, [=] { return sReal.CreateMenusFromJSONBuffer(lentJson, onItem, guard); });
}

std::int32_t GetAPIVersion(std::uint32_t* value, std::int32_t interfaceVersion) {
    GuardedCall& call = BeginCall("GetAPIVersion");
    std::uint32_t* const lent = call.Number("value", value);
    call.PlainNumber("interface_version", interfaceVersion);
    return Through(call, [=] { return sReal.GetAPIVersion(lent, interfaceVersion); });
}

std::int32_t GetDocumentFontUsage() { return Plain("GetDocumentFontUsage", sReal.GetDocumentFontUsage); }

std::int32_t GetIDForDocument(const char* path, char* buffer, std::uint64_t* size) {
    return PathAndReply("GetIDForDocument", sReal.GetIDForDocument, path, buffer, size);
}

std::int32_t GetMenus(const char* path, char* buffer, std::uint64_t* size) {
    return PathAndReply("GetMenus", sReal.GetMenus, path, buffer, size);
}

std::int32_t GetSettings(char* buffer, std::uint64_t* size) {
    return ReplyAlone("GetSettings", sReal.GetSettings, buffer, size);
}

std::int32_t GetSocketPort(std::uint32_t* port) {
    GuardedCall& call = BeginCall("GetSocketPort");
    std::uint32_t* const lent = call.Number("port", port);
    return Through(call, [=] { return sReal.GetSocketPort(lent); });
}

std::int32_t HandleCloseDocument(const char* path, const char* report) {
    return TwoTexts("HandleCloseDocument", sReal.HandleCloseDocument, "path", path, "report", report);
}

std::int32_t HandleCreateNewDocument(char* buffer, std::uint64_t* size) {
    return ReplyAlone("HandleCreateNewDocument", sReal.HandleCreateNewDocument, buffer, size);
}

std::int32_t HandleMenuSelection(const char* documentID, const char* menuJson, const char* itemID) {
    GuardedCall& call = BeginCall("HandleMenuSelection");
    const char* const document = call.Text("document", documentID);
    const char* const json = call.Text("json", menuJson);
    const char* const item = call.Text("item", itemID);
    return Through(call, [=] { return sReal.HandleMenuSelection(document, json, item); });
}

std::int32_t HandleOpenExistingDocument(const char* path, char* buffer, std::uint64_t* size) {
    return PathAndReply("HandleOpenExistingDocument", sReal.HandleOpenExistingDocument, path, buffer, size);
}

std::int32_t HandleSaveDocument(const char* path, const char* report) {
    return TwoTexts("HandleSaveDocument", sReal.HandleSaveDocument, "path", path, "report", report);
}

std::int32_t IdleEvent() { return Plain("IdleEvent", sReal.IdleEvent); }

std::int32_t InitializePluginCoreInterface(const char* text) {
    return OneText("InitializePluginCoreInterface", "text", sReal.InitializePluginCoreInterface, text);
}

std::int32_t InvokeCommandDialog(const char* path, char* buffer) {
    GuardedCall& call = BeginCall("InvokeCommandDialog");
    const char* const lentPath = call.Text("path", path);
    char* const reply = call.ReplyOf(buffer, kPluginCoreCommandDialogSize);
    return Through(call, [=] { return sReal.InvokeCommandDialog(lentPath, reply); });
}

std::int32_t InvokeResolveDialog(char* text, std::uint64_t* size) {
    GuardedCall& call = BeginCall("InvokeResolveDialog");
    const LentReply reply = call.TextAndReply(text, size);
    return Through(call, [=] { return sReal.InvokeResolveDialog(reply.text, reply.size); });
}

// The reply of the open call is not to be written, whatever the type of the pointer says.
std::int32_t InvokeRestrictedFontsDialog(const char* path, char* buffer) {
    GuardedCall& call = BeginCall("InvokeRestrictedFontsDialog");
    const char* const lentPath = call.Text("path", path);
    char* const lentText = call.Text("text", buffer);
    return Through(call, [=] { return sReal.InvokeRestrictedFontsDialog(lentPath, lentText); });
}

std::int32_t PluginIsEnabled(std::uint8_t query, std::uint8_t* isEnabled) {
    GuardedCall& call = BeginCall("PluginIsEnabled");
    call.PlainNumber("flag", query);
    std::uint8_t* const lent = call.Flag(isEnabled);
    return Through(call, [=] { return sReal.PluginIsEnabled(query, lent); });
}

std::int32_t ProcessPanelMessages(std::uint8_t process) {
    GuardedCall& call = BeginCall("ProcessPanelMessages");
    call.PlainNumber("flag", process);
    return Through(call, [=] { return sReal.ProcessPanelMessages(process); });
}

std::int32_t RegisterPlugPlug(PlugPlugState* state) {
    GuardedCall& call = BeginCall("RegisterPlugPlug");
    PlugPlugState* const same = call.State(state);
    return Through(call, [=] { return sReal.RegisterPlugPlug(same); });
}

std::int32_t SetPathForDocument() { return Plain("SetPathForDocument", sReal.SetPathForDocument); }

std::int32_t TerminatePluginCoreInterface() {
    return Plain("TerminatePluginCoreInterface", sReal.TerminatePluginCoreInterface);
}

std::int32_t UpdateDocumentFontUsage(const char* documentID, const char* report) {
    return TwoTexts("UpdateDocumentFontUsage", sReal.UpdateDocumentFontUsage, "document", documentID, "report", report);
}

}  // namespace forward

// Notes the library's entry and gives the one in its place.
template <class Entry>
FARPROC Replace(Entry& entry, FARPROC real, Entry forwarding) {
    entry = reinterpret_cast<Entry>(reinterpret_cast<void*>(real));
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(forwarding));
}

struct Row {
    std::string_view name;
    FARPROC (*replace)(FARPROC real);
};

#define REPLACE_ENTRY(name) \
    {#name, [](FARPROC real) { return Replace<decltype(&::name)>(sReal.name, real, &forward::name); }},
constexpr Row kRows[] = {PLUGINCORE_ENTRIES(REPLACE_ENTRY)};
#undef REPLACE_ENTRY

}  // namespace

FARPROC Forwarding(std::string_view name, FARPROC real) {
    const auto* const row =
        std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& r) { return r.name == name; });
    return row == std::end(kRows) ? nullptr : row->replace(real);
}

}  // namespace simhost::contract
