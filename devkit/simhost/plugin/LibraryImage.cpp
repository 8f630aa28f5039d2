#include "simhost/plugin/LibraryImage.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

namespace simhost {

namespace {

constexpr std::size_t kMostImports = 4096;

std::string BytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

LibraryImage::LibraryImage(const std::filesystem::path& file) : mBytes(BytesOf(file)) {
    const auto dos = At<IMAGE_DOS_HEADER>(0);
    if (dos.e_magic != IMAGE_DOS_SIGNATURE || dos.e_lfanew <= 0) {
        return;
    }
    const auto headers = static_cast<std::size_t>(dos.e_lfanew);
    if (At<DWORD>(headers) == IMAGE_NT_SIGNATURE) {
        mHeaders = headers;
    }
}

// What lies behind the end of the file is zero.
template <class Type>
Type LibraryImage::At(std::size_t offset) const {
    Type value{};
    if (offset < mBytes.size() && mBytes.size() - offset >= sizeof value) {
        std::memcpy(&value, mBytes.data() + offset, sizeof value);
    }
    return value;
}

std::uint16_t LibraryImage::Machine() const { return At<IMAGE_NT_HEADERS64>(mHeaders).FileHeader.Machine; }

bool LibraryImage::IsLibrary() const {
    return (At<IMAGE_NT_HEADERS64>(mHeaders).FileHeader.Characteristics & IMAGE_FILE_DLL) != 0;
}

bool LibraryImage::IsCutShort() const {
    const auto header = At<IMAGE_NT_HEADERS64>(mHeaders).FileHeader;
    const std::size_t sections = mHeaders + offsetof(IMAGE_NT_HEADERS64, OptionalHeader) + header.SizeOfOptionalHeader;
    std::size_t end = sections + header.NumberOfSections * sizeof(IMAGE_SECTION_HEADER);
    for (std::size_t i = 0; i < header.NumberOfSections && end <= mBytes.size(); ++i) {
        const auto section = At<IMAGE_SECTION_HEADER>(sections + i * sizeof(IMAGE_SECTION_HEADER));
        end = std::max<std::size_t>(end, std::size_t{section.PointerToRawData} + section.SizeOfRawData);
    }
    return end > mBytes.size();
}

std::size_t LibraryImage::OffsetOf(std::uint32_t address) const {
    const auto header = At<IMAGE_NT_HEADERS64>(mHeaders).FileHeader;
    const std::size_t sections = mHeaders + offsetof(IMAGE_NT_HEADERS64, OptionalHeader) + header.SizeOfOptionalHeader;
    for (std::size_t i = 0; i < header.NumberOfSections; ++i) {
        const auto section = At<IMAGE_SECTION_HEADER>(sections + i * sizeof(IMAGE_SECTION_HEADER));
        if (address >= section.VirtualAddress && address - section.VirtualAddress < section.SizeOfRawData) {
            return std::size_t{section.PointerToRawData} + (address - section.VirtualAddress);
        }
    }
    return 0;
}

std::string LibraryImage::TextAt(std::uint32_t address) const {
    const std::size_t offset = OffsetOf(address);
    return offset == 0 || offset >= mBytes.size() ? std::string() : std::string(mBytes.c_str() + offset);
}

std::vector<ImportedLibrary> LibraryImage::Imports() const {
    std::vector<ImportedLibrary> imports;
    const auto directory =
        At<IMAGE_NT_HEADERS64>(mHeaders).OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (std::size_t at = OffsetOf(directory); at != 0 && imports.size() < kMostImports;
         at += sizeof(IMAGE_IMPORT_DESCRIPTOR)) {
        const auto descriptor = At<IMAGE_IMPORT_DESCRIPTOR>(at);
        if (descriptor.Name == 0) {
            break;
        }
        ImportedLibrary import{TextAt(descriptor.Name), {}};
        std::size_t thunk =
            OffsetOf(descriptor.OriginalFirstThunk != 0 ? descriptor.OriginalFirstThunk : descriptor.FirstThunk);
        for (; thunk != 0 && import.functions.size() < kMostImports; thunk += sizeof(std::uint64_t)) {
            const auto value = At<std::uint64_t>(thunk);
            if (value == 0) {
                break;
            }
            if ((value & IMAGE_ORDINAL_FLAG64) == 0) {
                // Behind a hint of two bytes.
                import.functions.push_back(TextAt(static_cast<std::uint32_t>(value) + 2));
            }
        }
        imports.push_back(std::move(import));
    }
    return imports;
}

}  // namespace simhost
