#include "doubles/host/suites/SuiteCall.h"

#include "doubles/host/PluginReference.h"

namespace simhost {

SuiteCall::SuiteCall(const char* suite, const char* operation) : name(std::string(suite) + "/" + operation) {
    const OfferedSuite* const offered = Host().suites.Find(suite);
    if (offered != nullptr && offered->held == 0) {
        Host().rules.Broken(Rule::kSuiteNotHeld, name + " was called while the suite is not held");
    }
    code = Host().operations.Begin(name);
}

std::int32_t SuiteCall::BadArgument(const std::string& what) const {
    Host().rules.Broken(Rule::kBadArgument, name + ": " + what);
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
    Host().rules.Broken(Rule::kStaleReference, name + ": " + what + " the " + kind + " that it was called with");
    return kBadParameterErr;
}

}  // namespace simhost
