#include "OddMessageFaults.h"

#include <cstring>

#include "FatalFaults.h"
#include "host/Messages.h"

namespace {

enum class Oddness { kNone, kBears, kCrashes, kThrows, kStaysBusy, kHandlesNested };

constexpr std::int32_t kRefused = 1;

Oddness sOddness = Oddness::kNone;
bool sIsBusy = false;

// Calls the host, so that others can come within the message.
void UseHost(const SPMessageData* message) {
    const void* suite = nullptr;
    if (message != nullptr && message->basic != nullptr &&
        message->basic->AcquireSuite("SP Blocks Suite", 2, &suite) == 0) {
        message->basic->ReleaseSuite("SP Blocks Suite", 2);
    }
}

}  // namespace

void BearOddMessages() { sOddness = Oddness::kBears; }
void CrashAtAMessageOfNobody() { sOddness = Oddness::kCrashes; }
void ThrowAtANullMessage() { sOddness = Oddness::kThrows; }
void StayBusyAfterAnUnknownCaller() { sOddness = Oddness::kStaysBusy; }
void HandleMessagesWithinMessages() { sOddness = Oddness::kHandlesNested; }

std::optional<std::int32_t> AnswerOddly(const char* caller, const SPMessageData* message) {
    if (sOddness == Oddness::kNone) {
        return std::nullopt;
    }
    if (sIsBusy && sOddness != Oddness::kHandlesNested) {
        return kRefused;
    }
    if (sOddness == Oddness::kCrashes && caller == nullptr) {
        AccessViolation();
    }
    if (sOddness == Oddness::kThrows && message == nullptr) {
        ThrowException();
    }
    sIsBusy = true;
    UseHost(message);
    sIsBusy = sOddness == Oddness::kStaysBusy && caller != nullptr && std::strcmp(caller, "\xE3") == 0;
    return 0;
}
