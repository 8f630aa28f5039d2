// Stays alive until the process with the identifier in its argument ends, and for a minute at the most.
#include <windows.h>

#include <cstdlib>

int main(int argc, char** argv) {
    constexpr DWORD kLongestLifeInMilliseconds = 60'000;
    if (argc < 2) {
        return 2;
    }
    const HANDLE owner = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(std::strtoul(argv[1], nullptr, 10)));
    if (owner == nullptr) {
        return 1;
    }
    WaitForSingleObject(owner, kLongestLifeInMilliseconds);
    CloseHandle(owner);
    return 0;
}
