// Variables of threads, and an exception, in a library that has the plug-in's own way to them. No thread that goes on
// may read the two that are too great.
#include <stdexcept>

namespace {

thread_local int sWithValue = 42;
thread_local int sWithout;
thread_local char sTooLarge[33 * 16];  // by one of 32 slots
alignas(32) thread_local int sOverAligned;

}  // namespace

extern "C" __declspec(dllexport) int* WithValue() { return &sWithValue; }
extern "C" __declspec(dllexport) int* Without() { return &sWithout; }

extern "C" __declspec(dllexport) char* TooLarge() { return sTooLarge; }
extern "C" __declspec(dllexport) int* OverAligned() { return &sOverAligned; }

extern "C" __declspec(dllexport) int Throw() {
    try {
        throw std::runtime_error("caught at once");
    } catch (const std::exception&) {
        return 1;
    }
}
