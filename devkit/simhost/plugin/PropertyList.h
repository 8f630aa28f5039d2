// The list of properties by which a plug-in file tells the host what it is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace simhost {

// The file's property list names no entry point of a plug-in.
class PropertyListError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

struct Property {
    std::uint32_t vendor;
    std::uint32_t key;
    std::uint32_t id;
    std::vector<std::byte> data;
};

// Reads records to the end of the data; the count in the list's head is not believed, because files exist that state
// one too few. Throws PropertyListError for a list that is cut short.
std::vector<Property> ParsePropertyList(std::span<const std::byte> bytes);

// Checks that the properties are those of a plug-in for this host and returns the name of its entry point.
// Throws PropertyListError when they are not.
std::string EntryPointName(const std::vector<Property>& properties);

}  // namespace simhost
