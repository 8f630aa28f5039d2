// Plays the corpora again, with 16-bit units and Windows' runtime library.
#include "fuzz/Targets.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/fuzz/Corpus.h"

std::map<std::string, std::string> CorpusOf(const std::string& target) {
    std::map<std::string, std::string> corpus;
    for (const auto& entry : std::filesystem::directory_iterator(QUORVEL_CORPUS + target)) {
        std::ifstream file(entry.path(), std::ios::binary);
        corpus[entry.path().filename().string()] = {std::istreambuf_iterator<char>(file), {}};
    }
    return corpus;
}

namespace {

void Play(const std::string& target, void (*fuzz)(std::string_view)) {
    const std::map<std::string, std::string> corpus = CorpusOf(target);
    EXPECT_GE(corpus.size(), 8u);
    for (const auto& [name, bytes] : corpus) {
        EXPECT_NO_THROW(fuzz(bytes)) << target << '/' << name;
    }
}

TEST(FuzzCorpusJson, HoldsTheOracles) { Play("json", FuzzJson); }
TEST(FuzzCorpusJsonUnits, HoldsTheOracles) { Play("json-units", FuzzJsonUnits); }
TEST(FuzzCorpusReport, HoldsTheOracles) { Play("report", FuzzReport); }
TEST(FuzzCorpusMenu, HoldsTheOracles) { Play("menu", FuzzMenu); }
TEST(FuzzCorpusLaunchInfo, HoldsTheOracles) { Play("launch-info", FuzzLaunchInfo); }
TEST(FuzzCorpusWords, HoldsTheOracles) { Play("words", FuzzWords); }
TEST(FuzzCorpusSettings, HoldsTheOracles) { Play("settings", FuzzSettings); }

}  // namespace
