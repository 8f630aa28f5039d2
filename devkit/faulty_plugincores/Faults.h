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

/* What a library does in one entry. A library of several rows does all of it. */
typedef struct Fault {
    const char* name; /* of the library, without "Faulty"; null behind the last row */
    const char* entry;
    void (*commit)(Call* call);
} Fault;

/* By subject, each in a source of its own. The build makes a library of each name. */
extern const Fault kReplyFaults[];
extern const Fault kArgumentFaults[];
extern const Fault kMenuFaults[];
extern const Fault kLifeFaults[];
extern const Fault kLeftFaults[];
extern const Fault kEndFaults[];
extern const Fault kAllowedOddities[];

/* Puts the text in the place of the reply, when it fits. */
void Answer(Call* call, const char* text);
/* A C++ exception of Visual C++. */
void Throw(Call* call);

/* Commits the fault when it is one of this entry. Called when the entry has done its work, with its answer. */
void Commit(const char* entry, Call* call);

/* Whether the library has that fault: for the few that are committed elsewhere. */
int HasFault(const char* fault);

#endif
