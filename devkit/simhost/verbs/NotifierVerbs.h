// notify, about_to_close and the application's own notifications; what all verbs that notify go through.
#pragma once

#include <string>

#include "simhost/scenario/ObjectReader.h"

namespace simhost {

class Performance;

struct Notify {
    std::string type;
    std::string document{};  // empty: the notification is about none
};
Notify ReadNotify(ObjectReader& reader);
// Sends it for every notifier of the type. A step that finds none registered breaks a rule. The handle that a
// document had is told even when it is closed by then.
void Perform(const Notify& action, Performance& performance);

}  // namespace simhost
