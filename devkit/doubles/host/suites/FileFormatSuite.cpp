// "AI File Format Suite": the formats that the plug-in registers. The record is copied out.
#include "host/FileFormatSuite.h"

#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/SuiteCall.h"

namespace simhost {

namespace {

constexpr const char* kName = "AI File Format Suite";

std::string TextOfPascalString(const unsigned char* string) {
    return std::string(reinterpret_cast<const char*>(string + 1), string[0]);
}

AIErr AddFileFormatEx(SPPluginRef self, const char* name, PlatformAddFileFormatExData* data, std::int32_t options,
                      AIFileFormatHandle* format, std::int32_t extendedOptions) {
    const SuiteCall call(kName, "AddFileFormatEx");
    if (call.code != 0) {
        return call.code;
    }
    if (self == nullptr || name == nullptr || data == nullptr || format == nullptr || data->types == nullptr ||
        data->numTypes < 1 || data->title == nullptr || data->extensions == nullptr) {
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
}

AIErr SetFileFormatPriority(AIFileFormatHandle handle, std::int32_t priority) {
    const SuiteCall call(kName, "SetFileFormatPriority");
    if (call.code != 0) {
        return call.code;
    }
    FileFormat* const format = Host().model.fileFormats.Find(handle);
    if (format == nullptr) {
        return call.Stale(Host().model.fileFormats, handle, "file format");
    }
    format->priority = priority;
    return 0;
}

}  // namespace

void InstallFileFormatSuite(SuiteStore& suites) {
    auto& table = suites.Table<AIFileFormatSuite>(kName);
    table.AddFileFormatEx = &AddFileFormatEx;
    table.SetFileFormatPriority = &SetFileFormatPriority;
}

}  // namespace simhost
