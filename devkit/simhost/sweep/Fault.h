// One fault of a sweep: the n-th fallible call of a kind fails, once, or with all that follow.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace simhost::sweep {

enum class Kind {
    kHost,        // an operation of a host suite, and asking for a suite
    kImport,      // a function of Windows or of the C runtime
    kAllocation,  // malloc, calloc and realloc, so operator new as well
};
inline constexpr std::size_t kKinds = 3;

enum class Mode {
    kOnce,      // this call alone
    kFromHere,  // this call and all later ones of its kind
    kFilled,    // this call alone, and it fills its outputs although it fails; of the host only
};
inline constexpr std::size_t kModes = 3;

struct Fault {
    Kind kind = Kind::kHost;
    Mode mode = Mode::kOnce;
    std::size_t number = 1;  // of the calls of its kind in the run, from 1
};

const char* NameOf(Kind kind);
const char* NameOf(Mode mode);
std::optional<Kind> KindNamed(std::string_view name);
std::optional<Mode> ModeNamed(std::string_view name);

// As on a command line: "--kind host --number 12 --mode once".
std::string AsOptions(const Fault& fault);

}  // namespace simhost::sweep
