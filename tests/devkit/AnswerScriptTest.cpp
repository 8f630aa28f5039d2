#include "doubles/common/AnswerScript.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <stdexcept>

#include "doubles/common/LibraryDouble.h"
#include "support/files/TemporaryFolder.h"

namespace {

using doubles::Answer;
using doubles::AnswerScript;
using doubles::Throw;

AnswerScript Loaded(const std::string& json) {
    AnswerScript script({"text", "repeated", "size", "enabled", "port"});
    script.Load(json);
    return script;
}

TEST(AnswerScript, EntryWithoutAnswersReturns0AndIsEnabled) {
    AnswerScript script;
    const Answer answer = script.TakeNext("Entry");
    EXPECT_EQ(answer.result, 0);
    EXPECT_EQ(answer.throws, Throw::kNothing);
    EXPECT_EQ(answer.text, std::nullopt);
    EXPECT_EQ(answer.enabled, 1);
    EXPECT_EQ(answer.port, 0u);
    EXPECT_EQ(script.DuringNext("Entry"), nullptr);
}

TEST(AnswerScript, AnswersAreUsedInTurnAndTheLastOneIsRepeated) {
    AnswerScript script = Loaded(R"({"A": [{"result": 1}, {"result": 2}], "B": [{"result": 9}], "C": []})");
    EXPECT_EQ(script.TakeNext("A").result, 1);
    EXPECT_EQ(script.TakeNext("B").result, 9);
    EXPECT_EQ(script.TakeNext("A").result, 2);
    EXPECT_EQ(script.TakeNext("A").result, 2);
    EXPECT_EQ(script.TakeNext("C").result, 0);
}

TEST(AnswerScript, EveryKeyIsRead) {
    AnswerScript script = Loaded(
        R"({"A": [{"result": -3, "text": "a text", "repeated": true, "size": 18446744073709551615, "enabled": 0,
                   "port": 4294967295}],
            "B": [{"throw": "foreign"}, {"throw": "cpp"}, {"throw": "access violation"}]})");
    const Answer answer = script.TakeNext("A");
    EXPECT_EQ(answer.result, -3);
    EXPECT_EQ(answer.text, "a text");
    EXPECT_TRUE(answer.isRepeated);
    EXPECT_EQ(answer.size, std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(answer.enabled, 0);
    EXPECT_EQ(answer.port, 4294967295u);
    EXPECT_EQ(script.TakeNext("B").throws, Throw::kForeignException);
    EXPECT_EQ(script.TakeNext("B").throws, Throw::kCppException);
    EXPECT_EQ(script.TakeNext("B").throws, Throw::kAccessViolation);
}

TEST(AnswerScript, WhatCannotBeUnderstoodIsRefused) {
    for (const char* const json :
         {"", "{", R"({"A": [{"unknown": 1}]})", R"({"A": [{"throw": "none"}]})", R"({"A": [{"result": "1"}]})"}) {
        EXPECT_THROW(Loaded(json), std::exception) << json;
    }
    AnswerScript withoutOwnKeys;
    EXPECT_THROW(withoutOwnKeys.Load(R"({"A": [{"text": "a"}]})"), std::runtime_error);
}

TEST(AnswerScript, LoadingBeginsAgain) {
    AnswerScript script = Loaded(R"({"A": [{"result": 1}, {"result": 2}]})");
    script.TakeNext("A");
    script["B"].result = 5;
    script.Load(R"({"A": [{"result": 3}, {"result": 4}]})");
    EXPECT_EQ(script.TakeNext("A").result, 3);
    EXPECT_EQ(script.TakeNext("B").result, 0);
}

TEST(AnswerScript, OneCallGetsAnAnswerOfItsOwn) {
    AnswerScript script = Loaded(R"({"A": [{"result": 1}, {"result": 2}]})");
    script.TakeNext("A");
    bool ran = false;
    Answer single;
    single.result = 7;
    single.during = [&] { ran = true; };
    script.AnswerOnce("A", single, 2);
    EXPECT_EQ(script.DuringNext("A"), nullptr);
    EXPECT_EQ(script.TakeNext("A").result, 2);
    script.DuringNext("A")();
    EXPECT_TRUE(ran);
    EXPECT_EQ(script.TakeNext("A").result, 7);
    EXPECT_EQ(script.TakeNext("A").result, 2);
}

TEST(AnswerScript, CodeChangesTheAnswerThatIsRepeated) {
    AnswerScript script = Loaded(R"({"A": [{"result": 1}, {"result": 2}]})");
    script["A"].result = 7;
    script["B"].text = "b";
    EXPECT_EQ(script.TakeNext("A").result, 1);
    EXPECT_EQ(script.TakeNext("A").result, 7);
    EXPECT_EQ(script.TakeNext("B").text, "b");
}

TEST(AnswerScript, NthCallFromNowFailsAndKeepsTheRestOfItsAnswer) {
    AnswerScript script;
    script["A"].text = "text";
    script.TakeNext("A");
    script.Fail("A", 5, 2);
    EXPECT_EQ(script.TakeNext("A").result, 0);
    const Answer failing = script.TakeNext("A");
    EXPECT_EQ(failing.result, 5);
    EXPECT_EQ(failing.text, "text");
    EXPECT_EQ(script.TakeNext("A").result, 0);
}

// --- a received call ------------------------------------------------------------------------------------------------

doubles::LibraryDouble NewDouble() {
    return doubles::LibraryDouble({"test", L"QUORVEL_NO_SCRIPT", L"QUORVEL_NO_RECORD", {}});
}

