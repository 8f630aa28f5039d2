#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "doubles/common/Text.h"
#include "simhost/command/CommandLine.h"
#include "simhost/watch/Symbols.h"

namespace simhost {

namespace {

struct Arguments {
    std::string file;
    std::uint64_t base = 0;
    std::vector<std::uint64_t> addresses;
};

}  // namespace

void AddSymbols(CLI::App& app, ChosenCommand& chosen) {
    const auto arguments = std::make_shared<Arguments>();
    // An empty group keeps it out of the help.
    CLI::App* const symbols = app.add_subcommand("symbols", "")->group("");
    symbols->add_option("file", arguments->file)->required();
    symbols->add_option("base", arguments->base)->required();
    symbols->add_option("address", arguments->addresses)->required();
    symbols->callback([arguments, &chosen] {
        chosen = [arguments] { return PrintSymbols(Wide(arguments->file), arguments->base, arguments->addresses); };
    });
}

}  // namespace simhost
