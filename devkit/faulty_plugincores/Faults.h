/* What a faulty PluginCore does wrong, or in an unusual way that is allowed: one such thing for each library, named by
 * a generated source. */
#ifndef FAULTY_PLUGINCORES_FAULTS_H
#define FAULTY_PLUGINCORES_FAULTS_H

#include "plugincore/PluginCore.h"

/* The fault of this library, as kFaults names it. */
extern const char* const kFault;

/* What an entry was called with, as far as it has it, and what it is about to answer. */
typedef struct Call {
    const char* path;
    const char* report;
    char* buffer;
    uint64_t* size;
    uint8_t* flag;
    uint32_t* port;
    PlugPlugState* state;
    PluginCoreMenuCallback callback;
    void* context;
    int32_t answer;
} Call;

/* Commits the fault when it is one of this entry. Called when the entry has done its work, with its answer. */
void Commit(const char* entry, Call* call);

/* Whether the library has that fault: for the few that are committed elsewhere. */
int HasFault(const char* fault);

#endif
