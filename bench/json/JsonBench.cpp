// The plug-in's JSON beside three well-known libraries. RapidJSON works on UTF-16 as the plug-in does; the other two
// know UTF-8 only, and get the same text in it.
#include <picojson.h>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "common/Run.h"
#include "json/JsonBlocks.h"
#include "json/JsonParser.h"
#include "json/JsonTexts.h"
#include "json/JsonWriter.h"

namespace {

using RapidEncoding = rapidjson::UTF16<>;
using RapidDocument = rapidjson::GenericDocument<RapidEncoding>;
using RapidBuffer = rapidjson::GenericStringBuffer<RapidEncoding>;
using RapidWriter = rapidjson::Writer<RapidBuffer, RapidEncoding, RapidEncoding>;

// A text in both encodings, and what each library makes of it. Shared by the works that are measured.
struct Subject {
    std::string utf8;
    std::wstring utf16;
    std::vector<std::size_t> blockSizes;
    std::vector<void*> blocks;
    std::wstring copy;

    std::unique_ptr<JsonValue> ours;
    RapidDocument rapid;
    nlohmann::json nlohmanns;
    picojson::value picos;

    explicit Subject(std::string text) : utf8(std::move(text)), blockSizes(bench::BlockSizes(utf8)) {
        rapidjson::StringStream narrow(utf8.c_str());
        rapid.ParseStream<rapidjson::kParseDefaultFlags, rapidjson::UTF8<>>(narrow);
        RapidBuffer buffer;
        RapidWriter writer(buffer);
        rapid.Accept(writer);
        utf16 = buffer.GetString();
        copy = utf16;
        blocks.reserve(blockSizes.size());
        ours = ParseJson(utf16);
        nlohmanns = nlohmann::json::parse(utf8);
        picojson::parse(picos, utf8);
        if (ours == nullptr || rapid.HasParseError() || nlohmann::json::parse(picos.serialize()) != nlohmanns) {
            throw std::invalid_argument("not every library takes the text");
        }
    }
};
using SubjectPointer = std::shared_ptr<Subject>;

constexpr const char* kBase = "RapidJSON, UTF-16";

void CompareParsing(bench::Run& run, const std::string& name, const SubjectPointer& subject) {
    const auto rapid = [subject] {
        RapidDocument document;
        document.Parse(subject->utf16.c_str());
        bench::Keep(document);
    };
    const auto pico = [subject] {
        picojson::value value;
        picojson::parse(value, subject->utf8);
        bench::Keep(value);
    };
    run.Compare(
        "parse + destroy: " + name, kBase,
        {{"this plug-in", [subject] { bench::Keep(ParseJson(subject->utf16)); }},
         {kBase, rapid},
         {"nlohmann", [subject] { bench::Keep(nlohmann::json::parse(subject->utf8)); }},
         {"picojson", pico},
         {"floor: one block per value", [subject] { bench::TakeAndGiveBack(subject->blockSizes, subject->blocks); }},
         {"floor: copy of the text", [subject] {
              std::memcpy(subject->copy.data(), subject->utf16.data(), subject->utf16.size() * sizeof(wchar_t));
              bench::Keep(subject->copy);
          }}});
}

void CompareWriting(bench::Run& run, const std::string& name, const SubjectPointer& subject) {
    const auto rapid = [subject] {
        RapidBuffer buffer;
        RapidWriter writer(buffer);
        subject->rapid.Accept(writer);
        bench::Keep(buffer);
    };
    run.Compare("write: " + name, kBase,
                {{"this plug-in", [subject] { bench::Keep(WriteJson(subject->ours.get())); }},
                 {kBase, rapid},
                 {"nlohmann", [subject] { bench::Keep(subject->nlohmanns.dump()); }},
                 {"picojson", [subject] { bench::Keep(subject->picos.serialize()); }},
                 {"floor: copy of the text in a new block", [subject] { bench::Keep(std::wstring(subject->utf16)); }}});
}

void CompareBoth(bench::Run& run, const std::string& name, std::string text) {
    const auto subject = std::make_shared<Subject>(std::move(text));
    CompareParsing(run, name, subject);
    CompareWriting(run, name, subject);
}

}  // namespace

void bench::Define(Run& run) {
    CompareBoth(run, "settings", SettingsText());
    CompareBoth(run, "menu of 52 items", MenuText());
    CompareBoth(run, "report of 2,000 fonts and 2,000 paths", ReportText(2000, 2000));
}
