#include "ZipArchive.h"

#include <zlib.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <type_traits>

namespace {

constexpr std::uint32_t kFileSignature = 0x04034B50;
constexpr std::uint32_t kDirectorySignature = 0x02014B50;
constexpr std::uint32_t kEndSignature = 0x06054B50;
constexpr std::uint16_t kVersion = 20;  // folders and deflate
constexpr std::uint16_t kNamesAreUtf8 = 0x0800;
constexpr std::uint16_t kDeflated = 8;

template <class Number>
void Put(std::string& out, Number number) {
    static_assert(std::is_unsigned_v<Number>);
    for (std::size_t i = 0; i < sizeof number; ++i) {
        out.push_back(static_cast<char>(static_cast<std::uint64_t>(number) >> (8 * i) & 0xFFU));
    }
}

template <class Number>
Number Fitting(std::size_t size) {
    if (size > std::numeric_limits<Number>::max()) {
        throw std::runtime_error("the bundle is too big for a zip archive");
    }
    return static_cast<Number>(size);
}

std::uint32_t FormatTime(const SYSTEMTIME& time) {
    constexpr unsigned kFirstYear = 1980;
    const auto year = time.wYear < kFirstYear ? 0U : time.wYear - kFirstYear;
    return (year << 25U) | (std::uint32_t{time.wMonth} << 21U) | (std::uint32_t{time.wDay} << 16U) |
           (std::uint32_t{time.wHour} << 11U) | (std::uint32_t{time.wMinute} << 5U) | (time.wSecond / 2U);
}

std::string Deflated(std::string_view content) {
    z_stream stream{};
    constexpr int kWithoutHeader = -15;
    constexpr int kMemoryLevel = 8;
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, kWithoutHeader, kMemoryLevel, Z_DEFAULT_STRATEGY) !=
        Z_OK) {
        throw std::runtime_error("there is not enough memory to compress the bundle");
    }
    const std::unique_ptr<z_stream, int (*)(z_stream*)> owner(&stream, deflateEnd);
    std::string out(deflateBound(&stream, Fitting<uLong>(content.size())), '\0');
    // zlib does not write there. NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(content.data()));
    stream.avail_in = Fitting<uInt>(content.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = Fitting<uInt>(out.size());
    if (deflate(&stream, Z_FINISH) != Z_STREAM_END) {
        throw std::runtime_error("the bundle cannot be compressed");
    }
    out.resize(stream.total_out);
    return out;
}

}  // namespace

ZipArchive::ZipArchive(const SYSTEMTIME& localTime) : mTime(FormatTime(localTime)) {}

void ZipArchive::Add(std::string_view name, std::string_view content) {
    const std::string deflated = Deflated(content);
    const auto checksum = static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(content.data()), Fitting<uInt>(content.size())));

    // What is the same in both places.
    std::string head;
    Put(head, kVersion);
    Put(head, kNamesAreUtf8);
    Put(head, kDeflated);
    Put(head, mTime);
    Put(head, checksum);
    Put(head, Fitting<std::uint32_t>(deflated.size()));
    Put(head, Fitting<std::uint32_t>(content.size()));
    Put(head, Fitting<std::uint16_t>(name.size()));
    Put(head, std::uint16_t{0});  // no extra field

    Put(mDirectory, kDirectorySignature);
    Put(mDirectory, kVersion);  // made by
    mDirectory += head;
    Put(mDirectory, std::uint16_t{0});  // no comment
    Put(mDirectory, std::uint16_t{0});  // first disk
    Put(mDirectory, std::uint16_t{0});  // internal attributes
    Put(mDirectory, std::uint32_t{0});  // external attributes
    Put(mDirectory, Fitting<std::uint32_t>(mBytes.size()));
    mDirectory += name;

    Put(mBytes, kFileSignature);
    mBytes += head;
    mBytes += name;
    mBytes += deflated;
    mCount = Fitting<std::uint16_t>(std::size_t{mCount} + 1);
}

std::string ZipArchive::Finish() {
    const auto begin = Fitting<std::uint32_t>(mBytes.size());
    const auto size = Fitting<std::uint32_t>(mDirectory.size());
    mBytes += mDirectory;
    Put(mBytes, kEndSignature);
    Put(mBytes, std::uint16_t{0});  // this disk
    Put(mBytes, std::uint16_t{0});  // the disk with the directory
    Put(mBytes, mCount);
    Put(mBytes, mCount);
    Put(mBytes, size);
    Put(mBytes, begin);
    Put(mBytes, std::uint16_t{0});  // no comment
    return std::move(mBytes);
}
