// What the fakes were asked, in order, and which of their answers a test has changed. Fakes record and answer; they
// never reason.
#pragma once

#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

class CallLog {
  public:
    // Makes the n-th call of `operation` from now (1 is the next one) answer `code` instead of 0.
    void Fail(const std::string& operation, std::int32_t code, int nth = 1) {
        mFailures[{operation, mCounts[operation] + nth}] = code;
    }

    // Makes every call of `operation` from now answer `code`.
    void FailAlways(const std::string& operation, std::int32_t code) { mAlways[operation] = code; }

    // Records a call; its answer.
    std::int32_t Record(const std::string& operation, const std::string& arguments) {
        mCalls.push_back(operation + "(" + arguments + ")");
        const auto failure = mFailures.find({operation, ++mCounts[operation]});
        if (failure != mFailures.end()) {
            return failure->second;
        }
        const auto always = mAlways.find(operation);
        return always == mAlways.end() ? 0 : always->second;
    }

    const std::vector<std::string>& Calls() const { return mCalls; }
    int Count(const std::string& operation) const {
        const auto count = mCounts.find(operation);
        return count == mCounts.end() ? 0 : count->second;
    }
    // Forgets the calls; counting for Fail goes on.
    void Clear() { mCalls.clear(); }

  private:
    std::vector<std::string> mCalls;
    std::map<std::string, int> mCounts;
    std::map<std::pair<std::string, int>, std::int32_t> mFailures;
    std::map<std::string, std::int32_t> mAlways;
};

// 'text', or null.
inline std::string Quoted(const char* text) { return text == nullptr ? "null" : "'" + std::string(text) + "'"; }

// All bits of a handle or address, without leading zeros: "0x100005001".
inline std::string Address(const void* address) {
    char text[24];
    std::snprintf(text, sizeof(text), "0x%llx",
                  static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(address)));
    return text;
}
