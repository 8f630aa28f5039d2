// A PluginCore that misbehaves in one call of the day: what that does to the message, and to the rest of the day.
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <functional>
#include <limits>
#include <ostream>
#include <tuple>

#include "unit/frame/WorkingDayFixture.h"

namespace {

using doubles::Answer;
using doubles::Throw;

// One call.
struct Moment {
    std::string message;
    std::size_t index;  // in the message, from 0

    const std::string& Entry() const { return kCallsOfADay.at(message)[index]; }
};

std::vector<Moment> AllMoments() {
    std::vector<Moment> moments;
    for (const std::string& message : kMessages) {
        for (std::size_t i = 0; i < kCallsOfADay.at(message).size(); ++i) {
            moments.push_back({message, i});
        }
    }
    return moments;
}

bool IsOneOf(const std::string& name, const Names& names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// What a fault makes of the usual answer, and the entries that can have it.
struct Fault {
    const char* name;
    std::function<void(Answer& answer)> spoil;
    Names entries = {};  // none: all
};

// For failures of a test.
void PrintTo(const Moment& moment, std::ostream* stream) {
    *stream << moment.message << ", call " << moment.index << ", " << moment.Entry();
}
void PrintTo(const Fault& fault, std::ostream* stream) { *stream << fault.name; }

auto Repeated(const char* text) {
    return [=](Answer& answer) {
        answer.text = text;
        answer.isRepeated = true;
    };
}

auto WithResult(std::int32_t result) {
    return [=](Answer& answer) { answer.result = result; };
}

auto WithSize(std::uint64_t size) {
    return [=](Answer& answer) { answer.size = size; };
}

auto Throwing(Throw what) {
    return [=](Answer& answer) { answer.throws = what; };
}

const Names kWithSize = {"ActivateChosenFonts",     "GetIDForDocument",           "GetMenus",           "GetSettings",
                         "HandleCreateNewDocument", "HandleOpenExistingDocument", "InvokeResolveDialog"};

Names WithBuffer() {
    Names names = kWithSize;
    names.emplace_back("InvokeCommandDialog");
    return names;
}

std::string NameOf(const Fault& fault, const Moment& moment) {
    std::string name = fault.name + std::string("_");
    for (const char c : moment.message) {
        if (std::isalpha(static_cast<unsigned char>(c)) != 0) {
            name += c;
        }
    }
    return name + std::to_string(moment.index) + moment.Entry();
}

using Misfortune = std::tuple<Fault, Moment>;

std::vector<Misfortune> Misfortunes(const std::vector<Fault>& faults) {
    std::vector<Misfortune> all;
    for (const Fault& fault : faults) {
        for (const Moment& moment : AllMoments()) {
            if (fault.entries.empty() || IsOneOf(moment.Entry(), fault.entries)) {
                all.emplace_back(fault, moment);
            }
        }
    }
    return all;
}

const auto kNameOfMisfortune = [](const testing::TestParamInfo<Misfortune>& info) {
    return NameOf(std::get<Fault>(info.param), std::get<Moment>(info.param));
};

class PluginCoreFaultsTest : public WorkingDayTest, public testing::WithParamInterface<Misfortune> {
  protected:
    PluginCoreFaultsTest() {
        LoadFakePluginCore();
        ThePluginCore().script["HandleOpenExistingDocument"].text = "fonts";
    }

    static const Moment& When() { return std::get<Moment>(GetParam()); }

    // The usual answer of the moment, spoilt.
    static Answer SpoiltAnswer() {
        Answer answer = ThePluginCore().script[When().Entry()];
        if (When().message == "open restricted" && When().Entry() == "HandleOpenExistingDocument") {
            answer.result = kRestrictedFonts;
        }
        std::get<Fault>(GetParam()).spoil(answer);
        return answer;
    }

    // The call of the moment, one of the next message, gets the answer.
    static void Script(const Answer& answer) {
        const Names& calls = kCallsOfADay.at(When().message);
        const auto before =
            std::count(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(When().index), When().Entry());
        ThePluginCore().script.AnswerOnce(When().Entry(), answer, static_cast<int>(before) + 1);
    }

    // The day up to the message of the moment, which is for the test.
    void PerformUntilTheMoment() {
        for (auto message = kMessages.begin(); *message != When().message; ++message) {
            ASSERT_EQ(Perform(*message), 0);
        }
        ClearRecords();
    }

    // The rest of the day. A start-up that ended early leaves the plug-in unregistered: that day holds less.
    void ExpectTheRestToBeAsUsual() {
        for (auto message = std::find(kMessages.begin(), kMessages.end(), When().message) + 1;
             message != kMessages.end(); ++message) {
            SCOPED_TRACE(*message);
            ClearRecords();
            EXPECT_EQ(Perform(*message), 0);
            EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 0);
            EXPECT_EQ(NamesOf(PluginCoreCalls()), CallsOfLaterMessage(*message));
        }
        EXPECT_EQ(host.globals, nullptr);
        EXPECT_TRUE(host.HeldSuites().empty());
        EXPECT_EQ(host.LiveBlocks(), 0);
    }

  private:
    static Names CallsOfLaterMessage(const std::string& message) {
        const bool threw = SpoiltAnswer().throws != Throw::kNothing;
        const bool inStartUp = When().message == "start-up";
        const std::string& entry = When().Entry();
        // Refused, or not known yet to be accepted.
        const bool isRefused = inStartUp && entry == "GetAPIVersion" && When().index == 0;
        const bool isNotStarted = isRefused || (inStartUp && threw && entry == "InitializePluginCoreInterface");
        if (isRefused || (isNotStarted && message != "about")) {
            return {};
        }
        const bool hasNoNotifiers =
            inStartUp && (entry == "CreateMenusFromJSONBuffer" || (threw && entry == "GetMenus"));
        if (hasNoNotifiers &&
            IsOneOf(message, {"new", "open restricted", "open", "changed", "save", "about to close", "close"})) {
            return {};
        }
        return kCallsOfADay.at(message);
    }
};

// What the message still calls when this call of it throws.
Names CallsOfTheMessage(const Moment& moment) {
    Names calls = kCallsOfADay.at(moment.message);
    // The panel is no part of what a tick is for: it goes on. Without a bus the port is of no use.
    if (moment.Entry() == "RegisterPlugPlug") {
        std::erase(calls, "GetSocketPort");
        return calls;
    }
    // Shut-down gives everything back first.
    if (moment.Entry() == "GetSocketPort" || moment.Entry() == "TerminatePluginCoreInterface") {
        return calls;
    }
    calls.resize(moment.index + 1);
    return calls;
}

class ThrowingPluginCoreTest : public PluginCoreFaultsTest {};

TEST_P(ThrowingPluginCoreTest, EndsTheMessageAndNothingElse) {
    PerformUntilTheMoment();
    Script(SpoiltAnswer());
    EXPECT_EQ(Perform(When().message), 0);
    EXPECT_EQ(NamesOf(PluginCoreCalls()), CallsOfTheMessage(When()));
    const bool isSilent = IsOneOf(When().Entry(), {"RegisterPlugPlug", "GetSocketPort"});
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), isSilent ? 0 : 1);
    ExpectTheRestToBeAsUsual();
}

