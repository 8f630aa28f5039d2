// Documents to scan: fonts with names as foundries give them, text runs that use them in turn, and placed files.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "bench/host/HostDocument.h"

namespace bench {

// Each font is used by some run, if there are enough runs; no run is in one of the 24 default fonts.
std::unique_ptr<HostDocument> MakeDocument(std::size_t fonts, std::size_t runs, std::size_t placedFiles);

// The name of the n-th font, and the path of the n-th placed file.
std::string FontName(std::size_t n);
std::string PlacedPath(std::size_t n);

}  // namespace bench
