// menu_update, menu_go: messages about a menu item.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "simhost/scenario/ObjectReader.h"

namespace simhost {

class Performance;

struct ChooseItem {
    bool update;                      // the host asks for the item's update, else it was chosen
    std::optional<std::string> text;  // without one: the null handle
    std::int64_t nth = 1;             // of the items with that text
};
ChooseItem ReadChooseItem(ObjectReader& reader, bool update);
// The host sends no update that the item did not ask for, and no choice of a disabled item: that breaks a rule.
void Perform(const ChooseItem& action, Performance& performance);

}  // namespace simhost
