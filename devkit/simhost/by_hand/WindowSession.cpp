#include "simhost/by_hand/WindowSession.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <utility>

#include "doubles/common/Text.h"
#include "doubles/host/Host.h"
#include "doubles/host/PluginReference.h"
#include "host/MenuSuite.h"
#include "simhost/scenario/PathsOfRun.h"
#include "simhost/verbs/VerbTable.h"

namespace simhost {

namespace {

constexpr const char* kDialogTitle = "Missing Fonts";

bool IsOpen(const std::string& document) {
    const auto& open = Host().model.open;
    return std::find(open.begin(), open.end(), document) != open.end();
}

// One that was never saved has a bare title for a path.
bool HasFile(const Document& document) { return document.path.find('\\') != std::string::npos; }

// The runs of a frame are separated by commas, frames by semicolons.
std::string FontsOf(const Document& document) {
    std::string fonts;
    for (const TextFrame& frame : document.frames) {
        std::string runs;
        for (const std::string& font : frame.runs) {
            runs += (runs.empty() ? "" : ", ") + font;
        }
        fonts += (fonts.empty() || runs.empty() ? "" : "; ") + runs;
    }
    return fonts;
}

std::vector<std::string> Parts(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        part.erase(0, part.find_first_not_of(' '));
        part.erase(part.find_last_not_of(' ') + 1);
        if (!part.empty()) {
            parts.push_back(part);
        }
    }
    return parts;
}

std::vector<TextFrame> FramesWith(const std::string& fonts) {
    std::vector<TextFrame> frames;
    for (const std::string& runs : Parts(fonts, ';')) {
        frames.emplace_back().runs = Parts(runs, ',');
    }
    return frames;
}

std::vector<DocumentLine> DocumentLines() {
    std::vector<DocumentLine> lines;
    for (const auto& [name, document] : Host().model.documents) {
        const bool open = IsOpen(name);
        const bool current = name == Host().model.current;
        const char* const state = current ? " (current" : open ? " (open" : " (closed";
        lines.push_back({name, name + state + (open && document.modified ? ", changed)" : ")"), open, current});
    }
    return lines;
}

bool WantsUpdates(const void* handle) {
    const MenuItem* const item = Host().model.menus.items.Find(handle);
    return item != nullptr && item->owner == kPluginRef && (item->options & kMenuItemWantsUpdateOption) != 0;
}

// As the verbs name an item: by its text, and its number among the items of that text.
ChooseItem ChooseByHandle(const void* handle, bool update) {
    std::int64_t nth = 0;
    const std::string text = Host().model.menus.items.Find(handle)->text;
    for (const auto& [other, item] : Host().model.menus.items.Objects()) {
        nth += item.text == text ? 1 : 0;
        if (other == reinterpret_cast<std::uintptr_t>(handle)) {
            break;
        }
    }
    return {update, text, nth};
}

}  // namespace

WindowSession::WindowSession(Performance& performance)
    : mPerformance(performance),
      mWindow(Host().model.menus, {[this](WindowCommand command) { OnCommand(command); },
                                   [this](const std::string& document) { OnDocumentSelected(document); },
                                   [this](const std::vector<const void*>& items) { OnMenuOpened(items); },
                                   [this](const void* item) { OnMenuItem(item); }, [this] { OnIdle(); }}) {}

// The transcript outlives the window, also when an act throws.
WindowSession::~WindowSession() { mPerformance.report.People().ListenWith({}); }

void WindowSession::Run() {
    for (const std::string& line : mPerformance.report.People().Lines()) {
        mWindow.Append(line);
    }
    mPerformance.report.People().ListenWith([this](const std::string& line) { mWindow.Append(line); });
    ShowState();
    mWindow.Run();
    mPerformance.report.People().ListenWith({});
    while (!Host().model.open.empty()) {
        Close(Host().model.open.back());
    }
}

void WindowSession::OnCommand(WindowCommand command) {
    const std::string selected = mWindow.SelectedDocument();
    const std::string current = Host().model.current;
    switch (command) {
        case WindowCommand::kNew:
            return Act("A document is created", [&] { New(); });
        case WindowCommand::kOpen:
            if (!selected.empty() && !IsOpen(selected)) {
                Act(selected + " is opened", [&] { Open(selected); });
            }
            return;
        case WindowCommand::kAskForPort:
            return Act("The panel asks for the port", [&] { Play("panel_request", RequestPort{}); });
        case WindowCommand::kRaiseDialog:
            return Act("The host shows a dialog", [&] { RaiseDialog(); });
        default:
            break;
    }
    // The one that is selected is meant; one that is not open can only be opened.
    if (current.empty() || (!selected.empty() && selected != current)) {
        MessageBeep(MB_OK);
        return;
    }
    switch (command) {
        case WindowCommand::kSave:
            return Act(current + " is saved", [&] { Save(current); });
        case WindowCommand::kSaveAs:
            return Act(current + " is saved under another name", [&] { SaveAs(current); });
        case WindowCommand::kClose:
            return Act(current + " is closed", [&] { Close(current); });
        case WindowCommand::kChange:
            return Act(current + " is changed", [&] { ChangeFonts(current); });
        default:
            return;
    }
}

void WindowSession::OnDocumentSelected(const std::string& document) {
    if (IsOpen(document) && document != Host().model.current) {
        Act(document + " becomes the current document", [&] { Play("switch_to", SwitchTo{document}); });
    }
}

