// The plug-in's file as it is shipped, in this process. The libraries that it looks for lie beside the program; nobody
// may have told it of others, so no core application may run.
// Thread: main.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "shipped/BareHost.h"

namespace bench {

// The file of that name beside the program.
std::wstring BesideProgram(const wchar_t* name);

class ShippedPlugin {
  public:
    // Loads it. Throws std::runtime_error when Windows cannot.
    ShippedPlugin();
    ShippedPlugin(const ShippedPlugin&) = delete;
    ShippedPlugin& operator=(const ShippedPlugin&) = delete;
    ~ShippedPlugin();

    // Throws std::runtime_error when it has not found its library. Two ticks have passed, so that it listens to the
    // panel.
    void Start();
    void ShutDown();

    void Tick();
    void Update(std::size_t item);

    HMODULE Module() const { return mModule; }

  private:
    std::int32_t Send(const char* caller, const char* selector, SPMessageData& message);

    HMODULE mModule;
    std::int32_t (*mMain)(const char* caller, const char* selector, SPMessageData* message);
    void* mGlobals = nullptr;
};

}  // namespace bench
