// Picks random messages: in no order, with nulls, unknown callers and selectors, wrong handles.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "simhost/plugin/MessageDriver.h"
#include "simhost/random/Dice.h"
#include "simhost/random/MessageCounts.h"

namespace simhost {

struct RandomMessage {
    std::string text;                    // caller, selector, and what it is about
    std::function<std::int32_t()> send;  // answers what the plug-in answers; throws HostLost
    std::vector<MessageKind> kinds;      // what is odd about it
    bool beginsRun = false;              // asks the plug-in to start, if it has not
    bool endsRun = false;                // asks it to shut down
};

class MessagePicker {
  public:
    MessagePicker(Dice& dice, MessageDriver& driver) : mDice(dice), mDriver(driver) {}

    RandomMessage Pick();

  private:
    RandomMessage LifeCycle();
    RandomMessage Menu();
    RandomMessage Notification();
    RandomMessage FileCheck();
    RandomMessage Tick();
    RandomMessage Strange();

    // Mostly a right one.
    void* Handle(const std::vector<void*>& right, RandomMessage& message);
    void* WrongHandle(RandomMessage& message);

    Dice& mDice;
    MessageDriver& mDriver;
};

}  // namespace simhost
