#include "simhost/scenario/FilesOfRun.h"

#include <cstdio>
#include <ctime>

#include "simhost/scenario/ObjectReader.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

std::int64_t ReadTime(const std::string& text, const std::string& place) {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    if (std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%dZ", &year, &month, &day, &hour, &minute, &second) != 6) {
        throw ScenarioError(place, "must be a time like 2024-05-01T12:00:00Z");
    }
    std::tm parts{};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    return static_cast<std::int64_t>(_mkgmtime64(&parts));
}

}  // namespace

FileToMake FileOfDocument(const std::string& path) {
    return {path, "not read by anybody\n", ReadTime("2024-05-01T12:00:00Z", path)};
}

std::vector<FileToMake> ReadFiles(const Json& array, const std::string& place) {
    std::vector<FileToMake> files;
    for (const Json& value : array) {
        ObjectReader reader(value, place, keys::kFile);
        FileToMake file{reader.NeedText("path"), reader.Text("text", ""), std::nullopt};
        if (const auto time = reader.OptionalText("modified")) {
            file.modified = ReadTime(*time, reader.PlaceOf("modified"));
        }
        reader.Finish();
        files.push_back(std::move(file));
    }
    return files;
}

std::vector<CopyToMake> ReadCopies(const Json& array, const std::string& place) {
    std::vector<CopyToMake> copies;
    for (const Json& value : array) {
        if (value.is_string()) {
            copies.push_back({value.get<std::string>(), "host/" + value.get<std::string>()});
            continue;
        }
        ObjectReader copy(value, place, keys::kCopy);
        copies.push_back({copy.NeedText("copy"), copy.NeedText("to")});
        copy.Finish();
    }
    return copies;
}

}  // namespace simhost
