#include "common/Run.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace bench {

void Run::Compare(std::string name, std::string base, std::vector<Entry> entries) {
    if (std::ranges::find(entries, base, &Entry::name) == entries.end()) {
        throw std::logic_error("\"" + name + "\" has no entry \"" + base + "\" to measure by");
    }
    mComparisons.push_back({std::move(name), std::move(base), std::move(entries)});
}

}  // namespace bench