INSTANTIATE_TEST_SUITE_P(Moments, ThrowingPluginCoreTest,
                         testing::ValuesIn(Misfortunes({{"Cpp", Throwing(Throw::kCppException)},
                                                        {"Foreign", Throwing(Throw::kForeignException)}})),
                         kNameOfMisfortune);

class OddPluginCoreTest : public PluginCoreFaultsTest {
  protected:
    // The results that mean something to the host.
    static std::int32_t ExpectedAnswer() {
        return IsOneOf(When().Entry(), {"InvokeResolveDialog", "InvokeCommandDialog", "TerminatePluginCoreInterface"})
                   ? SpoiltAnswer().result
                   : kNoErr;
    }

    static Names ExpectedCalls() {
        const std::int32_t result = SpoiltAnswer().result;
        Names calls = kCallsOfADay.at(When().message);
        if (When().message == "start-up" && When().index == 0 && result != kNoErr) {
            // The library is refused.
            calls.resize(1);
        }
        if (When().message == "open restricted" && When().index == 1 && result != kRestrictedFonts) {
            // One code alone tells of restricted fonts: the fonts are resolved as usual.
            calls = kCallsOfADay.at("open");
        }
        return calls;
    }
};

TEST_P(OddPluginCoreTest, CostsNoMoreThanItsAnswer) {
    PerformUntilTheMoment();
    Script(SpoiltAnswer());
    EXPECT_EQ(Perform(When().message), ExpectedAnswer());
    EXPECT_EQ(NamesOf(PluginCoreCalls()), ExpectedCalls());
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 0);
    ExpectTheRestToBeAsUsual();
}

