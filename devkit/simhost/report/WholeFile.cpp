#include "simhost/report/WholeFile.h"

#include <fstream>
#include <stdexcept>

#include "doubles/common/Text.h"

namespace simhost {

void WriteWholeFile(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream << bytes;
    stream.close();
    if (!stream) {
        throw std::runtime_error("cannot write " + Utf8(file.wstring()));
    }
}

}  // namespace simhost
