// write, move, answers: files in the folder of the run change.
#pragma once

#include <nlohmann/json.hpp>
#include <vector>

#include "simhost/scenario/FilesOfRun.h"
#include "simhost/scenario/ObjectReader.h"

namespace simhost {

class Performance;

struct WriteFiles {
    std::vector<FileToMake> files;
};
WriteFiles ReadWriteFiles(ObjectReader& reader);
void Perform(const WriteFiles& action, Performance& performance);

struct MoveWithin {
    FileToMove move;
};
MoveWithin ReadMoveWithin(ObjectReader& reader);
void Perform(const MoveWithin& action, Performance& performance);

// The PluginCore's script.
struct ReplaceAnswers {
    nlohmann::ordered_json answers;
};
ReplaceAnswers ReadReplaceAnswers(ObjectReader& reader);
void Perform(const ReplaceAnswers& action, Performance& performance);

}  // namespace simhost
