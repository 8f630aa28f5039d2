// A zip archive of files that are in memory. The container is written here, what is in it compresses zlib.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>

class ZipArchive {
  public:
    // All files get this time.
    explicit ZipArchive(const SYSTEMTIME& localTime);

    // `name` is UTF-8, with slashes. Throws std::runtime_error when it cannot be compressed or is too big for the
    // format.
    void Add(std::string_view name, std::string_view content);

    // The whole archive; nothing may be added afterwards.
    std::string Finish();

  private:
    std::uint32_t mTime;  // as the format has it
    std::string mBytes;
    std::string mDirectory;
    std::uint16_t mCount = 0;
};
