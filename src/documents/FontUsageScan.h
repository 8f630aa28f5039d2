// Which fonts the text of the host's current document uses, and which files it links. Nothing survives a call. Status
// values: 0, kFontScanFailed when nothing usable was found, else a code of the host or the text engine.
// Thread: main.
#pragma once

#include <cstdint>
#include <string>

#include "documents/FontUsageReport.h"
#include "host/HostTypes.h"
#include "host/TextEngine.h"

// The report for the current document; empty when neither its text nor its placed art could be scanned.
std::string CurrentDocumentFontUsage();

// Appends the fonts of all text frames, each name once, without the host's default fonts.
std::int32_t ExamineTextFramesInCurrentDocForFontUsage(FontList& fonts);

// The same for `count` text frames. Returns the status of the last thing done, whatever went before; frames and runs
// that fail are skipped.
std::int32_t ExamineTextRangesInThisFrameForFontUsage(AIArtHandle* textFrames, std::int32_t count, FontList& fonts);

// The font of the run that is looked at. Kept from run to run, so that only a new font takes memory.
struct ScannedFont {
    std::string name;
    FontRecord record;
};

// Appends the font of one text run. kFontScanFailed for a font that cannot be named or that is one of the host's
// default fonts; 0 also for a repeated font. What `scanned` held before does not matter.
std::int32_t AddNewFontNameFromTextArt(ATE::ITextRange run, ScannedFont& scanned, FontList& fonts);

// Stores the PostScript name of the run's font; on failure `name` is left alone.
std::int32_t GetTextRunFaceStyle(ATE::ITextRange run, std::string& name);

// Whether the name is, to the byte, the PostScript name of the host's default font for one of its scripts.
bool IsIllustratorDefaultFont(const std::string& name);

// Appends the path of every placed object, repeats included.
std::int32_t ExamineCurrentDocForPlacedArt(PlacedFileList& placedFiles);
