// dialog: the host shows a dialog of its own, to be dismissed by the plug-in or left alone.
#pragma once

#include "simhost/scenario/ObjectReader.h"
#include "simhost/windows/HostDialog.h"

namespace simhost {

class Performance;

struct ShowDialog {
    DialogToShow dialog;
    DialogEnd end = DialogEnd::kUntouched;
};
ShowDialog ReadShowDialog(ObjectReader& reader);
void Perform(const ShowDialog& action, Performance& performance);

}  // namespace simhost
