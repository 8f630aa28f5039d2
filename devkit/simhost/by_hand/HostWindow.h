// The window of a host that a person operates: a menu bar, the documents, the panel, and what goes between host,
// plug-in and PluginCore. It shows and asks; what the host does stands in WindowSession.
//
// Thread: main.
#pragma once

#include <windows.h>

#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "doubles/host/model/MenuModel.h"
#include "simhost/by_hand/MenuBar.h"

namespace simhost {

// Known to whoever looks for other windows of the host.
inline constexpr const wchar_t* kHostWindowClass = L"QuorvelHostWindow";

enum class WindowCommand { kNew, kOpen, kSave, kSaveAs, kClose, kChange, kAskForPort, kRaiseDialog };

// What a person did. Each may be called while the one before is under way: a dialog on show handles messages.
struct WindowEvents {
    std::function<void(WindowCommand command)> onCommand;
    std::function<void(const std::string& document)> onDocumentSelected;
    std::function<void(const std::vector<const void*>& items)> onMenuOpened;
    std::function<void(const void* item)> onMenuItem;
    std::function<void()> onIdle;  // once a second
};

struct DocumentLine {
    std::string name;
    std::string text;  // as shown
    bool open = false;
    bool current = false;
};

class HostWindow {
  public:
    // Throws std::runtime_error when no window can be shown. `menus` must outlive the window.
    HostWindow(MenuModel& menus, WindowEvents events);
    ~HostWindow();
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    // Handles messages until the window is closed. Throws what an event has thrown.
    void Run();

    // Shown by ShowTrace(), and meanwhile ten times a second: line by line takes longer than what it tells of.
    void Append(const std::string& traceLine);
    void ShowTrace();
    void ShowDocuments(const std::vector<DocumentLine>& documents);
    void ShowPanel(const std::string& text);
    // PostScript names.
    void ShowFonts(const std::string& fonts);
    std::string Fonts() const;
    // The selected document's name; empty when none is.
    std::string SelectedDocument() const;
    void ShowMenus();
    HWND Handle() const { return mWindow; }

  private:
    static LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT HandleAndCatch(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void OnCommand(UINT identifier, UINT code);
    void MakeControls();
    void Lay(int width, int height) const;
    void EnableButtons() const;
    // Null when none is.
    const DocumentLine* Selected() const;
    HWND Control(int identifier) const { return GetDlgItem(mWindow, identifier); }

    MenuModel& mMenus;
    WindowEvents mEvents;
    HWND mWindow = nullptr;
    HFONT mFont = nullptr;
    HFONT mTraceFont = nullptr;
    MenuBar mMenuBar;
    std::vector<DocumentLine> mDocuments;  // in the order of the list
    std::wstring mAppended;                // and not shown yet
    ULONGLONG mTraceShownAt = 0;           // in milliseconds
    bool mMenuIsOpen = false;
    bool mMenusAreOld = false;
    std::exception_ptr mError;  // thrown by an event; ends the window
};

}  // namespace simhost
