#include "doubles/host/suites/SuiteCall.h"

#include <cstdio>
#include <cstdlib>

#include "doubles/host/OperationList.h"
#include "doubles/host/PluginReference.h"

namespace simhost {

std::string Shown(const char* text) { return text == nullptr ? "null" : "'" + std::string(text) + "'"; }

std::string Shown(const void* address) {
    char text[24];
    std::snprintf(text, sizeof text, "0x%llx",
                  static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(address)));
    return text;
}

SuiteCall::SuiteCall(const char* suite, const char* operation, Unrecorded) : mName(NameOf(suite, operation)) {
    CheckListed();
    CheckHeld(suite);
    mFate = Host().operations.Begin(suite, operation);
}

// A mistake in this double, not in the plug-in: the whole test ends.
void SuiteCall::CheckListed() const {
    if (!IsHostOperation(mName)) {
        std::fprintf(stderr, "double of the host: %s is not in OperationList.cpp\n", mName.c_str());
        std::abort();
    }
}

void SuiteCall::CheckHeld(const char* suite) const {
    const OfferedSuite* const offered = Host().suites.Find(suite);
    if (offered != nullptr && offered->held == 0) {
        Host().rules.Broken(Rule::kSuiteNotHeld, mName + " was called while the suite is not held");
    }
}

std::int32_t SuiteCall::BadArgument(const std::string& what) const {
    Host().rules.Broken(Rule::kBadArgument, mName + ": " + what);
    return kBadParameterErr;
}

bool SuiteCall::IsOwnReference(SPPluginRef self) const {
    if (self != kPluginRef) {
        BadArgument("the plug-in's reference is not the one that the messages carry");
    }
    return self == kPluginRef;
}

std::int32_t SuiteCall::StaleHandle(bool wasGiven, const void* handle, const char* kind) const {
    const std::string what = handle == nullptr ? "null is" : wasGiven ? "already given back is" : "never given out is";
    Host().rules.Broken(Rule::kStaleReference, mName + ": " + what + " the " + kind + " that it was called with");
    return kBadParameterErr;
}

}  // namespace simhost
