// Finding art, and what is asked about single pieces: "AI Matching Art Suite", "AI Text Frame Suite",
// "AI Placed Suite" and, for the handle of the found art, "AI MdMemory Suite".
#include "host/ArtSuites.h"

#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/HostStrings.h"
#include "doubles/host/suites/SuiteCall.h"
#include "host/MatchingArtSuite.h"
#include "host/MdMemorySuite.h"

namespace simhost {

namespace {

constexpr AIErr kNoDocument = static_cast<AIErr>(FourCharCode("NDOC"));

AIArtHandle HandleOfArt(const Document& document, std::int16_t type, std::size_t index) {
    for (const auto& [handle, art] : Host().model.art.Objects()) {
        if (art.document == document.name && art.type == type && art.index == index) {
            return reinterpret_cast<AIArtHandle>(handle);
        }
    }
    return static_cast<AIArtHandle>(Host().model.art.Add(Art{type, document.name, index}));
}

std::size_t CountOfArt(const Document& document, std::int16_t type) {
    switch (type) {
        case kTextFrameArt:
            return document.frames.size();
        case kPlacedArt:
            return document.placed.size();
        default:
            return 0;
    }
}

AIErr GetMatchingArt(AIMatchingArtSpec* specs, std::int16_t numSpecs, AIArtHandle*** matches,
                     std::int32_t* numMatches) {
    const SuiteCall call("AI Matching Art Suite", "GetMatchingArt");
    if (call.code != 0) {
        return call.code;
    }
    if (specs == nullptr || numSpecs < 1 || matches == nullptr || numMatches == nullptr) {
        return call.BadArgument("nothing to look for, or nowhere to put the art");
    }
    *matches = nullptr;
    *numMatches = 0;
    const Document* const document = Host().model.Current();
    if (document == nullptr) {
        return kNoDocument;
    }
    std::vector<AIArtHandle> found;
    for (std::int16_t i = 0; i < numSpecs; ++i) {
        if (specs[i].whichAttr != 0 || specs[i].attr != 0) {
            return call.BadArgument("attributes are asked for, which nobody needs");
        }
        for (std::size_t index = 0; index < CountOfArt(*document, specs[i].type); ++index) {
            found.push_back(HandleOfArt(*document, specs[i].type, index));
        }
    }
    *numMatches = static_cast<std::int32_t>(found.size());
    if (!found.empty() || Host().model.emptyHandleForNoMatches) {
        *matches = Host().objects.NewMatches(std::move(found));
    }
    return 0;
}

AIErr MdMemoryDisposeHandle(AIMdMemoryHandle handle) {
    const SuiteCall call("AI MdMemory Suite", "MdMemoryDisposeHandle");
    if (call.code != 0) {
        return call.code;
    }
    return Host().objects.DisposeMatches(handle) ? 0 : call.BadArgument("not a handle that is to be disposed");
}

// Null when the art is gone or of another type.
const Art* ArtOfType(AIArtHandle handle, std::int16_t type) {
    const Art* const art = Host().model.art.Find(handle);
    return art != nullptr && art->type == type ? art : nullptr;
}

AIErr GetATETextRange(AIArtHandle handle, ATE::TextRangeRef* range) {
    const SuiteCall call("AI Text Frame Suite", "GetATETextRange");
    if (call.code != 0) {
        return call.code;
    }
    const Art* const art = ArtOfType(handle, kTextFrameArt);
    if (art == nullptr || range == nullptr) {
        return call.Stale(Host().model.art, handle, "text frame");
    }
    std::vector<std::string> fonts;
    for (const Run& run : Host().model.Named(art->document).frames[art->index].runs) {
        fonts.push_back(run.font);
    }
    *range = static_cast<ATE::TextRangeRef>(Host().objects.ranges.Add({TextRangeObject{std::move(fonts)}}));
    return 0;
}

AIErr GetPlacedFilePathFromArt(AIArtHandle handle, ai::UnicodeStringData& path) {
    const SuiteCall call("AI Placed Suite", "GetPlacedFilePathFromArt");
    if (call.code != 0) {
        return call.code;
    }
    const Art* const art = ArtOfType(handle, kPlacedArt);
    if (art == nullptr) {
        return call.Stale(Host().model.art, handle, "placed art");
    }
    return AnswerText(call, Host().model.Named(art->document).placed[art->index], path);
}

}  // namespace

void InstallArtSuites(SuiteStore& suites) {
    suites.Table<AIMatchingArtSuite>("AI Matching Art Suite").GetMatchingArt = &GetMatchingArt;
    suites.Table<AIMdMemorySuite>("AI MdMemory Suite").MdMemoryDisposeHandle = &MdMemoryDisposeHandle;
    suites.Table<AITextFrameSuite>("AI Text Frame Suite").GetATETextRange = &GetATETextRange;
    suites.Table<AIPlacedSuite>("AI Placed Suite").GetPlacedFilePathFromArt = &GetPlacedFilePathFromArt;
}

}  // namespace simhost
