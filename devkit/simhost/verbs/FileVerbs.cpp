#include "simhost/verbs/FileVerbs.h"

#include "simhost/run/Performance.h"
#include "simhost/scenario/PathsOfRun.h"

namespace simhost {

WriteFiles ReadWriteFiles(ObjectReader& reader) { return {ReadFiles(reader, Sources::kMayCome)}; }

void Perform(const WriteFiles& action, Performance& performance) {
    for (const FileToMake& file : action.files) {
        performance.folder.WriteFile(file);
    }
}

MoveWithin ReadMoveWithin(ObjectReader& reader) {
    return {{NeedPathInRun(reader, "from"), NeedPathInRun(reader, "to")}};
}

void Perform(const MoveWithin& action, Performance& performance) { performance.folder.Move(action.move); }

// The answers themselves were checked when the defaults were written.
ReplaceAnswers ReadReplaceAnswers(ObjectReader& reader) {
    reader.Need("set");
    return {reader.Object("set")};
}

void Perform(const ReplaceAnswers& action, Performance& performance) {
    performance.folder.WriteAnswers(action.answers);
}

}  // namespace simhost
