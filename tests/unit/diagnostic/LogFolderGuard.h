// A local application-data folder of the test's own, in which the diagnostic log makes its folder. What was begun is
// ended with the test.
#pragma once

#include <windows.h>

#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "diagnostic/DiagnosticLog.h"
#include "doubles/common/ImportPatch.h"
#include "support/files/TemporaryFolder.h"

class LogFolderGuard {
  public:
    LogFolderGuard() {
        TheDiagnosticLog().End(false);
        SetEnvironmentVariableW(L"LOCALAPPDATA", mFolder.Path().c_str());
    }
    LogFolderGuard(const LogFolderGuard&) = delete;
    LogFolderGuard& operator=(const LogFolderGuard&) = delete;
    ~LogFolderGuard() {
        TheDiagnosticLog().End(false);
        SetEnvironmentVariableW(L"LOCALAPPDATA", mBefore.c_str());
    }

    const std::filesystem::path& LocalAppData() const { return mFolder.Path(); }
    std::filesystem::path Logs() const { return LocalAppData() / "Quorvel" / "TypeAgent" / "Logs"; }

    // Sorted by name.
    std::vector<std::filesystem::path> Files() const {
        std::vector<std::filesystem::path> files;
        std::error_code none;
        for (const auto& each : std::filesystem::directory_iterator(Logs(), none)) {
            files.push_back(each.path());
        }
        std::sort(files.begin(), files.end());
        return files;
    }

    // Of the only file.
    std::string Text() const {
        const auto files = Files();
        return files.size() == 1 ? ReadWholeFile(files.front())
                                 : "there are " + std::to_string(files.size()) + " files";
    }

    // Behind the header, without the times.
    std::string Lines() const {
        const std::string text = Text();
        const std::size_t begin = text.find("\r\n\r\n");
        const std::string lines = begin == std::string::npos ? text : text.substr(begin + 4);
        return std::regex_replace(lines, std::regex(R"(\d\d:\d\d:\d\d\.\d\d\d)"), "T");
    }

  private:
    static std::wstring Variable() {
        wchar_t value[MAX_PATH] = {};
        GetEnvironmentVariableW(L"LOCALAPPDATA", value, MAX_PATH);
        return value;
    }

    TemporaryFolder mFolder;
    std::wstring mBefore = Variable();
};
