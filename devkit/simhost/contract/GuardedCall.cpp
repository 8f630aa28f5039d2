#include "simhost/contract/GuardedCall.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "doubles/common/Text.h"
#include "doubles/common/Thread.h"
#include "doubles/plugincore/MessagingState.h"
#include "simhost/contract/CodeAddress.h"
#include "simhost/contract/ContractBook.h"
#include "simhost/contract/HitFindings.h"
#include "simhost/contract/TextChecks.h"
#include "simhost/contract/Timeline.h"
#include "simhost/run/FlightRecorder.h"

namespace simhost::contract {

namespace {

using Json = nlohmann::ordered_json;

// No buffer of the plug-in's is larger, whatever its size says: a library may have changed that in the call before.
constexpr std::uint64_t kLargestBuffer = kPluginCoreOpenReplySize;

// The main thread alone changes the stack.
Mutex sStackMutex;

std::vector<std::unique_ptr<GuardedCall>>& Stack() {
    static auto* const sStack = new std::vector<std::unique_ptr<GuardedCall>>;
    return *sStack;
}

// A call has its place from its beginning on.
std::vector<std::shared_ptr<PluginCoreCall>>& Recorded() {
    static auto* const sCalls = new std::vector<std::shared_ptr<PluginCoreCall>>;
    return *sCalls;
}

std::uint64_t CapacityOf(const std::uint64_t* size) { return size == nullptr ? 0 : std::min(*size, kLargestBuffer); }

std::string InHexadecimal(std::uint32_t number) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%04X", static_cast<unsigned>(number));
    return text;
}

// How often each entry was called.
std::map<std::string, int>& Numbers() {
    static auto* const sNumbers = new std::map<std::string, int>;
    return *sNumbers;
}

}  // namespace

