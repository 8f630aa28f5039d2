// What the documents' operations cost beside the floor: the host's calls, one formatting for each line of the log, and
// the writing of the JSON that a report is made of.
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/documents/BareScan.h"
#include "bench/documents/BoundedFormat.h"
#include "bench/documents/SampleDocument.h"
#include "bench/host/CountingHost.h"
#include "bench/host/HostCalls.h"
#include "common/Run.h"
#include "documents/DocumentFile.h"
#include "documents/DocumentRegistry.h"
#include "documents/FontUsageReport.h"
#include "documents/FontUsageScan.h"
#include "json/JsonParser.h"
#include "json/JsonWriter.h"
#include "support/TextConversion.h"

namespace {

using bench::HostDocument;

constexpr const char* kPlugin = "this plug-in";

// A floor that makes other calls than the plug-in would measure nothing.
template <class Work, class Floor>
void RequireSameHostCalls(const Work& work, const Floor& floor) {
    if (bench::HostCallsOf(work) != bench::HostCallsOf(floor)) {
        throw std::logic_error("the floor does not make the plug-in's calls of the host");
    }
}

// Of the report for the host's current document, from the first call to the text.
void DefineScan(bench::Run& run, const std::string& name, const std::shared_ptr<HostDocument>& document) {
    const std::string calls = "floor: the calls of the host";
    const std::string callsAndLines = "floor: the calls and a formatting for each line";
    const auto with = [document](auto work) {
        return [document, work] {
            bench::ShowDocument(*document);
            work();
        };
    };
    const auto scan = with([] { bench::Keep(CurrentDocumentFontUsage()); });
    run.Compare(
        name, callsAndLines,
        {{kPlugin, scan}, {calls, with(bench::BareScanCalls)}, {callsAndLines, with(bench::BareScanCallsAndLines)}});
}

void DefineDefaultFontCheck(bench::Run& run, const std::shared_ptr<HostDocument>& document) {
    const std::string name = document->fonts[0].name;
    const auto check = [document, name] {
        bench::ShowDocument(*document);
        bench::Keep(IsIllustratorDefaultFont(name));
    };
    const auto bare = [document] {
        bench::ShowDocument(*document);
        bench::BareDefaultFontCalls();
    };
    RequireSameHostCalls(check, bare);
    run.Compare("default-font check, 24 scripts", "floor: the 48 calls of the host",
                {{kPlugin, check}, {"floor: the 48 calls of the host", bare}});
}

// As small as a block for a value can be, and all alive before the first one goes back.
void TakeAndGiveBack(std::size_t count) {
    constexpr std::size_t kBlockSize = 100;
    std::vector<void*> blocks(count);
    for (void*& block : blocks) {
        block = ::operator new(kBlockSize);
    }
    for (void* const block : blocks) {
        ::operator delete(block);
    }
}

void DefineReport(bench::Run& run) {
    constexpr std::size_t kCount = 2000;
    auto fonts = std::make_shared<FontList>();
    auto placed = std::make_shared<PlacedFileList>();
    for (std::size_t n = 0; n < kCount; ++n) {
        FontRecord record;
        CrossPluginUtils::CreateFontDataForOneFont(bench::FontName(n), record);
        CrossPluginUtils::AddFontToArray(record, false, *fonts);
        placed->push_back(bench::PlacedPath(n));
    }
    const std::string text = BuildFontUsageReport(*fonts, *placed);
    const std::shared_ptr<const JsonValue> tree = ParseJson(Utf16FromUtf8(text));
    run.Compare("report of 2,000 fonts and 2,000 paths", "writing the same tree",
                {{kPlugin, [fonts, placed] { bench::Keep(BuildFontUsageReport(*fonts, *placed)); }},
                 {"writing the same tree", [tree] { bench::Keep(WriteJson(tree.get())); }},
                 // A value for each name and path, an object around each name.
                 {"floor of a tree: a block for each value", [] { TakeAndGiveBack(3 * kCount); }}});
    const std::wstring units = Utf16FromUtf8(text);
    run.Compare("text of that report to UTF-8", "floor: a string of that size",
                {{kPlugin, [units] { bench::Keep(Utf8FromUtf16(units)); }},
                 {"floor: a string of that size", [size = text.size()] { bench::Keep(std::string(size, 'x')); }}});
    run.Compare("text of that report to UTF-16", "floor: a string of that size",
                {{kPlugin, [text] { bench::Keep(Utf16FromUtf8(text)); }},
                 {"floor: a string of that size", [size = units.size()] { bench::Keep(std::wstring(size, L'x')); }}});

    // Any address will do for a handle; the log shows it.
    const auto document = reinterpret_cast<AIDocumentHandle>(fonts.get());
    run.Compare("keeping that report", "floor: a copy and two formattings",
                {{kPlugin, [document, text] { SetFontUsageForDocumentHandle(document, text); }},
                 {"floor: a copy and two formattings", [text, copy = std::string()]() mutable {
                      bench::FormatLine("Entering %s(%08x, '%.8192s')", "SetFontUsageForDocumentHandle", 1u,
                                        text.c_str());
                      copy = text;
                      bench::Keep(copy);
                      bench::FormatLine("Exiting %s()", "SetFontUsageForDocumentHandle");
                  }}});
}

void DefineConversions(bench::Run& run, const std::shared_ptr<HostDocument>& document) {
    run.Compare(
        "path of the host to UTF-8", "floor: a string of that size",
        {{kPlugin,
          [document] {
              bench::ShowDocument(*document);
              std::string path;
              ConvertFilePathToString({&document->path}, path, false);
              bench::Keep(path);
          }},
         {"floor: a string of that size", [document] { bench::Keep(std::string(document->path.size(), 'x')); }}});
}

}  // namespace

void bench::Define(Run& run) {
    HoldSuites();
    const std::shared_ptr<HostDocument> fewFonts = MakeDocument(10, 200, 4);
    ShowDocument(*fewFonts);
    RequireSameHostCalls(CurrentDocumentFontUsage, BareScanCalls);
    DefineScan(run, "scan, 10 fonts, 200 runs", fewFonts);
    DefineScan(run, "scan, 2,000 fonts, 100,000 runs", MakeDocument(2000, 100000, 4));
    DefineDefaultFontCheck(run, fewFonts);
    DefineReport(run);
    DefineConversions(run, fewFonts);
}
