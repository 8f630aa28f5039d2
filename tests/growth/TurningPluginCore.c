/* A PluginCore that keeps nothing, not even a record of its calls, and answers to the opening of documents with each of
   what it may answer, in turns. The entries are those of the kit's faulty libraries. */
#include "Faults.h"

#include <string.h>

extern const char* const kFault;
const char* const kFault = "none";

enum { kRestrictedFonts = 0x12000000 };

static void AnswerInTurns(Call* call) {
    static unsigned sTurn;
    static const char kFonts[] = "Garamond-Bold";
    const unsigned turn = sTurn++ % 3;
    if (turn == 1 && call->buffer != NULL && *call->size >= sizeof kFonts) {
        memcpy(call->buffer, kFonts, sizeof kFonts);
    } else if (turn == 2) {
        call->answer = kRestrictedFonts;
    }
}

void Commit(const char* entry, Call* call) {
    if (strcmp(entry, "HandleOpenExistingDocument") == 0) {
        AnswerInTurns(call);
    }
}

int HasFault(const char* fault) {
    (void)fault;
    return 0;
}
