#include "Collection.h"

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

#include "diagnostic/LogFolder.h"
#include "EnvironmentVariable.h"
#include "Files.h"
#include "FileVersion.h"
#include "Installations.h"
#include "KnownFolder.h"
#include "plugincore/LaunchInfoLine.h"
#include "RunningPrograms.h"
#include "support/RunningWindows.h"
#include "support/TextConversion.h"

namespace {

namespace fs = std::filesystem;

constexpr const wchar_t* kLaunchInfoFolder = L"Quorvel";
constexpr const wchar_t* kLaunchInfoFile = L"com.quorvel.Lumet-LaunchInfo.conf";
constexpr std::string_view kLaunchInfoKey = "lumet.path";
constexpr const wchar_t* kPluginCoreFile = L"PluginCoreX64.dll";
constexpr const wchar_t* kPluginCoreSubfolder = L"Plug-ins";
constexpr const wchar_t* kWordFile = L"DialogSuppression.tmp";
constexpr std::wstring_view kPluginCoreInLog = L"PluginCore: ";
// Of the installer: where it puts its uninstaller, the log of what it has installed, and in the temporary folder that
// of a run that was refused.
constexpr const wchar_t* kInstallFolder = L"Quorvel Type Agent";
constexpr const wchar_t* kInstallLog = L"install.log";
constexpr const wchar_t* kRefusedInstallLog = L"QuorvelTypeAgentAI20-setup.log";

// Text that grows by lines, as Windows ends them.
class Page {
  public:
    void Line(const std::wstring& text = {}) { mText += text + L"\r\n"; }
    const std::wstring& Text() const { return mText; }

  private:
    std::wstring mText;
};

std::wstring Hexadecimal(std::uint64_t number) {
    wchar_t text[32];
    std::swprintf(text, std::size(text), L"0x%016llx", static_cast<unsigned long long>(number));
    return text;
}

std::wstring VersionAndPath(const fs::path& file) { return FileVersion(file) + L"  " + file.wstring(); }

std::wstring WindowsVersion() {
    const std::optional<OSVERSIONINFOW> version = RunningWindows();
    if (!version) {
        return L"unknown";
    }
    return std::to_wstring(version->dwMajorVersion) + L'.' + std::to_wstring(version->dwMinorVersion) + L'.' +
           std::to_wstring(version->dwBuildNumber);
}

std::wstring ModulesPage(const RunningProgram& program) {
    Page page;
    page.Line(L"Modules of " + program.name + L", process " + std::to_wstring(program.process));
    page.Line(L"base address        size        version  path");
    for (const LoadedModule& module : program.modules) {
        wchar_t size[32];
        std::swprintf(size, std::size(size), L"0x%08llx", static_cast<unsigned long long>(module.size));
        page.Line(Hexadecimal(module.base) + L"  " + size + L"  " + VersionAndPath(module.path));
    }
    if (program.modules.empty()) {
        page.Line(L"Windows does not show them to this user.");
    }
    return page.Text();
}

bool IsSamePath(const fs::path& one, const fs::path& other) {
    return CompareStringOrdinal(one.c_str(), -1, other.c_str(), -1, TRUE) == CSTR_EQUAL;
}

void KeepOnce(std::vector<fs::path>& paths) {
    std::vector<fs::path> kept;
    for (fs::path& each : paths) {
        each = each.lexically_normal().make_preferred();
        // "C:\Core\." has become "C:\Core\".
        if (!each.has_filename() && each.has_relative_path()) {
            each = each.parent_path();
        }
        if (std::ranges::none_of(kept, [&](const fs::path& other) { return IsSamePath(each, other); })) {
            kept.push_back(each);
        }
    }
    paths = std::move(kept);
}

// Files that are added, and what may be said about them.
class Collector {
  public:
    Collector(const Sources& sources, Bundle& bundle) : mSources(sources), mBundle(bundle) {}

    void Collect(const SYSTEMTIME& now) {
        mPrograms = FindRunningPrograms(mSources.processes);
        AddPrograms();
        AddLogs();
        AddLaunchInfo();
        AddWordFiles();
        AddInstallLogs();
        AddAbout(now);
    }

