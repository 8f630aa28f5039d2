// What the entries of one double answer: set by a test's code, or read from JSON.
//
//   {"HandleOpenExistingDocument": [{"text": "A, B"}, {"result": 301989888}], "PluginIsEnabled": [{"enabled": 0}]}
//
// An entry's answers are used in turn and the last one is repeated. An entry without answers does nothing, answers 0
// and is enabled.
//
// Thread: one at a time. Lifetime: what `operator[]` returns stays until Load replaces the script.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "doubles/common/Answer.h"

namespace doubles {

class AnswerScript {
  public:
    // `ownKeys`: what an answer may hold in JSON besides "result" and "throw".
    explicit AnswerScript(std::set<std::string> ownKeys = {}) : mOwnKeys(std::move(ownKeys)) {}

    // Replaces everything by the answers of a JSON text; every entry begins with its first one. Throws
    // std::runtime_error for what cannot be understood.
    void Load(const std::string& json);

    // The entry's last answer, the one that is repeated, to be changed; made when there is none.
    Answer& operator[](const std::string& entry);

    // Makes the n-th call of the entry from now (1 is the next one) return `code`.
    void Fail(const std::string& entry, std::int32_t code, int nth = 1);

    // Makes the n-th call of the entry from now get this answer, in place of the entry's own ones.
    void AnswerOnce(const std::string& entry, Answer answer, int nth = 1);

    // What runs inside the entry's next call; empty for nothing.
    std::function<void()> DuringNext(const std::string& entry) const;

    // The answer of the entry's next call, which is used up.
    Answer TakeNext(const std::string& entry);

  private:
    std::vector<Answer> ReadAnswers(const std::string& entry, const nlohmann::json& descriptions) const;
    // Null without answers.
    const Answer* Upcoming(const std::string& entry) const;
    std::size_t CallsOf(const std::string& entry) const;

    std::set<std::string> mOwnKeys;
    std::map<std::string, std::vector<Answer>> mAnswers;
    std::map<std::string, std::size_t> mCalls;
    std::map<std::pair<std::string, std::size_t>, std::int32_t> mFailures;
    std::map<std::pair<std::string, std::size_t>, Answer> mSingleAnswers;
};

}  // namespace doubles
