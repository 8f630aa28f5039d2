#include "doubles/plugplug/EventBus.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "doubles/common/OwnMemory.h"

namespace plugplug {

namespace {

struct Registration {
    std::string type;
    PlugPlugListener listener;
    void* context;

    bool operator==(const Registration&) const = default;
};

// Lives as long as the library.
std::vector<Registration>& Registrations() {
    static std::vector<Registration> sRegistrations;
    return sRegistrations;
}

std::optional<std::string> CopyOf(const char* text) {
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

const char* TextOf(const std::optional<std::string>& text) { return text ? text->c_str() : nullptr; }

// An event with texts of its own.
class OwnEvent {
  public:
    explicit OwnEvent(const PlugPlugEvent& event)
        : mType(event.type),
          mScope(event.scope),
          mApplicationID(CopyOf(event.applicationID)),
          mExtensionID(CopyOf(event.extensionID)),
          mData(CopyOf(event.data)) {}

    const std::string& Type() const { return mType; }
    PlugPlugEvent AsRecord() const {
        return {mType.c_str(), mScope, TextOf(mApplicationID), TextOf(mExtensionID), TextOf(mData)};
    }

  private:
    std::string mType;
    std::int32_t mScope;
    std::optional<std::string> mApplicationID;
    std::optional<std::string> mExtensionID;
    std::optional<std::string> mData;
};

}  // namespace

std::int32_t AddListener(const char* type, PlugPlugListener listener, void* context) {
    if (type == nullptr || listener == nullptr) {
        return kRefused;
    }
    Registrations().push_back({type, listener, context});
    return 0;
}

std::int32_t RemoveListener(const char* type, PlugPlugListener listener, void* context) {
    if (type == nullptr || listener == nullptr) {
        return kRefused;
    }
    return std::erase(Registrations(), Registration{type, listener, context}) == 0 ? kRefused : 0;
}

void RemoveAllListeners() { Registrations().clear(); }

std::int32_t Check(const PlugPlugEvent* event) { return event == nullptr || event->type == nullptr ? kRefused : 0; }

std::int32_t Dispatch(const PlugPlugEvent* event) {
    if (const std::int32_t refusal = Check(event)) {
        return refusal;
    }
    const OwnMemory ownMemory;
    const OwnEvent own(*event);
    const PlugPlugEvent record = own.AsRecord();
    // A copy: a listener may add another.
    const std::vector<Registration> registrations = Registrations();
    for (const Registration& registration : registrations) {
        if (registration.type == own.Type()) {
            const NotOwnMemory notOwn;
            registration.listener(&record, registration.context);
        }
    }
    return 0;
}

}  // namespace plugplug
