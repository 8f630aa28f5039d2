#include "doubles/host/suites/SuiteStore.h"

#include <algorithm>
#include <stdexcept>

#include "doubles/host/Host.h"
#include "doubles/host/suites/SlotTraps.h"
#include "doubles/host/suites/SuiteList.h"

namespace simhost {

namespace {

// 'TRAP', so that a code that turns up in the plug-in's answers is recognised.
constexpr std::int64_t kTrapResult = 0x54524150;

std::int64_t ReportTrap(std::uint32_t suite, std::uint32_t slot) {
    const char* const name = AllSuites()[suite].name;
    Host().rules.Broken(Rule::kTrapSlot,
                        std::string(name) + ": slot " + std::to_string(slot) + " was called, which nobody should call");
    return kTrapResult;
}

}  // namespace

SuiteStore::SuiteStore() {
    for (const SuiteRow& row : AllSuites()) {
        const auto number = static_cast<std::uint32_t>(mSuites.size());
        mSuites.push_back(std::make_unique<OfferedSuite>(
            OfferedSuite{row.name, row.version, MakeTraps(number, row.slots, &ReportTrap)}));
    }
}

OfferedSuite* SuiteStore::Find(std::string_view name) {
    const auto found =
        std::find_if(mSuites.begin(), mSuites.end(), [&](const auto& suite) { return suite->name == name; });
    return found == mSuites.end() ? nullptr : found->get();
}

void SuiteStore::Withdraw(std::string_view name) {
    OfferedSuite* const suite = Find(name);
    if (suite == nullptr) {
        throw std::runtime_error("there is no suite \"" + std::string(name) + "\" to refuse");
    }
    // No version fits any more.
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
