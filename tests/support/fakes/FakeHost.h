// A host for unit tests: every suite operation that the plug-in uses records its call and answers from what the test
// has set. One instance at a time; its life is the test.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/Messages.h"
#include "support/fakes/CallLog.h"
#include "support/fakes/FakeFileFormat.h"
#include "support/fakes/FakeMenus.h"
#include "support/fakes/FakePlugins.h"
#include "support/fakes/FakeTimer.h"

class FakeHost {
  public:
    FakeHost();
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;
    ~FakeHost();

    // The basic suite that offers all the others. Acquiring and releasing are recorded as "AcquireSuite('name', 1)".
    const SPBasicSuite* Basic() const;
    // A message block of this host: check word, plug-in reference, the globals of the last block allocated (as the test
    // has left `globals`), basic suite.
    SPMessageData MessageData();

    // Makes AcquireSuite answer `code` for this suite.
    void RefuseSuite(const std::string& name, std::int32_t code) { refusedSuites[name] = code; }
    // Makes ReleaseSuite answer `code` for this suite.
    void RefuseRelease(const std::string& name, std::int32_t code) { refusedReleases[name] = code; }

    // Puts the suites that documents, strings and the text engine need into their variables, as the suite table would.
    // Nothing is recorded.
    void HoldSuites();
    // Nulls those variables again.
    static void DropSuites();

    CallLog calls;

    // The plug-in as the host knows it.
    SPPluginRef plugin = reinterpret_cast<SPPluginRef>(0x0000000111110000);
    void* globals = nullptr;

    // The current document.
    AIDocumentHandle currentDocument = reinterpret_cast<AIDocumentHandle>(0x00000002D0C00001);
    std::string currentPath;  // UTF-8; a bare title for a document never saved
    AIBoolean currentModified = 0;

    // The text frames of the current document: the fonts of their runs, by PostScript name.
    std::vector<std::vector<std::string>> textFrames;
    // The paths of the placed files.
    std::vector<std::string> placedFiles;
    // Whether a search for art that finds none gives a handle all the same.
    bool handleForNoMatches = false;
    // The host's default font of a script; a script that is absent is answered with an error and no font.
    std::map<std::int32_t, std::string> defaultFonts;

    FakeMenus menus;
    FakeTimer timer;
    FakeFileFormat fileFormat;
    FakePlugins plugins;

    // Called from inside the named operation, before it answers: for messages that arrive while another is handled.
    std::map<std::string, std::function<void()>> duringOperation;

    // What is out and has to come back: strings, paths, text-engine references, matches handles, blocks.
    int LiveStrings() const { return liveStrings; }
    int LivePaths() const { return livePaths; }
    int LiveReferences() const { return liveReferences; }
    int LiveHandles() const { return liveHandles; }
    int LiveBlocks() const { return liveBlocks; }
    // Suites acquired and not released, by name.
    const std::map<std::string, int>& HeldSuites() const { return heldSuites; }

    // Makes a host path or string for a test; the host owns it and frees it with itself.
    ai::FilePathData MakePath(const std::string& utf8);
    ai::UnicodeStringData MakeString(const std::string& utf8);

    // Used by the fake operations.
    std::int32_t Record(const std::string& operation, const std::string& arguments = "");
    std::map<std::string, std::int32_t> refusedSuites;
    std::map<std::string, std::int32_t> refusedReleases;
    std::map<std::string, int> heldSuites;
    int liveStrings = 0;
    int livePaths = 0;
    int liveReferences = 0;
    int liveHandles = 0;
    int liveBlocks = 0;
    int notifierCount = 0;

    struct Storage;
    std::unique_ptr<Storage> storage;
};

// The one that lives; null between tests.
extern FakeHost* sFakeHost;
