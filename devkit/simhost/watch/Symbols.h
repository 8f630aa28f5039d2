// Names for addresses: function, file and line, where a file has symbols. They are looked up by a process of their own:
// what reads debug information is fed with files of strangers, and must not take the verdict with it when it crashes.
// (Wine's does, for some files of this project.)
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace simhost {

struct Symbol {
    std::string function;  // "" where none is known
    std::string file;      // its name alone; "" where no lines are known
    unsigned long line = 0;
};

// "Function of Module (file:line)".
std::string InWords(const Symbol& symbol, const std::string& module);

// Of addresses in a file that is loaded at `base`; one symbol for each. All are empty when nothing can be found out.
std::vector<Symbol> LookUpSymbols(const std::filesystem::path& file, std::uint64_t base,
                                  const std::vector<std::uint64_t>& addresses);

// That process: prints a line for each address, fields separated by tabs.
int PrintSymbols(const std::filesystem::path& file, std::uint64_t base, const std::vector<std::uint64_t>& addresses);

}  // namespace simhost
