// What a running host looks like to an installer: a program of its name and version, which may have the plug-in loaded,
// or a file open that nobody else may write, remove or rename meanwhile.
//
//   Illustrator.exe [LIBRARY | --open FILE]
//
// Says "ready" and waits to be killed; ends after two minutes at the latest, so that no test leaves it behind.
#include <windows.h>

#include <cstdio>
#include <cwchar>

namespace {

constexpr DWORD kLongestLifeInMilliseconds = 120'000;

// Until the program ends.
bool Take(int argc, wchar_t** argv) {
    if (argc == 3 && std::wcscmp(argv[1], L"--open") == 0) {
        return CreateFileW(argv[2], GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr) !=
               INVALID_HANDLE_VALUE;
    }
    return argc == 1 || LoadLibraryExW(argv[1], nullptr, DONT_RESOLVE_DLL_REFERENCES) != nullptr;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (!Take(argc, argv)) {
        std::fputs("the file cannot be opened, or the library cannot be loaded\n", stderr);
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);
    Sleep(kLongestLifeInMilliseconds);
    return 0;
}
