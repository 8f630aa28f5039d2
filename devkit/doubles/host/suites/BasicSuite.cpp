// "SP Basic Suite": access to all the other suites, and the comparison of tokens.
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/SlotTraps.h"
#include "doubles/host/suites/SuiteCall.h"

namespace simhost {

namespace {

constexpr const char* kName = "SP Basic Suite";
constexpr SPErr kSuiteNotFound = static_cast<SPErr>(FourCharCode("S!Fd"));

// A second count and script for this one suite: "AcquireSuite/AI Menu Suite". The result of `work`, or of a fault.
template <class DoWork>
SPErr PerformForSuite(const SuiteCall& call, const char* operation, const char* suite, DoWork work) {
    return call.Perform([&]() -> SPErr {
        const CallFate fate = Host().operations.Begin(kName, std::string(operation) + "/" + suite);
        const SPErr result = fate.works ? work() : fate.code;
        return fate.code != 0 ? fate.code : result;
    });
}

SPErr AcquireSuite(const char* name, std::int32_t version, const void** table) {
    const SuiteCall call(kName, "AcquireSuite", name, version);
    if (name == nullptr || table == nullptr) {
        return call.BadArgument("no name, or nowhere to put the suite");
    }
    return PerformForSuite(call, "AcquireSuite", name, [&]() -> SPErr {
        OfferedSuite* const suite = Host().suites.Find(name);
        if (suite == nullptr || suite->version != version) {
            Host().notes.push_back(std::string("refused the suite \"") + name + "\" " + std::to_string(version));
            return kSuiteNotFound;
        }
        ++suite->held;
        *table = suite->slots.data();
        return 0;
    });
}

SPErr ReleaseSuite(const char* name, std::int32_t version) {
    const SuiteCall call(kName, "ReleaseSuite", name, version);
    if (name == nullptr) {
        return call.BadArgument("no name");
    }
    return PerformForSuite(call, "ReleaseSuite", name, [&]() -> SPErr {
        OfferedSuite* const suite = Host().suites.Find(name);
        if (suite == nullptr || suite->version != version || suite->held == 0) {
            Host().rules.Broken(Rule::kSuiteNotHeld, std::string("\"") + name + "\" " + std::to_string(version) +
                                                         " was released while it is not held");
            return kSuiteNotFound;
        }
        --suite->held;
        return 0;
    });
}

// The token that an alias stands for.
std::string_view Resolved(const char* token) {
    const auto found = Host().model.tokenAliases.find(token);
    return found == Host().model.tokenAliases.end() ? std::string_view(token) : std::string_view(found->second);
}

// Any value but 0 means equal: among these are some without a low bit, a low byte or a low half.
constexpr SPBoolean kEqual[] = {-1, 7, 0x100, 0x10000, std::numeric_limits<SPBoolean>::min()};

SPBoolean IsEqual(const char* token1, const char* token2) {
    const SuiteCall call(kName, "IsEqual", Unrecorded());
    if (token1 == nullptr || token2 == nullptr) {
        call.BadArgument("one of the texts is null");
        return 0;
    }
    return Resolved(token1) == Resolved(token2) ? kEqual[Host().model.equalTokens++ % std::size(kEqual)] : 0;
}

std::int64_t ReportTrap(std::uint32_t, std::uint32_t slot) {
    const OwnMemory own;
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