  private:
    void AddPrograms() {
        for (const RunningProgram& program : mPrograms) {
            const std::wstring number = std::to_wstring(program.process);
            mBundle.Add("modules/", program.name + L"-" + number + L".txt", ModulesPage(program));
            if (const LoadedModule* const pluginCore = FindModule(program, kPluginCoreFile)) {
                mPluginCoreFolders.push_back(pluginCore->path.parent_path());
            }
            if (IsCoreApplication(program) && !program.modules.empty()) {
                AddFoldersOfCoreApplication(program.modules.front().path);
            }
        }
    }

    void AddLogs() {
        for (const fs::path& folder : mSources.logFolders) {
            for (const fs::path& file : FilesOf(folder)) {
                if (const auto text = Add("logs/", file)) {
                    FindPluginCoreIn(*text);
                }
            }
        }
    }

    void AddLaunchInfo() {
        for (const fs::path& folder : mSources.launchInfoFolders) {
            const fs::path file = folder / kLaunchInfoFile;
            if (!Exists(file)) {
                continue;
            }
            if (const auto text = Add("launch-info/", file)) {
                FindCoreApplicationIn(*text);
            }
        }
    }

    void AddWordFiles() {
        KeepOnce(mPluginCoreFolders);
        for (const fs::path& folder : mPluginCoreFolders) {
            if (Exists(folder / kWordFile)) {
                Add("word-files/", folder / kWordFile);
            }
        }
    }

    void AddInstallLogs() {
        for (const fs::path& file : mSources.installLogs) {
            if (Exists(file)) {
                Add("install/", file);
            }
        }
    }

    void AddAbout(const SYSTEMTIME& now) {
        Page page;
        wchar_t date[64];
        std::swprintf(date, std::size(date), L"%04u-%02u-%02u %02u:%02u:%02u", now.wYear, now.wMonth, now.wDay,
                      now.wHour, now.wMinute, now.wSecond);
        page.Line(L"Quorvel Type Agent, support bundle");
        page.Line(L"Date:     " + std::wstring(date));
        page.Line(L"Made by:  version " QUORVEL_VERSION);
        page.Line(L"Windows:  " + WindowsVersion());
        page.Line();
        page.Line(
            L"In all texts and file names the profile's folder stands as %USERPROFILE%, the user's name and the "
            L"folders of other users as <user>.");
        page.Line();
        AddRunningPrograms(page);
        page.Line();
        AddInstallations(page);
        page.Line();
        page.Line(L"Files (from)");
        for (const std::wstring& each : mAdded) {
            page.Line(L"  " + each);
        }
        if (mAdded.empty()) {
            page.Line(L"  none: no log, no launch-info file, no word file and no log of the installer was found");
        }
        if (!mUnreadable.empty()) {
            page.Line();
            page.Line(L"Could not be read");
            for (const std::wstring& each : mUnreadable) {
                page.Line(L"  " + each);
            }
        }
        mBundle.Add("", L"about.txt", page.Text());
    }

    void AddRunningPrograms(Page& page) const {
        page.Line(L"Running programs");
        for (const RunningProgram& program : mPrograms) {
            page.Line(L"  Process " + std::to_wstring(program.process));
            page.Line(L"    program:     " +
                      (program.modules.empty() ? program.name : VersionAndPath(program.modules.front().path)));
            const LoadedModule* const plugin = FindPlugin(program);
            page.Line(L"    plug-in:     " + (plugin == nullptr ? L"not loaded" : VersionAndPath(plugin->path)));
            const LoadedModule* const pluginCore = FindModule(program, kPluginCoreFile);
            page.Line(L"    PluginCore:  " +
                      (pluginCore == nullptr ? L"not loaded" : VersionAndPath(pluginCore->path)));
        }
        if (mPrograms.empty()) {
            page.Line(
                L"  none: neither the host nor the core application runs. The heads of the logs tell the versions.");
        }
    }

    static void AddInstallations(Page& page) {
        page.Line(L"Installed by setup (version, folder of the plug-in)");
        const std::vector<Installation> installations = FindInstallations();
        for (const Installation& each : installations) {
            page.Line(L"  " + each.scope + L": " + each.version + L"  " + each.pluginFolder);
        }
        if (installations.empty()) {
            page.Line(L"  nothing");
        }
    }

    static bool Exists(const fs::path& file) {
        std::error_code ignored;
        return fs::is_regular_file(file, ignored);
    }

