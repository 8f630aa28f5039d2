// Sends messages to the plug-in as the host does: fills the message block, keeps the plug-in's globals pointer from
// one message to the next, and knows which message is being handled.
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <string>

#include "doubles/host/PluginReference.h"
#include "host/Messages.h"
#include "simhost/plugin/PluginModule.h"

namespace simhost {

// A C++ exception has left the plug-in: the run is over, as the host would be.
class HostLost : public std::exception {
  public:
    const char* what() const noexcept override { return "an exception left the plug-in"; }
};

// All operations throw HostLost, and answer what the plug-in answers.
class MessageDriver {
  public:
    explicit MessageDriver(PluginModule& plugin) : mPlugin(plugin) {}

    std::int32_t SendInterface(const char* selector);
    std::int32_t SendAccess(const char* selector);
    std::int32_t SendNotification(void* notifier, const std::string& type, void* data);
    std::int32_t SendMenu(const char* selector, void* item);
    std::int32_t SendTick(void* timer);
    // The path is as the plug-in left it afterwards.
    std::int32_t SendFileCheck(void* format, ai::FilePathData& path);
    // Any caller and selector, with a block that holds nothing but the common part.
    std::int32_t SendPlain(const std::string& caller, const std::string& selector, bool withBasicSuite);

    // Any texts, which may be null, and any message, which may be null, too.
    std::int32_t SendRaw(const char* caller, const char* selector, SPMessageData* message);

    // The common part of a message, as the host fills it in.
    SPMessageData CommonPart() const;

    // Is told of each message that is answered, but not of one that is sent inside another; may be empty.
    std::function<void(const std::string& message, std::int32_t answer)> onAnswer;

  private:
    std::int32_t CallOrThrow(const char* caller, const char* selector, void* message) const;
    // `common` is the beginning of `message`; null for a null message.
    std::int32_t Send(const char* caller, const char* selector, SPMessageData* common, void* message);

    PluginModule& mPlugin;
    void* mGlobals = nullptr;
    std::string mCurrent;  // "" while no message is being handled
};

}  // namespace simhost
