// Each named difference between the plug-in's parser and nlohmann's is real: its file in the corpus shows it, and it
// alone.
#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>

#include "fuzz/reference/JsonTrees.h"
#include "fuzz/reference/StrictJson.h"
#include "fuzz/reference/Text.h"
#include "fuzz/Targets.h"
#include "json/JsonParser.h"
#include "tests/fuzz/Corpus.h"

namespace {

std::unique_ptr<JsonValue> Parse(const std::string& utf8) { return ParseJson(*ReferenceUtf16(utf8)); }

TEST(FuzzJsonDifferences, EachHasAFileThatShowsItAlone) {
    const std::map<std::string, std::string> corpus = CorpusOf("json");
    for (const NamedDifference& named : kDifferences) {
        SCOPED_TRACE(named.name);
        const std::string& text = corpus.at(std::string("difference-") + named.name + ".json");
        EXPECT_EQ(MadeStrict(text).found, Differences().set(static_cast<std::size_t>(named.difference)));
        EXPECT_EQ(Parse(text) != nullptr, named.pluginTakesIt);
        EXPECT_NE(nlohmann::json::accept(text), named.pluginTakesIt);
    }
}

TEST(FuzzJsonDifferences, EachFileOfThatNameIsInTheTable) {
    std::size_t files = 0;
    for (const auto& [name, text] : CorpusOf("json")) {
        files += name.starts_with("difference-") ? 1 : 0;
    }
    EXPECT_EQ(files, kDifferences.size());
}

TEST(FuzzJsonDifferences, StrictTextIsTheSameWithoutOne) {
    for (const char* text : {"", "[1,2.5e3,-0.1e40,true]", R"({"\ud83d\ude00":"\n\u0041"})", "nul1", "[00e999]",
                             "-.5e999", "1.e999", "\"open", "TRUEish", "+1"}) {
        EXPECT_EQ(MadeStrict(text).text, text);
        EXPECT_TRUE(MadeStrict(text).found.none()) << text;
    }
}

TEST(FuzzJsonDifferences, StrictTextHasWhatBothTake) {
    EXPECT_EQ(MadeStrict("[TRUE,nUll]").text, "[true,null]");
    EXPECT_EQ(MadeStrict("\"a\tb\"").text, "\"a\\u0009b\"");
    EXPECT_EQ(MadeStrict("[-0.5e999,1e400]").text, "[0,0]");
    EXPECT_EQ(MadeStrict("\xEF\xBB\xBF[]").text, "[]");
    EXPECT_EQ(MadeStrict(std::string("[]\0x", 4)).text, "[]");
    EXPECT_EQ(MadeStrict(R"("\ud800\ud83d\ude00")").text, "\"\xF4\x8F\x80\x80\\ud83d\\ude00\"");
}

// Negative tests of the oracles: a tree or a text that is not right is told.
TEST(FuzzJsonDifferences, AnotherTreeIsTold) {
    for (const auto& [ours, theirs] : std::map<std::string, std::string>{{"1", "2"},
                                                                         {"1.0001", "1"},
                                                                         {"[]", "{}"},
                                                                         {"[1]", "[1,1]"},
                                                                         {"\"a\"", "\"b\""},
                                                                         {"true", "false"},
                                                                         {"null", "0"},
                                                                         {R"({"a":1})", R"({"b":1})"},
                                                                         {R"({"a":[1]})", R"({"a":[2]})"},
                                                                         {"{", "{}"},
                                                                         {"{}", "{"}}) {
        EXPECT_THROW(RequireTheSameAsNlohmann(Parse(ours).get(), theirs), Disagreement) << ours;
    }
    EXPECT_THROW(RequireTheSameAsNlohmann(Parse("[]").get(), "\xEF\xBB\xBF[]"), Disagreement);
    EXPECT_THROW(RequireRoundTrip(*Parse("[[],[]]"), 2), Disagreement);
}

}  // namespace
