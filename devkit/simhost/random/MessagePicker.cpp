#include "simhost/random/MessagePicker.h"

#include <cstdio>

#include "doubles/common/Text.h"
#include "doubles/host/Host.h"
#include "host/Messages.h"
#include "simhost/random/OddTexts.h"

namespace simhost {

namespace {

constexpr const char* kCallers[] = {"SP Interface",   "SP Access", "AI Menu",  "AI Notifier", "AI Timer",
                                    "AI File Format", "",          "AI Menu ", "\xE3",        nullptr};
constexpr const char* kSelectors[] = {"Startup",   "Shutdown",  "About",    "Unload", "Reload", "AI Go",
                                      "AI Update", "AI Notify", "AI Check", "",       "\xE3",   nullptr};

// What the host really sends.
struct KnownMessage {
    const char* caller;
    const char* selector;
    bool isAboutAHandle;
};
constexpr KnownMessage kKnown[] = {
    {kSPInterfaceCaller, kSPInterfaceStartupSelector, false},
    {kSPInterfaceCaller, kSPInterfaceAboutSelector, false},
    {kSPInterfaceCaller, kSPInterfaceShutdownSelector, false},
    {kSPAccessCaller, kSPAccessUnloadSelector, false},
    {kSPAccessCaller, "Reload", false},
    {kCallerAIMenu, kSelectorAIGoMenuItem, true},
    {kCallerAIMenu, kSelectorAIUpdateMenuItem, true},
    {kCallerAINotify, kSelectorAINotify, true},
    {kCallerAITimer, kSelectorAIGoTimer, true},
    {kCallerAIFileFormat, kSelectorAICheckFileFormat, true},
};

template <class Object>
std::vector<void*> HandlesOf(const ObjectTable<Object>& table) {
    std::vector<void*> handles;
    for (const auto& [handle, object] : table.Objects()) {
        handles.push_back(reinterpret_cast<void*>(handle));
    }
    return handles;
}

// As long as the longest message, and zero.
struct AnyMessage {
    SPMessageData d{};
    unsigned char rest[512] = {};
};

std::string InWords(const char* text) { return text == nullptr ? "null" : "\"" + std::string(text) + "\""; }

std::string InWords(const char* caller, const char* selector) { return InWords(caller) + "/" + InWords(selector); }

std::string InWords(const void* handle) {
    char text[32];
    std::snprintf(text, sizeof text, " 0x%llX",
                  static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(handle)));
    return text;
}

RandomMessage MessageOf(const char* caller, const char* selector) {
    RandomMessage message;
    message.text = InWords(caller, selector);
    message.beginsRun = message.text == InWords(kSPInterfaceCaller, kSPInterfaceStartupSelector);
    message.endsRun = message.text == InWords(kSPInterfaceCaller, kSPInterfaceShutdownSelector);
    return message;
}

// What is odd about it when everything behind its common part is zero.
std::vector<MessageKind> KindsOf(const std::string& inWords) {
    for (const KnownMessage& known : kKnown) {
        if (InWords(known.caller, known.selector) == inWords) {
            return known.isAboutAHandle ? std::vector{MessageKind::kWrongHandle} : std::vector<MessageKind>();
        }
    }
    return {MessageKind::kUnknown};
}

}  // namespace

RandomMessage MessagePicker::Pick() {
    struct Row {
        std::uint64_t percent;
        RandomMessage (MessagePicker::*pick)();
    };
    constexpr Row kRows[] = {{5, &MessagePicker::LifeCycle},     {20, &MessagePicker::Menu},
                             {40, &MessagePicker::Notification}, {10, &MessagePicker::FileCheck},
                             {15, &MessagePicker::Tick},         {10, &MessagePicker::Strange}};
    std::uint64_t left = mDice.Below(100);
    const Row* row = kRows;
    for (; left >= row->percent; ++row) {
        left -= row->percent;
    }
    return (this->*row->pick)();
}

void* MessagePicker::Handle(const std::vector<void*>& right, RandomMessage& message) {
    if (!right.empty() && mDice.Chance(80)) {
        return mDice.OneOf(right);
    }
    return WrongHandle(message);
}

void* MessagePicker::WrongHandle(RandomMessage& message) {
    constexpr std::uintptr_t kWrong[] = {0, 1, 0x1234, 0x120000000010, 0x7FFFFFFFFFF0};
    message.kinds.push_back(MessageKind::kWrongHandle);
    return reinterpret_cast<void*>(mDice.OneOf(kWrong));
}

