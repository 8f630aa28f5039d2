// open, new, change, save, save_as, close, edit, switch_to: what happens to the host's documents, and its notification.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "doubles/host/model/HostModel.h"
#include "simhost/scenario/ObjectReader.h"

namespace simhost {

class Performance;

struct DocumentChange {
    std::optional<std::string> path;
    std::optional<bool> modified;
    std::optional<std::vector<TextFrame>> frames;
    std::optional<std::vector<std::string>> placed;
};

// The member "frames" of what is being read; none when there is no such member.
std::vector<TextFrame> ReadFrames(ObjectReader& reader);

// The document becomes open and current.
struct OpenDocument {
    std::string document;
    std::string notification;
};
void Perform(const OpenDocument& action, Performance& performance);

struct EditDocument {
    std::string document;
    DocumentChange change;
    std::string notification;  // empty: nobody is told
};
EditDocument ReadEditDocument(ObjectReader& reader, const std::string& notification);
void Perform(const EditDocument& action, Performance& performance);

struct SaveDocument {
    std::string document;
    DocumentChange change;
    bool fileWritten = true;  // whether the save really happened
    std::string notification;
};
SaveDocument ReadSave(ObjectReader& reader);
SaveDocument ReadSaveAs(ObjectReader& reader);
void Perform(const SaveDocument& action, Performance& performance);

struct CloseDocument {
    std::string document;
    bool documentGone = true;  // whether the host has forgotten the document when it tells
};
CloseDocument ReadCloseDocument(ObjectReader& reader);
void Perform(const CloseDocument& action, Performance& performance);

// It becomes the current one.
struct SwitchTo {
    std::string document;
};
void Perform(const SwitchTo& action, Performance& performance);

}  // namespace simhost
