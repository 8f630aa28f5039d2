#include "simhost/sweep/Fault.h"

#include <array>

namespace simhost::sweep {

namespace {

// In the order of the enumerations.
constexpr std::array<const char*, kKinds> kKindNames = {"host", "import", "allocation"};
constexpr std::array<const char*, kModes> kModeNames = {"once", "from-here", "filled"};

template <class Value, std::size_t kCount>
std::optional<Value> Named(std::string_view name, const std::array<const char*, kCount>& names) {
    for (std::size_t i = 0; i < kCount; ++i) {
        if (name == names[i]) {
            return static_cast<Value>(i);
        }
    }
    return std::nullopt;
}

}  // namespace

const char* NameOf(Kind kind) { return kKindNames[static_cast<std::size_t>(kind)]; }
const char* NameOf(Mode mode) { return kModeNames[static_cast<std::size_t>(mode)]; }

std::optional<Kind> KindNamed(std::string_view name) { return Named<Kind>(name, kKindNames); }
std::optional<Mode> ModeNamed(std::string_view name) { return Named<Mode>(name, kModeNames); }

std::string AsOptions(const Fault& fault) {
    return std::string("--kind ") + NameOf(fault.kind) + " --number " + std::to_string(fault.number) + " --mode " +
           NameOf(fault.mode);
}

}  // namespace simhost::sweep
