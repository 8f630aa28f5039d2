// What a scenario lays out in the folder of its run. All paths are relative to that folder unless they are absolute.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simhost/scenario/ObjectReader.h"

namespace simhost {

struct FileToMake {
    std::string path;
    std::string text;
    std::optional<std::int64_t> modified;  // seconds since 1970
    std::string from{};                    // the file of which this one is a copy; empty: it holds the text
};

struct CopyToMake {
    std::string what;  // file name beside simhost.exe
    std::string to;
};

struct FileToMove {
    std::string from;
    std::string to;
};

// What a document's file holds when its scenario does not care: nobody reads it.
FileToMake FileOfDocument(const std::string& path);

// Whether what files are copied from is there before the run, or may come into being during it.
enum class Sources { kAreThere, kMayCome };

// The member "files" of what is being read.
std::vector<FileToMake> ReadFiles(ObjectReader& reader, Sources sources);
// The member "copies". A text stands for a file that is copied beside the host's program under its own name.
std::vector<CopyToMake> ReadCopies(ObjectReader& reader);
// What is laid out when a scenario does not say.
std::vector<CopyToMake> UsualCopies();

}  // namespace simhost
