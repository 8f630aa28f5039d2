#include <string>
#include <string_view>

#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/SlotTraps.h"
#include "doubles/host/suites/SuiteCall.h"

namespace simhost {

namespace {

constexpr const char* kName = "SP Basic Suite";
constexpr SPErr kSuiteNotFound = static_cast<SPErr>(FourCharCode("S!Fd"));

SPErr AcquireSuite(const char* name, std::int32_t version, const void** table) {
    const SuiteCall call(kName, "AcquireSuite");
    if (name == nullptr || table == nullptr) {
        return call.BadArgument("no name, or nowhere to put the suite");
    }
    // Also countable, and able to fail, for the one suite alone.
    const std::int32_t code = Host().operations.Begin(call.name + "/" + name);
    if (call.code != 0 || code != 0) {
        return call.code != 0 ? call.code : code;
    }
    OfferedSuite* const suite = Host().suites.Find(name);
    if (suite == nullptr || suite->version != version) {
        Host().notes.push_back(std::string("refused the suite \"") + name + "\" " + std::to_string(version));
        return kSuiteNotFound;
    }
    ++suite->held;
    *table = suite->slots.data();
    return 0;
}

SPErr ReleaseSuite(const char* name, std::int32_t version) {
    const SuiteCall call(kName, "ReleaseSuite");
    if (name == nullptr) {
        return call.BadArgument("no name");
    }
    const std::int32_t code = Host().operations.Begin(call.name + "/" + name);
    if (call.code != 0 || code != 0) {
        return call.code != 0 ? call.code : code;
    }
    OfferedSuite* const suite = Host().suites.Find(name);
    if (suite == nullptr || suite->version != version || suite->held == 0) {
        Host().rules.Broken(Rule::kSuiteNotHeld, std::string("\"") + name + "\" " + std::to_string(version) +
                                                     " was released while it is not held");
        return kSuiteNotFound;
    }
    --suite->held;
    return 0;
}

SPBoolean IsEqual(const char* token1, const char* token2) {
    const SuiteCall call(kName, "IsEqual");
    if (token1 == nullptr || token2 == nullptr) {
        call.BadArgument("one of the texts is null");
        return 0;
    }
    // Any value but 0 means equal; the host's own is not 1 either.
    return std::string_view(token1) == token2 ? -1 : 0;
}

std::int64_t ReportTrap(std::uint32_t, std::uint32_t slot) {
    Host().rules.Broken(Rule::kTrapSlot, std::string(kName) + ": slot " + std::to_string(slot) +
                                             " was called, which nobody should call");
    return kSuiteNotFound;
}

SPBasicSuite MakeTable() {
    SPBasicSuite table{&AcquireSuite, &ReleaseSuite, &IsEqual, {}};
    const std::vector<void*> traps = MakeTraps(0, 7, &ReportTrap);
    for (std::size_t i = 0; i < 4; ++i) {
        table.unused3[i] = traps[i + 3];
    }
    return table;
}

}  // namespace

const SPBasicSuite* BasicSuite() {
    static const SPBasicSuite sTable = MakeTable();
    return &sTable;
}

}  // namespace simhost
