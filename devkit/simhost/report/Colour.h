// Colour on terminals. https://no-color.org: NO_COLOR in the environment turns it off.
#pragma once

#include <string>
#include <string_view>

namespace simhost {

enum class ColourChoice { kAuto, kAlways, kNever };

enum class Tone { kPlain, kTitle, kGood, kBad, kWarning };

// Whether standard output gets colour. With kAuto only when it is a terminal that can show it.
bool UsesColour(ColourChoice choice);

std::string Coloured(std::string_view text, Tone tone, bool colour);

}  // namespace simhost
