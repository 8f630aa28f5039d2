// "AI File Format Suite": the formats that the plug-in registers. The record is copied.
#include "host/FileFormatSuite.h"

#include "doubles/common/Text.h"
#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/SuiteCall.h"

namespace simhost {

namespace {

constexpr const char* kName = "AI File Format Suite";

std::string TextOfPascalString(const unsigned char* string) {
    return std::string(reinterpret_cast<const char*>(string + 1), string[0]);
}

bool IsComplete(const PlatformAddFileFormatExData* data) {
    return data != nullptr && data->types != nullptr && data->numTypes >= 1 && data->title != nullptr &&
           data->extensions != nullptr;
}

// "2 types ART5 EPSF, title 'Title', order 0, 'ai,eps'".
std::string ShownRecord(const PlatformAddFileFormatExData* data) {
    if (!IsComplete(data)) {
        return "incomplete record";
    }
    std::string shown = std::to_string(data->numTypes) + " types";
    for (std::int32_t i = 0; i < data->numTypes; ++i) {
        shown += " " + FourCharacters(static_cast<unsigned>(data->types[i]));
    }
    return shown + ", title '" + TextOfPascalString(data->title) + "', order " + std::to_string(data->titleOrder) +
           ", " + Shown(data->extensions);
}

AIErr AddFileFormatEx(SPPluginRef self, const char* name, PlatformAddFileFormatExData* data, std::int32_t options,
                      AIFileFormatHandle* format, std::int32_t extendedOptions) {
    const SuiteCall call(
        kName, "AddFileFormatEx", name, [&] { return ShownRecord(data); }, options,
        [&] { return Shown(extendedOptions) + (format == nullptr || *format == nullptr ? "" : ", handle not null"); });
    return call.Perform([&] {
        if (self == nullptr || name == nullptr || format == nullptr || !IsComplete(data)) {
            return call.BadArgument("plug-in, name, record or target is missing");
        }
        if (!call.IsOwnReference(self)) {
            return kBadParameterErr;
        }
        FileFormat added{
            name, {}, TextOfPascalString(data->title), data->titleOrder, data->extensions, options, extendedOptions, 0};
        for (std::int32_t i = 0; i < data->numTypes; ++i) {
            added.types.push_back(static_cast<std::uint32_t>(data->types[i]));
        }
        *format = static_cast<AIFileFormatHandle>(Host().model.fileFormats.Add(std::move(added)));
        return 0;
    });
}

AIErr SetFileFormatPriority(AIFileFormatHandle handle, std::int32_t priority) {
    const SuiteCall call(kName, "SetFileFormatPriority", handle, priority);
    return call.Perform([&] {
        FileFormat* const format = Host().model.fileFormats.Find(handle);
        if (format == nullptr) {
            return call.Stale(Host().model.fileFormats, handle, "file format");
        }
        format->priority = priority;
        return 0;
    });
}

}  // namespace

void InstallFileFormatSuite(SuiteStore& suites) {
    auto& table = suites.Table<AIFileFormatSuite>(kName);
    table.AddFileFormatEx = &AddFileFormatEx;
    table.SetFileFormatPriority = &SetFileFormatPriority;
}

}  // namespace simhost
