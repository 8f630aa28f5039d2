#include "simhost/watch/ExceptionWords.h"

#include <cstdio>

namespace simhost {

namespace {

constexpr std::uint32_t kStackBufferOverrun = 0xC0000409;  // also what __fastfail() and a newer abort() raise
constexpr std::uint32_t kHeapCorruption = 0xC0000374;

struct ExceptionName {
    std::uint32_t code;
    const char* name;
};

constexpr ExceptionName kNames[] = {
    {EXCEPTION_ACCESS_VIOLATION, "access violation"},
    {EXCEPTION_STACK_OVERFLOW, "stack overflow"},
    {EXCEPTION_ILLEGAL_INSTRUCTION, "illegal instruction"},
    {EXCEPTION_PRIV_INSTRUCTION, "privileged instruction"},
    {EXCEPTION_INT_DIVIDE_BY_ZERO, "division by zero"},
    {EXCEPTION_IN_PAGE_ERROR, "error while a page was read"},
    {EXCEPTION_DATATYPE_MISALIGNMENT, "misaligned data"},
    {EXCEPTION_BREAKPOINT, "breakpoint"},
    {EXCEPTION_GUARD_PAGE, "guard page"},
    {kStackBufferOverrun, "fail-fast"},
    {kHeapCorruption, "heap corruption"},
    {0xE06D7363, "C++ exception of another compiler"},
    {0x20474343, "C++ exception"},
};

std::string Format(const char* format, unsigned long long number) {
    char text[40];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

}  // namespace

std::string NameOfException(std::uint32_t code) {
    for (const ExceptionName& row : kNames) {
        if (row.code == code) {
            return row.name + Format(" (0x%08llX)", code);
        }
    }
    return std::string(IsFault(code) ? "exception" : kRaisedException) + Format(" 0x%08llX", code);
}

std::string InWords(const EXCEPTION_RECORD& record) {
    std::string words = NameOfException(record.ExceptionCode);
    if (record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION && record.NumberParameters >= 2) {
        const ULONG_PTR kind = record.ExceptionInformation[0];
        words += kind == 0 ? " reading " : kind == 1 ? " writing " : " executing ";
        words += Format("0x%llx", record.ExceptionInformation[1]);
    } else if (record.ExceptionCode == kStackBufferOverrun && record.NumberParameters >= 1) {
        words += ", reason " + std::to_string(record.ExceptionInformation[0]);
    }
    return words;
}

bool IsFault(std::uint32_t code) { return (code & 0xF0000000) == 0xC0000000; }

bool IsFailFast(std::uint32_t code) { return code == kStackBufferOverrun || code == kHeapCorruption; }

std::string ExitCodeInWords(std::uint32_t code) { return std::to_string(code) + Format(" (0x%08llX)", code); }

}  // namespace simhost
