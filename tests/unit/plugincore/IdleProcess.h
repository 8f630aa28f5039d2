// A real process with an executable of the test's choice, which does nothing; ended with the object.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>
// After windows.h, which it needs.
#include <psapi.h>

#include <filesystem>
#include <string>

#include "support/files/TemporaryFolder.h"

class IdleProcess {
  public:
    // Copies the idle program to `path`, starts it and waits until Windows names its executable.
    explicit IdleProcess(const std::filesystem::path& path) {
        std::filesystem::create_directories(path.parent_path());
        std::filesystem::copy_file(TestProgramFolder() / "idle_process.exe", path);
        const std::wstring command = L"\"" + path.wstring() + L"\" " + std::to_wstring(GetCurrentProcessId());
        EXPECT_TRUE(Start(command)) << "error " << GetLastError();
        WaitUntilItIsListed();
    }
    IdleProcess(const IdleProcess&) = delete;
    IdleProcess& operator=(const IdleProcess&) = delete;
    ~IdleProcess() {
        TerminateProcess(mProcess.hProcess, 0);
        WaitForSingleObject(mProcess.hProcess, INFINITE);
        CloseHandle(mProcess.hThread);
        CloseHandle(mProcess.hProcess);
    }

    DWORD Identifier() const { return mProcess.dwProcessId; }

  private:
    // A loaded Wine now and then starts no process, with an internal error, and does the next time.
    bool Start(std::wstring command) {
        STARTUPINFOW startup = {};
        startup.cb = sizeof(startup);
        for (int attempt = 0; attempt < 3; ++attempt) {
            if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                               &mProcess) != 0) {
                return true;
            }
            if (GetLastError() != ERROR_INTERNAL_ERROR) {
                return false;
            }
            Sleep(100);
        }
        return false;
    }

    // A process that was only just made has no modules yet.
    void WaitUntilItIsListed() const {
        HMODULE module = nullptr;
        DWORD needed = 0;
        for (int i = 0; i < 500; ++i) {
            if (K32EnumProcessModules(mProcess.hProcess, &module, sizeof(module), &needed) != 0 && module != nullptr) {
                return;
            }
            Sleep(10);
        }
        ADD_FAILURE() << "the process never got a module";
    }

    PROCESS_INFORMATION mProcess = {};
};
