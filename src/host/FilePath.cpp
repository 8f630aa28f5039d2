#include "host/FilePath.h"

#include "host/HeldSuites.h"
#include "host/StringSuites.h"
#include "support/Errors.h"

namespace ai {

namespace {

// The host's own name of a file, not the one it would show to a person.
constexpr AIBool8 kNotDisplayName = 0;

}  // namespace

std::string FileNameOf(const FilePathData& path) {
    if (path.impl == nullptr) {
        return {};
    }
    UnicodeString name;
    ThrowIfRefused(sFilePathSuite->GetFileName(path, kNotDisplayName, name.Data()));
    return name.ToUtf8();
}

std::string FullPathOf(const FilePathData& path) {
    if (path.impl == nullptr) {
        return {};
    }
    UnicodeString text;
    ThrowIfRefused(sFilePathSuite->GetFullPath(path, kNotDisplayName, text.Data()));
    return text.ToUtf8();
}

FilePath::FilePath(const FilePath& other) {
    if (other.mData.impl != nullptr) {
        ThrowIfRefused(sFilePathSuite->Copy(other.mData, mData));
    }
}

FilePath::~FilePath() {
    // Without the suite the path cannot be returned; the host frees it with itself.
    if (mData.impl != nullptr && sFilePathSuite) {
        sFilePathSuite->DeleteFilePath(mData);
    }
}

bool FilePath::IsEmpty() const { return mData.impl == nullptr || sFilePathSuite->IsEmpty(mData) != 0; }

}  // namespace ai
