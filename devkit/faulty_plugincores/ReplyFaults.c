/* What is wrong with a reply: where it is written, its text, its size, its flag. */
#include "Faults.h"

#include <windows.h>

#include <string.h>

static void WriteBehindBuffer(Call* call) {
    if (call->buffer != NULL) {
        call->buffer[*call->size] = 'x';
    }
}

static void WriteInFrontOfBuffer(Call* call) {
    if (call->buffer != NULL) {
        call->buffer[-1] = '\\';
    }
}

static void WriteFlagAsBool(Call* call) { *(BOOL*)(void*)call->flag = TRUE; }

/* As strncpy does it. */
static void FillWithoutZero(Call* call) {
    if (call->buffer != NULL) {
        memset(call->buffer, 'x', (size_t)*call->size);
    }
}

static void AnswerInLatin1(Call* call) { Answer(call, "Gr\xF6\xDF" "e"); }

static void WriteBehindText(Call* call) {
    if (call->buffer != NULL && strnlen(call->buffer, (size_t)*call->size) + 1 < *call->size) {
        call->buffer[strlen(call->buffer) + 1] = 'x';
    }
}

/* Smaller than the text, neither of its lengths, and larger than the buffer. */
static void SpoilSize(Call* call) {
    static int sCalls;
    const char* const text = "Missing-Font";
    if (call->buffer != NULL && *call->size > strlen(text)) {
        const uint64_t sizes[] = {3, strlen(text) + 5, *call->size + 4096};
        strcpy(call->buffer, text);
        *call->size = sizes[sCalls++ % 3];
    }
}

static void WriteToNullBuffer(Call* call) {
    if (call->buffer == NULL) {
        call->buffer[0] = '\0';
    }
}

static void RefuseNullBuffer(Call* call) { call->answer = call->buffer == NULL ? -1 : call->answer; }

static void AnswerTwo(Call* call) { *call->flag = 2; }

/* Who fails should write nothing. */
static void FailWithCutJson(Call* call) {
    Answer(call, "[{\"id\":\"fonts\",\"ti");
    call->answer = 6;
}

static void AnswerWithoutChild(Call* call) {
    Answer(call, "[{\"id\":\"fonts\",\"title\":\"Fonts\",\"enabled\":true,\"checked\":false}]");
}

static void AnswerWithNumber(Call* call) {
    Answer(call, "[{\"id\":\"fonts\",\"title\":1,\"enabled\":true,\"checked\":false,\"child\":[]}]");
}

static void AnswerIni(Call* call) { Answer(call, "DialogSuppression=1"); }

static void AnswerTrue(Call* call) { Answer(call, "{\"DialogSuppression\":true}"); }

const Fault kReplyFaults[] = {
    {"WritesBehindBuffer", "GetMenus", &WriteBehindBuffer},
    {"WritesInFrontOfBuffer", "GetIDForDocument", &WriteInFrontOfBuffer},
    {"WritesFlagAsBool", "PluginIsEnabled", &WriteFlagAsBool},
    {"Unterminated", "GetIDForDocument", &FillWithoutZero},
    {"AnswersInLatin1", "GetIDForDocument", &AnswerInLatin1},
    {"ChangesSize", "HandleOpenExistingDocument", &SpoilSize},
    {"WritesToNullBuffer", "HandleOpenExistingDocument", &WriteToNullBuffer},
    {"RefusesNullBuffer", "HandleOpenExistingDocument", &RefuseNullBuffer},
    {"AnswersTwo", "PluginIsEnabled", &AnswerTwo},
    {"WritesBehindText", "GetIDForDocument", &WriteBehindText},
    {"AnswersCutJson", "GetMenus", &FailWithCutJson},
    {"AnswersWithoutChild", "GetMenus", &AnswerWithoutChild},
    {"AnswersWithNumber", "GetMenus", &AnswerWithNumber},
    {"AnswersIni", "GetSettings", &AnswerIni},
    {"AnswersTrue", "GetSettings", &AnswerTrue},
    {NULL, NULL, NULL},
};
