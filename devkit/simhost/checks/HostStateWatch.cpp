#include "simhost/checks/HostStateWatch.h"

#include <utility>

#include "doubles/host/Host.h"

namespace simhost {

namespace {

thread_local HostStateWatch* sInnermost = nullptr;

}  // namespace

HostStateWatch::HostStateWatch() : mBefore(HostState::Now()), mOuter(std::exchange(sInnermost, this)) {}

HostStateWatch::~HostStateWatch() { sInnermost = mOuter; }

std::vector<HostStateChange> HostStateWatch::TakeChanges() {
    const HostState now = HostState::Now();
    std::vector<HostStateChange> changes = ChangesBetween(mBefore, now);
    if (!changes.empty()) {
        Excuse(HostState(mBefore), now);
    }
    return changes;
}

void HostStateWatch::Check(const std::string& where) {
    for (const HostStateChange& change : TakeChanges()) {
        Host().rules.Broken(Rule::kHostState, where + ": " + change.what);
    }
}

void HostStateWatch::Excuse(const HostState& before, const HostState& now) {
    for (const HostStateChange& change : ChangesBetween(before, now)) {
        for (HostStateWatch* watch = sInnermost; watch != nullptr; watch = watch->mOuter) {
            CopyKind(change.kind, now, watch->mBefore);
        }
    }
}

}  // namespace simhost
