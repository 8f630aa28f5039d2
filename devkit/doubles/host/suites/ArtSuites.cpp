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

// The type and attributes that each row asks for.
std::string ShownSpecs(const AIMatchingArtSpec* specs, std::int16_t count) {
    std::string shown;
    for (std::int16_t i = 0; specs != nullptr && i < count; ++i) {
        shown += (shown.empty() ? "" : "; ") + std::to_string(specs[i].type) + " " +
                 std::to_string(specs[i].whichAttr) + " " + std::to_string(specs[i].attr);
    }
    return shown;
}

AIErr GetMatchingArt(AIMatchingArtSpec* specs, std::int16_t numSpecs, AIArtHandle*** matches,
                     std::int32_t* numMatches) {
    const SuiteCall call(
        "AI Matching Art Suite", "GetMatchingArt", [&] { return ShownSpecs(specs, numSpecs); }, numSpecs);
    return call.Perform([&]() -> AIErr {
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
                found.push_back(static_cast<AIArtHandle>(Host().model.ArtHandle(*document, specs[i].type, index)));
            }
        }
        *numMatches = static_cast<std::int32_t>(found.size());
        if (!found.empty() || Host().model.emptyHandleForNoMatches) {
            *matches = Host().objects.NewMatches(std::move(found));
        }
        if (call.FailsAfterWork()) {
            Host().objects.DisposeMatches(*matches);
        }
        return 0;
    });
}

AIErr MdMemoryDisposeHandle(AIMdMemoryHandle handle) {
    const SuiteCall call("AI MdMemory Suite", "MdMemoryDisposeHandle");
    return call.Perform([&] {
        return Host().objects.DisposeMatches(handle) ? 0 : call.BadArgument("not a handle that is to be disposed");
    });
}

// Null when the art is gone or of another type.
const Art* ArtOfType(AIArtHandle handle, std::int16_t type) {
    const Art* const art = Host().model.art.Find(handle);
    return art != nullptr && art->type == type ? art : nullptr;
}

// The art's index in its document, or the handle of what is no such art.
auto ShownArt(AIArtHandle handle, std::int16_t type) {
    return [=] {
        const Art* const art = ArtOfType(handle, type);
        return art == nullptr ? Shown(static_cast<const void*>(handle)) : Shown(art->index);
    };
}

AIErr GetATETextRange(AIArtHandle handle, ATE::TextRangeRef* range) {
    const SuiteCall call("AI Text Frame Suite", "GetATETextRange", ShownArt(handle, kTextFrameArt));
    return call.Perform([&] {
        const Art* const art = ArtOfType(handle, kTextFrameArt);
        if (art == nullptr || range == nullptr) {
            return call.Stale(Host().model.art, handle, "text frame");
        }
        *range = static_cast<ATE::TextRangeRef>(call.HandOut(
            Host().objects.ranges,
            Counted<TextRangeObject>{{art->index, Host().model.Named(art->document).frames[art->index].runs}}));
        return 0;
    });
}

AIErr GetPlacedFilePathFromArt(AIArtHandle handle, ai::UnicodeStringData& path) {
    const SuiteCall call("AI Placed Suite", "GetPlacedFilePathFromArt", ShownArt(handle, kPlacedArt));
    return call.Perform([&] {
        const Art* const art = ArtOfType(handle, kPlacedArt);
        return art == nullptr ? call.Stale(Host().model.art, handle, "placed art")
                              : AnswerText(call, Host().model.Named(art->document).placed[art->index], path);
    });
}

}  // namespace

void InstallArtSuites(SuiteStore& suites) {
    suites.Table<AIMatchingArtSuite>("AI Matching Art Suite").GetMatchingArt = &GetMatchingArt;
    suites.Table<AIMdMemorySuite>("AI MdMemory Suite").MdMemoryDisposeHandle = &MdMemoryDisposeHandle;
    suites.Table<AITextFrameSuite>("AI Text Frame Suite").GetATETextRange = &GetATETextRange;
    suites.Table<AIPlacedSuite>("AI Placed Suite").GetPlacedFilePathFromArt = &GetPlacedFilePathFromArt;
}

}  // namespace simhost
