#include "documents/FontUsageScan.h"

#include <array>
#include <utility>

#include "documents/MatchingArt.h"
#include "frame/base/SuiteOperations.h"
#include "host/ArtSuites.h"
#include "host/FontSuite.h"
#include "host/HeldSuites.h"
#include "host/MatchingArtSuite.h"
#include "support/Log.h"
#include "support/ResultCodes.h"

namespace {

constexpr std::int16_t kFontNameSize = 256;
constexpr std::int16_t kDefaultFontNameSize = 128;

// The host's script codes; 8 and 18 to 24 are absent on purpose.
constexpr std::array<std::int32_t, 24> kDefaultFontScripts = {-2, -1, 0,  1,  2,  3,  4,  5,  6,  7,  9,  10,
                                                              11, 12, 13, 14, 15, 16, 17, 25, 29, 32, 81, 85};

// Takes the frame's runs one by one; `status` follows the last one. Throws ATE::Exception.
void ExamineRunsOfFrame(const ATE::ITextRange& frame, std::int32_t frameIndex, ScannedFont& scanned, FontList& fonts,
                        std::int32_t& status) {
    for (ATE::ITextRunsIterator runs = frame.GetTextRunsIterator(); runs.IsNotDone(); runs.Next()) {
        status = AddNewFontNameFromTextArt(runs.Item(), scanned, fonts);
        if (status != kNoErr) {
            LogMessage(kLogNote, "WARNING: for text frame %d, AddNewFontNameFromTextArt() returned %d", frameIndex,
                       status);
        }
    }
}

// Stores the PostScript name of the run's font. Throws ATE::Exception or a host code, and leaves `name` alone then.
void ReadPostScriptName(const ATE::ITextRange& run, std::string& name) {
    bool isAssigned = false;  // unused: a run always has a font
    const ATE::IFont font = run.GetUniqueCharFeatures().GetFont(&isAssigned);
    AIFontKey key = nullptr;
    ThrowIfError(sFontSuite->FontKeyFromFont(font.GetRef(), &key));
    std::array<char, kFontNameSize> text{};
    ThrowIfError(sFontSuite->GetPostScriptFontName(key, text.data(), kFontNameSize));
    text.back() = '\0';
    name = text.data();
}

using DefaultFontName = std::array<char, kDefaultFontNameSize>;

// Whether the two are the same text. Most names differ in their first character or their length, which takes no call of
// the C library to see.
bool IsText(const DefaultFontName& text, const std::string& name) {
    const std::size_t size = name.size();
    return text.front() == name.c_str()[0] && size < text.size() && text[size] == '\0' &&
           (size == 0 || text[size - 1] != '\0') && name == text.data();
}

// Appends the path of one placed object; false, after a log line, when the host does not tell it.
bool AddPlacedFile(AIArtHandle art, PlacedFileList& placedFiles) {
    ai::UnicodeString path;
    if (sPlacedSuite->GetPlacedFilePathFromArt(art, path.Data()) != kNoErr) {
        LogMessage(kLogNote, "WARNING: sPlacedSuite->GetPlacedFilePathFromArt() failed.");
        return false;
    }
    placedFiles.push_back(path.ToUtf8());
    LogMessage(kLogNote, "Placed object found: '%s'", placedFiles.back().c_str());
    return true;
}

std::int32_t AddPlacedFiles(const MatchingArt& placedArt, PlacedFileList& placedFiles) {
    if (placedArt.Status() != kNoErr || !placedArt.HasHandle()) {
        return kFontScanFailed;
    }
    std::int32_t status = kNoErr;
    for (std::int32_t i = 0; i < placedArt.Count(); ++i) {
        if (!AddPlacedFile(placedArt.Art()[i], placedFiles)) {
            status = kFontScanFailed;
        }
    }
    return status;
}

}  // namespace

std::string CurrentDocumentFontUsage() {
    constexpr const char* kName = "CurrentDocumentFontUsage";
    LogMessage(kLogEntry, "Entering %s", kName);
    FontList fonts;
    PlacedFileList placedFiles;
    const std::int32_t framesStatus = ExamineTextFramesInCurrentDocForFontUsage(fonts);
    const std::int32_t placedStatus = ExamineCurrentDocForPlacedArt(placedFiles);
    std::string report;
    if (framesStatus == kNoErr || placedStatus == kNoErr) {
        report = BuildFontUsageReport(fonts, placedFiles);
    }
    LogMessage(kLogExit, "Exiting %s", kName);
    return report;
}