    // Sorted; none when there is no such folder.
    std::vector<fs::path> FilesOf(const fs::path& folder) {
        std::vector<fs::path> files;
        if (folder.native().size() >= MAX_PATH) {
            mUnreadable.push_back(folder.wstring() + L" (the path is too long to look there)");
            return files;
        }
        std::error_code error;
        for (fs::directory_iterator each(folder, error), end; !error && each != end; each.increment(error)) {
            if (_wcsicmp(each->path().extension().c_str(), L".log") == 0 && Exists(each->path())) {
                files.push_back(each->path());
            }
        }
        if (error && error != std::errc::no_such_file_or_directory) {
            mUnreadable.push_back(folder.wstring());
        }
        std::ranges::sort(files);
        return files;
    }

    // The text, when the file could be read.
    std::optional<std::wstring> Add(const std::string& folder, const fs::path& file) {
        const std::optional<std::string> bytes = ReadFileOrNothing(file);
        if (!bytes) {
            mUnreadable.push_back(file.wstring());
            return std::nullopt;
        }
        std::wstring text = DecodedText(*bytes);
        mBundle.Add(folder, file.filename().wstring(), text);
        mAdded.push_back(file.wstring());
        return text;
    }

    // Each "PluginCore: 1.2.3.4  C:\folder\PluginCoreX64.dll" of a log.
    void FindPluginCoreIn(std::wstring_view log) {
        for (std::size_t place = log.find(kPluginCoreInLog); place != std::wstring_view::npos;
             place = log.find(kPluginCoreInLog, place + 1)) {
            const std::wstring_view line = log.substr(place, log.find_first_of(L"\r\n", place) - place);
            if (const std::size_t blanks = line.find(L"  "); blanks != std::wstring_view::npos) {
                mPluginCoreFolders.push_back(fs::path(line.substr(blanks + 2)).parent_path());
            }
        }
    }

    void FindCoreApplicationIn(std::wstring_view launchInfo) {
        const std::optional<std::string> value = FirstLaunchInfoValue(Utf8FromWindowsText(launchInfo), kLaunchInfoKey);
        if (!value) {
            return;
        }
        AddFoldersOfCoreApplication(Utf16FromUtf8(*value));
    }

    // Where the plug-in looks for the PluginCore.
    void AddFoldersOfCoreApplication(const fs::path& program) {
        mPluginCoreFolders.push_back(program.parent_path());
        mPluginCoreFolders.push_back(program.parent_path() / kPluginCoreSubfolder);
    }

    const Sources& mSources;
    Bundle& mBundle;
    std::vector<RunningProgram> mPrograms;
    std::vector<fs::path> mPluginCoreFolders;
    std::vector<std::wstring> mAdded;
    std::vector<std::wstring> mUnreadable;
};

void AppendBelow(const fs::path& folder, const fs::path& below, std::vector<fs::path>& out) {
    if (!folder.empty()) {
        out.push_back(folder / below);
    }
}

}  // namespace

Sources UsualSources() {
    Sources sources;
    fs::path logFolder;
    for (const wchar_t* const each : kLogFolders) {
        logFolder /= each;
    }
    AppendBelow(KnownFolder(FOLDERID_LocalAppData), logFolder, sources.logFolders);
    // Where the plug-in writes: a host may have been started with another value of it.
    AppendBelow(EnvironmentVariable(L"LOCALAPPDATA"), logFolder, sources.logFolders);
    AppendBelow(KnownFolder(FOLDERID_LocalAppData), kLaunchInfoFolder, sources.launchInfoFolders);
    AppendBelow(KnownFolder(FOLDERID_ProgramData), kLaunchInfoFolder, sources.launchInfoFolders);
    const fs::path installLog = fs::path(kInstallFolder) / kInstallLog;
    AppendBelow(KnownFolder(FOLDERID_ProgramFiles), installLog, sources.installLogs);
    AppendBelow(KnownFolder(FOLDERID_LocalAppData), L"Programs" / installLog, sources.installLogs);
    std::error_code error;
    // Where the plug-in writes when there is no such folder.
    if (const fs::path temporary = fs::temp_directory_path(error); !error) {
        sources.logFolders.push_back(temporary / logFolder);
        sources.installLogs.push_back(temporary / kRefusedInstallLog);
    }
    KeepOnce(sources.logFolders);
    return sources;
}

void Collect(const Sources& sources, const SYSTEMTIME& now, Bundle& bundle) { Collector(sources, bundle).Collect(now); }
