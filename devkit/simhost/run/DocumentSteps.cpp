#include "simhost/run/DocumentSteps.h"

#include <system_error>

#include "doubles/host/Host.h"

namespace simhost {

namespace {

// The host writes the file before it tells. A path under which there is no file is only told: it may hold what no file
// system allows.
void SaveDocument(const Step& step, const RunFolder& folder) {
    Document& document = Host().model.Named(step.document);
    ChangeDocument(document, step.change);
    document.modified = !step.fileWritten;
    std::error_code ignored;
    if (step.fileWritten && std::filesystem::is_regular_file(folder.At(document.path), ignored)) {
        folder.WriteFile({document.path, "saved by the simulated host\n", std::nullopt});
    }
}

}  // namespace

void ChangeDocument(Document& document, const DocumentChange& change) {
    document.path = change.path.value_or(document.path);
    document.modified = change.modified.value_or(document.modified);
    document.frames = change.frames.value_or(document.frames);
    document.placed = change.placed.value_or(document.placed);
}

void ChangeModelBefore(const Step& step, const RunFolder& folder) {
    HostModel& model = Host().model;
    if (step.action == "open" || step.action == "new") {
        model.Open(step.document);
    } else if (step.action == "change") {
        ChangeDocument(model.Named(step.document), step.change);
    } else if (step.action == "save" || step.action == "save_as") {
        SaveDocument(step, folder);
    }
}

void ChangeModelAfter(const Step& step) {
    HostModel& model = Host().model;
    if (step.action == "close" && !step.documentGone) {
        model.Close(step.document);
    }
}

}  // namespace simhost
