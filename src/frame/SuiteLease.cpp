#include "frame/SuiteLease.h"

#include <utility>

#include "frame/base/Suites.h"

SuiteLease sSuiteLease;

void SuiteLease::BeginMessage(MessageKind kind) {
    if (kind == MessageKind::kClosingWithoutRun) {
        if (std::exchange(mIsOpen, false) && SuitesAreHeld()) {
            ReleaseSuites();
        }
        return;
    }
    if (kind == MessageKind::kStartup) {
        mIsOpen = true;
    }
    if (mIsOpen) {
        AcquireSuites();
    }
}

void SuiteLease::EndRun() {
    mIsOpen = false;
    ReleaseSuites();
}
