#include "support/fakes/FakeHost.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <deque>

#include "doubles/common/OwnMemory.h"
#include "host/ArtSuites.h"
#include "host/DocumentSuite.h"
#include "host/FontSuite.h"
#include "host/HeldSuites.h"
#include "host/MatchingArtSuite.h"
#include "host/MdMemorySuite.h"
#include "host/NotifierSuite.h"
#include "host/SPSuites.h"
#include "host/StringSuites.h"
#include "host/TextEngineSuites.h"
#include "support/fakes/HostText.h"

FakeHost* sFakeHost = nullptr;

namespace {

// A reference of the text engine: counted, and what it leads to.
struct FakeReference {
    int count = 1;
    std::size_t frame = 0;
    std::size_t run = 0;
    bool isRun = false;
    std::string font = {};
};

std::string Number(std::int64_t number) { return std::to_string(number); }

}  // namespace

struct FakeHost::Storage {
    std::deque<FakeReference> references;
    std::deque<std::string> fontKeys;
    std::deque<std::unique_ptr<HostText>> loanedTexts;
    std::vector<std::size_t> artTokens;  // what the art handles point into
    SPBasicSuite basic{};
    SPBlocksSuite blocks{};
    AINotifierSuite notifiers{};
    AIDocumentSuite documents{};
    AIMatchingArtSuite matchingArt{};
    AITextFrameSuite textFrames{};
    AIPlacedSuite placed{};
    AIFontSuite fonts{};
    AIMdMemorySuite memory{};
    AIFilePathSuite paths{};
    AIUnicodeStringSuite strings{};
    ATE::TextRangeSuite textRanges{};
    ATE::TextRunsIteratorSuite textRuns{};
    ATE::CharFeaturesSuite charFeatures{};
    ATE::FontSuite ateFonts{};
    char otherSuite = 0;  // stands for every suite that is held and never called
};

