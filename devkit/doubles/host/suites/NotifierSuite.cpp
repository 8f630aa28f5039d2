// "AI Notifier Suite": the plug-in's registrations.
#include "host/NotifierSuite.h"

#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/SuiteCall.h"

namespace simhost {

namespace {

constexpr const char* kName = "AI Notifier Suite";

AIErr AddNotifier(SPPluginRef self, const char* name, const char* type, AINotifierHandle* notifier) {
    const SuiteCall call(kName, "AddNotifier", name, type);
    return call.Perform([&] {
        if (self == nullptr || name == nullptr || type == nullptr || notifier == nullptr) {
            return call.BadArgument("plug-in, name, type or target is missing");
        }
        if (!call.IsOwnReference(self)) {
            return kBadParameterErr;
        }
        *notifier = static_cast<AINotifierHandle>(Host().model.notifiers.Add(Notifier{name, type}));
        return 0;
    });
}

}  // namespace

void InstallNotifierSuite(SuiteStore& suites) { suites.Table<AINotifierSuite>(kName).AddNotifier = &AddNotifier; }

}  // namespace simhost
