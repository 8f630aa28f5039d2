#include "simhost/contract/Probes.h"

#include <cstdio>
#include <optional>

#include "simhost/contract/ContractBook.h"
#include "simhost/contract/MemoryProbe.h"
#include "simhost/contract/ProbedLibrary.h"
#include "simhost/contract/QuietMessaging.h"

namespace simhost::contract {

namespace {

constexpr const char* kPath = "C:\\Job\\Brochure.ai";
// Letters of several lengths in UTF-8, and a blank.
constexpr const char* kForeignPath = "C:\\Gr\xC3\xB6\xC3\x9F\x65 \xE6\x96\x87\xE5\xAD\x97 \xF0\x9F\x98\x80\\a b.ai";
constexpr const char* kReport =
    R"({"DocumentFonts":[{"PostScriptName":"Garamond-Bold"}],"LinkedDocuments":["C:\\Job\\Logo.pdf"]})";
// From nothing to what the plug-in passes.
constexpr std::size_t kCapacities[] = {0, 1, 2, 7, 64, 255, 256, 4096, 8192, 32767};
constexpr std::size_t kLongPath = 2000;
constexpr int kManyFonts = 500;
// For what a library does on threads of its own.
constexpr DWORD kMomentMilliseconds = 200;

void ProbeEntries(ProbedLibrary& library) {
    Book().Tried(ClauseId::kEntriesMissing);
    std::string missing;
    for (const std::string& name : library.Missing()) {
        missing += (missing.empty() ? "" : ", ") + name;
    }
    if (!missing.empty()) {
        Book().Broken({ClauseId::kEntriesMissing, "", 0, "not exported: " + missing});
    }
    if (!library.GetAPIVersion.IsNull()) {
        Book().Tried(ClauseId::kVersion);
        std::uint32_t value = 0;
        const auto answer = library.GetAPIVersion(&value, kPluginCoreVersion);
        if (answer && *answer != kPluginCoreSuccess) {
            Book().Broken({ClauseId::kVersion, "GetAPIVersion", 1, "answered " + std::to_string(*answer)});
        }
    }
}

void ProbeNullBuffer(ProbedLibrary& library) {
    library.Start();
    if (!library.HandleOpenExistingDocument.IsNull()) {
        Book().Tried(ClauseId::kNullBuffer);
        std::uint64_t size = 0;
        const auto answer = library.HandleOpenExistingDocument(kPath, nullptr, &size);
        if (answer && *answer != kPluginCoreSuccess && *answer != kPluginCoreRestrictedFonts) {
            Book().Broken({ClauseId::kNullBuffer, "HandleOpenExistingDocument", 1,
                           "a null buffer was answered with " + std::to_string(*answer)});
        }
    }
    library.End();
}

void ProbeSmallBuffers(ProbedLibrary& library) {
    library.Start();
    for (const std::size_t capacity : kCapacities) {
        Reply replies[] = {Reply(capacity), Reply(capacity), Reply(capacity), Reply(capacity), Reply(capacity)};
        library.GetIDForDocument(kPath, replies[0].Buffer(), &replies[0].size);
        library.GetMenus(kPath, replies[1].Buffer(), &replies[1].size);
        library.GetSettings(replies[2].Buffer(), &replies[2].size);
        library.HandleCreateNewDocument(replies[3].Buffer(), &replies[3].size);
        library.HandleOpenExistingDocument(kPath, replies[4].Buffer(), &replies[4].size);
    }
    library.End();
}

void TellOf(const ProbedLibrary& library, const std::string& path, const std::string& report) {
    Reply opened(kPluginCoreOpenReplySize);
    library.HandleOpenExistingDocument(path.c_str(), opened.Buffer(), &opened.size);
    Reply id(kPluginCoreDocumentIDSize);
    library.GetIDForDocument(path.c_str(), id.Buffer(), &id.size);
    Reply menus(kPluginCoreMenusSize);
    library.GetMenus(path.c_str(), menus.Buffer(), &menus.size);
    library.UpdateDocumentFontUsage(id.Buffer(), report.c_str());
    library.HandleMenuSelection(id.Buffer(), menus.Buffer(), "no such item");
    library.HandleSaveDocument(path.c_str(), report.c_str());
    library.HandleCloseDocument(path.c_str(), report.c_str());
    library.IdleEvent();
    library.ProcessPanelMessages(1);
}

std::string LargeReport() {
    std::string fonts;
    for (int i = 0; i < kManyFonts; ++i) {
        fonts += (i == 0 ? "" : ",") + (R"({"PostScriptName":"Font-)" + std::to_string(i)) + "\"}";
    }
    return R"({"DocumentFonts":[)" + fonts + R"(],"LinkedDocuments":[]})";
}

void ProbeTexts(ProbedLibrary& library) {
    library.Start();
    const std::string paths[] = {
        kPath, "", "Recovered", kForeignPath, "C:/Job/Brochure.ai", "C:\\" + std::string(kLongPath, 'x') + "\\a.ai"};
    for (const std::string& path : paths) {
        TellOf(library, path, kReport);
    }
    TellOf(library, kPath, "");
    TellOf(library, kPath, LargeReport());
    // A document that was never saved.
    Reply text(kPluginCoreOpenReplySize);
    std::snprintf(text.Buffer(), text.bytes.size(), "%s", kReport);
    library.ActivateChosenFonts("", text.Buffer(), &text.size);
    library.HandleMenuSelection("", "", "");
    Sleep(kMomentMilliseconds);
    library.IdleEvent();
    library.End();
    Sleep(kMomentMilliseconds);
}

std::int32_t AcceptItem(const char*, const char*, const char*, std::uint8_t, std::uint8_t, std::uint8_t, const char*,
                        void*) {
    return 0;
}

std::int32_t RefuseItem(const char*, const char*, const char*, std::uint8_t, std::uint8_t, std::uint8_t, const char*,
                        void*) {
    return kPluginCoreDuplicateMenuItem;
}

void ProbeMenus(ProbedLibrary& library) {
    library.Start();
    Reply menus(kPluginCoreMenusSize);
    library.GetMenus("", menus.Buffer(), &menus.size);
    int context = 0;
    library.CreateMenusFromJSONBuffer(menus.Buffer(), &AcceptItem, &context);
    library.CreateMenusFromJSONBuffer(menus.Buffer(), &RefuseItem, &context);
    // As it comes when GetMenus has answered nothing, or has cut its text.
    library.CreateMenusFromJSONBuffer("", &AcceptItem, &context);
    library.CreateMenusFromJSONBuffer("[{\"id\": \"a\", \"ti", &AcceptItem, &context);
    library.CreateMenusFromJSONBuffer(std::string(kPluginCoreMenusSize - 1, '[').c_str(), &AcceptItem, &context);
    Sleep(kMomentMilliseconds);
    library.IdleEvent();
    library.End();
    Sleep(kMomentMilliseconds);
}

void ProbePanel(ProbedLibrary& library) {
    library.Start();
    std::uint32_t port = 0;
    library.RegisterPlugPlug(QuietMessaging());
    library.GetSocketPort(&port);
    library.RegisterPlugPlug(QuietMessaging());
    library.ProcessPanelMessages(1);
    library.IdleEvent();
    library.GetSocketPort(&port);
    library.End();
}

// Twice: guarded memory has its page without access behind what it lends the first time, and in front the second.
void ProbeDialogs(ProbedLibrary& library) {
    library.Start();
    for (int i = 0; i < 2; ++i) {
        Reply about(kPluginCoreCommandDialogSize);
        library.InvokeCommandDialog(kPath, about.Buffer());
        Reply fonts(kPluginCoreOpenReplySize);
        library.HandleOpenExistingDocument(kPath, fonts.Buffer(), &fonts.size);
        library.InvokeRestrictedFontsDialog(kPath, fonts.Buffer());
        library.InvokeResolveDialog(fonts.Buffer(), &fonts.size);
        library.ActivateChosenFonts(kPath, fonts.Buffer(), &fonts.size);
    }
    library.End();
}

void AskToTheEnd(const ProbedLibrary& library) {
    std::uint32_t version = 0;
    library.GetAPIVersion(&version, kPluginCoreVersion);
    Reply settings(kPluginCoreSettingsSize);
    library.GetSettings(settings.Buffer(), &settings.size);
    std::uint32_t port = 0;
    library.GetSocketPort(&port);
}

// The host offers its menus and panels until the process ends, and its clock ticks.
void UseMenusAndPanel(const ProbedLibrary& library) {
    library.IdleEvent();
    library.ProcessPanelMessages(1);
    std::uint8_t isEnabled = 0;
    library.PluginIsEnabled(1, &isEnabled);
    Reply menus(kPluginCoreMenusSize);
    library.GetMenus(kPath, menus.Buffer(), &menus.size);
    Reply id(kPluginCoreDocumentIDSize);
    library.GetIDForDocument(kPath, id.Buffer(), &id.size);
    library.UpdateDocumentFontUsage(id.Buffer(), kReport);
    library.HandleMenuSelection(id.Buffer(), menus.Buffer(), "no such item");
    library.RegisterPlugPlug(QuietMessaging());
}

void ProbeAfterTerminate(ProbedLibrary& library) {
    library.Start();
    AskToTheEnd(library);
    library.End();
    Book().Tried(ClauseId::kAfterTerminate);
    AskToTheEnd(library);
    UseMenusAndPanel(library);
}

struct Answers {
    std::optional<std::int32_t> start;
    std::uint8_t isEnabled = 0;
    std::string menus, settings;
    bool operator==(const Answers&) const = default;
};

Answers StartAndAsk(const ProbedLibrary& library) {
    Answers answers;
    answers.start = library.InitializePluginCoreInterface(kPath);
    library.PluginIsEnabled(1, &answers.isEnabled);
    Reply menus(kPluginCoreMenusSize);
    library.GetMenus("", menus.Buffer(), &menus.size);
    Reply settings(kPluginCoreSettingsSize);
    library.GetSettings(settings.Buffer(), &settings.size);
    answers.menus = menus.Text();
    answers.settings = settings.Text();
    library.End();
    return answers;
}

void ProbeSecondStart(ProbedLibrary& library) {
    const Answers first = StartAndAsk(library);
    Book().Tried(ClauseId::kSecondStart);
    const Answers second = StartAndAsk(library);
    const auto compare = [](bool isSame, const char* entry) {
        if (!isSame) {
            Book().Broken({ClauseId::kSecondStart, entry, 2, "answers otherwise than after the first start"});
        }
    };
    compare(first.start == second.start, "InitializePluginCoreInterface");
    compare(first.isEnabled == second.isEnabled, "PluginIsEnabled");
    compare(first.menus == second.menus, "GetMenus");
    compare(first.settings == second.settings, "GetSettings");
}

constexpr Probe kProbes[] = {
    {"entries", &ProbeEntries, ClauseId::kCrash},
    {"null-buffer", &ProbeNullBuffer, ClauseId::kNullBuffer},
    {"small-buffers", &ProbeSmallBuffers, ClauseId::kCrash},
    {"texts", &ProbeTexts, ClauseId::kCrash},
    {"menus", &ProbeMenus, ClauseId::kCrash},
    {"panel", &ProbePanel, ClauseId::kCrash},
    {"dialogs", &ProbeDialogs, ClauseId::kCrash},
    {"after-terminate", &ProbeAfterTerminate, ClauseId::kCrash},
    {"second-start", &ProbeSecondStart, ClauseId::kSecondStart},
    {"memory", &ProbeMemory, ClauseId::kCrash, Needs::kSoundMemory},
    {"starts", &ProbeStarts, ClauseId::kCrash, Needs::kNothingLeft},
};

}  // namespace

std::span<const Probe> AllProbes() { return kProbes; }

}  // namespace simhost::contract
