#include "simhost/plugin/PluginModule.h"

#include <vector>

#include "doubles/common/Text.h"
#include "simhost/checks/HostStateWatch.h"
#include "simhost/plugin/LibraryFile.h"
#include "simhost/plugin/PropertyList.h"

namespace simhost {

namespace {

template <class Error>
[[noreturn]] void Fail(const std::filesystem::path& file, const std::string& what) {
    throw Error(Utf8(file.filename().wstring()) + " " + what);
}

// Before any of the file's code runs, as the host does it.
std::vector<std::byte> ReadPropertyList(const std::filesystem::path& file) {
    const HMODULE data = LoadLibraryExW(file.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    if (data == nullptr) {
        Fail<LoadError>(file, "cannot be read (error " + std::to_string(GetLastError()) + ")");
    }
    const HRSRC resource = FindResourceW(data, MAKEINTRESOURCEW(16000), L"PIPL");
    std::vector<std::byte> bytes;
    if (resource != nullptr) {
        const auto* const first = static_cast<const std::byte*>(LockResource(LoadResource(data, resource)));
        bytes.assign(first, first + SizeofResource(data, resource));
    }
    FreeLibrary(data);
    if (bytes.empty()) {
        Fail<PropertyListError>(file, "has no property list, so it is no plug-in");
    }
    return bytes;
}

}  // namespace

PluginModule::PluginModule(const std::filesystem::path& file)
    : mEntryName(EntryPointName(ParsePropertyList(ReadPropertyList(file)))) {
    HostStateWatch state;
    mModule = LoadLibraryW(file.c_str());
    if (mModule == nullptr) {
        Fail<LoadError>(file, WhyNotLoaded(file, GetLastError()));
    }
    state.Check("loading the plug-in");
    mEntry = reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(mModule, mEntryName.c_str())));
    if (mEntry == nullptr) {
        Fail<PropertyListError>(file,
                                "does not export \"" + mEntryName + "\", which its property list names as its entry");
    }
}

std::int32_t PluginModule::Call(const char* caller, const char* selector, void* message) const {
    return mEntry(caller, selector, message);
}

void PluginModule::Unload() {
    HostStateWatch state;
    FreeLibrary(mModule);
    state.Check("unloading the plug-in");
    mModule = nullptr;
    mEntry = nullptr;
}

}  // namespace simhost
