#include "doubles/host/model/HostModel.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace simhost {

namespace {

// In lower case, without the dot.
std::string ExtensionOf(std::string_view path) {
    const std::size_t dot = path.find_last_of("./\\");
    std::string extension(dot == std::string_view::npos || path[dot] != '.' ? "" : path.substr(dot + 1));
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

bool Claims(const FileFormat& format, const std::string& extension) {
    std::istringstream list(format.extensions);
    std::string claimed;
    while (std::getline(list, claimed, ',')) {
        if (claimed == extension) {
            return true;
        }
    }
    return false;
}

}  // namespace

Document& HostModel::Named(std::string_view name) {
    const auto found = documents.find(std::string(name));
    if (found == documents.end()) {
        throw std::runtime_error("there is no document \"" + std::string(name) + "\"");
    }
    return found->second;
}

Document* HostModel::Current() { return current.empty() ? nullptr : &Named(current); }

void HostModel::Open(std::string_view name) {
    Document& document = Named(name);
    if (document.handle != nullptr) {
        throw std::runtime_error("the document \"" + document.name + "\" is open already");
    }
    document.handle = openDocuments.Add(document.name);
    open.push_back(document.name);
    current = document.name;
}

void HostModel::Close(std::string_view name) {
    Document& document = Named(name);
    std::erase(open, document.name);
    openDocuments.Remove(document.handle);
    std::erase_if(art.Objects(), [&](const auto& entry) { return entry.second.document == document.name; });
    document.formerHandle = std::exchange(document.handle, nullptr);
    current = open.empty() ? std::string() : open.back();
}

void* HostModel::ArtHandle(const Document& document, std::int16_t type, std::size_t index) {
    for (const auto& [handle, known] : art.Objects()) {
        if (known.document == document.name && known.type == type && known.index == index) {
            return reinterpret_cast<void*>(handle);
        }
    }
    return art.Add(Art{type, document.name, index});
}

void* HostModel::FontKey(const std::string& postScriptName) {
    for (const auto& [key, name] : fontKeys.Objects()) {
        if (name == postScriptName) {
            return reinterpret_cast<void*>(key);
        }
    }
    return fontKeys.Add(postScriptName);
}

SPPluginRef HostModel::PluginNamed(std::string_view name) const {
    for (const auto& [handle, plugin] : otherPlugins.Objects()) {
        if (plugin.name == name) {
            return reinterpret_cast<SPPluginRef>(handle);
        }
    }
    return nullptr;
}

std::vector<void*> HostModel::ActiveTimers() const {
    std::vector<void*> active;
    for (const auto& [handle, timer] : timers.Objects()) {
        if (timer.active != 0) {
            active.push_back(reinterpret_cast<void*>(handle));
        }
    }
    return active;
}

void* HostModel::FileFormatFor(std::string_view path) const {
    const std::string extension = ExtensionOf(path);
    void* best = nullptr;
    std::int32_t highest = 0;
    for (const auto& [handle, format] : fileFormats.Objects()) {
        const bool suits = path.empty() || Claims(format, extension);
        if (suits && (best == nullptr || format.priority > highest)) {
            best = reinterpret_cast<void*>(handle);
            highest = format.priority;
        }
    }
    return best;
}

}  // namespace simhost