std::int32_t ExamineTextFramesInCurrentDocForFontUsage(FontList& fonts) {
    constexpr const char* kName = "ExamineTextFramesInCurrentDocForFontUsage";
    LogMessage(kLogEntry, "Entering %s()", kName);
    std::int32_t status = kFontScanFailed;
    {
        const MatchingArt textFrames(kTextFrameArt);
        // The line shows the scan's status so far, not the host's answer: intentional, readers of the trace know it so.
        LogMessage(kLogNote,
                   "sMatchingArt->GetMatchingArt(spec.type=kTextFrameArt, numSpecs=1, numMatches=%d) returned %d",
                   textFrames.Count(), status);
        if (textFrames.Status() == kNoErr && textFrames.HasHandle()) {
            status = ExamineTextRangesInThisFrameForFontUsage(textFrames.Art(), textFrames.Count(), fonts);
        }
    }
    LogMessage(kLogExit, "%s() returning %d", kName, status);
    return status;
}

std::int32_t ExamineTextRangesInThisFrameForFontUsage(AIArtHandle* textFrames, std::int32_t count, FontList& fonts) {
    constexpr const char* kName = "ExamineTextRangesInThisFrameForFontUsage";
    LogMessage(kLogEntry, "Entering %s", kName);
    std::int32_t status = kFontScanFailed;
    ScannedFont scanned;
    for (std::int32_t i = 0; i < count; ++i) {
        ATE::TextRangeRef range = nullptr;
        status = sTextFrameSuite->GetATETextRange(textFrames[i], &range);
        if (status != kNoErr) {
            LogMessage(kLogNote, "ERROR: sTextFrameSuite->GetATETextRange(AIArtHandle index=%d) returned %d", i,
                       status);
            continue;
        }
        try {
            ExamineRunsOfFrame(ATE::ITextRange(range), i, scanned, fonts, status);
        } catch (const ATE::Exception& exception) {
            status = exception.Code();
        }
    }
    LogMessage(kLogExit, "%s returning %d", kName, status);
    return status;
}

std::int32_t AddNewFontNameFromTextArt(ATE::ITextRange run, ScannedFont& scanned, FontList& fonts) {
    std::string& name = scanned.name;
    name.clear();
    if (const std::int32_t status = GetTextRunFaceStyle(std::move(run), name); status != kNoErr) {
        LogMessage(kLogNote, "ERROR:  GetTextRunFaceStyle() returned %d", status);
        return kFontScanFailed;
    }
    if (IsIllustratorDefaultFont(name)) {
        LogMessage(kLogNote, "AddNewFontNameFromTextArt() ignoring '%s' (Illustrator default font).", name.c_str());
        return kFontScanFailed;
    }
    CrossPluginUtils::CreateFontDataForOneFont(name, scanned.record);
    if (CrossPluginUtils::AddFontToArray(scanned.record, true, fonts)) {
        LogMessage(kLogNote, "AddNewFontNameFromTextArt() added '%s'", name.c_str());
    } else {
        LogMessage(kLogNote, "AddNewFontNameFromTextArt() ignored duplicate font '%s'", name.c_str());
    }
    return kNoErr;
}

// By value: the caller hands its reference over. NOLINTNEXTLINE(performance-unnecessary-value-param)
std::int32_t GetTextRunFaceStyle(ATE::ITextRange run, std::string& name) {
    std::int32_t status = kNoErr;
    try {
        ReadPostScriptName(run, name);
    } catch (const ATE::Exception& exception) {
        status = exception.Code();
    } catch (std::int32_t hostCode) {
        status = hostCode;
    }
    LogMessage(kLogNote, "%s(..., '%s') returning %d", "GetTextRunFaceStyle", name.c_str(), status);
    return status;
}

bool IsIllustratorDefaultFont(const std::string& name) {
    AIFontKey key = nullptr;
    // A buffer for each script: to clear all of them at once takes a tenth of the time.
    std::array<DefaultFontName, kDefaultFontScripts.size()> defaultNames{};
    for (std::size_t i = 0; i < kDefaultFontScripts.size(); ++i) {
        // The host's answers do not count: a script without a default font keeps the key of the one before it.
        sFontSuite->GetDefaultFont(kDefaultFontScripts[i], &key);
        DefaultFontName& defaultName = defaultNames[i];
        sFontSuite->GetPostScriptFontName(key, defaultName.data(), kDefaultFontNameSize);
        defaultName.back() = '\0';
        if (IsText(defaultName, name)) {
            return true;
        }
    }
    return false;
}

std::int32_t ExamineCurrentDocForPlacedArt(PlacedFileList& placedFiles) {
    constexpr const char* kName = "ExamineCurrentDocForPlacedArt";
    LogMessage(kLogEntry, "Entering %s()", kName);
    std::int32_t status = kFontScanFailed;
    {
        const MatchingArt placedArt(kPlacedArt);
        // As for the text frames: not the host's answer.
        LogMessage(kLogNote,
                   "sMatchingArt->GetMatchingArt(spec.type=kPlacedArt, numSpecs=1, numMatches=%d) returned %d",
                   placedArt.Count(), status);
        status = AddPlacedFiles(placedArt, placedFiles);
    }
    LogMessage(kLogExit, "%s() returning %d", kName, status);
    return status;
}
