#include "simhost/run/RandomMessages.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "doubles/common/Text.h"
#include "doubles/host/Host.h"
#include "doubles/host/OperationList.h"
#include "host/Messages.h"
#include "simhost/run/Performance.h"

namespace simhost {

namespace {

constexpr std::int32_t kRefused = 1;

// Valid and not, short and long. An unpaired surrogate stands as three bytes.
const std::vector<std::string>& Texts() {
    static const auto* const sTexts = new std::vector<std::string>{
        "",
        "C:\\Job\\Brochure.ai",
        "/Job/Brochure.ai",
        "Untitled-1",
        "Optima-Roman",
        "Gr\xC3\xB6\xC3\x9F"
        "e \xE6\x96\x87 \xF0\x9F\x98\x80.ai",
        "C:\\\xED\xA0\x80.ai",
        "\xED\xB0\x80\xED\xA0\x80",
        "Optima\xE3",
        "%s%s%n",
        "\"\\/{}[]",
        std::string(300, 'x'),
        std::string(40'000, 'y'),
    };
    return *sTexts;
}

constexpr const char* kCallers[] = {"SP Interface",   "SP Access", "AI Menu",  "AI Notifier", "AI Timer",
                                    "AI File Format", "",          "AI Menu ", "\xE3",        nullptr};
constexpr const char* kSelectors[] = {"Startup",   "Shutdown",  "About",    "Unload", "Reload", "AI Go",
                                      "AI Update", "AI Notify", "AI Check", "",       "\xE3",   nullptr};

// Failures that explain why something is left behind would hide what is left without a reason: whatever gives back
// succeeds, and so do the suites and operations that the plug-in needs for that.
bool MayFail(const std::string& operation) {
    constexpr const char* kNeeded[] = {
        "AcquireSuite",   "ReleaseSuite",  "IsEqual", "Release", "AddRef",         "IsNull",    "IsNotDone",
        "IsEmpty",        "Length",        "UTF_16",  "Destroy", "DeleteFilePath", "FreeBlock", "MdMemoryDisposeHandle",
        "GetTimerActive", "SetTimerActive"};
    const std::string name = operation.substr(operation.rfind('/') + 1);
    return std::find(std::begin(kNeeded), std::end(kNeeded), name) == std::end(kNeeded) &&
           !operation.starts_with("SP Basic Suite/");
}

// Suites that are acquired for a moment, but not those that shut-down needs, and none of the plug-in's table: what it
// held of a table that was refused in part stays held.
constexpr const char* kMissingSuites[] = {"AI Menu Suite", "AI File Format Suite", "SP Plug-ins Suite",
                                          "SP Interface Suite"};

const std::vector<std::string>& FailingOperations() {
    static const auto* const sNames = [] {
        auto* const names = new std::vector<std::string>;
        for (const std::string& name : HostOperationNames()) {
            if (MayFail(name)) {
                names->push_back(name);
            }
        }
        for (const char* const suite : kMissingSuites) {
            names->push_back(std::string("SP Basic Suite/AcquireSuite/") + suite);
        }
        return names;
    }();
    return *sNames;
}

std::vector<std::string> SeenMoments() {
    std::vector<std::string> names;
    for (const auto& [name, count] : Host().operations.Totals()) {
        names.push_back(name);
    }
    return names;
}

template <class Object>
std::vector<void*> HandlesOf(const ObjectTable<Object>& table) {
    std::vector<void*> handles;
    for (const auto& [handle, object] : table.Objects()) {
        handles.push_back(reinterpret_cast<void*>(handle));
    }
    return handles;
}

// Whoever was sent a wrong handle has to pass it on: the host answers that it is none.
bool IsOfWrongHandle(const Violation& violation) {
    return violation.rule == Rule::kStaleReference || violation.rule == Rule::kBadArgument;
}

// As long as the longest message, and zero.
struct AnyMessage {
    SPMessageData d{};
    unsigned char rest[512] = {};
};

}  // namespace

RandomMessages::RandomMessages(std::uint64_t seed, Performance& performance)
    : mRandom(seed), mPerformance(performance) {}

RandomMessages::~RandomMessages() {
    Host().operations.BeginStep({});
    Host().rules.excuse = nullptr;
}

void RandomMessages::SendOne() {
    ++mNumber;
    mMayAnswer1 = false;
    ChangeHost();
    Host().operations.BeginStep(SomeEvents());
    Host().rules.excuse = nullptr;
    if (Send() == kRefused && !mMayAnswer1) {
        mPerformance.Broken(Rule::kReply,
                            "message " + std::to_string(mNumber) + " was refused, and none was under way");
    }
}

void RandomMessages::ChangeHost() {
    HostModel& model = Host().model;
    const auto names = [&] {
        std::vector<std::string> all;
        for (const auto& [name, document] : model.documents) {
            all.push_back(name);
        }
        return all;
    }();
    Document& document = model.documents.at(OneOf(names));
    switch (Below(8)) {
        case 0:
            document.path = OneOf(Texts());
            break;
        case 1:
            document.frames.assign(Below(4), {});
            for (TextFrame& frame : document.frames) {
                frame.runs.assign(Below(4), OneOf(Texts()));
            }
            break;
        case 2:
            document.placed.assign(Below(3), OneOf(Texts()));
            break;
        case 3:
            document.modified = Chance(50);
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

std::vector<ScriptedEvent> RandomMessages::SomeEvents() {
    std::vector<ScriptedEvent> events;
    for (std::uint64_t i = Chance(30) ? 1 + Below(2) : 0; i > 0; --i) {
        constexpr std::int32_t kCodes[] = {-1, 5, 0x50415242, INT32_MIN, INT32_MAX};
        events.push_back({OneOf(FailingOperations()), Chance(50) ? kEveryCall : static_cast<std::int64_t>(1 + Below(3)),
                          OneOf(kCodes), nullptr, Chance(50) ? Work::kUnlessItFails : Work::kAlways});
        ++mCounts.failures;
    }
    // What never came so far is not likely to come now.
    if (const std::vector<std::string> seen = SeenMoments(); Chance(30) && !seen.empty()) {
        events.push_back({OneOf(seen), 1, 0, [this] { SendNested(); }});
    }
    return events;
}

void RandomMessages::SendNested() {
    ++mCounts.nested;
    const bool mayAnswer1 = mMayAnswer1;
    if (const std::int32_t answer = Send(); answer != kRefused) {
        mPerformance.Broken(Rule::kReply, "within message " + std::to_string(mNumber) + " another was answered with " +
                                              std::to_string(answer) + ", not refused");
    }
    mMayAnswer1 = mayAnswer1;
}

std::int32_t RandomMessages::Send() {
    const std::uint64_t kind = Below(100);
    if (kind < 5) {
        return SendLifeCycle();
    }
    if (kind < 25) {
        return SendMenu();
    }
    if (kind < 65) {
        return SendNotification();
    }
    if (kind < 75) {
        return SendFileCheck();
    }
    if (kind < 90) {
        return mPerformance.driver.SendTick(Handle(HandlesOf(Host().model.timers)));
    }
    return SendStrange();
}

std::int32_t RandomMessages::SendLifeCycle() {
    constexpr const char* kOfInterface[] = {kSPInterfaceStartupSelector, kSPInterfaceStartupSelector,
                                            kSPInterfaceAboutSelector, kSPInterfaceShutdownSelector};
    if (Chance(20)) {
        mMayAnswer1 = true;
        return mPerformance.driver.SendAccess(kSPAccessUnloadSelector);
    }
    return mPerformance.driver.SendInterface(OneOf(kOfInterface));
}

// Mostly a right one.
void* RandomMessages::Handle(const std::vector<void*>& right) {
    if (!right.empty() && Chance(80)) {
        return right[Below(right.size())];
    }
    Host().rules.excuse = &IsOfWrongHandle;
    constexpr std::uintptr_t kWrong[] = {0, 1, 0x1234, 0x120000000010, 0x7FFFFFFFFFF0};
    return reinterpret_cast<void*>(OneOf(kWrong));
}

std::int32_t RandomMessages::SendMenu() {
    return mPerformance.driver.SendMenu(Chance(50) ? kSelectorAIUpdateMenuItem : kSelectorAIGoMenuItem,
                                        Handle(HandlesOf(Host().model.menus.items)));
}

std::int32_t RandomMessages::SendNotification() {
    void* const notifier = Handle(HandlesOf(Host().model.notifiers));
    const Notifier* const known = Host().model.notifiers.Find(notifier);
    // Mostly something else: every message behind it would reach a plug-in that is not started.
    if (known != nullptr && known->type == "AI Application Shutdown Notifier" && !Chance(10)) {
        return mPerformance.driver.SendTick(notifier);
    }
    return mPerformance.driver.SendNotification(notifier, known != nullptr ? known->type : OneOf(Texts()),
                                                Handle(HandlesOf(Host().model.openDocuments)));
}

std::int32_t RandomMessages::SendFileCheck() {
    auto& paths = Host().objects.paths;
    void* const own = paths.Add(HostUnits(OneOf(Texts())));
    ai::FilePathData path{Handle({own})};
    const std::int32_t answer = mPerformance.driver.SendFileCheck(Handle(HandlesOf(Host().model.fileFormats)), path);
    paths.Remove(own);
    return answer;
}

std::int32_t RandomMessages::SendStrange() {
    ++mCounts.strange;
    // Whatever the message is about is nothing.
    Host().rules.excuse = &IsOfWrongHandle;
    const char* const caller = OneOf(kCallers);
    const char* const selector = OneOf(kSelectors);
    mMayAnswer1 = true;
    if (Chance(10)) {
        return mPerformance.driver.SendRaw(caller, selector, nullptr);
    }
    AnyMessage message;
    message.d = mPerformance.driver.CommonPart();
    if (Chance(10)) {
        message.d.basic = nullptr;
    }
    return mPerformance.driver.SendRaw(caller, selector, &message.d);
}

}  // namespace simhost
