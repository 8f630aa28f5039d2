// A function of a small library, called in a process of its own.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

// With a backslash.
inline std::string FolderOfTestProgram() {
    char self[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, self, MAX_PATH);
    std::string folder(self);
    folder.resize(folder.rfind('\\') + 1);
    return folder;
}

// The exit code of a process that calls the function and then ends. The library is one of those beside the tests.
inline DWORD ExitCodeOf(const std::string& library, const std::string& function, int number) {
    constexpr DWORD kTimeLimit = 30000;  // milliseconds
    const std::string folder = FolderOfTestProgram();
    std::string command = "\"" + folder + "call_in_library.exe\" \"" + folder + "libraries\\" + library + ".dll\" " +
                          function + " " + std::to_string(number);
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process) ==
        0) {
        ADD_FAILURE() << "not started: " << command << ", error " << GetLastError();
        return 0;
    }
    EXPECT_EQ(WaitForSingleObject(process.hProcess, kTimeLimit), WAIT_OBJECT_0);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return code;
}
