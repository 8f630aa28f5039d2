// What a refused suite leaves behind, and nothing else: it is taken back from the plug-in, so that all that is left at
// the end is a leak.
//
//  - Suites that the plug-in holds, acquired before one of them is refused: it does not give them back, and acquires
//    them again with its next message.
//  - Strings, while their suite is not there to give them back. It is the last but one of those that are held.
//  - The plug-in's block, when the blocks suite is refused at the shut-down; its timer, when the timer suite is.
//
// Thread: main.
#pragma once

#include <cstddef>
#include <set>
#include <string>

#include "simhost/random/MessageCounts.h"

namespace simhost {

class RefusalLedger {
  public:
    // Begins while the plug-in holds all of its suites or none.
    explicit RefusalLedger(MessageCounts& counts) : mCounts(counts) {}

    // Before a message that is within no other.
    void BeginMessage() { mRefusedNow.clear(); }
    // Within the operation that asks for it.
    void Refused(const std::string& suite);
    // Within each operation, behind Refused().
    void Within(const std::string& moment);
    // Behind that message, with the plug-in's globals block before and after it.
    void EndMessage(void* blockBefore, const void* blockAfter);

    // Whether the plug-in holds a part of its suites.
    bool IsPartial() const { return mIsPartial; }

  private:
    void Asked(const std::string& suite);
    void TakeBackStrings();
    void TakeBackTimers();
    void TakeBackBlock(void* block);

    MessageCounts& mCounts;
    std::size_t mAcquired = 0;  // of the suites that are held, one behind the other, by now
    bool mIsRefused = false;    // the suite that is just being asked for
    bool mIsPartial = false;
    bool mHasStringSuite = false;       // counts only while the suites are held in part
    std::set<std::string> mRefusedNow;  // within this message
    std::set<std::string> mRefusedEver;
};

}  // namespace simhost
