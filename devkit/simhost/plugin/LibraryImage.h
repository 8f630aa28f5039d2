// The headers of a program or library file, as far as they tell whether it can be loaded and what it needs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace simhost {

struct ImportedLibrary {
    std::string name;
    std::vector<std::string> functions;  // those that are imported by name
};

class LibraryImage {
  public:
    // Reads the whole file; holds nothing when it cannot be read.
    explicit LibraryImage(const std::filesystem::path& file);

    const std::string& Bytes() const { return mBytes; }
    bool IsPortableExecutable() const { return mHeaders != 0; }

    // The rest needs a portable executable.
    std::uint16_t Machine() const;
    bool IsLibrary() const;
    // Whether the file ends before one of its sections does.
    bool IsCutShort() const;
    // Of a 64-bit file.
    std::vector<ImportedLibrary> Imports() const;

  private:
    template <class Type>
    Type At(std::size_t offset) const;
    // 0 for an address in no section.
    std::size_t OffsetOf(std::uint32_t address) const;
    std::string TextAt(std::uint32_t address) const;

    std::string mBytes;
    std::size_t mHeaders = 0;  // where they begin; 0 for none
};

}  // namespace simhost
