// What the host has: documents with their art, fonts, and what the plug-in has registered.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "doubles/host/model/MenuModel.h"
#include "doubles/host/model/ObjectTable.h"

namespace simhost {

struct Run {
    std::string font;  // PostScript name
};

struct TextFrame {
    std::vector<Run> runs;
};

struct Document {
    std::string name;  // what the scenario calls it
    std::string path;  // what the host tells; a bare title for a document that was never saved
    bool modified = false;
    std::vector<TextFrame> frames;
    std::vector<std::string> placed;  // paths of placed files
    void* handle = nullptr;           // set while the document is open
    void* formerHandle = nullptr;     // the one it had when it was closed last
};

// One piece of art. It belongs to a document that is named, so that art of a closed document is noticed.
struct Art {
    std::int16_t type;
    std::string document;
    std::size_t index;  // among the document's frames or placed files
};

struct Notifier {
    std::string name;
    std::string type;
};

struct Timer {
    std::string name;
    std::int32_t period;
    bool active;
};

struct FileFormat {
    std::string name;
    std::vector<std::uint32_t> types;
    std::string title;
    std::int32_t titleOrder;
    std::string extensions;
    std::int32_t options;
    std::int32_t extendedOptions;
    std::int32_t priority;
};

// A plug-in besides the one that is tested.
struct OtherPlugin {
    std::string name;
    std::int32_t result;  // what it answers a message
};

// A message that the plug-in sent to another one.
struct SentMessage {
    std::string to;  // the other plug-in's name
    std::string caller;
    std::string selector;
    const void* menuItem;  // of a menu message
    bool setUp;            // whether its common part is as the host fills it for the receiver
};

class HostModel {
  public:
    // Documents that a scenario describes, open or not, by name.
    std::map<std::string, Document> documents;
    // Empty when no document is open.
    std::string current;
    // Open documents, the one that was opened last at the end.
    std::vector<std::string> open;

    // PostScript names of the default fonts by script code; a script that is missing has none.
    std::map<std::int32_t, std::string> defaultFonts;
    // When no art matches: an empty handle if set, else a null handle.
    bool emptyHandleForNoMatches = false;

    ObjectTable<std::string> openDocuments{0x11};  // handle to name
    ObjectTable<Art> art{0x12};
    ObjectTable<std::string> fontKeys{0x13};  // handle to PostScript name
    ObjectTable<Notifier> notifiers{0x14};
    ObjectTable<Timer> timers{0x15};
    ObjectTable<FileFormat> fileFormats{0x16};
    MenuModel menus;
    ObjectTable<OtherPlugin> otherPlugins{0x19};
    std::vector<SentMessage> sentMessages;

    // Throws std::runtime_error when the scenario describes no such document.
    Document& Named(std::string_view name);
    // Null when no document is open.
    Document* Current();

    // Makes the document open and current.
    void Open(std::string_view name);
    // Closes it; the document opened before it becomes current.
    void Close(std::string_view name);

    // The same key for the same name.
    void* FontKey(const std::string& postScriptName);

    // Null when there is none of that name.
    SPPluginRef PluginNamed(std::string_view name) const;

    // The timers that are active, in the order of adding.
    std::vector<void*> ActiveTimers() const;

    // The format of the highest priority among those that claim the file's extension; for an empty path among all.
    // Null when there is none.
    void* FileFormatFor(std::string_view path) const;
};

}  // namespace simhost
