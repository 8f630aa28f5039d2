// The message blocks that the host passes to PluginMain, and the names of their callers and selectors.
// The host owns every block and everything in it; a block is valid until PluginMain returns.
//
// Thread: main.
#pragma once

#include "host/BasicSuite.h"
#include "host/FilePath.h"
#include "host/HostTypes.h"

// 'SPCk', the check word of every message block.
constexpr std::int32_t kSPMessageCheck = static_cast<std::int32_t>(FourCharCode("SPCk"));

struct SPMessageData {
    std::int32_t SPCheck;
    SPPluginRef self;
    void* globals;  // read and written by the plug-in; the host hands it back with the next message
    const SPBasicSuite* basic;
};

struct SPInterfaceMessage {
    SPMessageData d;
};

struct SPAccessMessage {
    SPMessageData d;
    std::int32_t when;
};

struct AINotifierMessage {
    SPMessageData d;
    AINotifierHandle notifier;
    const char* type;
    void* notifyData;  // for document notifiers the AIDocumentHandle of the document
};

struct AITimerMessage {
    SPMessageData d;
    AITimerHandle serviceTimer;
};

struct AIMenuMessage {
    SPMessageData d;
    AIMenuItemHandle menuItem;
};

struct AIFileFormatMessage {
    SPMessageData d;
    AIFileFormatHandle fileFormat;
    std::int32_t option;
    void* extendedData;
    void* actionParameters;
    ai::FilePathData file;  // the host's: read in place, never destroyed
    std::int32_t operationOptions;
    void* artboardRange;
};

constexpr const char* kSPInterfaceCaller = "SP Interface";
constexpr const char* kSPInterfaceStartupSelector = "Startup";
constexpr const char* kSPInterfaceAboutSelector = "About";
constexpr const char* kSPInterfaceShutdownSelector = "Shutdown";

constexpr const char* kSPAccessCaller = "SP Access";
constexpr const char* kSPAccessUnloadSelector = "Unload";

constexpr const char* kCallerAIMenu = "AI Menu";
constexpr const char* kSelectorAIGoMenuItem = "AI Go";
constexpr const char* kSelectorAIUpdateMenuItem = "AI Update";

constexpr const char* kCallerAINotify = "AI Notifier";
constexpr const char* kSelectorAINotify = "AI Notify";

constexpr const char* kCallerAITimer = "AI Timer";
constexpr const char* kSelectorAIGoTimer = "AI Go";

constexpr const char* kCallerAIFileFormat = "AI File Format";
constexpr const char* kSelectorAICheckFileFormat = "AI Check";
