// Messages in random orders, with nulls, unknown callers and wrong handles, some inside others, while operations of the
// host fail and texts are no texts. What the plug-in answers must make sense all the same: a message by itself is never
// refused as if another were being handled, and a nested one always.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <fstream>
#include <map>
#include <string>

#include "simhost/plugin/PluginClock.h"
#include "simhost/random/Dice.h"
#include "simhost/random/MessageCounts.h"
#include "simhost/random/MessagePicker.h"
#include "simhost/random/MissingSuites.h"
#include "simhost/random/RefusalLedger.h"
#include "simhost/random/RestlessHost.h"

namespace simhost {

class Performance;

class RandomMessages {
  public:
    // The same seed gives the same messages. Each is written to a file in the folder of the run before it is sent.
    // `missesToTheEnd`: suites that are refused at a start-up stay so, also when the plug-in is shut down.
    RandomMessages(std::uint64_t seed, bool missesToTheEnd, Performance& performance);
    RandomMessages(const RandomMessages&) = delete;
    RandomMessages& operator=(const RandomMessages&) = delete;
    ~RandomMessages();

    // One that is within no other; now and then the panel asks something before it. Throws HostLost.
    void SendOne();
    const MessageCounts& Counts() const { return mCounts; }

  private:
    // Within an operation of the host or an entry of the PluginCore: perhaps something comes now.
    void Within(const std::string& moment);
    void Send(const RandomMessage& message, const std::string& moment);
    void RequestPort(const std::string& moment);
    // Refused is what is answered so without a call. The first finding explains those after it: only that one is told.
    void Judge(const RandomMessage& message, std::int32_t answer, bool hasCalled);
    void Write(const std::string& line, const std::string& moment);

    Performance& mPerformance;
    std::uint64_t mSeed;
    Dice mDice;
    MessageCounts mCounts;
    MessagePicker mPicker;
    RestlessHost mHost;
    RefusalLedger mRefusals;
    MissingSuites mMissing;
    bool mHasPanel;
    StandingClock mClock;
    std::ofstream mList;
    std::map<std::string, std::uint64_t> mCameWithin;  // how often, by moment
    std::int64_t mNumber = 0;                          // of the message that is within no other, from 1
    int mDepth = 0;                                    // messages and requests of the panel under way
    int mMessagesUnderWay = 0;
    std::int64_t mCalls = 0;  // of the host and the PluginCore
    bool mHasFailed = false;
};

}  // namespace simhost
