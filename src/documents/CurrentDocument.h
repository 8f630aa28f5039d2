// The document that the host works on.
// Thread: main.
#pragma once

#include <string>

#include "host/HostTypes.h"

// The current document's handle; null when there is none.
AIDocumentHandle CurrentDocument();

// Its path; the bare title of a document never saved, empty without a document. Throws ai::Error when the host fails
// while it converts the path.
std::string CurrentDocumentPath();

// Returns the path recorded for a document, brought up to date first. One that was recorded under a bare name had not
// been saved then: when the current document has a path by now, that path is recorded for `document` in its place.
std::string RefreshRecordedPath(AIDocumentHandle document);
