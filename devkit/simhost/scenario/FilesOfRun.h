// What a scenario lays out in the folder of its run. All paths are relative to that folder unless they are absolute.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace simhost {

struct FileToMake {
    std::string path;
    std::string text;
    std::optional<std::int64_t> modified;  // seconds since 1970
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

std::vector<FileToMake> ReadFiles(const nlohmann::ordered_json& array, const std::string& place);
// A text stands for a file that is copied beside the host's program under its own name.
std::vector<CopyToMake> ReadCopies(const nlohmann::ordered_json& array, const std::string& place);

}  // namespace simhost
