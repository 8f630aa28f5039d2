#include "simhost/sweep/Holdings.h"

#include <mutex>
#include <string_view>

#include "simhost/sweep/Injector.h"

namespace simhost::sweep {

void Holdings::Forget() {
    const std::lock_guard lock(mMutex);
    mHeld.clear();
}

void Holdings::Taken(const char* by, void* thing) {
    const std::lock_guard lock(mMutex);
    mHeld.insert({thing, {by, TheInjector().Returns()}});
}

void Holdings::GivenBack(const void* thing) {
    const std::lock_guard lock(mMutex);
    // What was taken before anybody looked is not known.
    if (const auto found = mHeld.find(thing); found != mHeld.end()) {
        mHeld.erase(found);
    }
}

void Holdings::Moved(void* from, void* to) {
    const std::lock_guard lock(mMutex);
    if (auto node = mHeld.extract(from)) {
        node.key() = to;
        mHeld.insert(std::move(node));
    }
}

std::map<std::string, std::int64_t> Holdings::Counts() const {
    const std::lock_guard lock(mMutex);
    std::map<std::string, std::int64_t> counts;
    for (const auto& [thing, held] : mHeld) {
        ++counts[held.by];
    }
    return counts;
}

std::vector<Held> Holdings::All() const {
    const std::lock_guard lock(mMutex);
    std::vector<Held> all;
    for (const auto& [thing, held] : mHeld) {
        all.push_back(held);
    }
    return all;
}

std::vector<void*> Holdings::GivenBy(const char* function) const {
    const std::lock_guard lock(mMutex);
    std::vector<void*> things;
    for (const auto& [thing, held] : mHeld) {
        if (std::string_view(held.by) == function) {
            things.push_back(thing);
        }
    }
    return things;
}

Holdings& TheHoldings() {
    static auto* const sHoldings = new Holdings;
    return *sHoldings;
}

}  // namespace simhost::sweep
