// What a running host looks like to an installer: a program of its name and version, which may have the plug-in loaded.
//
//   Illustrator.exe [LIBRARY]
//
// Says "ready" and waits to be killed; ends after two minutes at the latest, so that no test leaves it behind.
#include <windows.h>

#include <cstdio>

namespace {

constexpr DWORD kLongestLifeInMilliseconds = 120'000;

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc > 1 && LoadLibraryExW(argv[1], nullptr, DONT_RESOLVE_DLL_REFERENCES) == nullptr) {
        std::fputs("the library cannot be loaded\n", stderr);
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);
    Sleep(kLongestLifeInMilliseconds);
    return 0;
}
