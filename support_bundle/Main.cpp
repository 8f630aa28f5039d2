// QuorvelSupportBundle: puts what support wants to see into one zip archive on the desktop.
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <algorithm>
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Bundle.h"
#include "Collection.h"
#include "Files.h"
#include "Identity.h"
#include "KnownFolder.h"
#include "support/TextConversion.h"
#include "ZipArchive.h"

namespace {

namespace fs = std::filesystem;

constexpr const wchar_t* kTitle = L"Quorvel Type Agent";
constexpr const char* kQuiet = "--quiet";
// Exit codes besides 0.
constexpr int kNotWritten = 1;
constexpr int kWrongArguments = 2;

struct Options {
    std::string output;
    std::vector<std::string> logFolders;
    std::vector<DWORD> processes;
    bool isQuiet = false;
};

// In UTF-8, and in the order in which CLI11 takes them: the last one first, the program's name left out.
std::vector<std::string> ArgumentsBackwards() {
    int count = 0;
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> backwards;
    for (int i = count - 1; i > 0; --i) {
        backwards.push_back(Utf8FromWindowsText(arguments[i]));
    }
    LocalFree(arguments);
    return backwards;
}

// Of mistakes CLI11 tells before it has come to the flags.
bool IsQuiet(const std::vector<std::string>& arguments) {
    return std::find(arguments.begin(), arguments.end(), kQuiet) != arguments.end();
}

// Someone who started it by double click has no console.
void Tell(const Options& options, const std::wstring& text, bool isError) {
    std::fprintf(isError ? stderr : stdout, "%s\n", Utf8FromWindowsText(text).c_str());
    if (!options.isQuiet) {
        MessageBoxW(nullptr, text.c_str(), kTitle, MB_OK | (isError ? MB_ICONERROR : MB_ICONINFORMATION));
    }
}

fs::path DesktopFolder() {
    fs::path folder = KnownFolder(FOLDERID_Desktop, KF_FLAG_CREATE);
    if (folder.empty()) {
        throw std::runtime_error("there is no desktop folder; name a folder or a file on the command line");
    }
    return folder;
}

// A file, when the name ends in ".zip"; a name with the time in the folder otherwise.
fs::path OutputFile(const Options& options, const SYSTEMTIME& now) {
    fs::path output = options.output.empty() ? DesktopFolder() : fs::path(Utf16FromUtf8(options.output));
    if (_wcsicmp(output.extension().c_str(), L".zip") == 0 && !fs::is_directory(output)) {
        return output;
    }
    wchar_t name[64];
    std::swprintf(name, std::size(name), L"Quorvel-Support-%04u%02u%02u-%02u%02u%02u.zip", now.wYear, now.wMonth,
                  now.wDay, now.wHour, now.wMinute, now.wSecond);
    return output / name;
}

void WriteBundle(const Options& options) {
    SYSTEMTIME now;
    GetLocalTime(&now);
    Sources sources = UsualSources();
    if (!options.logFolders.empty()) {
        sources.logFolders.clear();
        for (const std::string& folder : options.logFolders) {
            sources.logFolders.emplace_back(Utf16FromUtf8(folder));
        }
    }
    sources.processes = options.processes;
    Bundle bundle(CurrentIdentity());
    Collect(sources, now, bundle);
    ZipArchive archive(now);
    for (const auto& [name, content] : bundle.Files()) {
        archive.Add(name, content);
    }
    const fs::path file = OutputFile(options, now);
    WriteFileWhole(file, archive.Finish());
    Tell(options,
         L"The support bundle is ready:\n" + file.wstring() +
             L"\n\nYour user name, and the names of other users' folders, have been taken out of it. Please send it to "
             L"whoever asked you for it.",
         false);
}

int Run(Options& options) {
    CLI::App app("Puts logs, versions and the modules of the running host into one zip archive, without names of users",
                 "QuorvelSupportBundle");
    // A path may begin with a slash.
    app.allow_windows_style_options(false);
    app.add_option("OUTPUT", options.output, "A folder, or a file ending in .zip; the desktop when not given");
    app.add_flag(kQuiet, options.isQuiet, "No message box");
    // One value each: what follows is OUTPUT.
    app.add_option("--logs", options.logFolders, "A folder with logs, instead of the usual ones; may be given again")
        ->allow_extra_args(false);
    app.add_option("--process", options.processes,
                   "Number of a process whose modules are wanted too; may be given again")
        ->allow_extra_args(false);
    std::vector<std::string> arguments = ArgumentsBackwards();
    options.isQuiet = IsQuiet(arguments);
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) {
        Tell(options, Utf16FromUtf8(app.help()), false);
        return 0;
    } catch (const CLI::ParseError& error) {
        Tell(options, DecodedText(std::string(error.what()) + "\n\n" + app.help()), true);
        return kWrongArguments;
    }
    WriteBundle(options);
    return 0;
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    Options options;
    try {
        return Run(options);
    } catch (const std::exception& error) {
        Tell(options, L"The support bundle could not be made.\n" + DecodedText(error.what()), true);
    } catch (...) {
        Tell(options, L"The support bundle could not be made.", true);
    }
    return kNotWritten;
}