GuardedCall::GuardedCall(const char* entry)
    : mEntry(entry), mNumber(++Numbers()[entry]), mRecord(entry), mCall(std::make_shared<PluginCoreCall>()) {
    mCall->entry = entry;
    static std::size_t sPlaces = 0;
    mPlace = sPlaces++;
    Recorded().push_back(mCall);
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
    const std::uint64_t used = text == nullptr ? 0 : strnlen(text, kLargestBuffer - 1) + 1;
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

void GuardedCall::CheckReply() {
    if (!mReply) {
        return;
    }
    const LentText& reply = *mReply;
    const std::string_view bytes(reply.original, reply.capacity);
    const std::string text(reply.original, strnlen(reply.original, reply.capacity));
    if (bytes != reply.before) {
        mCall->results.update(doubles::CallRecord("").Text("text", text.c_str()).Arguments());
        Book().Tried(ClauseId::kBufferTerminated);
        if (text.size() == reply.capacity) {
            Finding(ClauseId::kBufferTerminated,
                    "no zero within the " + std::to_string(reply.capacity) + " bytes of the buffer");
        }
        Book().Tried(ClauseId::kBufferUtf8);
        if (!IsUtf8(text)) {
            Finding(ClauseId::kBufferUtf8, "the reply " + Printable(text) + " is not UTF-8");
        }
        CheckRest(text.size() + 1);
    }
    if (reply.size != nullptr) {
        Book().Tried(ClauseId::kSizeSane);
        const bool isChanged = *reply.size != reply.sizeBefore;
        if (isChanged) {
            mCall->results["size"] = *reply.size;
        }
        // With or without the zero.
        const std::uint64_t most = std::max(reply.sizeBefore, reply.capacity);
        if (isChanged && (*reply.size > most || *reply.size < text.size())) {
            Finding(ClauseId::kSizeSane, "the size became " + std::to_string(*reply.size) + ", with a capacity of " +
                                             std::to_string(most) + " and a text of " + std::to_string(text.size()) +
                                             " bytes");
        }
    }
    if (mCall->answer == kPluginCoreSuccess && !mCall->exception && !text.empty()) {
        CheckJson(text);
    }
}

void GuardedCall::CheckJson(const std::string& text) {
    struct Shape {
        std::string_view entry;
        std::uint64_t capacity;  // in a smaller buffer the text may be cut
        ClauseId parses, members, kinds;
        std::vector<ShapeFault> (*faultsOf)(const std::string& json);
    };
    const Shape shapes[] = {{"GetMenus", kPluginCoreMenusSize, ClauseId::kMenuJson, ClauseId::kMenuMembers,
                             ClauseId::kMenuKinds, &FaultsOfMenus},
                            {"GetSettings", kPluginCoreSettingsSize, ClauseId::kSettingsJson,
                             ClauseId::kSettingsMembers, ClauseId::kSettingsMembers, &FaultsOfSettings}};
    const auto* const shape = std::find_if(std::begin(shapes), std::end(shapes),
                                           [&](const Shape& candidate) { return candidate.entry == mEntry; });
    if (shape == std::end(shapes) || mReply->capacity < shape->capacity) {
        return;
    }
    Book().Tried(shape->parses);
    const std::vector<ShapeFault> faults = shape->faultsOf(text);
    if (faults.empty() || faults.front().kind != ShapeFaultKind::kNoJson) {
        Book().Tried(shape->members);
        Book().Tried(shape->kinds);
    }
    for (const ShapeFault& fault : faults) {
        const ClauseId clause = fault.kind == ShapeFaultKind::kNoJson          ? shape->parses
                                : fault.kind == ShapeFaultKind::kMemberMissing ? shape->members
                                                                               : shape->kinds;
        Finding(clause, fault.text + ", in " + Printable(text));
    }
}

// Zeros are as good as what was there: strncpy fills with them.
void GuardedCall::CheckRest(std::size_t begin) const {
    for (std::size_t i = begin; i < mReply->capacity; ++i) {
        if (mReply->original[i] != mReply->before[i] && mReply->original[i] != '\0') {
            Finding(ClauseId::kBufferRest, "byte " + std::to_string(i) +
                                               " of the buffer was written, behind a text of " +
                                               std::to_string(begin - 1) + " bytes");
            break;
        }
    }
    Book().Tried(ClauseId::kBufferRest);
}

void GuardedCall::CheckCallerState() const {
    const CallerState now = CallerState::Now();
    if (now.currentFolder != mCallerBefore.currentFolder) {
        Finding(ClauseId::kCurrentFolder, "the current folder became " + Utf8(now.currentFolder));
    }
    if (now.floatingPointControl != mCallerBefore.floatingPointControl) {
        Finding(ClauseId::kFloatingPoint, "MXCSR became " + InHexadecimal(now.floatingPointControl));
    }
    if (now.errorMode != mCallerBefore.errorMode) {
        Finding(ClauseId::kErrorMode, "the error mode became " + InHexadecimal(now.errorMode));
    }
    for (const ClauseId clause : {ClauseId::kCurrentFolder, ClauseId::kFloatingPoint, ClauseId::kErrorMode}) {
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
    CheckReply();
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

GuardedCall& BeginCall(const char* entry) {
    auto call = std::make_unique<GuardedCall>(entry);
    const CallUnderWay underWay = call->UnderWay();
    EnteredEntry(std::string(underWay.entry) + ", call " + std::to_string(underWay.number));
    const std::lock_guard lock(sStackMutex);
    Stack().push_back(std::move(call));
    return *Stack().back();
}

void EndCall() {
    LeftEntry();
    Stack().back()->End();
    const std::lock_guard lock(sStackMutex);
    Stack().pop_back();
}

CallJournal& Journal() {
    static auto* const sJournal = new CallJournal;
    return *sJournal;
}

bool WasAnyCalled() { return !Numbers().empty(); }

std::vector<PluginCoreCall> TakeCalls() {
    std::vector<PluginCoreCall> calls;
    for (const auto& call : std::exchange(Recorded(), {})) {
        calls.push_back(*call);
    }
    return calls;
}

std::optional<CallUnderWay> EntryUnderWay() {
    const std::lock_guard lock(sStackMutex);
    return Stack().empty() ? std::nullopt : std::optional(Stack().back()->UnderWay());
}

void NoteHits() {
    for (const Hit& hit : GuardedMemory::TakeHits()) {
        Book().Broken(FindingOf(hit));
    }
}

}  // namespace simhost::contract
