#include "simhost/verbs/MenuVerbs.h"

#include "doubles/host/Host.h"
#include "host/MenuSuite.h"
#include "simhost/run/Performance.h"

namespace simhost {

namespace {

// Empty when the host sends the message.
std::string ReasonNotToSend(const MenuItem& item, bool update) {
    if (update && (item.options & kMenuItemWantsUpdateOption) == 0) {
        return "the item \"" + item.text + "\" asks for no updates";
    }
    return update || item.enabled ? "" : "the item \"" + item.text + "\" is disabled";
}

}  // namespace

ChooseItem ReadChooseItem(ObjectReader& reader, bool update) {
    const auto* const item = reader.Need("item");
    const bool named = item != nullptr && !item->is_null();
    const auto& known = reader.OwnPlace().Context().known.menuItems;
    if (named && known && item->is_string()) {
        CheckKnown(item->get<std::string>(), "menu item", {known->begin(), known->end()}, reader.PlaceOf("item"));
    }
    return {update, named ? std::optional(TextOf(*item, reader.PlaceOf("item"))) : std::nullopt,
            reader.Number("nth", 1, ranges::kNth)};
}

void Perform(const ChooseItem& action, Performance& performance) {
    const char* const selector = action.update ? kSelectorAIUpdateMenuItem : kSelectorAIGoMenuItem;
    void* handle = nullptr;
    if (action.text) {
        MenuModel& menus = Host().model.menus;
        handle = menus.ItemWithText(*action.text, action.nth);
        const std::string reason = ReasonNotToSend(*menus.items.Find(handle), action.update);
        if (!reason.empty()) {
            performance.NotReached(reason);
            return;
        }
    }
    performance.NoteAnswer(std::string("\"AI Menu\"/\"") + selector + "\" " + action.text.value_or("(no item)"),
                           performance.driver.SendMenu(selector, handle));
}

}  // namespace simhost
