#include "simhost/contract/ProbedLibrary.h"

#include <stdexcept>

#include "simhost/contract/PluginCoreWatch.h"
#include "simhost/plugin/LibraryFile.h"

namespace simhost::contract {

namespace {

constexpr const char* kPlugin = "C:\\Program Files\\Host\\Plug-ins\\QuorvelTypeAgentAI20.aip";

HMODULE Load(const std::filesystem::path& file) {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    const HMODULE module = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (module == nullptr) {
        throw std::runtime_error("it " + WhyNotLoaded(file, GetLastError(), file.parent_path()));
    }
    return module;
}

}  // namespace

ProbedLibrary::ProbedLibrary(const std::filesystem::path& file, const Deadline& deadline)
    : mDeadline(deadline), mModule(Load(file)) {
    const auto bind = [this](auto& entry, const char* name) {
        entry.Bind(GuardedEntry(mModule, name));
        if (entry.IsNull()) {
            mMissing.emplace_back(name);
        }
    };
#define BIND_ENTRY(name) bind(name, #name);
    PLUGINCORE_ENTRIES(BIND_ENTRY)
#undef BIND_ENTRY
}

void ProbedLibrary::Start() const {
    std::uint32_t value = 0;
    GetAPIVersion(&value, kPluginCoreVersion);
    InitializePluginCoreInterface(kPlugin);
}

}  // namespace simhost::contract
