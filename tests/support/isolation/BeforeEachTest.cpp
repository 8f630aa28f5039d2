#include "support/isolation/BeforeEachTest.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <vector>

#include "support/isolation/LineCounters.h"

#ifdef QUORVEL_PLUGIN_VARIABLES_ARE_GATHERED
extern "C" unsigned char quorvel_plugin_variables_begin[];  // NOLINT(readability-identifier-naming): the script's names
extern "C" unsigned char quorvel_plugin_variables_end[];    // NOLINT(readability-identifier-naming)
#endif

namespace {

// Made at the first use: other files register before this one's own variables are constructed.
std::vector<void (*)()>& Resets() {
    static std::vector<void (*)()> sResets;
    return sResets;
}

#ifdef QUORVEL_PLUGIN_VARIABLES_ARE_GATHERED
class PluginVariables {
  public:
    void Restore() const { std::memcpy(quorvel_plugin_variables_begin, mBytes.data(), mBytes.size()); }

  private:
    // After all constructors of namespace scope have run, and before any test.
    std::vector<unsigned char> mBytes{quorvel_plugin_variables_begin, quorvel_plugin_variables_end};
};
#else
class PluginVariables {
  public:
    void Restore() const {}
};
#endif

class Isolation : public testing::EmptyTestEventListener {
  public:
    void OnTestStart(const testing::TestInfo& /*test*/) override {
        SaveLineCounters();
        mVariables.Restore();
        for (void (*const reset)() : Resets()) {
            reset();
        }
    }

  private:
    PluginVariables mVariables;
};

}  // namespace

BeforeEachTest::BeforeEachTest(void (*reset)()) { Resets().push_back(reset); }

void IsolateTests() { testing::UnitTest::GetInstance()->listeners().Append(std::make_unique<Isolation>().release()); }
