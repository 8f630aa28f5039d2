// The suites that the host offers: for each a table of slots, and how often it is held.
//
// Thread: main.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace simhost {

struct OfferedSuite {
    std::string name;
    std::int32_t version;
    std::vector<void*> slots;
    std::int64_t held = 0;
    // So many of these stay held: what was acquired before a refusal is acquired again, and given back once.
    std::int64_t leftByRefusals = 0;
};

class SuiteStore {
  public:
    // All suites, every slot a trap.
    SuiteStore();

    // The suite's table as the structure that the plug-in reads it by. The sizes must agree.
    template <class Suite>
    Suite& Table(std::string_view name) {
        return *static_cast<Suite*>(TableOfSize(name, sizeof(Suite)));
    }

    OfferedSuite* Find(std::string_view name);
    const std::vector<std::unique_ptr<OfferedSuite>>& All() const { return mSuites; }

    // The host does not offer this suite. Throws std::runtime_error when there is none of that name.
    void Withdraw(std::string_view name);

  private:
    void* TableOfSize(std::string_view name, std::size_t size);

    std::vector<std::unique_ptr<OfferedSuite>> mSuites;
    std::unordered_map<std::string_view, OfferedSuite*> mByName;
};

}  // namespace simhost
