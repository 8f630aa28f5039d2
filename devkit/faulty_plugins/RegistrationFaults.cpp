#include "RegistrationFaults.h"

#include <cstdint>

#include "HeldSuite.h"
#include "host/FileFormatSuite.h"
#include "host/MenuSuite.h"
#include "host/Messages.h"
#include "host/StringSuites.h"
#include "host/TimerSuite.h"

namespace {

AIMenuItemHandle AddItem(const Held<AIMenuSuite>& menus, std::int32_t options) {
    const Held<AIUnicodeStringSuite> strings("AI Unicode String Suite", 8);
    AIPlatformAddMenuItemDataUS data{"Type Plugins1", {nullptr}};
    strings->Initialize(data.itemText, "Item", 4, kAIUTF8CharacterEncoding);
    AIMenuItemHandle item = nullptr;
    menus->AddMenuItem(sMessage->self, nullptr, &data, options, &item);
    strings->Destroy(data.itemText);
    return item;
}

}  // namespace

void LeaveTimer() {
    const Held<AITimerSuite> timers("AI Timer Suite", 5);
    AITimerHandle timer = nullptr;
    timers->AddTimer(sMessage->self, "left behind", 1, &timer);
}

void LeaveTimers() {
    LeaveTimer();
    LeaveTimer();
}

void RegisterAsAnother() {
    const auto another = reinterpret_cast<SPPluginRef>(std::uintptr_t{0x1234});
    const Held<AITimerSuite> timers("AI Timer Suite", 5);
    AITimerHandle timer = nullptr;
    timers->AddTimer(another, "not mine", 1, &timer);
    const Held<AIMenuSuite> menus("AI Menu Suite", 11);
    AIPlatformAddMenuItemDataUS data{"Type Plugins1", {nullptr}};
    menus->AddMenuItem(another, nullptr, &data, 0, nullptr);
}

void AddDisabledItem() {
    const Held<AIMenuSuite> menus("AI Menu Suite", 11);
    menus->DisableItem(AddItem(menus, 0));
}

void LeakItemText() {
    const Held<AIMenuSuite> menus("AI Menu Suite", 11);
    ai::UnicodeStringData text{nullptr};
    menus->GetItemText(AddItem(menus, 0), text);
}

void AddFileFormat() {
    const Held<AIFileFormatSuite> formats("AI File Format Suite", 14);
    constexpr auto kType = static_cast<std::int32_t>(FourCharCode("TEXT"));
    constexpr unsigned char kTitle[] = {1, 'T'};
    PlatformAddFileFormatExData data{1, &kType, kTitle, 0, "txt"};
    AIFileFormatHandle format = nullptr;
    formats->AddFileFormatEx(sMessage->self, "T", &data, kFileFormatRead, &format, 0);
}

void TakeMessagePath() {
    const Held<AIFilePathSuite> paths("AI File Path Suite", 5);
    const auto* const message = reinterpret_cast<const AIFileFormatMessage*>(sMessage);
    ai::FilePathData path = message->file;
    paths->DeleteFilePath(path);
}
