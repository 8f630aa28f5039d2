#include "frame/SuiteLease.h"

#include <utility>

#include "frame/base/Suites.h"

SuiteLease sSuiteLease;

void SuiteLease::AcquireIfOpen() {
    if (mIsOpen) {
        AcquireSuites();
    }
}

void SuiteLease::EndRun() {
    mIsOpen = false;
    ReleaseSuites();
}

void SuiteLease::EndWithoutRun() {
    if (std::exchange(mIsOpen, false) && SuitesAreHeld()) {
        ReleaseSuites();
    }
}
