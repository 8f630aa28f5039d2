// Stays alive so that it can be found in the list of processes, and does nothing else.
//
//   Lumet.exe [PROCESS-ID]
//
// Ends with the process of that identifier and after two minutes at the latest, so that no run leaves it behind.
#include <windows.h>

#include <cstdlib>

namespace {

constexpr DWORD kLongestLifeInMilliseconds = 120'000;

}  // namespace

int main(int argc, char** argv) {
    const HANDLE owner =
        argc > 1 ? OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(std::strtoul(argv[1], nullptr, 10))) : nullptr;
    if (owner == nullptr) {
        Sleep(kLongestLifeInMilliseconds);
        return 0;
    }
    WaitForSingleObject(owner, kLongestLifeInMilliseconds);
    CloseHandle(owner);
    return 0;
}
