#include "simhost/report/Summary.h"

#include <algorithm>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

std::string WhereOf(const RunOutcome& run) {
    if (!run.played) {
        return "cannot be played";
    }
    if (!run.failed) {
        return "failed";
    }
    if (run.failed->number == 0) {
        return "failed after the last step";
    }
    return "failed in step " + std::to_string(run.failed->number) +
           (run.failed->line == 0 ? "" : " (line " + std::to_string(run.failed->line) + ")") + ": " + run.failed->say;
}

std::string CommandOf(const RunOutcome& run, const std::string& program, const std::string& named,
                      const std::vector<std::string>& options) {
    std::string command =
        program + " " + (named.empty() ? "play " + AsShellWord(Utf8(run.file.generic_wstring())) : named);
    if (!run.caseName.empty()) {
        command += " --case " + run.caseName;
    }
    for (const std::string& option : options) {
        command += " " + AsShellWord(option);
    }
    if (named.empty() && run.played && run.failed && run.failed->number != 0) {
        command += " --until " + std::to_string(run.failed->number);
    }
    return command;
}

}  // namespace

std::string AsShellWord(const std::string& word) {
    const bool plain = !word.empty() && word.find_first_of(" \t\"'$&;()<>|*?\\`!#~") == std::string::npos;
    if (plain) {
        return word;
    }
    // Double quotes mean the same to every shell as long as there is nothing in the word that they leave alive.
    const bool simple = word.find_first_of("\"$`!") == std::string::npos && !word.ends_with('\\');
    return simple ? "\"" + word + "\"" : "'" + ReplaceAll(word, "'", "'\\''") + "'";
}

std::vector<std::string> SummaryOf(const std::vector<RunOutcome>& runs, const std::string& program,
                                   const std::string& command, const std::vector<std::string>& options) {
    const auto failed = std::count_if(runs.begin(), runs.end(), [](const RunOutcome& run) { return !run.passed; });
    if (failed == 0) {
        return {};
    }
    std::vector<std::string> lines = {std::to_string(failed) + " of " + std::to_string(runs.size()) +
                                      (runs.size() == 1 ? " run" : " runs") + " did not pass:"};
    for (const RunOutcome& run : runs) {
        if (!run.passed) {
            lines.push_back("  " + run.name + ": " + WhereOf(run));
            lines.push_back("    again: " + CommandOf(run, program, command, options));
        }
    }
    return lines;
}

}  // namespace simhost