using Limits = std::numeric_limits<std::int32_t>;

INSTANTIATE_TEST_SUITE_P(Results, OddPluginCoreTest,
                         testing::ValuesIn(Misfortunes({{"Huge", WithResult(Limits::max())},
                                                        {"MostNegative", WithResult(Limits::min())},
                                                        {"MinusOne", WithResult(-1)}})),
                         kNameOfMisfortune);

// The last byte of the buffer is no zero in any of them.
INSTANTIATE_TEST_SUITE_P(Texts, OddPluginCoreTest,
                         testing::ValuesIn(Misfortunes({{"Unterminated", Repeated("x"), WithBuffer()},
                                                        {"NestedArrays", Repeated("["), WithBuffer()},
                                                        {"NestedObjects", Repeated("{\"a\":"), WithBuffer()},
                                                        {"StrayContinuation", Repeated("\x80"), WithBuffer()},
                                                        {"LoneLeadByte", Repeated("\xE3"), WithBuffer()},
                                                        {"LoneSurrogate", Repeated("\xED\xA0\x80"), WithBuffer()}})),
                         kNameOfMisfortune);

INSTANTIATE_TEST_SUITE_P(Sizes, OddPluginCoreTest,
                         testing::ValuesIn(Misfortunes({{"Zero", WithSize(0), kWithSize},
                                                        {"BeyondTheBuffer", WithSize(100'000), kWithSize},
                                                        {"Largest", WithSize(std::numeric_limits<std::uint64_t>::max()),
                                                         kWithSize}})),
                         kNameOfMisfortune);

TEST_F(WorkingDayTest, ReplyWithoutAZeroIsPassedOnAsLongAsItsBuffer) {
    LoadFakePluginCore();
    Repeated("x")(ThePluginCore().script["HandleOpenExistingDocument"]);
    Startup();
    ClearRecords();
    EXPECT_EQ(Perform("open"), 0);
    EXPECT_THAT(PluginCoreCalls(), testing::Contains("InvokeResolveDialog('" + std::string(32767, 'x') + "', 32767)"));
}

// Messages that the PluginCore causes from within: a panel that it closes, a dialog during which the host's timers run.
class CallingBackPluginCoreTest : public PluginCoreFaultsTest {};

TEST_P(CallingBackPluginCoreTest, IsRefusedWith1AndChangesNothing) {
    PerformUntilTheMoment();
    std::vector<std::int32_t> answers;
    Answer answer = SpoiltAnswer();
    answer.during = [&] {
        for (const auto& [caller, selector] :
             {std::pair("AI Timer", "AI Go"), std::pair("SP Interface", "Shutdown"), std::pair("SP Access", "Unload"),
              std::pair("SP Interface", "About"), std::pair("AI Menu", "AI Go")}) {
            SPInterfaceMessage message{host.MessageData()};
            answers.push_back(PluginMain(caller, selector, &message.d));
        }
    };
    Script(answer);
    EXPECT_EQ(Perform(When().message), 0);
    EXPECT_EQ(answers, std::vector<std::int32_t>(5, 1));
    EXPECT_EQ(NamesOf(PluginCoreCalls()), kCallsOfADay.at(When().message));
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 0);
}

INSTANTIATE_TEST_SUITE_P(Moments, CallingBackPluginCoreTest,
                         testing::ValuesIn(Misfortunes({{"Message", [](Answer&) {}}})), kNameOfMisfortune);

}  // namespace
