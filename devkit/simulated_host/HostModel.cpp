#include "simulated_host/HostModel.h"

#include <algorithm>
#include <stdexcept>

namespace simhost {

Document& HostModel::Named(std::string_view name) {
    const auto found = documents.find(std::string(name));
    if (found == documents.end()) {
        throw std::runtime_error("the scenario describes no document \"" + std::string(name) + "\"");
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
    document.handle = nullptr;
    current = open.empty() ? std::string() : open.back();
}

void* HostModel::FontKey(const std::string& postScriptName) {
    for (const auto& [key, name] : fontKeys.Objects()) {
        if (name == postScriptName) {
            return reinterpret_cast<void*>(key);
        }
    }
    return fontKeys.Add(postScriptName);
}

}  // namespace simhost
