// Variables of threads, and an exception, in a library that has the plug-in's own way to them.
#include <stdexcept>

namespace {

thread_local int sWithValue = 42;
thread_local int sWithout;

}  // namespace

extern "C" __declspec(dllexport) int* WithValue() { return &sWithValue; }
extern "C" __declspec(dllexport) int* Without() { return &sWithout; }

extern "C" __declspec(dllexport) int Throw() {
    try {
        throw std::runtime_error("caught at once");
    } catch (const std::exception&) {
        return 1;
    }
}
