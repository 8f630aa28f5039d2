#include "simhost/verbs/DocumentVerbs.h"

#include <system_error>

#include "doubles/common/Text.h"
#include "doubles/host/Host.h"
#include "simhost/run/Performance.h"
#include "simhost/scenario/PathsOfRun.h"
#include "simhost/verbs/NotifierVerbs.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

DocumentChange ReadChange(ObjectReader& reader) {
    DocumentChange change;
    change.path = reader.OptionalText("path");
    if (const Json* const modified = reader.Find("modified")) {
        change.modified = FlagOf(*modified, reader.PlaceOf("modified"));
    }
    if (reader.Find("frames") != nullptr) {
        change.frames = ReadFrames(reader);
    }
    if (const Json* const placed = reader.Find("placed")) {
        change.placed = TextsOf(*placed, reader.PlaceOf("placed"));
    }
    return change;
}

void Change(Document& document, const DocumentChange& change) {
    document.path = change.path.value_or(document.path);
    document.modified = change.modified.value_or(document.modified);
    document.frames = change.frames.value_or(document.frames);
    document.placed = change.placed.value_or(document.placed);
}

// A path under which there is no file is only told: it may hold what no file system allows. So is one outside the
// folder of the run: what lies there is somebody's.
void WriteSavedFile(const std::string& path, const RunFolder& folder) {
    std::error_code ignored;
    if (WhyNotInRun(path, Utf8(folder.Root().wstring())).empty() &&
        std::filesystem::is_regular_file(folder.At(path), ignored)) {
        folder.WriteFile({path, "saved by the simulated host\n", std::nullopt});
    }
}

}  // namespace

std::vector<TextFrame> ReadFrames(ObjectReader& reader) {
    const Json& array = reader.Array("frames");
    std::vector<TextFrame> frames;
    for (std::size_t i = 0; i < array.size(); ++i) {
        const Place place = reader.PlaceOf("frames").Element(i);
        if (!array[i].is_array()) {
            place.Complain("a frame is an array of PostScript names, one per run");
            continue;
        }
        TextFrame frame;
        for (const std::string& font : TextsOf(array[i], place)) {
            frame.runs.push_back({font});
        }
        frames.push_back(std::move(frame));
    }
    return frames;
}

void Perform(const OpenDocument& action, Performance& performance) {
    Host().model.Open(action.document);
    Perform(Notify{action.notification, action.document}, performance);
}

EditDocument ReadEditDocument(ObjectReader& reader, const std::string& notification) {
    return {reader.NeedDocument("document"), ReadChange(reader), notification};
}

void Perform(const EditDocument& action, Performance& performance) {
    Change(Host().model.Named(action.document), action.change);
    if (!action.notification.empty()) {
        Perform(Notify{action.notification, action.document}, performance);
    }
}

SaveDocument ReadSave(ObjectReader& reader) {
    return {reader.NeedDocument("document"), {}, reader.Flag("file_written", true), "AI Command Notifier: After Save"};
}

SaveDocument ReadSaveAs(ObjectReader& reader) {
    return {reader.NeedDocument("document"), ReadChange(reader), reader.Flag("file_written", true),
            "AI Command Notifier: After Save As"};
}

// The host writes the file before it tells.
void Perform(const SaveDocument& action, Performance& performance) {
    Document& document = Host().model.Named(action.document);
    Change(document, action.change);
    document.modified = !action.fileWritten;
    if (action.fileWritten) {
        WriteSavedFile(document.path, performance.folder);
    }
    Perform(Notify{action.notification}, performance);
}

CloseDocument ReadCloseDocument(ObjectReader& reader) {
    return {reader.NeedDocument("document"), reader.Flag("document_gone", true)};
}

void Perform(const CloseDocument& action, Performance& performance) {
    HostModel& model = Host().model;
    if (action.documentGone) {
        model.Close(action.document);
    }
    Perform(Notify{"AI Document Closed Notifier", action.document}, performance);
    if (!action.documentGone) {
        model.Close(action.document);
    }
}

void Perform(const SwitchTo& action, Performance&) {
    HostModel& model = Host().model;
    model.current = model.Named(action.document).name;
}

}  // namespace simhost
