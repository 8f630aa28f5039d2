#include "simhost/scenario/FilesOfRun.h"

#include <array>
#include <charconv>
#include <chrono>
#include <optional>
#include <system_error>

#include "doubles/common/Text.h"
#include "simhost/scenario/NearestWord.h"
#include "simhost/scenario/PathsOfRun.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

// Seconds since 1970 of a time like 2024-05-01T12:00:00Z; nothing when it is none.
std::optional<std::int64_t> SecondsOf(const std::string& text) {
    constexpr std::string_view kForm = "0000-00-00T00:00:00Z";
    std::array<int, 6> parts{};
    std::size_t part = 0;
    if (text.size() != kForm.size()) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (kForm[i] != '0') {
            if (text[i] != kForm[i]) {
                return std::nullopt;
            }
            ++part;
        } else if (text[i] < '0' || text[i] > '9') {
            return std::nullopt;
        } else {
            parts[part] = parts[part] * 10 + (text[i] - '0');
        }
    }
    const auto [year, month, day, hour, minute, second] = parts;
    const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day))};
    // A file's time begins with 1601.
    if (!date.ok() || year < 1601 || hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    const auto days = std::chrono::sys_days(date).time_since_epoch().count();
    return ((static_cast<std::int64_t>(days) * 24 + hour) * 60 + minute) * 60 + second;
}

std::int64_t ReadTime(const std::string& text, const Place& place) {
    const auto seconds = SecondsOf(text);
    if (!seconds) {
        place.Complain("must be a time like 2024-05-01T12:00:00Z");
    }
    return seconds.value_or(0);
}

bool IsFile(const std::filesystem::path& file) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(file, ignored);
}

std::vector<std::string> FilesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
        names.push_back(Utf8(entry.path().filename().wstring()));
    }
    return names;
}

void CheckIsInKit(const std::string& name, const Place& place) {
    const std::filesystem::path& kit = place.Context().kit;
    if (!kit.empty() && WhyNotInRun(name, "").empty() && !IsFile(kit / Wide(name))) {
        place.Complain("beside simhost.exe there is no file \"" + name + "\"" + DidYouMean(name, FilesIn(kit)));
    }
}

// What lies in the folder of the run is laid out later.
void CheckIsThere(const std::string& file, const Place& place) {
    const std::filesystem::path path = Wide(file);
    if (!place.Context().kit.empty() && path.is_absolute() && !IsInFolder(file, place.Context().workFolder) &&
        !IsFile(path)) {
        place.Complain("there is no file \"" + file + "\"");
    }
}

}  // namespace

FileToMake FileOfDocument(const std::string& path) {
    return {path, "not read by anybody\n", SecondsOf("2024-05-01T12:00:00Z")};
}

std::vector<FileToMake> ReadFiles(ObjectReader& reader, Sources sources) {
    std::vector<FileToMake> files;
    reader.ForEach("files", keys::kFile, [&](ObjectReader& value) {
        FileToMake file{NeedPathInRun(value, "path"), value.Text("text", ""), std::nullopt};
        if (const auto time = value.OptionalText("modified")) {
            file.modified = ReadTime(*time, value.PlaceOf("modified"));
        }
        file.from = value.Text("from", "");
        if (!file.from.empty() && !file.text.empty()) {
            value.OwnPlace().Complain("holds either \"text\" or what it is copied \"from\"");
        }
        if (sources == Sources::kAreThere) {
            CheckIsThere(file.from, value.PlaceOf("from"));
        }
        files.push_back(std::move(file));
    });
    return files;
}

std::vector<CopyToMake> UsualCopies() { return {{"PluginCoreX64.dll", "host/PluginCoreX64.dll"}}; }

std::vector<CopyToMake> ReadCopies(ObjectReader& reader) {
    const Json& array = reader.Array("copies");
    std::vector<CopyToMake> copies;
    for (std::size_t i = 0; i < array.size(); ++i) {
        if (array[i].is_string()) {
            CheckPathInRun(array[i].get<std::string>(), reader.PlaceOf("copies").Element(i));
            CheckIsInKit(array[i].get<std::string>(), reader.PlaceOf("copies").Element(i));
            copies.push_back({array[i].get<std::string>(), "host/" + array[i].get<std::string>()});
            continue;
        }
        ObjectReader copy(array[i], reader.PlaceOf("copies").Element(i), keys::kCopy);
        // What is copied lies beside simhost.exe, which is as little left.
        copies.push_back({NeedPathInRun(copy, "copy"), NeedPathInRun(copy, "to")});
        CheckIsInKit(copies.back().what, copy.PlaceOf("copy"));
        copy.Finish();
    }
    return copies;
}

}  // namespace simhost
