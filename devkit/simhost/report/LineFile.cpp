#include "simhost/report/LineFile.h"

#include <stdexcept>

#include "doubles/common/Text.h"
#include "simhost/run/FlightRecorder.h"

namespace simhost {

void LineFile::Open(const std::filesystem::path& file, const wchar_t* mode) {
    mName = file;
    mFile.reset(_wfopen(file.c_str(), mode));
    if (mFile == nullptr) {
        throw std::runtime_error("cannot write " + Utf8(file.wstring()));
    }
}

void LineFile::Write(const std::string& line) {
    if (mFile == nullptr || mHasFailed) {
        return;
    }
    const std::string text = line + "\n";
    const bool isWritten = std::fwrite(text.data(), 1, text.size(), mFile.get()) == text.size();
    if (!isWritten || std::fflush(mFile.get()) != 0) {
        mHasFailed = true;
        std::fprintf(stderr, "simhost: cannot write %s; lines of it are missing\n", Utf8(mName.wstring()).c_str());
        RecordLostLines();
    }
}

}  // namespace simhost
