// Document and life-cycle events in a form that knows no host: plain texts and numbers, passed on to the PluginCore and
// logged. For front ends of other hosts; this plug-in's own front end calls the entries directly. The PluginCore must
// have been found and accepted. Results are the PluginCore's, unchanged. Texts are UTF-8.
// Thread: main.
#pragma once

#include <cstdint>
#include <string>

namespace CrossPluginUtils {

// Takes no reply: the PluginCore gets a null buffer with a size of 0.
std::int32_t HandleOpenExistingDocument(const std::string& path);
std::int32_t HandleSaveDocument(const std::string& path, const std::string& report);
std::int32_t HandleCloseDocument(const std::string& path, const std::string& report);

// Passes the plug-in's identity text, which the front end must have set (support/PluginInfo.h).
std::int32_t Startup();
std::int32_t Shutdown();

// Stores the port that the panel talks to.
std::int32_t GetSocketPort(std::uint32_t* port);

// The flag is one byte, 0 or 1.
std::int32_t ProcessPanelMessages(std::uint8_t process);

// 1 when the PluginCore reports itself enabled, else 0.
std::uint32_t IsPluginCoreEnabled();

// Stores the version text of the library in `outVersion` and returns it. Asks whether the library is usable, with all
// that this brings: an incompatible library is shown to the user.
std::string& GetPluginCoreVersion(std::string& outVersion);

// Makes the host notice that other fonts are active: takes the foreground away from its window for a moment. Calls
// `callback` before and after; it may be null.
void RefreshActiveFontList(void (*callback)());

}  // namespace CrossPluginUtils
