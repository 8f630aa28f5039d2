#include "support/fakes/FakeFileFormat.h"

#include "doubles/common/OwnMemory.h"
#include "support/fakes/FakeHost.h"

namespace {

std::string Characters(std::int32_t code) {
    const auto bits = static_cast<std::uint32_t>(code);
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        text += static_cast<char>(bits >> shift);
    }
    return text;
}

std::string Described(const PlatformAddFileFormatExData& data) {
    std::string text = std::to_string(data.numTypes) + " types";
    for (std::int32_t i = 0; i < data.numTypes; ++i) {
        text += " " + Characters(data.types[i]);
    }
    const std::string title(reinterpret_cast<const char*>(data.title) + 1, data.title[0]);
    return text + ", title '" + title + "', order " + std::to_string(data.titleOrder) + ", " + Quoted(data.extensions);
}

AIErr AddFileFormatEx(SPPluginRef self, const char* name, PlatformAddFileFormatExData* data, std::int32_t options,
                      AIFileFormatHandle* format, std::int32_t extendedOptions) {
    const AIErr answer =
        sFakeHost->Record("AddFileFormatEx", Quoted(name) + ", " + Described(*data) + ", " + std::to_string(options) +
                                                 ", " + std::to_string(extendedOptions) +
                                                 (self == sFakeHost->plugin ? "" : ", for another plug-in") +
                                                 (*format == nullptr ? "" : ", handle not null"));
    *format = sFakeHost->fileFormat.handle;
    return answer;
}

AIErr SetFileFormatPriority(AIFileFormatHandle format, std::int32_t priority) {
    return sFakeHost->Record("SetFileFormatPriority", Address(format) + ", " + std::to_string(priority));
}

AIFileFormatSuite FilledFileFormatSuite() {
    AIFileFormatSuite suite{};
    suite.AddFileFormatEx = kWithOwnMemory<AddFileFormatEx>;
    suite.SetFileFormatPriority = kWithOwnMemory<SetFileFormatPriority>;
    return suite;
}

}  // namespace

const AIFileFormatSuite& FakeFileFormatSuite() {
    static const AIFileFormatSuite suite = FilledFileFormatSuite();
    return suite;
}
