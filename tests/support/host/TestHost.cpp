#include "support/host/TestHost.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <array>

#include "doubles/common/Text.h"
#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/SuiteCall.h"
#include "host/HeldSuites.h"
#include "host/MatchingArtSuite.h"

namespace {

struct LentSuite {
    const char* name;
    const void** target;
};

const std::array kLentSuites = {
    LentSuite{"AI Document Suite", sDocumentSuite.Target()},
    LentSuite{"AI Matching Art Suite", sMatchingArt.Target()},
    LentSuite{"AI Text Frame Suite", sTextFrameSuite.Target()},
    LentSuite{"AI Placed Suite", sPlacedSuite.Target()},
    LentSuite{"AI Font Suite", sFontSuite.Target()},
    LentSuite{"AI MdMemory Suite", sMdMemorySuite.Target()},
    LentSuite{"AI File Path Suite", sFilePathSuite.Target()},
    LentSuite{"AI Unicode String Suite", sUnicodeStringSuite.Target()},
    LentSuite{"ATE TextRange Suite", ATE::sTextRangeSuite.Target()},
    LentSuite{"ATE TextRunsIterator Suite", ATE::sTextRunsIteratorSuite.Target()},
    LentSuite{"ATE CharFeatures Suite", ATE::sCharFeaturesSuite.Target()},
    LentSuite{"ATE Font Suite", ATE::sFontSuite.Target()},
};

// The handle that was added last.
template <class Handle, class Table>
Handle LastOf(const Table& table) {
    return table.Objects().empty() ? nullptr : reinterpret_cast<Handle>(table.Objects().rbegin()->first);
}

template <class Table>
std::int64_t ReferencesIn(const Table& table) {
    std::int64_t references = 0;
    for (const auto& [handle, object] : table.Objects()) {
        references += object.references;
    }
    return references;
}

}  // namespace

std::string HandleText(const void* handle) { return simhost::Shown(handle); }

simhost::Document& TestHost::OpenDocument(simhost::HostModel& model) {
    simhost::Document& document = model.documents["current"];
    document.name = "current";
    model.Open(document.name);
    return document;
}

TestHost::TestHost()
    : currentDocument(static_cast<AIDocumentHandle>(OpenDocument(model).handle)),
      currentPath(model.Named("current").path),
      currentModified(model.Named("current").modified),
      textFrames(model.Named("current").frames),
      placedFiles(model.Named("current").placed),
      mDocument(model.Named("current")) {}

TestHost::~TestHost() {
    EndFaults();
    DropSuites();
    CheckRules();
}

void TestHost::CheckRules() {
    for (void* const path : mOwnPaths) {
        EXPECT_TRUE(objects.paths.Remove(path)) << "a path of the host's own was given back";
    }
    ReportLeftovers();
    std::map<Rule, std::vector<std::string>> broken;
    for (const simhost::Violation& violation : rules.Violations()) {
        broken[violation.rule].push_back(violation.text);
    }
    for (const auto& [rule, texts] : broken) {
        if (const auto expected = mExpected.find(rule); expected != mExpected.end()) {
            expected->second = true;
        } else {
            ADD_FAILURE() << "rule " << NameOf(rule) << " was broken " << texts.size() << " times, first: " << texts[0];
        }
    }
    for (const auto& [rule, wasBroken] : mExpected) {
        EXPECT_TRUE(wasBroken) << "rule " << NameOf(rule) << " was kept";
    }
}

void TestHost::EndFaults() {
    for (const simhost::ScriptedEvent& event : calls.UnreachedEvents()) {
        ADD_FAILURE() << "call " << event.nth << " of " << event.operation << " never came";
    }
    calls.ForgetEvents();
}

const SPBasicSuite* TestHost::Basic() { return simhost::BasicSuite(); }

SPMessageData TestHost::MessageData() const { return {kSPMessageCheck, plugin, globals, Basic()}; }

void TestHost::HoldSuites() {
    for (const LentSuite& lent : kLentSuites) {
        simhost::OfferedSuite* const suite = suites.Find(lent.name);
        ++suite->held;
        *lent.target = suite->slots.data();
    }
    mHasLent = true;
}

void TestHost::DropSuites() {
    for (const LentSuite& lent : kLentSuites) {
        *lent.target = nullptr;
        suites.Find(lent.name)->held -= mHasLent ? 1 : 0;
    }
    mHasLent = false;
}

AIArtHandle TestHost::TextFrame(std::size_t index) {
    return static_cast<AIArtHandle>(model.ArtHandle(mDocument, kTextFrameArt, index));
}

AIMenuItemHandle TestHost::AddItem(const std::string& text, const std::optional<std::string>& key, SPPluginRef owner) {
    return static_cast<AIMenuItemHandle>(model.menus.items.Add({"Type Plugins1", text, key, owner}));
}

std::vector<AIMenuItemHandle> TestHost::Items() const {
    std::vector<AIMenuItemHandle> items;
    for (const auto& [handle, item] : model.menus.items.Objects()) {
        items.push_back(reinterpret_cast<AIMenuItemHandle>(handle));
    }
    return items;
}

SPPluginRef TestHost::AddPlugin(const std::string& name, SPErr result) {
    return static_cast<SPPluginRef>(model.otherPlugins.Add({name, result}));
}

AITimerHandle TestHost::Timer() const { return LastOf<AITimerHandle>(model.timers); }

AIFileFormatHandle TestHost::FileFormat() const { return LastOf<AIFileFormatHandle>(model.fileFormats); }

ai::FilePathData TestHost::MakePath(const std::string& utf8) {
    mOwnPaths.push_back(objects.paths.Add(simhost::HostUnits(utf8)));
    return {mOwnPaths.back()};
}

int TestHost::LiveReferences() const {
    return static_cast<int>(ReferencesIn(objects.ranges) + ReferencesIn(objects.iterators) +
                            ReferencesIn(objects.features) + ReferencesIn(objects.fonts));
}

std::map<std::string, int> TestHost::HeldSuites() const {
    std::map<std::string, int> held;
    for (const auto& suite : suites.All()) {
        held[suite->name] = static_cast<int>(suite->held);
    }
    for (const LentSuite& lent : kLentSuites) {
        held[lent.name] -= mHasLent ? 1 : 0;
    }
    std::erase_if(held, [](const auto& entry) { return entry.second == 0; });
    return held;
}
