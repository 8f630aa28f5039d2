#include "simhost/watch/WineDebugging.h"

#include <algorithm>
#include <iterator>

namespace simhost {

namespace {

// cmpb $0, 2(%rax): whether the flag "being debugged" of the process's block is set.
constexpr unsigned char kQuestion[] = {0x80, 0x78, 0x02, 0x00};
constexpr unsigned char kFieldThatIsNeverSet = 0x00;
constexpr std::ptrdiff_t kPlaceOfField = 2;
constexpr std::ptrdiff_t kLengthOfFunction = 0x75;

}  // namespace

void KeepThrownExceptionsInside(HANDLE process) {
    const HMODULE library = GetModuleHandleW(L"ntdll.dll");
    if (GetProcAddress(library, "wine_get_version") == nullptr) {
        return;
    }
    // The library lies at the same address in all processes, and holds the same.
    auto* const function =
        reinterpret_cast<unsigned char*>(reinterpret_cast<void*>(GetProcAddress(library, "RtlRaiseException")));
    unsigned char* const end = function + kLengthOfFunction;
    unsigned char* const question = std::search(function, end, std::begin(kQuestion), std::end(kQuestion));
    if (question != end) {
        WriteProcessMemory(process, question + kPlaceOfField, &kFieldThatIsNeverSet, 1, nullptr);
        FlushInstructionCache(process, question, std::size(kQuestion));
    }
}

}  // namespace simhost
