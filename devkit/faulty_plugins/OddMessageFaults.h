// How a plug-in can fail at messages that no host should send. From the fault on it handles all messages so; but for
// the fault itself as it should.
#pragma once

#include <cstdint>
#include <optional>

struct SPMessageData;

void BearOddMessages();
void CrashAtAMessageOfNobody();
void ThrowAtANullMessage();
void StayBusyAfterAnUnknownCaller();
void HandleMessagesWithinMessages();

// The answer; nothing while none of these was committed.
std::optional<std::int32_t> AnswerOddly(const char* caller, const SPMessageData* message);
