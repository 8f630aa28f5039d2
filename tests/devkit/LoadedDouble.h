// A double as a library in the test's process, recording into a file of the test's own and answering from another.
#pragma once

#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/files/TemporaryFolder.h"

class LoadedDouble {
  public:
    // The library of that file name; the environment variables with that beginning name its files. `script` is JSON,
    // and read at each call.
    LoadedDouble(const std::wstring& fileName, const std::wstring& variables, const std::string& script) {
        WriteWholeFile(mFolder.Path() / "answers.json", script);
        _wputenv_s((variables + L"_SCRIPT").c_str(), (mFolder.Path() / "answers.json").c_str());
        _wputenv_s((variables + L"_RECORD").c_str(), (mFolder.Path() / "calls.jsonl").c_str());
        mModule = LoadLibraryW((TestProgramFolder().parent_path() / "bin" / fileName).c_str());
    }
    LoadedDouble(const LoadedDouble&) = delete;
    LoadedDouble& operator=(const LoadedDouble&) = delete;
    ~LoadedDouble() { FreeLibrary(mModule); }

    HMODULE Module() const { return mModule; }
    template <class Function>
    Function Get(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(mModule, name)));
    }
    std::string Record() const { return ReadWholeFile(mFolder.Path() / "calls.jsonl"); }

  private:
    TemporaryFolder mFolder;
    HMODULE mModule = nullptr;
};
