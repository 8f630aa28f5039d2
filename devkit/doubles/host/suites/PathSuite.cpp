// "AI File Path Suite": the paths behind ai::FilePath.
#include <windows.h>

#include <utility>

#include "doubles/common/Text.h"
#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/HostPaths.h"
#include "doubles/host/suites/HostStrings.h"
#include "host/StringSuites.h"

namespace simhost {

namespace {

constexpr const char* kName = "AI File Path Suite";

AIErr DeleteFilePath(ai::FilePathData& path) {
    const SuiteCall call(kName, "DeleteFilePath");
    return call.Perform([&] {
        if (!Host().objects.paths.Remove(path.impl)) {
            return call.Stale(Host().objects.paths, path.impl, "path");
        }
        path.impl = nullptr;
        return 0;
    });
}

AIErr Copy(const ai::FilePathData& source, ai::FilePathData& target) {
    const SuiteCall call(kName, "Copy");
    return call.Perform([&] {
        const std::u16string* const units = Host().objects.paths.Find(source.impl);
        if (units == nullptr) {
            return call.Stale(Host().objects.paths, source.impl, "source");
        }
        if (target.impl != nullptr) {
            return call.BadArgument("the target holds a path already");
        }
        target.impl = Host().objects.paths.Add(std::u16string(*units));
        return 0;
    });
}

AIBool8 IsEmpty(const ai::FilePathData& path) {
    const SuiteCall call(kName, "IsEmpty", Unrecorded());
    if (path.impl == nullptr) {
        return 1;
    }
    const std::u16string* const units = Host().objects.paths.Find(path.impl);
    if (units == nullptr) {
        call.Stale(Host().objects.paths, path.impl, "path");
        return 1;
    }
    return units->empty() ? 1 : 0;
}

// An empty path object gives the empty text.
AIErr AnswerFromPath(const SuiteCall& call, const ai::FilePathData& path, ai::UnicodeStringData& text, bool nameOnly) {
    return call.Perform([&] {
        if (path.impl == nullptr) {
            return AnswerUnits(call, {}, text);
        }
        const std::u16string* const units = Host().objects.paths.Find(path.impl);
        if (units == nullptr) {
            return call.Stale(Host().objects.paths, path.impl, "path");
        }
        const std::size_t separator = nameOnly ? units->find_last_of(u"/\\") : std::u16string::npos;
        return AnswerUnits(call, separator == std::u16string::npos ? *units : units->substr(separator + 1), text);
    });
}

AIErr GetFileName(const ai::FilePathData& path, AIBool8 displayName, ai::UnicodeStringData& name) {
    return AnswerFromPath(SuiteCall(kName, "GetFileName", displayName), path, name, true);
}

AIErr GetFullPath(const ai::FilePathData& path, AIBool8 displayName, ai::UnicodeStringData& text) {
    return AnswerFromPath(SuiteCall(kName, "GetFullPath", displayName), path, text, false);
}

}  // namespace

AIErr AnswerPath(const SuiteCall& call, std::string_view utf8, ai::FilePathData& target) {
    std::u16string units = HostUnits(utf8);
    if (target.impl == nullptr) {
        target.impl = Host().objects.paths.Add(std::move(units));
        return 0;
    }
    std::u16string* const held = Host().objects.paths.Find(target.impl);
    if (held == nullptr) {
        return call.Stale(Host().objects.paths, target.impl, "path");
    }
    *held = std::move(units);
    return 0;
}

void InstallPathSuite(SuiteStore& suites) {
    auto& table = suites.Table<AIFilePathSuite>(kName);
    table.DeleteFilePath = &DeleteFilePath;
    table.Copy = &Copy;
    table.IsEmpty = &IsEmpty;
    table.GetFileName = &GetFileName;
    table.GetFullPath = &GetFullPath;
}

}  // namespace simhost
