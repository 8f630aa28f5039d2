#include "doubles/common/AnswerScript.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <system_error>

namespace doubles {

namespace {

using Json = nlohmann::json;

Throw ThrowNamed(const std::string& name) {
    if (name == "foreign") {
        return Throw::kForeignException;
    }
    if (name == "cpp") {
        return Throw::kCppException;
    }
    if (name == "access violation") {
        return Throw::kAccessViolation;
    }
    throw std::runtime_error("\"throw\" must be \"foreign\", \"cpp\" or \"access violation\", not \"" + name + "\"");
}

// Texts that JSON cannot hold, because they are no UTF-8, are written in hexadecimal digits.
std::string BytesOf(const std::string& digits) {
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        unsigned byte = 0;
        const char* const begin = digits.data() + i;
        const char* const end = begin + std::min<std::size_t>(2, digits.size() - i);
        if (const auto [at, error] = std::from_chars(begin, end, byte, 16); error != std::errc() || at != begin + 2) {
            throw std::runtime_error("\"text_hex\" must be pairs of hexadecimal digits");
        }
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

void ReadKey(Answer& answer, const std::string& key, const Json& value) {
    if (key == "result") {
        answer.result = value.get<std::int32_t>();
    } else if (key == "throw") {
        answer.throws = ThrowNamed(value.get<std::string>());
    } else if (key == "text") {
        answer.text = value.get<std::string>();
    } else if (key == "text_hex") {
        answer.text = BytesOf(value.get<std::string>());
    } else if (key == "whole") {
        answer.isWholeTextOnly = value.get<bool>();
    } else if (key == "repeated") {
        answer.isRepeated = value.get<bool>();
    } else if (key == "size") {
        answer.size = value.get<std::uint64_t>();
    } else if (key == "enabled") {
        answer.enabled = value.get<std::uint8_t>();
    } else if (key == "port") {
        answer.port = value.get<std::uint32_t>();
    }
}

}  // namespace

std::vector<Answer> AnswerScript::ReadAnswers(const std::string& entry, const Json& descriptions) const {
    std::vector<Answer> answers;
    try {
        for (const Json& description : descriptions) {
            Answer& answer = answers.emplace_back();
            for (const auto& [key, value] : description.items()) {
                if (key != "result" && key != "throw" && mOwnKeys.count(key) == 0) {
                    throw std::runtime_error("unknown key \"" + key + "\"");
                }
                ReadKey(answer, key, value);
            }
        }
    } catch (const std::exception& error) {
        throw std::runtime_error("answers of " + entry + ": " + error.what());
    }
    return answers;
}

void AnswerScript::Load(const std::string& json) {
    *this = AnswerScript(mOwnKeys);
    const Json description = Json::parse(json);
    for (const auto& [entry, descriptions] : description.items()) {
        mAnswers[entry] = ReadAnswers(entry, descriptions);
    }
}

Answer& AnswerScript::operator[](const std::string& entry) {
    std::vector<Answer>& answers = mAnswers[entry];
    return answers.empty() ? answers.emplace_back() : answers.back();
}

void AnswerScript::Fail(const std::string& entry, std::int32_t code, int nth) {
    mFailures[{entry, CallsOf(entry) + static_cast<std::size_t>(nth)}] = code;
}

void AnswerScript::AnswerOnce(const std::string& entry, Answer answer, int nth) {
    mSingleAnswers[{entry, CallsOf(entry) + static_cast<std::size_t>(nth)}] = std::move(answer);
}

std::size_t AnswerScript::CallsOf(const std::string& entry) const {
    const auto calls = mCalls.find(entry);
    return calls == mCalls.end() ? 0 : calls->second;
}

const Answer* AnswerScript::Upcoming(const std::string& entry) const {
    if (const auto single = mSingleAnswers.find({entry, CallsOf(entry) + 1}); single != mSingleAnswers.end()) {
        return &single->second;
    }
    const auto answers = mAnswers.find(entry);
    if (answers == mAnswers.end() || answers->second.empty()) {
        return nullptr;
    }
    return &answers->second[std::min(CallsOf(entry), answers->second.size() - 1)];
}

std::function<void()> AnswerScript::DuringNext(const std::string& entry) const {
    const Answer* const answer = Upcoming(entry);
    return answer == nullptr ? nullptr : answer->during;
}

Answer AnswerScript::TakeNext(const std::string& entry) {
    const Answer* const upcoming = Upcoming(entry);
    Answer answer = upcoming == nullptr ? Answer() : *upcoming;
    const auto failure = mFailures.find({entry, ++mCalls[entry]});
    if (failure != mFailures.end()) {
        answer.result = failure->second;
    }
    return answer;
}

}  // namespace doubles
