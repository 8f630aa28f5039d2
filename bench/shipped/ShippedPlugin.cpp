#include "shipped/ShippedPlugin.h"

#include <stdexcept>

namespace bench {

std::wstring BesideProgram(const wchar_t* name) {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring program = path;
    return program.substr(0, program.rfind(L'\\') + 1) + name;
}

namespace {

// Of the PluginCore that lies beside the program.
int AddedItems() {
    const HMODULE library = GetModuleHandleW(BesideProgram(L"PluginCoreX64.dll").c_str());
    const auto count = reinterpret_cast<int (*)()>(reinterpret_cast<void*>(GetProcAddress(library, "AddedItems")));
    return library == nullptr || count == nullptr ? 0 : count();
}

}  // namespace

ShippedPlugin::ShippedPlugin()
    : mModule(LoadLibraryW(BesideProgram(L"QuorvelTypeAgentAI20.aip").c_str())),
      mMain(reinterpret_cast<decltype(mMain)>(reinterpret_cast<void*>(GetProcAddress(mModule, "PluginMain")))) {
    if (mMain == nullptr) {
        throw std::runtime_error("the plug-in's file cannot be loaded");
    }
}

// Really unloaded: a started plug-in has raised its own count of uses.
ShippedPlugin::~ShippedPlugin() {
    for (HMODULE module = mModule; FreeLibrary(module) != 0;) {
        if (GetModuleHandleW(L"QuorvelTypeAgentAI20.aip") == nullptr) {
            break;
        }
    }
}

std::int32_t ShippedPlugin::Send(const char* caller, const char* selector, SPMessageData& message) {
    const std::int32_t result = mMain(caller, selector, &message);
    mGlobals = message.globals;
    return result;
}

void ShippedPlugin::Start() {
    EmptyBareMenu();
    const int before = AddedItems();
    SPInterfaceMessage message{BareMessage(nullptr)};
    Send(kSPInterfaceCaller, kSPInterfaceStartupSelector, message.d);
    if (mGlobals == nullptr) {
        throw std::runtime_error("the plug-in has not started");
    }
    if (AddedItems() == before) {
        throw std::runtime_error("the plug-in has found another PluginCore: a core application runs here, or was");
    }
    Tick();
    Tick();
}

void ShippedPlugin::ShutDown() {
    SPInterfaceMessage message{BareMessage(mGlobals)};
    Send(kSPInterfaceCaller, kSPInterfaceShutdownSelector, message.d);
}

void ShippedPlugin::Tick() {
    AITimerMessage message{BareMessage(mGlobals), nullptr};
    Send(kCallerAITimer, kSelectorAIGoTimer, message.d);
}

void ShippedPlugin::Update(std::size_t item) {
    AIMenuMessage message{BareMessage(mGlobals), BareItem(item)};
    Send(kCallerAIMenu, kSelectorAIUpdateMenuItem, message.d);
}

}  // namespace bench
