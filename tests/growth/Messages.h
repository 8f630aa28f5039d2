// What a host sends a plug-in all day long, over and over.
//
// Thread: main.
#pragma once

#include <string>

#include "growth/Cycle.h"

namespace growth {

// Before the first message. The path is that of a file.
void PrepareDocument(simhost::SimulatedHost& host, const std::string& path);

// One round of messages of every kind, with a document that is opened, changed, saved and closed. Answers how many.
int SendRound(StartedPlugin& plugin);

}  // namespace growth
