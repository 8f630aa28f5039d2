// The fuzz targets: each takes bytes, feeds them to one part of the plug-in's code, and compares what comes out with
// what a small reference says. Compiled natively for libFuzzer, and for Windows to play the corpora again.
// Thread: any, one at a time.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

// The code under test did not do what the reference says.
class Disagreement : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Throws Disagreement with the text unless `holds`.
inline void Require(bool holds, const char* what) {
    if (!holds) {
        throw Disagreement(what);
    }
}

// JSON text in UTF-8 (or any bytes, each of them then a unit), read beside nlohmann's reader.
void FuzzJson(std::string_view bytes);
// JSON text of arbitrary 16-bit units, the low byte first: lone surrogates, NUL and all.
void FuzzJsonUnits(std::string_view bytes);
// Lines: "F" and a font's name, "D" and a font's name that is added unless it is there, "P" and a placed file's path.
void FuzzReport(std::string_view bytes);
// The key ("id" or "title"), the value looked for, and the menu description, each on a line; the last is all the rest.
void FuzzMenu(std::string_view bytes);
// The key on the first line; the rest is the launch-info file.
void FuzzLaunchInfo(std::string_view bytes);
// The word file.
void FuzzWords(std::string_view bytes);
// The settings as the PluginCore gives them.
void FuzzSettings(std::string_view bytes);
