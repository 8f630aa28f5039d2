#include "simhost/scenario/HostileAnswers.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <random>
#include <string_view>

#include "simhost/scenario/CallTable.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kAnswersOfEach = 12;

// The last answer is repeated. Were it a failure of these, the plug-in would never start again, and nothing else would
// be tried.
constexpr std::string_view kStarting[] = {"GetAPIVersion", "InitializePluginCoreInterface"};

// Something that the plug-in can work with, to be spoilt.
constexpr const char* kGoodTexts[] = {
    R"([{"id":"fonts","title":"Fonts","enabled":true,"checked":false,"child":[{"id":"a","title":"A","enabled":true,"checked":true,"child":[]}]},{"id":"about","title":"About","enabled":true,"checked":false,"child":[]}])",
    R"({"DialogSuppression":2,"PickBestMatch":1,"dialogsuppression":3})",
    R"([{"PostScriptName":"Optima-Roman","Matches":["Optima","Futura-Book"]}])",
    "Futura-Book, Optima-Roman",
    "document-1",
};

class Generator {
  public:
    explicit Generator(std::uint64_t seed) : mRandom(seed) {}

    Json AnswerOf(const CallRow& row) {
        Json answer = Json::object();
        if (Chance(6)) {
            answer["throw"] = Chance(50) ? "foreign" : "cpp";
        }
        if (Chance(20)) {
            answer["result"] = Result();
        }
        if (row.answers.starts_with("text") && Chance(90)) {
            answer["text_hex"] = AsHexadecimal(Text());
            if (Chance(10)) {
                answer["repeated"] = true;
            }
            if (row.answers.ends_with("size") && Chance(10)) {
                answer["size"] = Size();
            }
        } else if (row.answers == "enabled") {
            constexpr int kFlags[] = {0, 1, 1, 1, 1, 2, 128, 255};
            answer["enabled"] = kFlags[Below(std::size(kFlags))];
        } else if (row.answers == "port") {
            constexpr std::uint32_t kPorts[] = {0, 1, 49152, 65535, 65536, 0x7FFFFFFF, 0xFFFFFFFF};
            answer["port"] = kPorts[Below(std::size(kPorts))];
        }
        return answer;
    }

  private:
    // Written out here, for the standard's own distributions differ between libraries.
    std::uint64_t Below(std::uint64_t end) { return mRandom() % end; }
    bool Chance(std::uint64_t percent) { return Below(100) < percent; }

    std::int32_t Result() {
        constexpr std::int32_t kResults[] = {1, -1, 77, 0x12000000, INT32_MIN, INT32_MAX};
        return kResults[Below(std::size(kResults))];
    }

    std::uint64_t Size() {
        constexpr std::uint64_t kSizes[] = {0, 1, 255, 32767, 32768, 100'000, 0xFFFFFFFF, INT64_MAX};
        return kSizes[Below(std::size(kSizes))];
    }

    std::string Text() {
        std::string text = kGoodTexts[Below(std::size(kGoodTexts))];
        switch (Below(9)) {
            case 0:
                return "";
            case 1:
                return text.substr(0, Below(text.size()));
            case 2:
                return std::string(1 + Below(100'000), 'x');
            case 3: {
                // One draw in each statement: the order within one is the compiler's.
                const std::size_t length = 1 + Below(20'000);
                return std::string(length, Chance(50) ? '[' : '{');
            }
            case 4:
                return RandomBytes(1 + Below(300));
            case 5:
                return text + text;
            case 6: {
                // As long as the usual buffers, or nearly so: the end of the text falls on the end of the buffer.
                const std::size_t buffer = std::size_t{1} << (8 + Below(8));
                return text + std::string(buffer - Below(3), ' ');
            }
            case 7:
                return Spoilt(std::move(text), 1 + Below(5));
            default:
                return text;
        }
    }

    // No zero among them: it would end the text.
    std::string RandomBytes(std::size_t count) {
        std::string bytes;
        for (std::size_t i = 0; i < count; ++i) {
            bytes += static_cast<char>(1 + Below(255));
        }
        return bytes;
    }

    std::string Spoilt(std::string text, std::size_t times) {
        for (std::size_t i = 0; i < times && !text.empty(); ++i) {
            const std::size_t at = Below(text.size());
            if (Chance(30)) {
                text.erase(at, 1 + Below(4));
            } else {
                text[at] = static_cast<char>(1 + Below(255));
            }
        }
        return text;
    }

    static std::string AsHexadecimal(const std::string& bytes) {
        constexpr char kDigits[] = "0123456789ABCDEF";
        std::string digits;
        for (const char c : bytes) {
            const auto byte = static_cast<unsigned char>(c);
            digits += kDigits[byte >> 4];
            digits += kDigits[byte & 15];
        }
        return digits;
    }

    std::mt19937_64 mRandom;
};

}  // namespace

Json HostileAnswers(std::uint64_t seed) {
    Generator generator(seed);
    Json answers = Json::object();
    for (const std::string& entry : EntriesOf(Library::kPluginCore)) {
        Json& list = answers[entry] = Json::array();
        for (std::size_t i = 0; i < kAnswersOfEach; ++i) {
            list.push_back(generator.AnswerOf(*FindCall(entry)));
        }
        if (std::find(std::begin(kStarting), std::end(kStarting), entry) != std::end(kStarting)) {
            list.push_back(Json::object());
        }
    }
    return answers;
}

}  // namespace simhost
