#include "simhost/sweep/CallWays.h"

#include <cstdint>
#include <cstdio>
#include <set>
#include <string>
#include <utility>

#include "simhost/watch/Symbols.h"

namespace simhost::sweep {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kMostDescribed = 5;
// For symbols: the plug-in may be loaded elsewhere, or not at all.
constexpr std::uint64_t kAnyBase = 0x400000000;

// For addr2line, where this process finds no names.
std::string OffsetInWords(std::uint64_t offset) {
    char text[48];
    std::snprintf(text, sizeof text, "the plug-in+0x%llx", static_cast<unsigned long long>(offset));
    return text;
}

Json InWords(const std::filesystem::path& plugin, const std::vector<std::uint32_t>& returns) {
    std::vector<std::uint64_t> addresses;
    addresses.reserve(returns.size());
    for (const std::uint32_t offset : returns) {
        addresses.push_back(kAnyBase + offset - 1);  // into the call, and not behind it
    }
    const std::vector<Symbol> symbols = LookUpSymbols(plugin, kAnyBase, addresses);
    Json places = Json::array();
    for (std::size_t i = 0; i < symbols.size(); ++i) {
        places.push_back(symbols[i].function.empty() ? OffsetInWords(addresses[i] - kAnyBase)
                                                     : simhost::InWords(symbols[i], "the plug-in"));
    }
    return places;
}

}  // namespace

Json WayToCall(const std::filesystem::path& plugin, const std::vector<CountedCall>& calls, std::size_t number) {
    return number > calls.size() ? Json::array() : InWords(plugin, calls[number - 1].returns);
}

Json WaysToWhatIsLeft(const std::filesystem::path& plugin, const std::vector<Held>& left,
                      const std::vector<Held>& before) {
    std::multiset<std::pair<std::string, std::vector<std::uint32_t>>> known;
    for (const Held& held : before) {
        known.insert({held.by, held.returns});
    }
    Json ways = Json::array();
    for (const Held& held : left) {
        if (const auto same = known.find({held.by, held.returns}); same != known.end()) {
            known.erase(same);
        } else if (ways.size() < kMostDescribed) {
            ways.push_back({{"by", held.by}, {"in", InWords(plugin, held.returns)}});
        }
    }
    return ways;
}

}  // namespace simhost::sweep
