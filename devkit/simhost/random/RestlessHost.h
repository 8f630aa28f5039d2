// What the host does beside sending random messages: its documents change, and its operations fail.
//
// Thread: main.
#pragma once

#include <string>
#include <vector>

#include "doubles/host/HostOperations.h"
#include "simhost/random/Dice.h"
#include "simhost/random/MessageCounts.h"

namespace simhost {

class RestlessHost {
  public:
    RestlessHost(Dice& dice, MessageCounts& counts) : mDice(dice), mCounts(counts) {}

    // Before each message.
    void ChangeADocument();
    // Of the next message, beside what is given; counted when they come.
    void LetOperationsFail(std::vector<ScriptedEvent> events);

  private:
    // At one of the next calls, or at each.
    ScriptedEvent Failure(const std::string& operation);
    void LookForOperations();

    Dice& mDice;
    MessageCounts& mCounts;
    std::vector<std::string> mOperations;  // that may fail, of those that the plug-in has called so far
    std::size_t mSeen = 0;                 // of how many operations and entries these were chosen
};

}  // namespace simhost
