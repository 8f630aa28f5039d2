#include "simhost/watch/Symbols.h"

#include <windows.h>

#include <dbghelp.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <sstream>

#include "simhost/launch/Job.h"

namespace simhost {

namespace {

constexpr DWORD kPatienceMilliseconds = 10'000;
// What does not fit is lost.
constexpr DWORD kMostOutput = 64 * 1024;

std::filesystem::path ThisProgram() {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
}

// Reading nothing from an empty pipe would wait.
std::string WhatIsIn(HANDLE pipe) {
    DWORD size = 0;
    PeekNamedPipe(pipe, nullptr, 0, nullptr, &size, nullptr);
    std::string bytes(size, '\0');
    if (size != 0) {
        ReadFile(pipe, bytes.data(), size, &size, nullptr);
    }
    return bytes;
}

// Runs this program and answers what it printed; nothing when that cannot be done in time.
std::string OutputOf(const std::vector<std::wstring>& arguments) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE reading = nullptr;
    HANDLE writing = nullptr;
    if (CreatePipe(&reading, &writing, &inherited, kMostOutput) == 0) {
        return {};
    }
    std::string output;
    try {
        const Job job;
        const PROCESS_INFORMATION process = job.Start({ThisProgram(), arguments, {}, 0, writing});
        if (WaitForSingleObject(process.hProcess, kPatienceMilliseconds) != WAIT_OBJECT_0) {
            TerminateProcess(process.hProcess, 1);
        }
        output = WhatIsIn(reading);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    } catch (const std::exception&) {
        // Names are a help, not the verdict.
        output.clear();
    }
    CloseHandle(writing);
    CloseHandle(reading);
    return output;
}

Symbol ParseLine(const std::string& line) {
    std::istringstream fields(line);
    Symbol symbol;
    std::getline(fields, symbol.function, '\t');
    std::getline(fields, symbol.file, '\t');
    fields >> symbol.line;
    return symbol;
}

std::string FileName(const std::string& path) {
    const auto slash = path.find_last_of("\\/");
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

Symbol SymbolAt(std::uint64_t address) {
    constexpr std::size_t kLongestName = 512;
    alignas(SYMBOL_INFO) std::array<std::byte, sizeof(SYMBOL_INFO) + kLongestName> room{};
    auto* const info = reinterpret_cast<SYMBOL_INFO*>(room.data());
    info->SizeOfStruct = sizeof *info;
    info->MaxNameLen = kLongestName;
    Symbol symbol;
    DWORD64 offset = 0;
    if (SymFromAddr(GetCurrentProcess(), address, &offset, info) != 0) {
        symbol.function = info->Name;
    }
    IMAGEHLP_LINE64 line{};
    line.SizeOfStruct = sizeof line;
    DWORD column = 0;
    if (SymGetLineFromAddr64(GetCurrentProcess(), address, &column, &line) != 0) {
        symbol.file = FileName(line.FileName);
        symbol.line = line.LineNumber;
    }
    return symbol;
}

}  // namespace

std::string InWords(const Symbol& symbol, const std::string& module) {
    return symbol.function + " of " + module +
           (symbol.file.empty() ? "" : " (" + symbol.file + ":" + std::to_string(symbol.line) + ")");
}

std::vector<Symbol> LookUpSymbols(const std::filesystem::path& file, std::uint64_t base,
                                  const std::vector<std::uint64_t>& addresses) {
    std::vector<std::wstring> arguments = {L"symbols", file.wstring(), std::to_wstring(base)};
    for (const std::uint64_t address : addresses) {
        arguments.push_back(std::to_wstring(address));
    }
    std::istringstream lines(OutputOf(arguments));
    std::vector<Symbol> symbols;
    for (std::string line; symbols.size() < addresses.size() && std::getline(lines, line);) {
        symbols.push_back(ParseLine(line));
    }
    symbols.resize(addresses.size());
    return symbols;
}

int PrintSymbols(const std::filesystem::path& file, std::uint64_t base, const std::vector<std::uint64_t>& addresses) {
    // A crash is expected, and nobody's business.
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS*) -> LONG {
        TerminateProcess(GetCurrentProcess(), 2);
        return EXCEPTION_EXECUTE_HANDLER;
    });
    // Before the file is loaded: lines are only read where they are asked for from the start.
    SymSetOptions(SYMOPT_LOAD_LINES | SYMOPT_UNDNAME | SYMOPT_FAIL_CRITICAL_ERRORS);
    SymInitialize(GetCurrentProcess(), nullptr, FALSE);
    SymLoadModuleExW(GetCurrentProcess(), nullptr, file.c_str(), nullptr, base, 0, nullptr, 0);
    for (const std::uint64_t address : addresses) {
        const Symbol symbol = SymbolAt(address);
        std::printf("%s\t%s\t%lu\n", symbol.function.c_str(), symbol.file.c_str(), symbol.line);
        std::fflush(stdout);
    }
    return 0;
}

}  // namespace simhost
