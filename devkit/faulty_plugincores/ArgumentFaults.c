/* What is done to the caller's texts and buffers, and to the messaging state. */
#include "Faults.h"

#include <windows.h>

#include <stdlib.h>
#include <string.h>

/* Kept from call to call, as a library should not. */
static const char* sKeptText;
static char* sKeptBuffer;
static PlugPlugState* sKeptState;

static void ReadBehindText(Call* call) {
    static char sCopy[65536];
    memcpy(sCopy, call->path, strlen(call->path) + 64);
}

/* As a search backwards for a separator does it that is not there. */
static void ReadInFrontOfText(Call* call) {
    static volatile char sFirst;
    sFirst = call->path[-1];
    (void)sFirst;
}

static void WriteInFrontOfText(Call* call) { ((char*)call->path)[-1] = '"'; }

/* As strtok does it. */
static void WriteToText(Call* call) {
    char* const separator = strrchr((char*)call->path, '\\');
    if (separator != NULL) {
        *separator = '\0';
    }
}

static void KeepText(Call* call) {
    static volatile char sFirst;
    if (sKeptText != NULL) {
        sFirst = sKeptText[0];
    }
    sKeptText = call->path;
    (void)sFirst;
}

/* Kept by a thread: each buffer is used by one of both. */
static int IsOfUsualSize(const Call* call) { return *call->size == kPluginCoreNewDocumentSize; }

static void KeepBuffer(Call* call) {
    if (sKeptBuffer != NULL) {
        sKeptBuffer[0] = '\0';
    }
    sKeptBuffer = IsOfUsualSize(call) ? NULL : call->buffer;
}

static DWORD WINAPI WriteLater(void* buffer) {
    Sleep(50);
    *(volatile char*)buffer = '\0';
    return 0;
}

static void UseBufferOnOtherThread(Call* call) {
    if (IsOfUsualSize(call)) {
        CloseHandle(CreateThread(NULL, 0, &WriteLater, call->buffer, 0, NULL));
    }
}

static void FreeText(Call* call) { free((char*)call->report); }

static void ReallocateText(Call* call) {
    static char* volatile sOwn;
    sOwn = realloc((char*)call->report, 4096);
    (void)sOwn;
}

static void ChangeState(Call* call) { call->state->loadExtension = NULL; }

static void KeepState(Call* call) { sKeptState = call->state; }

static void ChangeKeptState(Call* call) {
    (void)call;
    if (sKeptState != NULL) {
        sKeptState->dispatch = NULL;
    }
}

const Fault kArgumentFaults[] = {
    {"ReadsBehindText", "HandleSaveDocument", &ReadBehindText},
    {"ReadsInFrontOfText", "HandleSaveDocument", &ReadInFrontOfText},
    {"WritesInFrontOfText", "HandleSaveDocument", &WriteInFrontOfText},
    {"WritesToText", "HandleCloseDocument", &WriteToText},
    {"KeepsText", "HandleOpenExistingDocument", &KeepText},
    {"KeepsBuffer", "HandleCreateNewDocument", &KeepBuffer},
    {"KeepsBuffer", "HandleCreateNewDocument", &UseBufferOnOtherThread},
    {"FreesText", "HandleSaveDocument", &FreeText},
    {"ReallocatesText", "HandleSaveDocument", &ReallocateText},
    {"ChangesState", "RegisterPlugPlug", &ChangeState},
    {"ChangesStateLater", "RegisterPlugPlug", &KeepState},
    {"ChangesStateLater", "IdleEvent", &ChangeKeptState},
    {"ReadsBehindTextSlowly", "HandleSaveDocument", &ReadBehindText},
    {NULL, NULL, NULL},
};