namespace {

FakeHost::Storage& Store() { return *sFakeHost->storage; }

// --- basic suite and blocks -----------------------------------------------------------------------------------------

const void* TableOf(const std::string& name) {
    const std::map<std::string, const void*> tables = {
        {"SP Blocks Suite", &Store().blocks},
        {"AI Notifier Suite", &Store().notifiers},
        {"AI Document Suite", &Store().documents},
        {"AI Matching Art Suite", &Store().matchingArt},
        {"AI Text Frame Suite", &Store().textFrames},
        {"AI Placed Suite", &Store().placed},
        {"AI Font Suite", &Store().fonts},
        {"AI MdMemory Suite", &Store().memory},
        {"AI File Path Suite", &Store().paths},
        {"AI Unicode String Suite", &Store().strings},
        {"AI Menu Suite", &FakeMenuSuite()},
        {"AI Timer Suite", &FakeTimerSuite()},
        {"AI File Format Suite", &FakeFileFormatSuite()},
        {"SP Plug-ins Suite", &FakePluginsSuite()},
        {"SP Interface Suite", &FakeInterfaceSuite()},
        {"ATE TextRange Suite", &Store().textRanges},
        {"ATE TextRunsIterator Suite", &Store().textRuns},
        {"ATE CharFeatures Suite", &Store().charFeatures},
        {"ATE Font Suite", &Store().ateFonts},
    };
    const auto table = tables.find(name);
    return table == tables.end() ? &Store().otherSuite : table->second;
}

SPErr AcquireSuite(const char* name, std::int32_t version, const void** suite) {
    const std::int32_t answer = sFakeHost->Record("AcquireSuite", Quoted(name) + ", " + Number(version));
    const auto refused = sFakeHost->refusedSuites.find(name);
    if (answer != 0 || refused != sFakeHost->refusedSuites.end()) {
        return answer != 0 ? answer : refused->second;
    }
    ++sFakeHost->heldSuites[name];
    *suite = TableOf(name);
    return 0;
}

SPErr ReleaseSuite(const char* name, std::int32_t version) {
    const std::int32_t answer = sFakeHost->Record("ReleaseSuite", Quoted(name) + ", " + Number(version));
    const auto refused = sFakeHost->refusedReleases.find(name);
    if (answer != 0 || refused != sFakeHost->refusedReleases.end()) {
        return answer != 0 ? answer : refused->second;
    }
    if (--sFakeHost->heldSuites[name] == 0) {
        sFakeHost->heldSuites.erase(name);
    }
    return 0;
}

// Not recorded: how often names are compared is nobody's promise.
SPBoolean IsEqual(const char* token1, const char* token2) { return std::strcmp(token1, token2) == 0 ? 7 : 0; }

SPErr AllocateBlock(std::size_t size, const char* debugName, void** block) {
    const std::int32_t answer = sFakeHost->Record("AllocateBlock", std::to_string(size) + ", " + Quoted(debugName));
    if (answer == 0) {
        *block = std::malloc(size);
        std::memset(*block, 0xA5, size);  // a host does not zero a block
        ++sFakeHost->liveBlocks;
    }
    return answer;
}

SPErr FreeBlock(void* block) {
    std::free(block);
    --sFakeHost->liveBlocks;
    return sFakeHost->Record("FreeBlock");
}

// --- notifiers and documents ----------------------------------------------------------------------------------------

AIErr AddNotifier(SPPluginRef self, const char* name, const char* type, AINotifierHandle* notifier) {
    const std::int32_t answer = sFakeHost->Record(
        "AddNotifier", Quoted(name) + ", " + Quoted(type) + (self == sFakeHost->plugin ? "" : ", for another plug-in"));
    if (answer == 0) {
        *notifier =
            reinterpret_cast<AINotifierHandle>(static_cast<std::uintptr_t>(0x4000 + ++sFakeHost->notifierCount));
    }
    return answer;
}

AIErr GetDocumentFileSpecification(ai::FilePathData& path) {
    const std::int32_t answer = sFakeHost->Record("GetDocumentFileSpecification");
    if (answer == 0) {
        ++sFakeHost->livePaths;
        SetText(path.impl, sFakeHost->currentPath);
    }
    return answer;
}

AIErr GetDocumentModified(AIBoolean* modified) {
    const std::int32_t answer = sFakeHost->Record("GetDocumentModified");
    if (answer == 0) {
        *modified = sFakeHost->currentModified;
    }
    return answer;
}

AIErr GetDocument(AIDocumentHandle* document) {
    const std::int32_t answer = sFakeHost->Record("GetDocument");
    if (answer == 0) {
        *document = sFakeHost->currentDocument;
    }
    return answer;
}

// --- art ------------------------------------------------------------------------------------------------------------

AIErr GetMatchingArt(AIMatchingArtSpec* specs, std::int16_t numSpecs, AIArtHandle*** matches,
                     std::int32_t* numMatches) {
    const std::int32_t answer =
        sFakeHost->Record("GetMatchingArt", Number(specs->type) + " " + Number(specs->whichAttr) + " " +
                                                Number(specs->attr) + ", " + Number(numSpecs));
    if (answer != 0) {
        return answer;
    }
    const std::size_t count =
        specs->type == kTextFrameArt ? sFakeHost->textFrames.size() : sFakeHost->placedFiles.size();
    *numMatches = static_cast<std::int32_t>(count);
    if (count == 0 && !sFakeHost->handleForNoMatches) {
        return 0;
    }
    auto* const art = new AIArtHandle[count + 1];
    for (std::size_t i = 0; i < count; ++i) {
        art[i] = reinterpret_cast<AIArtHandle>(i + 1);  // never followed
    }
    *matches = new AIArtHandle*(art);
    ++sFakeHost->liveHandles;
    return 0;
}

AIErr MdMemoryDisposeHandle(AIMdMemoryHandle handle) {
    auto* const matches = reinterpret_cast<AIArtHandle**>(handle);
    delete[] * matches;
    delete matches;
    --sFakeHost->liveHandles;
    return sFakeHost->Record("MdMemoryDisposeHandle");
}

std::size_t IndexOf(AIArtHandle art) { return reinterpret_cast<std::uintptr_t>(art) - 1; }

AIErr GetPlacedFilePathFromArt(AIArtHandle art, ai::UnicodeStringData& path) {
    const std::int32_t answer = sFakeHost->Record("GetPlacedFilePathFromArt", std::to_string(IndexOf(art)));
    if (answer == 0) {
        ++sFakeHost->liveStrings;
        SetText(path.impl, sFakeHost->placedFiles[IndexOf(art)]);
    }
    return answer;
}

// --- text engine ----------------------------------------------------------------------------------------------------

template <class Ref>
FakeReference& Followed(Ref ref) {
    return *reinterpret_cast<FakeReference*>(ref);
}

template <class Ref>
Ref NewReference(const FakeReference& reference) {
    ++sFakeHost->liveReferences;
    Store().references.push_back(reference);
    return reinterpret_cast<Ref>(&Store().references.back());
}

template <class Ref>
void AddReference(Ref ref) {
    sFakeHost->Record("AddRef");
    ++Followed(ref).count;
    ++sFakeHost->liveReferences;
}

template <class Ref>
void ReleaseReference(Ref ref) {
    sFakeHost->Record("Release");
    if (--Followed(ref).count < 0) {
        std::abort();  // released once too often
    }
    --sFakeHost->liveReferences;
}

template <class Ref>
ATEBool8 ReferenceIsNull(Ref ref) {
    sFakeHost->Record("IsNull");
    return ref == nullptr ? 1 : 0;
}

template <class Ref, class Suite>
void FillCounting(Suite& suite) {
    suite.AddRef = kWithOwnMemory<AddReference<Ref>>;
    suite.Release = kWithOwnMemory<ReleaseReference<Ref>>;
    suite.IsNull = kWithOwnMemory<ReferenceIsNull<Ref>>;
}

AIErr GetATETextRange(AIArtHandle art, ATE::TextRangeRef* range) {
    const std::int32_t answer = sFakeHost->Record("GetATETextRange", std::to_string(IndexOf(art)));
    if (answer == 0) {
        *range = NewReference<ATE::TextRangeRef>({.frame = IndexOf(art)});
    }
    return answer;
}

ATEErr GetTextRunsIterator(ATE::TextRangeRef range, ATE::TextRunsIteratorRef* iterator) {
    const std::int32_t answer = sFakeHost->Record("GetTextRunsIterator", std::to_string(Followed(range).frame));
    if (answer == 0) {
        *iterator = NewReference<ATE::TextRunsIteratorRef>({.frame = Followed(range).frame});
    }
    return answer;
}

ATEErr IsNotDone(ATE::TextRunsIteratorRef iterator, ATEBool8* notDone) {
    const std::int32_t answer = sFakeHost->Record("IsNotDone");
    const FakeReference& position = Followed(iterator);
    *notDone = answer == 0 && position.run < sFakeHost->textFrames[position.frame].size() ? 1 : 0;
    return answer;
}

ATEErr Next(ATE::TextRunsIteratorRef iterator) {
    ++Followed(iterator).run;
    return sFakeHost->Record("Next");
}

ATEErr Item(ATE::TextRunsIteratorRef iterator, ATE::TextRangeRef* run) {
    const FakeReference& position = Followed(iterator);
    const std::int32_t answer = sFakeHost->Record("Item", Number(static_cast<std::int64_t>(position.frame)) + ", " +
                                                              Number(static_cast<std::int64_t>(position.run)));
    if (answer == 0) {
        const std::string font = sFakeHost->textFrames[position.frame][position.run];
        *run = NewReference<ATE::TextRangeRef>(
            {.frame = position.frame, .run = position.run, .isRun = true, .font = font});
    }
    return answer;
}

ATEErr GetUniqueCharFeatures(ATE::TextRangeRef range, ATE::CharFeaturesRef* features) {
    const std::int32_t answer = sFakeHost->Record("GetUniqueCharFeatures");
    if (answer == 0) {
        *features = NewReference<ATE::CharFeaturesRef>({.font = Followed(range).font});
    }
    return answer;
}

ATEErr GetFont(ATE::CharFeaturesRef features, ATEBool8* isAssigned, ATE::FontRef* font) {
    const std::int32_t answer = sFakeHost->Record("GetFont");
    if (answer == 0) {
        *isAssigned = 0;  // of no interest to anybody
        *font = NewReference<ATE::FontRef>({.font = Followed(features).font});
    }
    return answer;
}

// --- fonts ----------------------------------------------------------------------------------------------------------

AIFontKey KeyOf(const std::string& font) {
    Store().fontKeys.push_back(font);
    return reinterpret_cast<AIFontKey>(&Store().fontKeys.back());
}

AIErr FontKeyFromFont(ATE::FontRef fontRef, AIFontKey* font) {
    const std::int32_t answer = sFakeHost->Record("FontKeyFromFont");
    if (answer == 0) {
        *font = KeyOf(Followed(fontRef).font);
    }
    return answer;
}

AIErr GetDefaultFont(std::int32_t script, AIFontKey* font) {
    const std::int32_t answer = sFakeHost->Record("GetDefaultFont", Number(script));
    const auto entry = sFakeHost->defaultFonts.find(script);
    if (answer != 0 || entry == sFakeHost->defaultFonts.end()) {
        return answer != 0 ? answer : 1;
    }
    *font = KeyOf(entry->second);
    return 0;
}

AIErr GetPostScriptFontName(AIFontKey font, char* name, std::int16_t size) {
    const std::int32_t answer = sFakeHost->Record("GetPostScriptFontName", Number(size));
    if (answer != 0 || font == nullptr) {
        return answer != 0 ? answer : 1;
    }
    const std::string& text = *reinterpret_cast<std::string*>(font);
    const std::size_t length = std::min(text.size() + 1, static_cast<std::size_t>(size));
    std::memcpy(name, text.c_str(), length);
    return 0;
}

// --- strings and paths ----------------------------------------------------------------------------------------------

AIErr InitializeString(ai::UnicodeStringData& string, const char* bytes, std::int64_t count, std::int32_t encoding) {
    const std::string text(bytes, static_cast<std::size_t>(count));
    const std::int32_t answer = sFakeHost->Record("Initialize", "'" + text + "', " + Number(encoding));
    if (answer == 0) {
        ++sFakeHost->liveStrings;
        SetText(string.impl, text);
    }
    return answer;
}

AIErr DestroyString(ai::UnicodeStringData& string) {
    delete static_cast<HostText*>(string.impl);
    string.impl = nullptr;
    --sFakeHost->liveStrings;
    return sFakeHost->Record("Destroy");
}

AIErr CopyText(void*& target, const void* source) {
    if (source != nullptr) {
        target = new HostText(*static_cast<const HostText*>(source));
    }
    return 0;
}

AIErr AssignString(ai::UnicodeStringData& string, const ai::UnicodeStringData& source) {
    const std::int32_t answer = sFakeHost->Record("Assign");
    if (answer != 0) {
        return answer;
    }
    if (string.impl == nullptr) {
        ++sFakeHost->liveStrings;
    }
    delete static_cast<HostText*>(string.impl);
    string.impl = nullptr;
    return CopyText(string.impl, source.impl);
}

AIErr CopyString(ai::UnicodeStringData& string, const ai::UnicodeStringData& source) {
    const std::int32_t answer = sFakeHost->Record("Copy");
    if (answer != 0) {
        return answer;
    }
    ++sFakeHost->liveStrings;
    return CopyText(string.impl, source.impl);
}

std::size_t StringLength(const ai::UnicodeStringData& string) {
    return string.impl == nullptr ? 0 : static_cast<const HostText*>(string.impl)->size();
}

std::size_t StringUnits(const ai::UnicodeStringData& string, const HostUtf16Unit*& units) {
    const auto* const text = static_cast<const HostText*>(string.impl);
    units = reinterpret_cast<const HostUtf16Unit*>(text->data());
    return text->size();
}

AIErr DeleteFilePath(ai::FilePathData& path) {
    delete static_cast<HostText*>(path.impl);
    path.impl = nullptr;
    --sFakeHost->livePaths;
    return sFakeHost->Record("DeleteFilePath");
}

AIErr CopyFilePath(const ai::FilePathData& source, ai::FilePathData& target) {
    const std::int32_t answer = sFakeHost->Record("CopyFilePath");
    if (answer != 0) {
        return answer;
    }
    ++sFakeHost->livePaths;
    return CopyText(target.impl, source.impl);
}

AIBool8 FilePathIsEmpty(const ai::FilePathData& path) {
    return path.impl == nullptr || static_cast<const HostText*>(path.impl)->empty() ? 1 : 0;
}

AIErr GiveText(const std::string& operation, const ai::FilePathData& path, AIBool8 displayName,
               ai::UnicodeStringData& text, bool nameOnly) {
    const std::int32_t answer = sFakeHost->Record(operation, Number(displayName));
    if (answer != 0) {
        return answer;
    }
    HostText whole = path.impl == nullptr ? HostText() : *static_cast<const HostText*>(path.impl);
    if (const std::size_t separator = whole.find_last_of(u"/\\"); nameOnly && separator != HostText::npos) {
        whole.erase(0, separator + 1);
    }
    ++sFakeHost->liveStrings;
    text.impl = new HostText(std::move(whole));
    return 0;
}

AIErr GetFileName(const ai::FilePathData& path, AIBool8 displayName, ai::UnicodeStringData& name) {
    return GiveText("GetFileName", path, displayName, name, true);
}

AIErr GetFullPath(const ai::FilePathData& path, AIBool8 displayName, ai::UnicodeStringData& text) {
    return GiveText("GetFullPath", path, displayName, text, false);
}

void FillSuites(FakeHost::Storage& storage) {
    storage.basic.AcquireSuite = kWithOwnMemory<AcquireSuite>;
    storage.basic.ReleaseSuite = kWithOwnMemory<ReleaseSuite>;
    storage.basic.IsEqual = kWithOwnMemory<IsEqual>;
    storage.blocks.AllocateBlock = kWithOwnMemory<AllocateBlock>;
    storage.blocks.FreeBlock = kWithOwnMemory<FreeBlock>;
    storage.notifiers.AddNotifier = kWithOwnMemory<AddNotifier>;
    storage.documents.GetDocumentFileSpecification = kWithOwnMemory<GetDocumentFileSpecification>;
    storage.documents.GetDocumentModified = kWithOwnMemory<GetDocumentModified>;
    storage.documents.GetDocument = kWithOwnMemory<GetDocument>;
    storage.matchingArt.GetMatchingArt = kWithOwnMemory<GetMatchingArt>;
    storage.textFrames.GetATETextRange = kWithOwnMemory<GetATETextRange>;
    storage.placed.GetPlacedFilePathFromArt = kWithOwnMemory<GetPlacedFilePathFromArt>;
    storage.fonts.GetDefaultFont = kWithOwnMemory<GetDefaultFont>;
    storage.fonts.GetPostScriptFontName = kWithOwnMemory<GetPostScriptFontName>;
    storage.fonts.FontKeyFromFont = kWithOwnMemory<FontKeyFromFont>;
    storage.memory.MdMemoryDisposeHandle = kWithOwnMemory<MdMemoryDisposeHandle>;
    storage.paths.DeleteFilePath = kWithOwnMemory<DeleteFilePath>;
    storage.paths.Copy = kWithOwnMemory<CopyFilePath>;
    storage.paths.IsEmpty = kWithOwnMemory<FilePathIsEmpty>;
    storage.paths.GetFileName = kWithOwnMemory<GetFileName>;
    storage.paths.GetFullPath = kWithOwnMemory<GetFullPath>;
    storage.strings.Initialize = kWithOwnMemory<InitializeString>;
    storage.strings.Destroy = kWithOwnMemory<DestroyString>;
    storage.strings.Assign = kWithOwnMemory<AssignString>;
    storage.strings.Copy = kWithOwnMemory<CopyString>;
    storage.strings.Length = kWithOwnMemory<StringLength>;
    storage.strings.UTF_16 = kWithOwnMemory<StringUnits>;
    FillCounting<ATE::TextRangeRef>(storage.textRanges);
    storage.textRanges.GetTextRunsIterator = kWithOwnMemory<GetTextRunsIterator>;
    storage.textRanges.GetUniqueCharFeatures = kWithOwnMemory<GetUniqueCharFeatures>;
    FillCounting<ATE::TextRunsIteratorRef>(storage.textRuns);
    storage.textRuns.IsNotDone = kWithOwnMemory<IsNotDone>;
    storage.textRuns.Next = kWithOwnMemory<Next>;
    storage.textRuns.Item = kWithOwnMemory<Item>;
    FillCounting<ATE::CharFeaturesRef>(storage.charFeatures);
    storage.charFeatures.GetFont = kWithOwnMemory<GetFont>;
    FillCounting<ATE::FontRef>(storage.ateFonts);
}

}  // namespace

