#include "doubles/host/model/HostObjects.h"

#include <algorithm>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

constexpr std::size_t kGuardSize = 64;
constexpr unsigned char kGuardByte = 0xFB;
// A host does not zero a block.
constexpr unsigned char kFreshByte = 0xCD;
constexpr unsigned char kFreedByte = 0xDD;

template <class Table>
std::int64_t ReferencesIn(const Table& table) {
    std::int64_t references = 0;
    for (const auto& [handle, object] : table.Objects()) {
        references += object.references;
    }
    return references;
}

void ReportReferences(RuleBook& rules, const char* kind, std::int64_t references) {
    if (references != 0) {
        rules.Broken(Rule::kReferenceLeak, std::to_string(references) + " " + kind + " not released", references);
    }
}

void ReportTexts(RuleBook& rules, Rule rule, const char* kind, const ObjectTable<std::u16string>& table) {
    for (const auto& [handle, text] : table.Objects()) {
        rules.Broken(rule, std::string(kind) + " \"" + Utf8(text) + "\" not given back");
    }
}

}  // namespace

void* HostObjects::AllocateBlock(std::size_t size, std::string debugName) {
    auto block = std::make_unique<Block>();
    block->debugName = std::move(debugName);
    block->size = size;
    block->bytes.assign(size, kFreshByte);
    block->bytes.resize(size + kGuardSize, kGuardByte);
    void* const address = block->bytes.data();
    blocks.emplace(address, std::move(block));
    return address;
}

bool HostObjects::FreeBlock(void* address, RuleBook& rules) {
    const auto found = blocks.find(address);
    if (found == blocks.end()) {
        return false;
    }
    Block& block = *found->second;
    const auto guard = block.bytes.begin() + static_cast<std::ptrdiff_t>(block.size);
    if (std::any_of(guard, block.bytes.end(), [](unsigned char byte) { return byte != kGuardByte; })) {
        rules.Broken(Rule::kBlockOverrun, "written behind the end of block \"" + block.debugName + "\"");
    }
    std::fill(block.bytes.begin(), block.bytes.end(), kFreedByte);
    freedBlocks.push_back(std::move(found->second));
    blocks.erase(found);
    return true;
}

AIArtHandle** HostObjects::NewMatches(std::vector<AIArtHandle> art) {
    auto found = std::make_unique<Matches>();
    found->art = std::move(art);
    found->first = found->art.data();
    AIArtHandle** const handle = &found->first;
    matches.emplace(handle, std::move(found));
    return handle;
}

bool HostObjects::DisposeMatches(const void* handle) {
    const auto found = matches.find(handle);
    if (found == matches.end()) {
        return false;
    }
    // Whoever reads on finds null handles.
    std::fill(found->second->art.begin(), found->second->art.end(), nullptr);
    disposedMatches.push_back(std::move(found->second));
    matches.erase(found);
    return true;
}

void HostObjects::ReportLeaks(RuleBook& rules) const {
    ReportTexts(rules, Rule::kStringLeak, "the string", strings);
    ReportTexts(rules, Rule::kPathLeak, "the path", paths);
    ReportReferences(rules, "reference(s) to text ranges", ReferencesIn(ranges));
    ReportReferences(rules, "reference(s) to iterators of runs", ReferencesIn(iterators));
    ReportReferences(rules, "reference(s) to character features", ReferencesIn(features));
    ReportReferences(rules, "reference(s) to fonts", ReferencesIn(fonts));
    for (const auto& [address, block] : blocks) {
        rules.Broken(Rule::kBlockLeak, "the block \"" + block->debugName + "\" not freed");
    }
    for (const auto& [handle, found] : matches) {
        rules.Broken(Rule::kHandleLeak, "a handle of " + std::to_string(found->art.size()) + " found art not disposed");
    }
}

}  // namespace simhost
