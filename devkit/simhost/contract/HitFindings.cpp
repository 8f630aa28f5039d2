#include "simhost/contract/HitFindings.h"

#include <string>

#include "simhost/contract/CodeAddress.h"

namespace simhost::contract {

namespace {

bool IsText(const Hit& hit) { return hit.loan.access == Access::kReadOnly; }

ClauseId ClauseOfHit(const Hit& hit) {
    switch (hit.kind) {
        case HitKind::kBehind:
            return IsText(hit) ? ClauseId::kArgumentBehind : ClauseId::kBufferBehind;
        case HitKind::kInFront:
            return IsText(hit) ? ClauseId::kArgumentBehind : ClauseId::kBufferInFront;
        case HitKind::kWritten:
            return hit.loan.isLasting ? ClauseId::kStateWritten : ClauseId::kArgumentWritten;
        case HitKind::kAfterReturn:
            return ClauseId::kArgumentKept;
        case HitKind::kFreed:
            break;
    }
    return ClauseId::kArgumentFreed;
}

std::string Bytes(std::ptrdiff_t count) { return std::to_string(count) + (count == 1 ? " byte" : " bytes"); }

std::string What(const Hit& hit) {
    const std::string argument =
        "\"" + std::string(hit.loan.argument) + "\" (" + Bytes(static_cast<std::ptrdiff_t>(hit.size)) + ")";
    const std::string touched = hit.isWrite ? "written" : "read";
    switch (hit.kind) {
        case HitKind::kBehind:
            return touched + " " + Bytes(hit.offset - static_cast<std::ptrdiff_t>(hit.size) + 1) +
                   " behind the end of " + argument;
        case HitKind::kInFront:
            return touched + " " + Bytes(-hit.offset) + " in front of " + argument;
        case HitKind::kWritten:
            return "written to the caller's " + argument + " at byte " + std::to_string(hit.offset);
        case HitKind::kAfterReturn:
            return touched + " " + argument + " after the entry had returned";
        case HitKind::kFreed:
            break;
    }
    return "freed the caller's " + argument;
}

}  // namespace

Finding FindingOf(const Hit& hit) {
    const std::string place = hit.code == nullptr ? "" : " (" + DescribeCode(hit.code) + ")";
    return {ClauseOfHit(hit), hit.loan.entry, hit.loan.call, What(hit) + place};
}

void NoteHits() {
    for (const Hit& hit : GuardedMemory::TakeHits()) {
        Book().Broken(FindingOf(hit));
    }
}

}  // namespace simhost::contract
