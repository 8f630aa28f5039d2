// What steps do to the host's documents.
#pragma once

#include "simhost/run/RunFolder.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

void ChangeDocument(Document& document, const DocumentChange& change);

// What has happened before the host tells the plug-in, and what happens when it has told.
void ChangeModelBefore(const Step& step, const RunFolder& folder);
void ChangeModelAfter(const Step& step);

}  // namespace simhost
