// The main function of every program here.
#include <algorithm>
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/Record.h"
#include "common/Run.h"

namespace {

std::vector<bench::Comparison> Chosen(const std::string& part) {
    bench::Run run;
    bench::Define(run);
    std::vector<bench::Comparison> chosen;
    std::ranges::copy_if(run.Comparisons(), std::back_inserter(chosen), [&part](const bench::Comparison& comparison) {
        return comparison.name.find(part) != std::string::npos;
    });
    return chosen;
}

void Write(const std::string& path, const nlohmann::json& record) {
    std::ofstream file(path, std::ios::binary);
    file << record.dump(2) << '\n';
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path);
    }
}

int Measure(int argc, char** argv) {
    CLI::App app{"Measures what the plug-in's work costs, beside others. Usual way in: scripts/bench."};
    bool quick = false;
    std::string part;
    std::string path;
    app.add_flag("--quick", quick, "few samples: shows that it works, the times mean nothing");
    app.add_option("--only", part, "only the comparisons whose names hold this text");
    app.add_option("--json", path, "where to write what was measured")->required();
    CLI11_PARSE(app, argc, argv);
    Write(path, bench::Measure(Chosen(part), quick ? bench::kQuick : bench::kThorough));
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Measure(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
