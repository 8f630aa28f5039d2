// A host whose operations do nothing but count, and answer from fixed data. What a measured call costs beside it is the
// plug-in's work, and the same calls made without the plug-in are the floor.
//
// It checks nothing: the double in devkit/doubles/host does that. What it hands out is not counted either, so that
// giving it back costs one addition.
// Thread: main.
#pragma once

#include "bench/host/HostDocument.h"

namespace bench {

// Puts the suites that documents, strings and the text engine need into the plug-in's variables.
void HoldSuites();

// Makes this the document that the host answers about; it must live as long as that.
void ShowDocument(HostDocument& document);

}  // namespace bench
