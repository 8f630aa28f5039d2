#include "simhost/run/RegistrationMessages.h"

#include <windows.h>

#include "doubles/common/Text.h"
#include "doubles/host/Host.h"
#include "host/MenuSuite.h"

namespace simhost {

namespace {

std::optional<Reply> NotSent(const Step& step, const std::string& why) {
    Host().rules.Broken(Rule::kNotReached, step.place + ": " + why);
    return std::nullopt;
}

// Why nobody could choose the item, or would ask for its update; empty when the host sends the message.
std::string ReasonNotToSend(const MenuItem& item, bool update) {
    if (update && (item.options & kMenuItemWantsUpdateOption) == 0) {
        return "the item \"" + item.text + "\" wants no updates";
    }
    return update || item.enabled ? "" : "the item \"" + item.text + "\" is disabled";
}

// Whether the host's path is still what it was.
bool IsUntouched(const ai::FilePathData& path, const void* handle, const std::u16string& text) {
    const std::u16string* const kept = Host().objects.paths.Find(handle);
    return path.impl == handle && (handle == nullptr || (kept != nullptr && *kept == text));
}

}  // namespace

std::optional<Reply> SendMenuMessage(MessageDriver& driver, const Step& step) {
    const bool update = step.action == "menu_update";
    const char* const selector = update ? kSelectorAIUpdateMenuItem : kSelectorAIGoMenuItem;
    const std::string message = std::string("\"AI Menu\"/\"") + selector + "\" " + step.menu.text.value_or("(no item)");
    if (!step.menu.text) {
        return Reply{message, driver.SendMenu(selector, nullptr)};
    }
    MenuModel& menus = Host().model.menus;
    void* const handle = menus.ItemWithText(*step.menu.text, step.menu.nth);
    const std::string reason = ReasonNotToSend(*menus.items.Find(handle), update);
    if (!reason.empty()) {
        return NotSent(step, reason);
    }
    return Reply{message, driver.SendMenu(selector, handle)};
}

std::optional<Reply> SendFileCheck(MessageDriver& driver, const Step& step) {
    const std::string path = step.path.value_or("");
    void* const format = Host().model.FileFormatFor(path);
    if (format == nullptr) {
        return NotSent(step, "no format is registered for \"" + path + "\"");
    }
    auto& paths = Host().objects.paths;
    const std::u16string text = Utf16(path, CP_UTF8).value_or(u"");
    void* const handle = step.path ? paths.Add(text) : nullptr;
    ai::FilePathData data{handle};
    const std::int32_t answer = driver.SendFileCheck(format, data);
    if (!IsUntouched(data, handle, text)) {
        Host().rules.Broken(Rule::kMessagePath, step.place + ": the plug-in took or changed the path in the message");
    }
    paths.Remove(handle);
    return Reply{"\"AI File Format\"/\"AI Check\" " + path, answer};
}

std::map<std::int32_t, std::int64_t> SendTicks(MessageDriver& driver, std::int64_t times) {
    std::map<std::int32_t, std::int64_t> answers;
    for (std::int64_t i = 0; i < times; ++i) {
        for (void* const timer : Host().model.ActiveTimers()) {
            ++answers[driver.SendTick(timer)];
        }
    }
    return answers;
}

}  // namespace simhost
