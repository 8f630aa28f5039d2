#include "simhost/run/Performance.h"

#include "doubles/host/Host.h"

namespace simhost {

namespace {

constexpr int kIndent = 2;

}  // namespace

void Performance::Tell(const std::string& line) const { report.Line(line, kIndent); }

void Performance::NoteAnswer(const std::string& message, std::int32_t answer) const {
    report.Message(message, answer);
    if (answer != mStep.expect.answer && !mStep.expect.anything) {
        Broken(Rule::kReply, message + " was answered with " + std::to_string(answer) + ", expected " +
                                 std::to_string(mStep.expect.answer));
    }
}

void Performance::Broken(Rule rule, const std::string& text, std::vector<std::string> lines) const {
    report.Explain(mStep.place + ": " + text, std::move(lines));
    Host().rules.Broken(rule, mStep.place + ": " + text);
}

}  // namespace simhost
