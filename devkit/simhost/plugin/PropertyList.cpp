#include "simhost/plugin/PropertyList.h"

#include <algorithm>
#include <cstring>

#include "doubles/common/Text.h"
#include "host/HostTypes.h"

namespace simhost {

namespace {

constexpr std::uint32_t kVendor = FourCharCode("ADBE");
constexpr std::uint32_t kKindOfPlugin = FourCharCode("SPEA");
constexpr std::uint32_t kInterfaceVersion = 2;

// A place in the bytes; reading past the end throws.
class Cursor {
  public:
    explicit Cursor(std::span<const std::byte> bytes) : mRest(bytes) {}

    bool AtEnd() const { return mRest.empty(); }

    template <class Integer>
    Integer Take() {
        Integer value;
        std::memcpy(&value, TakeBytes(sizeof value).data(), sizeof value);
        return value;
    }

    std::span<const std::byte> TakeBytes(std::size_t count) {
        if (count > mRest.size()) {
            throw PropertyListError("the property list is cut short");
        }
        const auto taken = mRest.first(count);
        mRest = mRest.subspan(count);
        return taken;
    }

  private:
    std::span<const std::byte> mRest;
};

const Property& Find(const std::vector<Property>& properties, const char (&key)[5]) {
    const auto found = std::find_if(properties.begin(), properties.end(), [&](const Property& property) {
        return property.vendor == kVendor && property.key == FourCharCode(key) && property.id == 0;
    });
    if (found == properties.end()) {
        throw PropertyListError(std::string("the property list has no '") + key + "'");
    }
    return *found;
}

std::uint32_t NumberOf(const Property& property) {
    if (property.data.size() != sizeof(std::uint32_t)) {
        throw PropertyListError("the property '" + FourCharacters(property.key) + "' is no 32-bit number");
    }
    std::uint32_t number = 0;
    std::memcpy(&number, property.data.data(), sizeof number);
    return number;
}

}  // namespace

std::vector<Property> ParsePropertyList(std::span<const std::byte> bytes) {
    Cursor cursor(bytes);
    if (cursor.Take<std::uint16_t>() != 1 || cursor.Take<std::uint32_t>() != 0) {
        throw PropertyListError("the property list has another layout");
    }
    cursor.Take<std::uint32_t>();  // the count
    std::vector<Property> properties;
    while (!cursor.AtEnd()) {
        Property property{};
        property.vendor = cursor.Take<std::uint32_t>();
        property.key = cursor.Take<std::uint32_t>();
        property.id = cursor.Take<std::uint32_t>();
        const auto length = cursor.Take<std::uint32_t>();
        const auto data = cursor.TakeBytes((static_cast<std::size_t>(length) + 3) / 4 * 4);
        property.data.assign(data.begin(), data.begin() + length);
        properties.push_back(std::move(property));
    }
    return properties;
}

std::string EntryPointName(const std::vector<Property>& properties) {
    if (NumberOf(Find(properties, "kind")) != kKindOfPlugin) {
        throw PropertyListError("the property list is not that of a plug-in");
    }
    if (NumberOf(Find(properties, "ivrs")) != kInterfaceVersion) {
        throw PropertyListError("the property list asks for another interface version");
    }
    const Property& entryPoint = Find(properties, "wx86");
    std::string name(reinterpret_cast<const char*>(entryPoint.data.data()), entryPoint.data.size());
    name.resize(std::strlen(name.c_str()));
    if (name.empty()) {
        throw PropertyListError("the property list names no entry point");
    }
    return name;
}

}  // namespace simhost
