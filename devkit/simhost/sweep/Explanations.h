// What may be left behind by a run in which calls failed, without being a defect.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace simhost::sweep {

// Whether the name is the pattern. A * at the pattern's end stands for any text; "<held suite>" there for the name of a
// suite that the plug-in holds from its first message to its shut-down, "<held suite but the last>" for one before the
// last of these.
bool Matches(std::string_view name, std::string_view pattern);

enum class Amount {
    kEach,  // each failure explains one thing
    kAlso,  // each failure explains one thing beside others
    kAny,   // one failure explains all of them
};

// A release that fails leaves what it was to release, and explains nothing else. A * at the end of both stands for the
// same text.
struct Explanation {
    const char* failed;  // the operation
    const char* left;    // the rule that is broken, or the function that gave what is left
    Amount amount = Amount::kEach;

    bool IsAbout(std::string_view what) const;
    // Of something that this is about.
    bool IsBehind(std::string_view operation, std::string_view what) const;
};
std::span<const Explanation> Explanations();

// What the plug-in keeps until it is unloaded, on purpose. A fault may let it come so far when nothing does without it:
// a launch-info file that cannot be read is passed over, and the library that the next place names is found.
struct Kept {
    const char* giver;
    std::int64_t most;
    const char* with;  // only when the run without a fault keeps none of these, and this one does
};
std::span<const Kept> KeptOnPurpose();

}  // namespace simhost::sweep
