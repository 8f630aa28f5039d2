// The double of the host as unit tests use it: one document is open, fault injection and the record of calls are at
// hand, and at the end of the test the rules are checked: no stale handle, no bad argument, no trap slot, no leak.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "doubles/host/Host.h"
#include "doubles/host/PluginReference.h"
#include "host/Messages.h"

using simhost::Rule;

// A handle as the record of calls shows it: "0x170000000010".
std::string HandleText(const void* handle);

// One at a time; its life is the test. Its destructor fails the test for each broken rule that the
// test has not announced, for each announced one that was kept, and for each fault that no call has reached.
class TestHost : public simhost::SimulatedHost {
  public:
    TestHost();
    ~TestHost();

    // --- calls and faults ---

    // The record of calls, as texts like "AcquireSuite('AI Menu Suite', 11)", and the fault injection.
    simhost::HostOperations& calls = operations;

    // Makes AcquireSuite answer `code` for this suite.
    void RefuseSuite(const std::string& name, std::int32_t code) { calls.FailAlways("AcquireSuite/" + name, code); }
    // Makes ReleaseSuite answer `code` for this suite.
    void RefuseRelease(const std::string& name, std::int32_t code) { calls.FailAlways("ReleaseSuite/" + name, code); }

    // Ends fault injection and actions; fails the test for each that no call has reached.
    void EndFaults();

    // Announces that the test breaks this rule on purpose, at least once.
    void ExpectBroken(Rule rule) { mExpected[rule] = false; }

    // --- messages and suites ---

    static const SPBasicSuite* Basic();
    // The common part of a message: the globals are those of the last message, as the test has left `globals`.
    SPMessageData MessageData() const;
    void* globals = nullptr;

    // Puts the suites that documents, strings and the text engine need into their variables. Not recorded.
    void HoldSuites();
    // Nulls those variables.
    void DropSuites();

    // --- the current document; open from the start ---

    const AIDocumentHandle currentDocument;
    std::string& currentPath;  // UTF-8; a bare title for a document never saved
    bool& currentModified;
    // The fonts of each text frame's runs, by PostScript name.
    std::vector<simhost::TextFrame>& textFrames;
    // The paths of the placed files.
    std::vector<std::string>& placedFiles;
    // The host has no current document and says so.
    void LeaveDocument() { model.current.clear(); }
    // The host answers success and a null document.
    void AnswerNullDocument() { mDocument.handle = nullptr; }
    // The handle of the n-th text frame, from 0.
    AIArtHandle TextFrame(std::size_t index);

    // --- what else the host has ---

    const SPPluginRef plugin = simhost::kPluginRef;
    // Whether a search for art that finds none gives a handle all the same.
    bool& handleForNoMatches = model.emptyHandleForNoMatches;
    // PostScript names by script code; a script that is absent is answered with an error and no font.
    std::map<std::int32_t, std::string>& defaultFonts = model.defaultFonts;

    // Adds a menu item of somebody else's, or of the plug-in's.
    AIMenuItemHandle AddItem(const std::string& text, const std::optional<std::string>& key = {},
                             SPPluginRef owner = nullptr);
    // The handles of all items, in the order of adding.
    std::vector<AIMenuItemHandle> Items() const;
    // Adds another plug-in, which answers messages with `result`.
    SPPluginRef AddPlugin(const std::string& name, SPErr result = 0);

    // The timer and the file format that the plug-in has added last; null without one.
    AITimerHandle Timer() const;
    std::int32_t TimerIsActive() { return model.timers.Find(Timer())->active; }
    AIFileFormatHandle FileFormat() const;

    // Paths for message blocks. They stay the host's: giving one back breaks a rule.
    ai::FilePathData MakePath(const std::string& utf8);

    // --- what the plug-in has not given back yet ---

    int LiveStrings() const { return static_cast<int>(objects.strings.Size()); }
    int LivePaths() const { return static_cast<int>(objects.paths.Size() - mOwnPaths.size()); }
    int LiveReferences() const;
    int LiveHandles() const { return static_cast<int>(objects.matches.size()); }
    int LiveBlocks() const { return static_cast<int>(objects.blocks.size()); }
    // How often each suite is held; those of HoldSuites() do not count.
    std::map<std::string, int> HeldSuites() const;

  private:
    static simhost::Document& OpenDocument(simhost::HostModel& model);
    void CheckRules();

    simhost::Document& mDocument;
    bool mHasLent = false;
    std::vector<void*> mOwnPaths;
    std::map<Rule, bool> mExpected;  // whether it was broken
};
