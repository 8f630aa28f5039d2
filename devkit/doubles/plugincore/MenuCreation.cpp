#include "doubles/plugincore/MenuCreation.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>

#include "doubles/common/CallRecord.h"

namespace {

using Json = nlohmann::ordered_json;

std::optional<std::string> TextOf(const Json& item, const char* key) {
    const auto found = item.find(key);
    return found != item.end() && found->is_string() ? std::optional(found->get<std::string>()) : std::nullopt;
}

std::uint8_t FlagOf(const Json& item, const char* key, bool otherwise) {
    const auto found = item.find(key);
    return (found != item.end() && found->is_boolean() ? found->get<bool>() : otherwise) ? 1 : 0;
}

const char* OrNull(const std::optional<std::string>& text) { return text ? text->c_str() : nullptr; }

class Creation {
  public:
    Creation(PluginCoreMenuCallback callback, void* context) : mCallback(callback), mContext(context) {}

    void AddAll(const Json& items, const std::optional<std::string>& parent) {
        for (const Json& item : items) {
            if (item.is_object()) {
                Add(item, parent);
            }
        }
    }

    std::vector<std::string> TakeRecord() { return std::move(mRecord); }

  private:
    void Add(const Json& item, const std::optional<std::string>& parent) {
        const std::string id = TextOf(item, "id").value_or("");
        const std::optional<std::string> title = TextOf(item, "title");
        const std::string label = TextOf(item, "label").value_or(title.value_or(""));
        const auto child = item.find("child");
        const bool hasSubMenu = child != item.end() && child->is_array() && !child->empty();
        const std::int32_t answer =
            mCallback(id.c_str(), label.c_str(), OrNull(title), FlagOf(item, "checked", false),
                      FlagOf(item, "enabled", true), hasSubMenu ? 1 : 0, OrNull(parent), mContext);
        mRecord.push_back(id + " -> " + doubles::AnswerInWords(answer));
        if (hasSubMenu) {
            AddAll(*child, label);
        }
    }

    PluginCoreMenuCallback mCallback;
    void* mContext;
    std::vector<std::string> mRecord;
};

}  // namespace

std::vector<std::string> CreateMenuItems(const char* json, PluginCoreMenuCallback callback, void* context) {
    const Json root = json == nullptr ? Json() : Json::parse(json, nullptr, false);
    Creation creation(callback, context);
    if (callback != nullptr && root.is_structured()) {
        creation.AddAll(root.is_object() ? Json::array({root}) : root, std::nullopt);
    }
    return creation.TakeRecord();
}
