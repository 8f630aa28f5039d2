// The word file beside the PluginCore library, which in these tests is the test program.
#pragma once

#include <cstdio>
#include <string>

#include "support/plugincore/FakePluginCore.h"

class WordFile {
  public:
    // Writes the bytes as they are.
    explicit WordFile(const std::string& bytes) {
        std::FILE* const file = std::fopen(Path().c_str(), "wb");
        std::fwrite(bytes.data(), 1, bytes.size(), file);
        std::fclose(file);
    }
    WordFile(const WordFile&) = delete;
    WordFile& operator=(const WordFile&) = delete;
    ~WordFile() { std::remove(Path().c_str()); }

    static std::string Path() {
        const std::string program = FakePluginCorePath();
        return program.substr(0, program.find_last_of("/\\") + 1) + "DialogSuppression.tmp";
    }
};
