#include "growth/Messages.h"

#include <windows.h>

#include <iterator>
#include <stdexcept>

#include "doubles/common/Text.h"
#include "simhost/windows/HostDialog.h"

namespace growth {

namespace {

constexpr const char* kDocument = "A";
constexpr const char* kPath = "C:\\Job\\Brochure.ai";  // of a file that is to be opened

// In this order; the document is open from the first on.
constexpr const char* kLifeOfDocument[] = {
    "AI Document New Notifier",           "AI Document Opened Notifier",         "AI Document Changed Notifier",
    "AI Menu Changed Notifier",           "AI Font List Changed Notifier",       "AI Command Notifier: After Save",
    "AI Command Notifier: After Save As", "AI Document About To Close Notifier",
};
constexpr const char* kClosed = "AI Document Closed Notifier";
constexpr int kTicks = 6;
// The PluginCore gives them in turns.
constexpr int kAnswersToOpening = 3;
// A dialog takes longer than all messages of a round.
constexpr int kRoundsPerDialog = 12;

int SendMenus(StartedPlugin& plugin) {
    const auto items = plugin.host.model.menus.items.Objects();
    for (const auto& [handle, item] : items) {
        void* const sent = reinterpret_cast<void*>(handle);
        plugin.driver.SendMenu(kSelectorAIUpdateMenuItem, sent);
        plugin.driver.SendMenu(kSelectorAIGoMenuItem, sent);
    }
    return 2 * static_cast<int>(items.size());
}

// The document is opened until its fonts are activated: then the plug-in has to press the dialog away.
int OpenWithADialog(StartedPlugin& plugin, void* document) {
    for (int opened = 1; opened <= kAnswersToOpening; ++opened) {
        plugin.Notify("AI Document Opened Notifier", document);
        if (simhost::ShowHostDialog({.title = "Font Problems"}).endedWithOk) {
            return opened;
        }
    }
    throw std::runtime_error("the plug-in presses no dialog away");
}

void AskForPort() {
    const auto ask = reinterpret_cast<std::int32_t (*)()>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"PlugPlugOwl.dll"), "AskForPort")));
    if (ask == nullptr || ask() != 1) {
        throw std::runtime_error("the plug-in does not listen to the panel");
    }
}

int SendFileCheck(StartedPlugin& plugin) {
    void* const format = plugin.host.model.FileFormatFor(kPath);
    if (format == nullptr) {
        return 0;
    }
    auto& paths = plugin.host.objects.paths;
    ai::FilePathData path{paths.Add(simhost::Utf16(kPath, CP_UTF8).value_or(u""))};
    void* const handle = path.impl;
    plugin.driver.SendFileCheck(format, path);
    paths.Remove(handle);
    return 1;
}

}  // namespace

void PrepareDocument(simhost::SimulatedHost& host, const std::string& path) {
    simhost::Document document;
    document.name = kDocument;
    document.path = path;
    document.frames = {{"Garamond-Bold", "Myriad-Roman"}, {"Optima-Roman"}};
    document.placed = {"C:\\Job\\Links\\Photo.tif"};
    host.model.documents.emplace(kDocument, document);
}

int SendRound(StartedPlugin& plugin) {
    simhost::HostModel& model = plugin.host.model;
    // The host's own records would grow.
    plugin.host.operations.BeginStep({});
    plugin.host.objects.disposedMatches.clear();
    model.Open(kDocument);
    void* const handle = model.Named(kDocument).handle;
    for (const char* const type : kLifeOfDocument) {
        plugin.Notify(type, handle);
    }
    int sent = static_cast<int>(std::size(kLifeOfDocument)) + SendMenus(plugin) + SendFileCheck(plugin);
    plugin.driver.SendInterface("About");
    plugin.driver.SendPlain("Unknown", "Unknown", true);
    if (plugin.rounds++ % kRoundsPerDialog == 0) {
        sent += OpenWithADialog(plugin, handle);
    }
    AskForPort();
    model.Close(kDocument);
    plugin.Notify(kClosed, handle);
    for (int i = 0; i < kTicks; ++i) {
        plugin.Tick();
    }
    sent += 3 + kTicks;
    return sent;
}

}  // namespace growth
