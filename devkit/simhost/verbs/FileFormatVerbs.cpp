#include "simhost/verbs/FileFormatVerbs.h"

#include <windows.h>

#include "doubles/common/Text.h"
#include "doubles/host/Host.h"
#include "simhost/run/Performance.h"

namespace simhost {

namespace {

// Whether the host's path is still what it was.
bool IsUntouched(const ai::FilePathData& path, const void* handle, const std::u16string& text) {
    const std::u16string* const kept = Host().objects.paths.Find(handle);
    return path.impl == handle && (handle == nullptr || (kept != nullptr && *kept == text));
}

}  // namespace

CheckFile ReadCheckFile(ObjectReader& reader) {
    const auto* const path = reader.Need("path");
    return {path == nullptr || path->is_null() ? std::nullopt : std::optional(TextOf(*path, reader.PlaceOf("path")))};
}

void Perform(const CheckFile& action, Performance& performance) {
    const std::string path = action.path.value_or("");
    void* const format = Host().model.FileFormatFor(path);
    if (format == nullptr) {
        performance.NotReached("no format is registered for \"" + path + "\"");
        return;
    }
    auto& paths = Host().objects.paths;
    const std::u16string text = Utf16(path, CP_UTF8).value_or(u"");
    void* const handle = action.path ? paths.Add(text) : nullptr;
    ai::FilePathData data{handle};
    const std::int32_t answer = performance.driver.SendFileCheck(format, data);
    if (!IsUntouched(data, handle, text)) {
        performance.Broken(Rule::kMessagePath, "the plug-in took or changed the path in the message");
    }
    paths.Remove(handle);
    performance.NoteAnswer("\"AI File Format\"/\"AI Check\" " + path, answer);
}

}  // namespace simhost
