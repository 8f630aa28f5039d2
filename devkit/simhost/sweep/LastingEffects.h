// What a fault may change in the next run of the same loaded plug-in, without being a defect.
#pragma once

#include <span>
#include <string_view>

namespace simhost::sweep {

struct LastingEffect {
    const char* failed;   // the operation, as in an Explanation
    const char* changes;  // what comes out otherwise, as a Difference names it; each * stands for any text
    const char* why;

    bool Explains(std::string_view operation, std::string_view difference) const;
};

std::span<const LastingEffect> LastingEffects();

}  // namespace simhost::sweep
