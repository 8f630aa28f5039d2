#include "bench/documents/SampleDocument.h"

#include <iterator>

namespace bench {

namespace {

constexpr const char* kFamilies[] = {"Garamond",      "Futura", "Univers",  "Bodoni",      "Frutiger",    "Didot",
                                     "Optima",        "Sabon",  "Rockwell", "GillSans",    "Baskerville", "Caslon",
                                     "CenturyGothic", "Fira",   "Palatino", "SourceSerif", "Lato",        "Meta"};
constexpr const char* kStyles[] = {"Regular", "Italic", "Bold", "BoldItalic", "Light", "MediumCondensed", "Black"};
constexpr std::size_t kRunsPerFrame = 20;

// A third of the default fonts is shared by two scripts, as in the host.
constexpr std::int32_t kScripts[] = {-2, -1, 0,  1,  2,  3,  4,  5,  6,  7,  9,  10,
                                     11, 12, 13, 14, 15, 16, 17, 25, 29, 32, 81, 85};
constexpr std::size_t kDefaultFonts = 16;

}  // namespace

std::string FontName(std::size_t n) {
    const std::string family = kFamilies[n % std::size(kFamilies)];
    return family + std::to_string(n) + "-" + kStyles[n % std::size(kStyles)];
}

std::string PlacedPath(std::size_t n) {
    return "C:\\Users\\designer\\Documents\\Catalogue\\links\\picture " + std::to_string(n) + ".psd";
}

std::unique_ptr<HostDocument> MakeDocument(std::size_t fonts, std::size_t runs, std::size_t placedFiles) {
    auto document = std::make_unique<HostDocument>();
    document->path = u"C:\\Users\\designer\\Documents\\Catalogue\\spread 12-13.ai";
    // All fonts first: the runs point at them.
    for (std::size_t n = 0; n < fonts; ++n) {
        document->fonts.push_back({FontName(n)});
    }
    for (std::size_t n = 0; n < kDefaultFonts; ++n) {
        document->fonts.push_back({"Default" + FontName(n)});
    }
    for (std::size_t n = 0; n < std::size(kScripts); ++n) {
        document->defaultFonts[static_cast<std::size_t>(kScripts[n] - kFirstScript)] =
            &document->fonts[fonts + n % kDefaultFonts];
    }
    document->frames.resize((runs + kRunsPerFrame - 1) / kRunsPerFrame);
    for (std::size_t n = 0; n < runs; ++n) {
        document->frames[n / kRunsPerFrame].runs.push_back({&document->fonts[n % fonts]});
    }
    for (std::size_t n = 0; n < placedFiles; ++n) {
        const std::string path = PlacedPath(n);
        document->placedFiles.emplace_back(path.begin(), path.end());
    }
    return document;
}

}  // namespace bench
