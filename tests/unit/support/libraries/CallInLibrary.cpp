// usage: call_in_library LIBRARY FUNCTION NUMBER. Ends with what the function answers, if it comes back.
#include <windows.h>

#include <cstddef>
#include <cstdlib>

int main(int argc, char** argv) {
    constexpr int kNotCalled = 90;
    if (argc != 4) {
        return kNotCalled;
    }
    // Without a debugger and its report; the process ends with the exception's code.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS*) -> LONG { return EXCEPTION_EXECUTE_HANDLER; });
    const HMODULE library = LoadLibraryA(argv[1]);
    const FARPROC function = library != nullptr ? GetProcAddress(library, argv[2]) : nullptr;
    if (function == nullptr) {
        return kNotCalled;
    }
    const auto run = reinterpret_cast<int (*)(std::size_t)>(reinterpret_cast<void*>(function));
    return run(static_cast<std::size_t>(std::atoi(argv[3])));
}