RandomMessage MessagePicker::LifeCycle() {
    constexpr const char* kOfInterface[] = {kSPInterfaceStartupSelector, kSPInterfaceStartupSelector,
                                            kSPInterfaceAboutSelector, kSPInterfaceShutdownSelector};
    if (mDice.Chance(20)) {
        RandomMessage message = MessageOf(kSPAccessCaller, kSPAccessUnloadSelector);
        message.send = [this] { return mDriver.SendAccess(kSPAccessUnloadSelector); };
        return message;
    }
    const char* const selector = mDice.OneOf(kOfInterface);
    RandomMessage message = MessageOf(kSPInterfaceCaller, selector);
    message.send = [this, selector] { return mDriver.SendInterface(selector); };
    return message;
}

RandomMessage MessagePicker::Menu() {
    RandomMessage message;
    const char* const selector = mDice.Chance(50) ? kSelectorAIUpdateMenuItem : kSelectorAIGoMenuItem;
    void* const item = Handle(HandlesOf(Host().model.menus.items), message);
    message.text = InWords(kCallerAIMenu, selector) + InWords(item);
    message.send = [this, selector, item] { return mDriver.SendMenu(selector, item); };
    return message;
}

RandomMessage MessagePicker::Notification() {
    RandomMessage message;
    void* const notifier = Handle(HandlesOf(Host().model.notifiers), message);
    const Notifier* const known = Host().model.notifiers.Find(notifier);
    message.endsRun = known != nullptr && known->type == "AI Application Shutdown Notifier";
    // Mostly something else: every message behind it would reach a plug-in that is not started.
    if (message.endsRun && !mDice.Chance(10)) {
        return Tick();
    }
    const std::string type = known != nullptr ? known->type : mDice.OneOf(OddTexts());
    void* const data = Handle(HandlesOf(Host().model.openDocuments), message);
    message.text =
        InWords(kCallerAINotify, kSelectorAINotify) + InWords(notifier) + " \"" + type + "\"" + InWords(data);
    message.send = [this, notifier, type, data] { return mDriver.SendNotification(notifier, type, data); };
    return message;
}

RandomMessage MessagePicker::FileCheck() {
    RandomMessage message;
    const std::string& path = mDice.OneOf(OddTexts());
    const bool hasPath = mDice.Chance(80);
    void* const noPath = hasPath ? nullptr : WrongHandle(message);
    void* const format = Handle(HandlesOf(Host().model.fileFormats), message);
    message.text = InWords(kCallerAIFileFormat, kSelectorAICheckFileFormat) + InWords(format) +
                   (hasPath ? " \"" + path + "\"" : InWords(noPath));
    message.send = [this, path, hasPath, noPath, format] {
        auto& paths = Host().objects.paths;
        void* const own = paths.Add(HostUnits(path));
        ai::FilePathData data{hasPath ? own : noPath};
        const std::int32_t answer = mDriver.SendFileCheck(format, data);
        paths.Remove(own);
        return answer;
    };
    return message;
}

RandomMessage MessagePicker::Tick() {
    RandomMessage message;
    void* const timer = Handle(HandlesOf(Host().model.timers), message);
    message.text = InWords(kCallerAITimer, kSelectorAIGoTimer) + InWords(timer);
    message.send = [this, timer] { return mDriver.SendTick(timer); };
    return message;
}

RandomMessage MessagePicker::Strange() {
    const char* const caller = mDice.OneOf(kCallers);
    const char* const selector = mDice.OneOf(kSelectors);
    RandomMessage message = MessageOf(caller, selector);
    message.kinds = KindsOf(message.text);
    if (mDice.Chance(10)) {
        message.text += " null";
        message.kinds.push_back(MessageKind::kNullMessage);
        message.send = [this, caller, selector] { return mDriver.SendRaw(caller, selector, nullptr); };
        return message;
    }
    const bool hasBasicSuite = !mDice.Chance(10);
    if (!hasBasicSuite) {
        message.text += " without the basic suite";
        message.kinds.push_back(MessageKind::kNoBasicSuite);
    }
    message.send = [this, caller, selector, hasBasicSuite] {
        AnyMessage block;
        block.d = mDriver.CommonPart();
        block.d.basic = hasBasicSuite ? block.d.basic : nullptr;
        return mDriver.SendRaw(caller, selector, &block.d);
    };
    return message;
}

}  // namespace simhost
