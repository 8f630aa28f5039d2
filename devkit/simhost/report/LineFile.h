// A file of lines, each written out to Windows before anything else happens, so that a lost process loses none. A line
// that does not arrive is told on standard error, and to the process that watches this one: see FlightRecorder.
//
// Thread: one at a time.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace simhost {

class LineFile {
  public:
    // "wb" makes the file anew, "ab" goes on at its end. Throws std::runtime_error when it cannot be opened.
    void Open(const std::filesystem::path& file, const wchar_t* mode);
    bool IsOpen() const { return mFile != nullptr; }
    // Adds the end of the line. Does nothing without a file, and after a line that did not arrive.
    void Write(const std::string& line);
    // A line did not arrive.
    bool HasFailed() const { return mHasFailed; }

  private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::filesystem::path mName;
    std::unique_ptr<std::FILE, Closer> mFile;
    bool mHasFailed = false;
};

}  // namespace simhost
