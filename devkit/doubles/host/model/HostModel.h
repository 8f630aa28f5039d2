// What the host has: documents with their art, fonts, and what the plug-in has registered.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "doubles/host/model/MenuModel.h"
#include "doubles/host/model/ObjectTable.h"

namespace simhost {

struct TextFrame {
    TextFrame() = default;
    TextFrame(std::initializer_list<std::string> fonts) : runs(fonts) {}

    std::vector<std::string> runs;  // the PostScript name of each run's font
};

struct Document {
    std::string name;  // what the scenario or the test calls it
    std::string path;  // UTF-8; a bare title for a document that was never saved
    bool modified = false;
    std::vector<TextFrame> frames;
    std::vector<std::string> placed;  // paths of placed files
    void* handle = nullptr;           // set while the document is open
    void* formerHandle = nullptr;     // the one it had when it was closed last
};

// One piece of art. It names its document, so that the use of art of a closed document is noticed.
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
    std::int32_t active;  // any value but 0 is true
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

// A plug-in besides the one under test.
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
    bool setUp;            // whether the host has filled in its common part for the receiver
};

class HostModel {
  public:
    // Documents that a scenario or test describes, open or not, by name.
    std::map<std::string, Document> documents;
    // Empty when no document is open.
    std::string current;
    // Open documents, in the order of opening.
    std::vector<std::string> open;

    // PostScript names of the default fonts by script code; a script that is absent has none.
    std::map<std::int32_t, std::string> defaultFonts;
    // When no art matches: an empty handle if set, else a null handle.
    bool emptyHandleForNoMatches = false;
    // Texts that IsEqual takes for another token: alias to token. How a host compares tokens is its own affair.
    std::map<std::string, std::string> tokenAliases;
    // How often IsEqual has answered "equal"; the answer varies with it.
    std::size_t equalTokens = 0;

    ObjectTable<std::string> openDocuments{0x11};  // handle to name
    ObjectTable<Art> art{0x12};
    ObjectTable<std::string> fontKeys{0x13};  // handle to PostScript name
    ObjectTable<Notifier> notifiers{0x14};
    ObjectTable<Timer> timers{0x15};
    ObjectTable<FileFormat> fileFormats{0x16};
    MenuModel menus;
    ObjectTable<OtherPlugin> otherPlugins{0x19};
    std::vector<SentMessage> sentMessages;

    // Throws std::runtime_error when no such document is described.
    Document& Named(std::string_view name);
    // Null when no document is open.
    Document* Current();

    // Makes the document open and current.
    void Open(std::string_view name);
    // Closes it; the document opened before it becomes current.
    void Close(std::string_view name);

    // The handle of the art at that index among the document's art of one type; the same handle each time.
    void* ArtHandle(const Document& document, std::int16_t type, std::size_t index);

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
