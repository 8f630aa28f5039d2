#include "panel/PlugPlugBridge.h"

#include <array>
#include <string>

#include "support/ForeignExceptionGuard.h"
#include "support/ResultCodes.h"

namespace {

constexpr DWORD kPathSize = 2048;  // UTF-16 units

// With the separator at its end; empty when the path has none.
std::wstring HostFolder() {
    std::array<wchar_t, kPathSize> buffer{};
    const std::wstring path(buffer.data(), GetModuleFileNameW(nullptr, buffer.data(), kPathSize));
    return path.substr(0, path.rfind(L'\\') + 1);
}

// Both names may be there: the newer one wins.
std::wstring LibraryPath() {
    const std::wstring folder = HostFolder();
    std::wstring newer = folder + L"PlugPlugOwl.dll";
    WIN32_FIND_DATAW found;
    // The search is left open on purpose: one small handle per attempt to reach the panel.
    if (FindFirstFileW(newer.c_str(), &found) != INVALID_HANDLE_VALUE) {
        return newer;
    }
    return folder + L"PlugPlug.dll";
}

template <class Function>
bool Bind(HMODULE module, const char* name, Function& function) {
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
    return function != nullptr;
}

// Up to the first one that is missing.
bool BindAll(PlugPlugState& state) {
    return Bind(state.module, "PlugPlugLoadExtension", state.loadExtension) &&
           Bind(state.module, "PlugPlugUnloadExtension", state.unloadExtension) &&
           Bind(state.module, "PlugPlugAddEventListener", state.addListener) &&
           Bind(state.module, "PlugPlugRemoveEventListener", state.removeListener) &&
           Bind(state.module, "PlugPlugDispatchEvent", state.dispatch);
}

}  // namespace

namespace PlugPlugBridge {

std::int32_t Load(PlugPlugState& state) {
    state.module = LoadLibraryW(LibraryPath().c_str());
    return state.module != nullptr && BindAll(state) ? kNoErr : kLibraryFailed;
}

std::int32_t Unload(PlugPlugState& state) {
    if (state.module == nullptr) {
        return kNoErr;
    }
    const bool freed = FreeLibrary(state.module) != 0;
    state.module = nullptr;
    return freed ? kNoErr : kLibraryFailed;
}

std::int32_t AddEventListener(const PlugPlugState& state, const char* eventType, PlugPlugListener handler,
                              void* context) {
    if (state.addListener == nullptr) {
        return kNotBound;
    }
    return CallForeignCode([&] { return state.addListener(eventType, handler, context); });
}

std::int32_t DispatchEvent(const PlugPlugState& state, const PlugPlugEvent& event) {
    // The remove pointer stands for both on purpose: they are bound together, dispatch last.
    if (state.removeListener == nullptr) {
        return kNotBound;
    }
    return CallForeignCode([&] { return state.dispatch(&event); });
}

}  // namespace PlugPlugBridge
