#include "json/JsonBlocks.h"

#include <nlohmann/json.hpp>

namespace bench {

namespace {

void AddSizes(const nlohmann::json& value, std::size_t keyUnits, std::vector<std::size_t>& sizes) {
    const std::size_t units = value.is_string() ? value.get_ref<const std::string&>().size() : 0;
    sizes.push_back(4 * sizeof(void*) + (keyUnits + units) * sizeof(wchar_t));
    if (value.is_array()) {
        for (const nlohmann::json& element : value) {
            AddSizes(element, 0, sizes);
        }
    } else if (value.is_object()) {
        for (const auto& [key, member] : value.items()) {
            AddSizes(member, key.size(), sizes);
        }
    }
}

}  // namespace

std::vector<std::size_t> BlockSizes(const std::string& text) {
    std::vector<std::size_t> sizes;
    AddSizes(nlohmann::json::parse(text), 0, sizes);
    return sizes;
}

void TakeAndGiveBack(const std::vector<std::size_t>& sizes, std::vector<void*>& blocks) {
    blocks.clear();
    for (const std::size_t size : sizes) {
        blocks.push_back(::operator new(size));
    }
    for (void* const block : blocks) {
        ::operator delete(block);
    }
}

}  // namespace bench
