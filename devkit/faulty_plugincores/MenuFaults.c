/* Items that the menu callback gets. */
#include "Faults.h"

#include <windows.h>

/* Kept from call to call, as a library should not. */
static PluginCoreMenuCallback sKeptCallback;
static void* sKeptContext;

static void AddWithNullContext(Call* call) { call->callback("lone", "Lone", "Lone", 0, 1, 0, NULL, NULL); }

static void AddWithOwnContext(Call* call) { call->callback("lone", "Lone", "Lone", 0, 1, 0, NULL, &sKeptContext); }

static void AddWithoutLabel(Call* call) { call->callback("bare", NULL, "Bare", 0, 1, 0, NULL, call->context); }

static void AddInLatin1(Call* call) {
    call->callback("size", "Gr\xF6\xDF" "e", "Size", 0, 1, 0, NULL, call->context);
}

static void AddWithOddFlag(Call* call) { call->callback("odd", "Odd", "Odd", 255, 1, 0, NULL, call->context); }

static void AddChildFirst(Call* call) {
    call->callback("activate", "Activate", "Activate", 0, 1, 0, "Fonts", call->context);
    call->callback("fonts", "Fonts", "Fonts", 0, 1, 1, NULL, call->context);
}

/* Which has no sub-menu. */
static void AddBelowPlainItem(Call* call) {
    call->callback("plain", "Plain", "Plain", 0, 1, 0, NULL, call->context);
    call->callback("below", "Below", "Below", 0, 1, 0, "Plain", call->context);
}

static void AddTwice(Call* call) { call->callback("activate", "Again", "Again", 0, 1, 0, NULL, call->context); }

static void AddSubMenuTwice(Call* call) {
    call->callback("more", "Fonts", "More", 0, 1, 1, NULL, call->context);
}

static void AddLabelTwice(Call* call) {
    call->callback("about", "About", "About", 0, 1, 0, NULL, call->context);
    call->callback("about-2", "About", "About...", 0, 1, 0, NULL, call->context);
}

static void AddLabelOfSubMenu(Call* call) {
    call->callback("fonts-2", "Fonts", "Fonts...", 0, 1, 0, NULL, call->context);
}

static DWORD WINAPI AddOne(void* call) {
    Call* const of = call;
    of->callback("late", "Late", "Late", 0, 1, 0, NULL, of->context);
    return 0;
}

static void AddOnOtherThread(Call* call) {
    const HANDLE thread = CreateThread(NULL, 0, &AddOne, call, 0, NULL);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}

static void KeepCallback(Call* call) {
    sKeptCallback = call->callback;
    sKeptContext = call->context;
}

static void UseKeptCallback(Call* call) {
    (void)call;
    if (sKeptCallback != NULL) {
        sKeptCallback("late", "Late", "Late", 0, 1, 0, NULL, sKeptContext);
        sKeptCallback = NULL;
    }
}

const Fault kMenuFaults[] = {
    {"AddsWithNullContext", "CreateMenusFromJSONBuffer", &AddWithNullContext},
    {"AddsWithOwnContext", "CreateMenusFromJSONBuffer", &AddWithOwnContext},
    {"AddsBadTexts", "CreateMenusFromJSONBuffer", &AddWithoutLabel},
    {"AddsBadTexts", "CreateMenusFromJSONBuffer", &AddInLatin1},
    {"AddsWithOddFlag", "CreateMenusFromJSONBuffer", &AddWithOddFlag},
    {"ChildrenFirst", "CreateMenusFromJSONBuffer", &AddChildFirst},
    {"ChildrenFirst", "CreateMenusFromJSONBuffer", &AddBelowPlainItem},
    {"AddsTwice", "CreateMenusFromJSONBuffer", &AddTwice},
    {"AddsSubMenuTwice", "CreateMenusFromJSONBuffer", &AddSubMenuTwice},
    {"AddsLabelTwice", "CreateMenusFromJSONBuffer", &AddLabelTwice},
    {"AddsLabelTwice", "CreateMenusFromJSONBuffer", &AddLabelOfSubMenu},
    {"AddsOnOtherThread", "CreateMenusFromJSONBuffer", &AddOnOtherThread},
    {"AddsLate", "CreateMenusFromJSONBuffer", &KeepCallback},
    {"AddsLate", "IdleEvent", &UseKeptCallback},
    {NULL, NULL, NULL},
};
