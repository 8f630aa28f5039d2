#include "simhost/launch/OutputFile.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

// A file that is written anew must be one of its kind already, or empty: nobody's own file is lost to a slip of the
// hand.
void CheckIsOfItsKind(const std::string& option, const std::filesystem::path& named, const std::string& mark,
                      const std::string& kind) {
    std::ifstream stream(named, std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    if (!text.empty() && text.find(mark) == std::string::npos) {
        throw std::runtime_error(option + ": " + Utf8(std::filesystem::absolute(named).wstring()) +
                                 " is there and is no " + kind + "; name another file");
    }
}

}  // namespace

void CheckCanBeWritten(const std::string& option, const std::filesystem::path& named) {
    if (named.empty()) {
        return;
    }
    const std::filesystem::path file = std::filesystem::absolute(named);
    if (!std::filesystem::is_directory(file.parent_path())) {
        throw std::runtime_error(option + ": there is no folder " + Utf8(file.parent_path().wstring()));
    }
    if (std::filesystem::is_directory(file)) {
        throw std::runtime_error(option + ": " + Utf8(file.wstring()) + " is a folder; name a file");
    }
    const bool wasThere = std::filesystem::exists(file);
    if (!std::ofstream(file, std::ios::binary | std::ios::app)) {
        throw std::runtime_error(option + ": cannot write " + Utf8(file.wstring()));
    }
    if (!wasThere) {
        std::filesystem::remove(file);
    }
}

void CheckOutputFile(const std::string& option, const std::filesystem::path& named, const std::string& mark,
                     const std::string& kind) {
    CheckCanBeWritten(option, named);
    CheckIsOfItsKind(option, named, mark, kind);
}

}  // namespace simhost
