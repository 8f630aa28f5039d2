#include "doubles/host/suites/SuiteStore.h"

#include <stdexcept>

#include "doubles/common/OwnMemory.h"
#include "doubles/host/Host.h"
#include "doubles/host/suites/SlotTraps.h"
#include "doubles/host/suites/SuiteList.h"

namespace simhost {

namespace {

// 'TRAP', to be recognised when it turns up as a result of the plug-in.
constexpr std::int64_t kTrapResult = 0x54524150;

std::int64_t ReportTrap(std::uint32_t suite, std::uint32_t slot) {
    const OwnMemory own;
    const char* const name = AllSuites()[suite].name;
    Host().rules.Broken(Rule::kTrapSlot,
                        std::string(name) + ": slot " + std::to_string(slot) + " was called, which nobody should call");
    return kTrapResult;
}

// The traps of each suite. They report to the current host, so all hosts of the process share them.
const std::vector<std::vector<void*>>& AllTraps() {
    static const std::vector<std::vector<void*>> sTraps = [] {
        std::vector<std::vector<void*>> traps;
        for (const SuiteRow& row : AllSuites()) {
            traps.push_back(MakeTraps(static_cast<std::uint32_t>(traps.size()), row.slots, &ReportTrap));
        }
        return traps;
    }();
    return sTraps;
}

}  // namespace

SuiteStore::SuiteStore() {
    for (const SuiteRow& row : AllSuites()) {
        mSuites.push_back(
            std::make_unique<OfferedSuite>(OfferedSuite{row.name, row.version, AllTraps()[mSuites.size()]}));
        mByName.emplace(mSuites.back()->name, mSuites.back().get());
    }
}

OfferedSuite* SuiteStore::Find(std::string_view name) {
    const auto found = mByName.find(name);
    return found == mByName.end() ? nullptr : found->second;
}

void SuiteStore::Withdraw(std::string_view name) {
    OfferedSuite* const suite = Find(name);
    if (suite == nullptr) {
        throw std::runtime_error("there is no suite \"" + std::string(name) + "\" to refuse");
    }
    // No version matches any more.
    suite->version = 0;
}

void* SuiteStore::TableOfSize(std::string_view name, std::size_t size) {
    OfferedSuite* const suite = Find(name);
    if (suite == nullptr || suite->slots.size() * sizeof(void*) != size) {
        throw std::logic_error("the table of \"" + std::string(name) + "\" has another size than its declaration");
    }
    return suite->slots.data();
}

}  // namespace simhost
