// A folder of a test's own below the system's temporary folder, removed with everything in it when the test ends.
#pragma once

#include <windows.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

class TemporaryFolder {
  public:
    TemporaryFolder() {
        static std::atomic<int> count = 0;
        const std::string name =
            "quorvel-test-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++count);
        mPath = std::filesystem::temp_directory_path() / name;
        std::filesystem::remove_all(mPath);
        std::filesystem::create_directories(mPath);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;  // a program or library of it may still be in use
        std::filesystem::remove_all(mPath, ignored);
    }

    const std::filesystem::path& Path() const { return mPath; }

  private:
    std::filesystem::path mPath;
};

// Writes the bytes as they are, and the folders above the file when they are missing.
inline void WriteWholeFile(const std::filesystem::path& path, const std::string& bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

// The bytes of a file as they are; empty when there is no such file.
inline std::string ReadWholeFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The folder of the test program, where the build puts what the tests load and start.
inline std::filesystem::path TestProgramFolder() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path();
}
