// What a step does: one small struct for each verb, or for verbs that differ in a value only. A struct's reader and
// performer are in the family's .cpp file, and VerbTable has a row for each verb.
#pragma once

#include <variant>

#include "simhost/verbs/CheckVerb.h"
#include "simhost/verbs/DialogVerb.h"
#include "simhost/verbs/DocumentVerbs.h"
#include "simhost/verbs/FileFormatVerbs.h"
#include "simhost/verbs/FileVerbs.h"
#include "simhost/verbs/InterfaceVerbs.h"
#include "simhost/verbs/MenuVerbs.h"
#include "simhost/verbs/NotifierVerbs.h"
#include "simhost/verbs/PanelVerbs.h"
#include "simhost/verbs/RandomMessagesVerb.h"
#include "simhost/verbs/TimerVerbs.h"
#include "simhost/verbs/WindowVerb.h"

namespace simhost {

using Action =
    std::variant<SendInterface, UnloadPlugin, SendPlain, Notify, OpenDocument, EditDocument, SaveDocument,
                 CloseDocument, SwitchTo, ChooseItem, Tick, CheckFile, RequestPort, OpenPanel, WriteFiles, MoveWithin,
                 ReplaceAnswers, Wait, CheckState, ShowDialog, OperateByHand, SendRandomMessages>;

}  // namespace simhost