using Calls = std::vector<std::string>;

TEST(ReceivedCall, IsRecordedBeforeWhatRunsDuringItAndAnsweredAfter) {
    doubles::LibraryDouble library = NewDouble();
    Calls during;
    library.script["Outer"].during = [&] {
        during = library.calls.Calls();
        doubles::ReceivedCall(library, doubles::CallRecord("Inner")).Conclude();
        library.script["Outer"].result = 6;
    };
    doubles::ReceivedCall call(library, doubles::CallRecord("Outer").Number("n", 1));
    EXPECT_EQ(during, Calls{"Outer(1)"});
    EXPECT_EQ(call.Conclude().result, 6);
    EXPECT_EQ(library.calls.Calls(), (Calls{"Outer(1)", "Inner()"}));
    EXPECT_EQ(library.calls.Count("Inner"), 1);
}

TEST(ReceivedCall, OutcomeThrowsAsTheScriptSays) {
    doubles::LibraryDouble library = NewDouble();
    library.script["A"].throws = Throw::kCppException;
    const auto outcome = doubles::ReceivedCall(library, doubles::CallRecord("A")).Conclude();
    EXPECT_THROW(doubles::Return(outcome), std::runtime_error);
}

TEST(ReceivedCall, CallsOfAnEntryCanBeLeftOutAndForgotten) {
    doubles::LibraryDouble library = NewDouble();
    library.calls.LeaveOut("A");
    doubles::ReceivedCall(library, doubles::CallRecord("A")).Conclude();
    doubles::ReceivedCall(library, doubles::CallRecord("B")).Conclude();
    EXPECT_EQ(library.calls.Calls(), Calls{"B()"});
    EXPECT_EQ(library.calls.Count("A"), 1);
    library.calls.Show("A");
    EXPECT_EQ(library.calls.Calls(), (Calls{"A()", "B()"}));
    library.calls.Clear();
    EXPECT_EQ(library.calls.Calls(), Calls{});
    EXPECT_EQ(library.calls.Count("A"), 0);
}

TEST(ReceivedCall, OfADllIsNotKeptInMemory) {
    doubles::LibraryDouble library({"test", L"QUORVEL_SOME_SCRIPT", L"QUORVEL_NO_RECORD", {}});
    _wputenv_s(L"QUORVEL_SOME_SCRIPT", L"no-such-script.json");
    doubles::ReceivedCall(library, doubles::CallRecord("A")).Conclude();
    EXPECT_EQ(library.calls.Count("A"), 0);
    _wputenv_s(L"QUORVEL_SOME_SCRIPT", L"");
    doubles::ReceivedCall(library, doubles::CallRecord("A")).Conclude();
    EXPECT_EQ(library.calls.Count("A"), 1);
}

// A script of the same length, written at once and after a while.
TEST(ReceivedCall, FollowsTheScriptFileWheneverItIsWritten) {
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.Path() / "script.json";
    doubles::LibraryDouble library({"test", L"QUORVEL_SOME_SCRIPT", L"QUORVEL_NO_RECORD", {}});
    _wputenv_s(L"QUORVEL_SOME_SCRIPT", file.c_str());
    const auto answer = [&] { return doubles::ReceivedCall(library, doubles::CallRecord("A")).GetAnswer().result; };
    EXPECT_EQ(answer(), 0);
    for (const DWORD pause : {DWORD{0}, DWORD{0}, DWORD{300}, DWORD{0}, DWORD{300}}) {
        for (int result = 1; result <= 9; ++result) {
            WriteWholeFile(file, R"({"A": [{"result": )" + std::to_string(result) + "}]}");
            EXPECT_EQ(answer(), result);
            EXPECT_EQ(answer(), result);
        }
        Sleep(pause);
        EXPECT_EQ(answer(), 9);
    }
    std::filesystem::remove(file);
    EXPECT_EQ(answer(), 0);
    _wputenv_s(L"QUORVEL_SOME_SCRIPT", L"");
}

TEST(ReceivedCall, TextIsWrittenWithItsZeroAsFarAsItFits) {
    Answer answer;
    std::string buffer(4, '#');
    doubles::WriteText(answer, buffer.data(), 4);
    EXPECT_EQ(buffer, "####");
    answer.text = "ab";
    doubles::WriteText(answer, buffer.data(), 4);
    EXPECT_EQ(buffer, std::string("ab\0#", 4));
    answer.text = "abcdef";
    doubles::WriteText(answer, buffer.data(), 4);
    EXPECT_EQ(buffer, "abcd");
    doubles::WriteText(answer, nullptr, 0);
    answer = {};
    answer.text = "wxyz";
    answer.isWholeTextOnly = true;
    doubles::WriteText(answer, buffer.data(), 4);
    EXPECT_EQ(buffer, "abcd");
    answer.text = "xyz";
    doubles::WriteText(answer, buffer.data(), 4);
    EXPECT_EQ(buffer, std::string("xyz\0", 4));
}

TEST(ReceivedCall, RepeatedTextFillsTheBufferWithoutAZero) {
    Answer answer;
    answer.isRepeated = true;
    std::string buffer(6, '#');
    doubles::WriteText(answer, buffer.data(), 5);
    EXPECT_EQ(buffer, "######");
    answer.text = "ab";
    doubles::WriteText(answer, buffer.data(), 5);
    EXPECT_EQ(buffer, "ababa#");
    doubles::WriteText(answer, nullptr, 5);
}

}  // namespace
