#include "simhost/random/RandomMessages.h"

#include <algorithm>

#include "doubles/host/Host.h"
#include "simhost/run/FlightRecorder.h"
#include "simhost/run/Performance.h"

namespace simhost {

namespace {

constexpr std::int32_t kRefused = 1;
constexpr std::int32_t kNothingToSay = -1;  // to a file check
constexpr int kDeepest = 3;

// Whoever was sent a wrong handle has to pass it on: the host answers that it is none.
bool IsOfWrongHandle(const Violation& violation) {
    return violation.rule == Rule::kStaleReference || violation.rule == Rule::kBadArgument;
}

bool IsOf(const RandomMessage& message, MessageKind kind) {
    return std::find(message.kinds.begin(), message.kinds.end(), kind) != message.kinds.end();
}

// Counts up as long as it lives.
class UnderWay {
  public:
    explicit UnderWay(int& count) : mCount(count) { ++mCount; }
    ~UnderWay() { --mCount; }
    UnderWay(const UnderWay&) = delete;
    UnderWay& operator=(const UnderWay&) = delete;

  private:
    int& mCount;
};

}  // namespace

RandomMessages::RandomMessages(std::uint64_t seed, bool missesToTheEnd, Performance& performance)
    : mPerformance(performance),
      mSeed(seed),
      mDice(seed),
      mPicker(mDice, performance.driver),
      mHost(mDice, mCounts),
      mRefusals(mCounts),
      mMissing(mDice, mRefusals, missesToTheEnd),
      mHasPanel(performance.panel.Open()),
      mList(performance.folder.RandomMessages(), std::ios::app | std::ios::binary) {
    Host().operations.withinEachCall = [this](const std::string& moment) { Within(moment); };
}

RandomMessages::~RandomMessages() {
    Host().operations.withinEachCall = nullptr;
    Host().operations.BeginStep({});
    Host().rules.excuse = nullptr;
    Host().rules.where.clear();
    RecordStep(mPerformance.Place());
}

void RandomMessages::SendOne() {
    ++mNumber;
    const std::string name = "random message " + std::to_string(mNumber) + " of the seed " + std::to_string(mSeed);
    Host().rules.where = " (" + name + ")";
    Host().rules.excuse = nullptr;
    RecordStep(mPerformance.Place() + ", " + name);
    // Ten seconds are a time that matters to the plug-in.
    mClock.LetPass(mDice.Chance(20) ? static_cast<std::int64_t>(mDice.Below(15)) : 0);
    mHost.ChangeADocument();
    const RandomMessage message = mPicker.Pick();
    void* const block = mPerformance.driver.CommonPart().globals;
    mMissing.Change(message, block != nullptr);
    mHost.LetOperationsFail(mMissing.Refusals());
    mRefusals.BeginMessage();
    if (mHasPanel && mDice.Chance(3)) {
        RequestPort("");
    }
    Send(message, "");
    mRefusals.EndMessage(block, mPerformance.driver.CommonPart().globals);
}

void RandomMessages::Within(const std::string& moment) {
    ++mCalls;
    mRefusals.Within(moment);
    std::uint64_t& before = mCameWithin[moment];
    // The more seldom so far, the likelier: what is called often would have them all.
    if (mDepth == 0 || mDepth >= kDeepest || mDice.Below(2 + before) != 0) {
        return;
    }
    if (++before == 1) {
        mCounts.Add(MessageKind::kMoment);
    }
    mCounts.Add(MessageKind::kNested);
    if (mDepth > 1) {
        mCounts.Add(MessageKind::kNestedTwice);
    }
    if (mHasPanel && mDice.Chance(20)) {
        RequestPort(moment);
    } else {
        Send(mPicker.Pick(), moment);
    }
}

void RandomMessages::Send(const RandomMessage& message, const std::string& moment) {
    Write(message.text, moment);
    mCounts.Add(MessageKind::kMessage);
    for (const MessageKind kind : message.kinds) {
        mCounts.Add(kind);
    }
    const UnderWay deeper(mDepth);
    const auto outer = Host().rules.excuse;
    if (IsOf(message, MessageKind::kWrongHandle)) {
        Host().rules.excuse = &IsOfWrongHandle;
    }
    const std::int64_t callsBefore = mCalls;
    std::int32_t answer = 0;
    {
        const UnderWay another(mMessagesUnderWay);
        answer = message.send();
    }
    Host().rules.excuse = outer;
    Write("-> " + std::to_string(answer), moment);
    Judge(message, answer, mCalls != callsBefore);
}

void RandomMessages::Judge(const RandomMessage& message, std::int32_t answer, bool hasCalled) {
    // What a PluginCore answers can be the plug-in's answer, also this one.
    const bool isRefused = answer == kRefused && !hasCalled;
    const bool mustBeRefused = mMessagesUnderWay != 0;
    if (isRefused != mustBeRefused && !mHasFailed) {
        mHasFailed = true;
        mPerformance.Broken(Rule::kReentrancy, mustBeRefused
                                                   ? "within another message, " + message.text +
                                                         " was handled, and answered with " + std::to_string(answer)
                                                   : message.text + " was refused, and no other message was under way");
    }
    if (answer != 0 && answer != kRefused && answer != kNothingToSay) {
        mCounts.Add(MessageKind::kError);
    }
}

void RandomMessages::RequestPort(const std::string& moment) {
    Write("the panel asks for the port", moment);
    mCounts.Add(MessageKind::kPanelRequest);
    const UnderWay deeper(mDepth);
    Write("-> " + std::to_string(mPerformance.panel.RequestPort()), moment);
}

void RandomMessages::Write(const std::string& line, const std::string& moment) {
    mList << mNumber << ' ' << std::string(2 * static_cast<std::size_t>(mDepth), ' ')
          << (moment.empty() ? "" : "within " + moment + ": ") << line << std::endl;
}

}  // namespace simhost
