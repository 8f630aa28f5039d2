#include "Faults.h"

#include <string.h>

static const Fault* const kTables[] = {kReplyFaults, kArgumentFaults, kMenuFaults,     kLifeFaults,
                                       kLeftFaults,  kEndFaults,      kAllowedOddities};

void Answer(Call* call, const char* text) {
    if (call->buffer != NULL && *call->size > strlen(text)) {
        memset(call->buffer, 0, strlen(call->buffer));
        memcpy(call->buffer, text, strlen(text) + 1);
    }
}

int HasFault(const char* fault) { return strcmp(kFault, fault) == 0; }

void Commit(const char* entry, Call* call) {
    size_t i;
    for (i = 0; i < sizeof kTables / sizeof *kTables; ++i) {
        const Fault* fault;
        for (fault = kTables[i]; fault->name != NULL; ++fault) {
            if (HasFault(fault->name) && strcmp(fault->entry, entry) == 0) {
                fault->commit(call);
            }
        }
    }
}
