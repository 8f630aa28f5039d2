#include "simhost/random/RestlessHost.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "doubles/host/Host.h"
#include "doubles/host/OperationList.h"
#include "simhost/random/OddTexts.h"

namespace simhost {

namespace {

// Failures that explain why something is left behind would hide what is left without a reason: whatever gives back
// succeeds, and so do the suites and operations that the plug-in needs for that.
bool MayFail(const std::string& operation) {
    constexpr const char* kNeeded[] = {
        "AcquireSuite",   "ReleaseSuite",  "IsEqual", "Release", "AddRef",         "IsNull",    "IsNotDone",
        "IsEmpty",        "Length",        "UTF_16",  "Destroy", "DeleteFilePath", "FreeBlock", "MdMemoryDisposeHandle",
        "GetTimerActive", "SetTimerActive"};
    const std::string name = operation.substr(operation.rfind('/') + 1);
    return std::find(std::begin(kNeeded), std::end(kNeeded), name) == std::end(kNeeded) && IsHostOperation(operation) &&
           !operation.starts_with("SP Basic Suite/");
}

}  // namespace

void RestlessHost::ChangeADocument() {
    HostModel& model = Host().model;
    if (model.documents.empty()) {
        return;
    }
    auto any = model.documents.begin();
    std::advance(any, mDice.Below(model.documents.size()));
    Document& document = any->second;
    switch (mDice.Below(8)) {
        case 0:
            document.path = mDice.OneOf(OddTexts());
            break;
        case 1:
            document.frames.assign(mDice.Below(4), {});
            for (TextFrame& frame : document.frames) {
                const std::size_t runs = mDice.Below(4);
                frame.runs.assign(runs, mDice.OneOf(OddTexts()));
            }
            break;
        case 2: {
            const std::size_t files = mDice.Below(3);
            document.placed.assign(files, mDice.OneOf(OddTexts()));
            break;
        }
        case 3:
            document.modified = mDice.Chance(50);
            break;
        case 4:
            if (document.handle == nullptr) {
                model.Open(document.name);
            } else {
                model.Close(document.name);
            }
            break;
        default:
            break;
    }
}

void RestlessHost::LetOperationsFail(std::vector<ScriptedEvent> events) {
    LookForOperations();
    if (mDice.Chance(40) && !mOperations.empty()) {
        events.push_back(Failure(mDice.OneOf(mOperations)));
        events.back().work = mDice.Chance(50) ? Work::kUnlessItFails : Work::kAlways;
    }
    Host().operations.BeginStep(std::move(events));
}

// What never came so far is not likely to come now.
void RestlessHost::LookForOperations() {
    const auto& totals = Host().operations.Totals();
    if (mSeen == totals.size()) {
        return;
    }
    mSeen = totals.size();
    mOperations.clear();
    for (const auto& [name, count] : totals) {
        if (MayFail(name)) {
            mOperations.push_back(name);
        }
    }
}

ScriptedEvent RestlessHost::Failure(const std::string& operation) {
    constexpr std::int32_t kCodes[] = {-1, 5, 0x50415242, INT32_MIN, INT32_MAX};
    ScriptedEvent event;
    event.operation = operation;
    event.nth = mDice.Chance(50) ? kEveryCall : static_cast<std::int64_t>(1 + mDice.Below(3));
    event.code = mDice.OneOf(kCodes);
    event.action = [this] { mCounts.Add(MessageKind::kFailedCall); };
    return event;
}

}  // namespace simhost
