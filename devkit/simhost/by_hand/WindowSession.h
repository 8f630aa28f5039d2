// A host that a person operates: what each command does, played as a step whose outcome is only shown.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "simhost/by_hand/HostWindow.h"
#include "simhost/run/Performance.h"

namespace simhost {

class WindowSession {
  public:
    explicit WindowSession(Performance& performance);
    ~WindowSession();
    WindowSession(const WindowSession&) = delete;
    WindowSession& operator=(const WindowSession&) = delete;

    // Until the window is closed; what is open then is closed as a host does it.
    void Run();

  private:
    void OnCommand(WindowCommand command);
    void OnDocumentSelected(const std::string& document);
    void OnMenuOpened(const std::vector<const void*>& items);
    void OnMenuItem(const void* item);
    void OnIdle();

    void New();
    void Open(const std::string& name);
    void Save(const std::string& name);
    void SaveAs(const std::string& name);
    std::string NewPathFor(const Document& document) const;
    void Close(const std::string& name);
    void ChangeFonts(const std::string& name);
    void RaiseDialog();

    // Not while an act is under way: a dialog of the plug-in handles messages too.
    void Act(const std::string& say, const std::function<void()>& act);
    void Play(const char* verb, Action action);
    void ShowState();
    void ShowWhatThePluginMade();

    Performance& mPerformance;
    HostWindow mWindow;
    bool mActs = false;
    std::int64_t mCreated = 0;  // new documents so far
    std::string mTold;          // to the panel, last
    // What ticks have brought about since the last act: another that does the same is not told.
    std::set<std::vector<std::string>> mTicksShown;
};

}  // namespace simhost
