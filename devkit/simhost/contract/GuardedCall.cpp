#include "simhost/contract/GuardedCall.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <utility>

#include "doubles/common/Text.h"
#include "doubles/plugincore/MessagingState.h"
#include "simhost/contract/ContractBook.h"
#include "simhost/contract/HitFindings.h"
#include "simhost/contract/RecordedCalls.h"
#include "simhost/contract/Timeline.h"

namespace simhost::contract {

namespace {

// No buffer of the plug-in's is larger, whatever its size says: a library may have changed that in the call before.
constexpr std::uint64_t kLargestBuffer = kPluginCoreOpenReplySize;

std::uint64_t CapacityOf(const std::uint64_t* size) { return size == nullptr ? 0 : std::min(*size, kLargestBuffer); }

// Of what else an entry has changed, the book says nothing.
constexpr std::pair<HostStateKind, ClauseId> kStateClauses[] = {
    {HostStateKind::kCurrentFolder, ClauseId::kCurrentFolder},
    {HostStateKind::kFloatingPointControl, ClauseId::kFloatingPoint},
    {HostStateKind::kErrorMode, ClauseId::kErrorMode},
};

}  // namespace

GuardedCall::GuardedCall(const char* entry) : mEntry(entry), mRecord(entry) {
    auto [call, number, place] = RecordCall(entry);
    mCall = std::move(call);
    mNumber = number;
    mPlace = place;
    Book().Begin(entry, mNumber);
}

GuardedCall::~GuardedCall() = default;

template <class Type>
Type* GuardedCall::Lend(const char* name, Type* original, std::size_t size) {
    if (original == nullptr) {
        return nullptr;
    }
    void* const block = GuardedMemory::Lend(original, size, {mEntry, mNumber, name, Access::kReadWrite});
    mLent.push_back({block, original});
    return static_cast<Type*>(block);
}

char* GuardedCall::Text(const char* name, const char* text) {
    mRecord.Text(name, text);
    if (text == nullptr) {
        return nullptr;
    }
    void* const block = GuardedMemory::Lend(text, std::strlen(text) + 1, {mEntry, mNumber, name, Access::kReadOnly});
    mLent.push_back({block, nullptr});
    return static_cast<char*>(block);
}

LentReply GuardedCall::LendReply(char* buffer, std::uint64_t* size, std::uint64_t capacity) {
    if (buffer != nullptr && size != nullptr) {
        mReply = LentText{std::string(buffer, capacity), buffer, capacity, *size, size};
    }
    return {Lend("buffer", buffer, capacity), Lend("size", size, sizeof *size)};
}

LentReply GuardedCall::Reply(char* buffer, std::uint64_t* size) {
    mRecord.Buffer(buffer, size);
    return LendReply(buffer, size, CapacityOf(size));
}

char* GuardedCall::ReplyOf(char* buffer, std::uint64_t capacity) {
    mRecord.BufferOf(buffer, capacity);
    if (buffer != nullptr) {
        mReply = LentText{std::string(buffer, capacity), buffer, capacity, capacity, nullptr};
    }
    return Lend("buffer", buffer, capacity);
}

LentReply GuardedCall::TextAndReply(char* text, std::uint64_t* size) {
    mRecord.Text("text", text).NumberAt("capacity", size);
    const std::uint64_t used = text == nullptr ? 0 : strnlen(text, kLargestBuffer) + 1;
    return LendReply(text, size, std::max(CapacityOf(size), used));
}

std::uint32_t* GuardedCall::Number(const char* result, std::uint32_t* number) {
    mRecord.NumberAt("preset", number);
    mNumberName = result;
    mNumberOut = number;
    return Lend(result, number, sizeof *number);
}

std::uint8_t* GuardedCall::Flag(std::uint8_t* flag) {
    mRecord.NumberAt("preset", flag);
    mFlag = flag;
    return Lend("flag", flag, sizeof *flag);
}

CallbackGuard* GuardedCall::Callback(PluginCoreMenuCallback callback, void* context) {
    mRecord.Pointer("callback", reinterpret_cast<const void*>(callback)).Pointer("context", context);
    if (callback != nullptr) {
        mCallback = CallbackGuard::Lend(callback, context, mNumber);
    }
    return mCallback;
}

PlugPlugState* GuardedCall::State(PlugPlugState* state) {
    const std::optional<std::string> description = DescribeMessagingState(state);
    mRecord.Text("state", description ? description->c_str() : nullptr);
    if (state == nullptr) {
        return nullptr;
    }
    Book().Tried(ClauseId::kStateWritten);
    // By the plug-in's; never given back.
    static auto* const sCopies = new std::map<const PlugPlugState*, PlugPlugState*>;
    PlugPlugState*& copy = (*sCopies)[state];
    if (copy == nullptr) {
        copy = static_cast<PlugPlugState*>(GuardedMemory::Lend(
            state, sizeof *state, {mEntry, mNumber, "messaging state", Access::kReadOnly, /*isLasting=*/true}));
    } else {
        GuardedMemory::Rewrite(copy, state);
    }
    return copy;
}

void GuardedCall::Finding(ClauseId clause, const std::string& what) const {
    Book().Broken({clause, mEntry, mNumber, what});
}

// Written before the library is called: it may not come back.
void GuardedCall::Calling() {
    mCall->arguments = mRecord.Arguments();
    mCall->hasReturned = false;
    Journal().Write(mPlace, *mCall);
    mCall->hasReturned = true;
    mHitsBefore = GuardedMemory::HitsSoFar();
    mBegan = std::chrono::steady_clock::now();
}

void GuardedCall::Returned(std::int32_t answer) {
    mTook = std::chrono::steady_clock::now() - mBegan;
    mCall->answer = answer;
}

void GuardedCall::LeftBy(const std::string& exception) {
    mTook = std::chrono::steady_clock::now() - mBegan;
    mCall->exception = exception;
    Finding(ClauseId::kException, exception + " left the entry");
}

void GuardedCall::GiveBack() {
    for (const Lent& lent : mLent) {
        const bool isText = lent.original == nullptr;
        Book().Tried(isText ? ClauseId::kArgumentWritten : ClauseId::kBufferInFront);
        Book().Tried(isText ? ClauseId::kArgumentBehind : ClauseId::kBufferBehind);
        Book().Tried(ClauseId::kArgumentKept);
        Book().Tried(ClauseId::kArgumentFreed);
        GuardedMemory::Release(lent.block, lent.original);
    }
    mLent.clear();
    NoteHits();
}

void GuardedCall::CheckCallerState() {
    for (const HostStateChange& change : mCallerState.TakeChanges()) {
        for (const auto& [kind, clause] : kStateClauses) {
            if (kind == change.kind) {
                Finding(clause, change.what);
            }
        }
    }
    for (const auto& [kind, clause] : kStateClauses) {
        Book().Tried(clause);
    }
}

void GuardedCall::End() {
    // Whoever notes a hit, and whoever watches this process, has held the library up meanwhile.
    const bool isTimed = GuardedMemory::HitsSoFar() == mHitsBefore;
    GiveBack();
    if (mCallback != nullptr) {
        mCallback->Close();
        mTook -= mCallback->TimeOfCaller();
        mRecord.Texts("items", mCallback->Items());
        mCall->results["items"] = mCallback->ItemsInFull();
    }
    if (mReply) {
        CheckReply(*mReply, *mCall, mNumber);
    }
    CheckCallerState();
    if (mFlag != nullptr) {
        mCall->results["flag"] = *mFlag;
        Book().Tried(ClauseId::kFlagValue);
        if (*mFlag > 1) {
            Finding(ClauseId::kFlagValue, "the flag became " + std::to_string(*mFlag));
        }
    }
    if (mNumberOut != nullptr) {
        mCall->results[mNumberName] = *mNumberOut;
    }
    if (!mCall->exception) {
        Book().Tried(ClauseId::kException);
    }
    mCall->arguments = mRecord.Arguments();
    mCall->milliseconds = std::chrono::duration<double, std::milli>(mTook).count();
    Journal().Write(mPlace, *mCall);
    CheckTimeline(*mCall, mNumber, isTimed);
    Book().End();
}

}  // namespace simhost::contract