FakeHost::FakeHost() : storage(std::make_unique<Storage>()) {
    FillSuites(*storage);
    sFakeHost = this;
}

FakeHost::~FakeHost() {
    DropSuites();
    sFakeHost = nullptr;
}

const SPBasicSuite* FakeHost::Basic() const { return &storage->basic; }

SPMessageData FakeHost::MessageData() { return {kSPMessageCheck, plugin, globals, Basic()}; }

void FakeHost::HoldSuites() {
    *sDocumentSuite.Target() = &storage->documents;
    *sMatchingArt.Target() = &storage->matchingArt;
    *sTextFrameSuite.Target() = &storage->textFrames;
    *sPlacedSuite.Target() = &storage->placed;
    *sFontSuite.Target() = &storage->fonts;
    *sMdMemorySuite.Target() = &storage->memory;
    *sFilePathSuite.Target() = &storage->paths;
    *sUnicodeStringSuite.Target() = &storage->strings;
    *ATE::sTextRangeSuite.Target() = &storage->textRanges;
    *ATE::sTextRunsIteratorSuite.Target() = &storage->textRuns;
    *ATE::sCharFeaturesSuite.Target() = &storage->charFeatures;
    *ATE::sFontSuite.Target() = &storage->ateFonts;
}

void FakeHost::DropSuites() {
    for (const void** target :
         {sDocumentSuite.Target(), sMatchingArt.Target(), sTextFrameSuite.Target(), sPlacedSuite.Target(),
          sFontSuite.Target(), sMdMemorySuite.Target(), sFilePathSuite.Target(), sUnicodeStringSuite.Target(),
          ATE::sTextRangeSuite.Target(), ATE::sTextRunsIteratorSuite.Target(), ATE::sCharFeaturesSuite.Target(),
          ATE::sFontSuite.Target()}) {
        *target = nullptr;
    }
}

ai::FilePathData FakeHost::MakePath(const std::string& utf8) {
    storage->loanedTexts.push_back(std::make_unique<HostText>(Utf16(utf8)));
    return {storage->loanedTexts.back().get()};
}

ai::UnicodeStringData FakeHost::MakeString(const std::string& utf8) {
    storage->loanedTexts.push_back(std::make_unique<HostText>(Utf16(utf8)));
    return {storage->loanedTexts.back().get()};
}

std::int32_t FakeHost::Record(const std::string& operation, const std::string& arguments) {
    const std::int32_t answer = calls.Record(operation, arguments);
    if (const auto during = duringOperation.find(operation); during != duringOperation.end()) {
        during->second();
    }
    return answer;
}