void WindowSession::OnMenuOpened(const std::vector<const void*>& items) {
    if (std::any_of(items.begin(), items.end(), &WantsUpdates)) {
        Act("A menu is opened", [&] {
            for (const void* const item : items) {
                // An update may take away an item that is still to come.
                if (WantsUpdates(item)) {
                    Play("menu_update", ChooseByHandle(item, true));
                }
            }
        });
    }
}

void WindowSession::OnMenuItem(const void* item) {
    const MenuItem* const chosen = Host().model.menus.items.Find(item);
    if (chosen != nullptr && chosen->owner == kPluginRef) {
        Act("\"" + chosen->text + "\" is chosen", [&] { Play("menu_go", ChooseByHandle(item, false)); });
    }
}

void WindowSession::OnIdle() {
    const auto timers = static_cast<std::int64_t>(Host().model.ActiveTimers().size());
    if (timers == 0 || std::exchange(mActs, true)) {
        return;
    }
    const bool isTold = mPerformance.report.TellIfNew("The host is idle", mTicksShown, [&] {
        Play("tick", Tick{1, timers});
    });
    if (isTold) {
        // Not the fonts: somebody may be typing.
        ShowWhatThePluginMade();
    }
    mActs = false;
}

void WindowSession::Act(const std::string& say, const std::function<void()>& act) {
    if (std::exchange(mActs, true)) {
        MessageBeep(MB_OK);
        return;
    }
    mTicksShown.clear();
    mPerformance.report.People().Step(say);
    act();
    ShowState();
    mActs = false;
}

void WindowSession::Play(const char* verb, Action action) {
    Step step;
    step.place = "the window";
    step.verb = FindVerb(verb);
    step.action = std::move(action);
    step.expect.anything = true;
    mPerformance.Play(step);
}

void WindowSession::New() {
    Document document;
    do {
        document.name = "Untitled-" + std::to_string(++mCreated);
    } while (Host().model.documents.contains(document.name));
    document.path = document.name;
    document.frames = FramesWith(mWindow.Fonts());
    const std::string name = document.name;
    Host().model.documents.insert_or_assign(name, std::move(document));
    Play("new", OpenDocument{name, "AI Document New Notifier"});
}

// The host asks the formats first.
void WindowSession::Open(const std::string& name) {
    const Document& document = Host().model.Named(name);
    if (HasFile(document) && Host().model.FileFormatFor(document.path) != nullptr) {
        Play("check_file", CheckFile{document.path});
    }
    Play("open", OpenDocument{name, "AI Document Opened Notifier"});
}

void WindowSession::Save(const std::string& name) {
    if (!HasFile(Host().model.Named(name))) {
        SaveAs(name);
        return;
    }
    Play("save", SaveDocument{name, {}, true, "AI Command Notifier: After Save"});
}

void WindowSession::SaveAs(const std::string& name) {
    DocumentChange change;
    change.path = NewPathFor(Host().model.Named(name));
    mPerformance.folder.WriteFile({*change.path, "saved by the simulated host\n", std::nullopt});
    Play("save_as", SaveDocument{name, change, true, "AI Command Notifier: After Save As"});
}

// In the folder of the run, where nothing is anybody's, and under a name that no other document has there.
std::string WindowSession::NewPathFor(const Document& document) const {
    const std::filesystem::path& root = mPerformance.folder.Root();
    const std::filesystem::path before(Wide(document.path));
    const bool isInRun = HasFile(document) && WhyNotInRun(document.path, Utf8(root.wstring())).empty();
    const std::filesystem::path folder = isInRun ? before.parent_path() : root;
    const std::wstring title = before.stem().wstring() + (HasFile(document) ? L" copy" : L"");
    std::filesystem::path path = folder / (title + L".ai");
    for (int number = 2; std::filesystem::exists(path); ++number) {
        path = folder / (title + L" " + std::to_wstring(number) + L".ai");
    }
    return Utf8(path.wstring());
}

void WindowSession::Close(const std::string& name) {
    Play("about_to_close", Notify{"AI Document About To Close Notifier", name});
    Play("close", CloseDocument{name, true});
}

void WindowSession::ChangeFonts(const std::string& name) {
    DocumentChange change;
    change.frames = FramesWith(mWindow.Fonts());
    change.modified = true;
    Play("change", EditDocument{name, change, "AI Document Changed Notifier"});
}

void WindowSession::RaiseDialog() {
    DialogToShow dialog{kDialogTitle};
    dialog.staysOpen = true;
    dialog.owner = mWindow.Handle();
    const DialogRecord record = ShowHostDialog(dialog);
    mPerformance.Tell("dialog \"" + dialog.title + "\": " + Describe(record));
}

void WindowSession::ShowState() {
    ShowWhatThePluginMade();
    mWindow.ShowDocuments(DocumentLines());
    if (const Document* const current = Host().model.Current()) {
        mWindow.ShowFonts(FontsOf(*current));
    }
}

void WindowSession::ShowWhatThePluginMade() {
    mWindow.ShowMenus();
    mTold = mPerformance.panel.LastTold().value_or(mTold);
    mWindow.ShowPanel(mTold.empty() ? "was told nothing yet" : "was told " + mTold);
    mWindow.ShowTrace();
}

}  // namespace simhost
