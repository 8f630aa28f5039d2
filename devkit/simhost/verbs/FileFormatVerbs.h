// check_file: the host asks whoever registered the file's format to look at a file.
#pragma once

#include <optional>
#include <string>

#include "simhost/scenario/ObjectReader.h"

namespace simhost {

class Performance;

struct CheckFile {
    std::optional<std::string> path;  // without one: an empty path object
};
CheckFile ReadCheckFile(ObjectReader& reader);
void Perform(const CheckFile& action, Performance& performance);

}  // namespace simhost
