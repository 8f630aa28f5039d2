// Which suites the host does not offer for a while: those that the plug-in holds when a day begins, and any of them in
// between.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "doubles/host/HostOperations.h"
#include "simhost/random/Dice.h"
#include "simhost/random/MessagePicker.h"
#include "simhost/random/RefusalLedger.h"

namespace simhost {

class MissingSuites {
  public:
    // A plug-in that is shut down with a part of its suites never asks for the others again. Unless `toTheEnd`, all are
    // there before that.
    MissingSuites(Dice& dice, RefusalLedger& ledger, bool toTheEnd)
        : mDice(dice), mLedger(ledger), mIsToTheEnd(toTheEnd) {}

    // Before each message that is within no other.
    void Change(const RandomMessage& next, bool isStarted);
    // For the next message: the refusals of those that are missing.
    std::vector<ScriptedEvent> Refusals();

  private:
    void MissHeldOnes();

    Dice& mDice;
    RefusalLedger& mLedger;
    bool mIsToTheEnd;
    std::set<std::string> mHeld;   // missing of those that are held from the start-up on
    std::uint64_t mRefusals = 0;   // how many messages with a refusal of those are left
    std::string mSingle;           // missing in between; may be empty
    std::uint64_t mSingleFor = 0;  // for how many messages
};

}  // namespace simhost
