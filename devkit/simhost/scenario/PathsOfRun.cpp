#include "simhost/scenario/PathsOfRun.h"

#include <windows.h>

#include <algorithm>
#include <iterator>
#include <vector>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

bool IsSlash(char c) { return c == '/' || c == '\\'; }

// As Windows compares the names of files.
bool IsSameName(std::string_view one, std::string_view other) {
    const std::wstring a = Wide(one);
    const std::wstring b = Wide(other);
    return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()), TRUE) ==
           CSTR_EQUAL;
}

std::vector<std::string_view> Parts(std::string_view path) {
    std::vector<std::string_view> parts;
    while (!path.empty()) {
        const auto end = static_cast<std::size_t>(std::find_if(path.begin(), path.end(), &IsSlash) - path.begin());
        parts.push_back(path.substr(0, end));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return parts;
}

// Without the folder in front.
std::string_view Relative(std::string_view path, std::string_view workFolder) {
    while (!workFolder.empty() && IsSlash(workFolder.back())) {
        workFolder.remove_suffix(1);
    }
    const auto folder = Parts(workFolder);
    const auto parts = Parts(path);
    if (folder.empty() || parts.size() < folder.size() ||
        !std::equal(folder.begin(), folder.end(), parts.begin(), &IsSameName)) {
        return path;
    }
    const std::string_view last = parts[folder.size() - 1];
    const auto end = static_cast<std::size_t>(last.data() + last.size() - path.data());
    return end < path.size() ? path.substr(end + 1) : path;
}

// Windows opens a device under these names, in whatever folder and with whatever ending.
bool IsDevice(std::string_view part) {
    const std::string_view name = part.substr(0, part.find('.'));
    constexpr std::string_view kDevices[] = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$", "CLOCK$"};
    const auto isPort = [&](std::string_view port) {
        return name.size() == 4 && IsSameName(name.substr(0, 3), port) && name[3] >= '0' && name[3] <= '9';
    };
    return isPort("COM") || isPort("LPT") ||
           std::any_of(std::begin(kDevices), std::end(kDevices), [&](auto device) { return IsSameName(name, device); });
}

std::string WhyNoName(std::string_view part) {
    constexpr std::string_view kForbidden = "<>:\"|?*";
    if (part == "..") {
        return "\"..\" leads out of it";
    }
    if (part.empty() || part == ".") {
        return "it has an empty part";
    }
    if (part.ends_with('.') || part.ends_with(' ')) {
        return "Windows does not keep a dot or a blank at the end of a name";
    }
    if (IsDevice(part)) {
        return "\"" + std::string(part) + "\" is the name of a device";
    }
    const bool hasForbidden = std::any_of(part.begin(), part.end(), [&](char c) {
        return static_cast<unsigned char>(c) < 0x20 || kForbidden.find(c) != std::string_view::npos;
    });
    return hasForbidden ? "it has a character that no file name has" : "";
}

}  // namespace

std::string WhyNotInRun(std::string_view path, std::string_view workFolder) {
    const std::string_view relative = Relative(path, workFolder);
    if (relative.empty()) {
        return "it is empty";
    }
    if (IsSlash(relative.front()) || (relative.size() > 1 && relative[1] == ':')) {
        return "it is absolute, and lies elsewhere";
    }
    for (const std::string_view part : Parts(relative)) {
        if (std::string why = WhyNoName(part); !why.empty()) {
            return why;
        }
    }
    return {};
}

bool IsInFolder(std::string_view path, std::string_view folder) {
    return !folder.empty() && Relative(path, folder).size() != path.size();
}

bool IsSameInRun(std::string_view path, std::string_view other, std::string_view workFolder) {
    const auto parts = Parts(Relative(path, workFolder));
    const auto others = Parts(Relative(other, workFolder));
    return std::equal(parts.begin(), parts.end(), others.begin(), others.end(), &IsSameName);
}

void CheckPathInRun(const std::string& path, const Place& place) {
    if (const std::string why = WhyNotInRun(path, place.Context().workFolder); !why.empty()) {
        place.Complain("\"" + path + "\" is no path in the folder of the run: " + why);
    }
}

std::string NeedPathInRun(ObjectReader& reader, const std::string& key) {
    std::string path = reader.NeedText(key);
    // A missing one, or something else than a text, was complained about.
    if (const ObjectReader::Json* const value = reader.Find(key); value != nullptr && value->is_string()) {
        CheckPathInRun(path, reader.PlaceOf(key));
    }
    return path;
}

}  // namespace simhost
