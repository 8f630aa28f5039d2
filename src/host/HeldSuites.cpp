#include "host/HeldSuites.h"

#include "support/Errors.h"

void ThrowSuiteNotHeld() { throw SuiteNotHeld(); }

namespace ATE {
#define QUORVEL_DEFINE_SUITE(word, version, type) HeldSuite<type> s##word##Suite;
QUORVEL_TEXT_ENGINE_SUITES(QUORVEL_DEFINE_SUITE)
#undef QUORVEL_DEFINE_SUITE
}  // namespace ATE

// The name of a variable takes no parentheses. NOLINTNEXTLINE(bugprone-macro-parentheses)
#define QUORVEL_DEFINE_SUITE(name, version, type, variable) HeldSuite<type> variable;
QUORVEL_HOST_SUITES(QUORVEL_DEFINE_SUITE)
#undef QUORVEL_DEFINE_SUITE
