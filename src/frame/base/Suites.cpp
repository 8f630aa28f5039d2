#include "frame/base/Suites.h"

#include <array>

#include "frame/base/SuiteOperations.h"
#include "host/HeldSuites.h"
#include "support/Log.h"
#include "support/ResultCodes.h"

namespace {

const std::array kSuiteTable = {
#define QUORVEL_SUITE_ROW(word, version, type) SuiteRow{"ATE " #word " Suite", version, ATE::s##word##Suite.Target()},
    QUORVEL_TEXT_ENGINE_SUITES(QUORVEL_SUITE_ROW)
#undef QUORVEL_SUITE_ROW
// The name of a variable takes no parentheses. NOLINTNEXTLINE(bugprone-macro-parentheses)
#define QUORVEL_SUITE_ROW(name, version, type, variable) SuiteRow{name, version, variable.Target()},
        QUORVEL_HOST_SUITES(QUORVEL_SUITE_ROW)
#undef QUORVEL_SUITE_ROW
};
static_assert(kSuiteTable.size() == 98);

// 0 while the table is not held, 1 while it is. Releasing a table that was never acquired takes it below 0, to
// 4294967295, which stops every later acquisition: intentional, and part of what ReleaseSuites promises.
std::uint32_t sUseCount = 0;

}  // namespace

std::span<const SuiteRow> SuiteTable() { return kSuiteTable; }

std::int32_t AcquireSuites() {
    if (sUseCount != 0) {
        return kNoErr;
    }
    for (const SuiteRow& row : kSuiteTable) {
        const std::int32_t result = sBasicSuite->AcquireSuite(row.name, row.version, row.target);
        if (result != kNoErr) {
            LogMessage(kLogNote, "Error 0x%08x acquiring suite '%s', version %d", static_cast<unsigned>(result),
                       row.name, row.version);
            return result;
        }
    }
    ++sUseCount;
    return kNoErr;
}

std::int32_t ReleaseSuites() {
    if (sUseCount != 1) {
        --sUseCount;
        return kNoErr;
    }
    for (const SuiteRow& row : kSuiteTable) {
        if (*row.target == nullptr) {
            continue;
        }
        const std::int32_t result = sBasicSuite->ReleaseSuite(row.name, row.version);
        if (result != kNoErr) {
            return result;
        }
        *row.target = nullptr;
    }
    --sUseCount;
    return kNoErr;
}

bool SuitesAreHeld() { return sUseCount == 1; }
