// One call of an entry on its way through the layer: lends guarded memory in place of the plug-in's, has the library
// called, gives back what it wrote, checks it and records the call. Answers, texts and exceptions reach the plug-in as
// if nothing stood between.
//
// Calls lie on a stack of the layer's own (CallStack) and not in the frames of the forwarding functions: an exception
// of another compiler runs no destructors there.
//
// Thread: main.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "doubles/common/CallRecord.h"
#include "plugincore/PluginCore.h"
#include "simhost/checks/HostStateWatch.h"
#include "simhost/checks/PluginCoreCalls.h"
#include "simhost/contract/CallbackGuard.h"
#include "simhost/contract/Clauses.h"
#include "simhost/contract/GuardedMemory.h"
#include "simhost/contract/ReplyChecks.h"

namespace simhost::contract {

// What a library gets in place of a reply buffer and its size.
struct LentReply {
    char* text;
    std::uint64_t* size;
};

class GuardedCall {
  public:
    explicit GuardedCall(const char* entry);
    GuardedCall(const GuardedCall&) = delete;
    GuardedCall& operator=(const GuardedCall&) = delete;
    ~GuardedCall();

    // Arguments, in their order; each returns what the library gets. A null pointer stays one.
    // Lent for reading only.
    char* Text(const char* name, const char* text);
    LentReply Reply(char* buffer, std::uint64_t* size);
    // Of a length that the contract knows.
    char* ReplyOf(char* buffer, std::uint64_t capacity);
    // A text in the buffer, which the library may replace. The text and its zero are lent in any case: `*size` may be
    // the text's length, as an entry before has set it.
    LentReply TextAndReply(char* text, std::uint64_t* size);
    std::uint32_t* Number(const char* result, std::uint32_t* number);
    std::uint8_t* Flag(std::uint8_t* flag);
    void PlainNumber(const char* name, std::int64_t number) { mRecord.Number(name, number); }
    CallbackGuard* Callback(PluginCoreMenuCallback callback, void* context);
    // A copy that stays, for reading only: one for each state.
    PlugPlugState* State(PlugPlugState* state);

    // The library is called now; all before is the layer's own work.
    void Calling();
    // The entry has returned, or was left by an exception.
    void Returned(std::int32_t answer);
    void LeftBy(const std::string& exception);
    // Gives everything back, checks and records.
    void End();

    // Of the call of its entry, from 1.
    int Number() const { return mNumber; }

  private:
    struct Lent {
        void* block;
        void* original;  // null: nothing is given back
    };

    template <class Type>
    Type* Lend(const char* name, Type* original, std::size_t size);
    LentReply LendReply(char* buffer, std::uint64_t* size, std::uint64_t capacity);
    void GiveBack();
    void CheckCallerState();
    void Finding(ClauseId clause, const std::string& what) const;

    const char* mEntry;
    int mNumber = 0;
    std::size_t mPlace = 0;  // among all calls of the process, from 0
    doubles::CallRecord mRecord;
    std::shared_ptr<PluginCoreCall> mCall;
    std::vector<Lent> mLent;
    std::optional<LentText> mReply;
    std::uint8_t* mFlag = nullptr;
    std::uint32_t* mNumberOut = nullptr;
    const char* mNumberName = "";
    CallbackGuard* mCallback = nullptr;
    HostStateWatch mCallerState;
    std::chrono::steady_clock::time_point mBegan{};
    std::chrono::steady_clock::duration mTook{};
    std::size_t mHitsBefore = 0;
};

}  // namespace simhost::contract
