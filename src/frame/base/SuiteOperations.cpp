#include "frame/base/SuiteOperations.h"

#include "support/Log.h"

const SPBasicSuite* sBasicSuite = nullptr;

bool TokensAreEqual(const char* token1, const char* token2) {
    return token1 != nullptr && token2 != nullptr && sBasicSuite->IsEqual(token1, token2) != 0;
}

void ThrowIfError(std::int32_t code) {
    if (code != 0) {
        LogMessage(kLogNote, "ERROR:  throwing %d.", code);
        throw code;
    }
}

void AcquireSuiteOrThrow(const char* name, std::int32_t version, const void** suitePointer) {
    ThrowIfError(sBasicSuite->AcquireSuite(name, version, suitePointer));
}

void ReleaseSuiteIfHeld(const char* name, std::int32_t version, const void** suitePointer) {
    if (*suitePointer != nullptr) {
        // A refused release is ignored: there is nothing left to undo here.
        sBasicSuite->ReleaseSuite(name, version);
        *suitePointer = nullptr;
    }
}
