#include "simhost/scenario/JsonText.h"

#include <utf8cpp/utf8.h>

#include <cstddef>
#include <iterator>

#include "simhost/scenario/SyntaxWords.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

// Far more than any scenario needs, and few enough for everything that walks through the value.
constexpr std::size_t kDeepest = 100;
// To look for a name that stands there twice takes time for each pair of them.
constexpr std::size_t kMostMembers = 1000;
constexpr std::size_t kLongest = std::size_t{16} * 1024 * 1024;

// Tells how far the library has read.
struct CountingIterator {
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    const char* at;
    const char** reached;

    reference operator*() const { return *at; }
    CountingIterator& operator++() {
        *reached = ++at;
        return *this;
    }
    bool operator==(const CountingIterator& other) const { return at == other.at; }
    bool operator!=(const CountingIterator& other) const { return at != other.at; }
};

// Builds the value, and notes where each part of it begins. The library calls it after each token.
class Builder : public nlohmann::json_sax<Json> {
  public:
    Builder(std::string_view text, JsonText& result) : mText(text), mReached(text.data()), mResult(result) {}

    CountingIterator Begin() { return {mText.data(), &mReached}; }
    CountingIterator End() { return {mText.data() + mText.size(), &mReached}; }

    bool null() override { return Scalar(nullptr); }
    bool boolean(bool value) override { return Scalar(value); }
    bool number_integer(number_integer_t value) override { return Scalar(value); }
    bool number_unsigned(number_unsigned_t value) override { return Scalar(value); }
    bool number_float(number_float_t value, const string_t&) override { return Scalar(value); }
    bool string(string_t& value) override {
        const std::size_t begin = Next();
        mEnd = Reached();
        Add(std::move(value), begin);
        return true;
    }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return Start(Json::object()); }
    bool start_array(std::size_t) override { return Start(Json::array()); }
    bool end_object() override { return Finish(); }
    bool end_array() override { return Finish(); }
    bool key(string_t& name) override {
        mKeyAt = Next();
        mEnd = Reached();
        Level& level = mLevels.back();
        level.key = name;
        if (level.value->size() == kMostMembers) {
            Complain(mKeyAt, "more than " + std::to_string(kMostMembers) + " members in one object");
            return false;
        }
        if (level.value->contains(name)) {
            Complain(mKeyAt, "the name \"" + name + "\" stands there twice");
        }
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const Json::exception& error) override {
        if (error.id == kNumberTooLarge) {
            Complain(Next(), "the number is too large");
            return false;
        }
        const std::size_t open = mLevels.empty() ? std::string_view::npos : mLevels.back().begin;
        const SyntaxMistake mistake = MistakeAt(mText, Next(), Reached(), open);
        Complain(mistake.offset, mistake.words);
        return false;
    }

  private:
    static constexpr int kNumberTooLarge = 406;

    struct Level {
        Json* value;
        std::string pointer;
        std::size_t begin;
        std::string key;
    };

    std::size_t Reached() const { return static_cast<std::size_t>(mReached - mText.data()); }
    // Where the token begins that was just read.
    std::size_t Next() const { return std::min(mText.find_first_not_of(" \t\r\n,:", mEnd), mText.size()); }

    bool Scalar(Json value) {
        const std::size_t begin = Next();
        mEnd = std::min(mText.find_first_of(" \t\r\n,]}", begin), mText.size());
        Add(std::move(value), begin);
        return true;
    }

    bool Start(Json value) {
        const std::size_t begin = Next();
        mEnd = begin + 1;
        if (mLevels.size() == kDeepest) {
            Complain(begin, "more than " + std::to_string(kDeepest) + " levels of arrays and objects");
            return false;
        }
        std::string pointer = PointerOfNext();
        Json* const added = Add(std::move(value), begin);
        mLevels.push_back({added, std::move(pointer), begin, ""});
        return true;
    }

    bool Finish() {
        mEnd = Next() + 1;
        mLevels.pop_back();
        return true;
    }

    std::string PointerOfNext() const {
        if (mLevels.empty()) {
            return "";
        }
        const Level& level = mLevels.back();
        return level.pointer + "/" +
               (level.value->is_array() ? std::to_string(level.value->size()) : AsPointerPart(level.key));
    }

    Json* Add(Json value, std::size_t begin) {
        const std::string pointer = PointerOfNext();
        if (mLevels.empty()) {
            mResult.positions.Add(pointer, begin, begin);
            mResult.value = std::move(value);
            return &mResult.value;
        }
        Level& level = mLevels.back();
        mResult.positions.Add(pointer, level.value->is_array() ? begin : mKeyAt, begin);
        if (level.value->is_array()) {
            level.value->push_back(std::move(value));
            return &level.value->back();
        }
        return &((*level.value)[level.key] = std::move(value));
    }

    void Complain(std::size_t offset, std::string words) {
        mResult.mistakes.push_back({mResult.positions.OfOffset(offset),
                                    mLevels.empty() ? "" : AsMemberPath(mLevels.back().pointer), std::move(words)});
    }

    std::string_view mText;
    const char* mReached;
    std::size_t mEnd = 0;  // of the last token
    std::size_t mKeyAt = 0;
    std::vector<Level> mLevels;
    JsonText& mResult;
};

// Windows editors write either of these at the beginning of a text. That of UTF-8 is harmless.
constexpr std::string_view kMarkOfUtf8 = "\xEF\xBB\xBF";
constexpr std::string_view kMarksOfUtf16[] = {"\xFF\xFE", "\xFE\xFF"};

// Why the text cannot be read at all, with the place; empty words when it can be tried.
SyntaxMistake ObstacleIn(std::string_view text) {
    if (text.size() > kLongest) {
        return {0, "the file has more than " + std::to_string(kLongest / 1024 / 1024) + " megabytes"};
    }
    for (const std::string_view mark : kMarksOfUtf16) {
        if (text.starts_with(mark)) {
            return {0, "the file is UTF-16; save it as UTF-8"};
        }
    }
    const auto invalid = utf8::find_invalid(text.begin(), text.end());
    if (invalid != text.end()) {
        return {static_cast<std::size_t>(invalid - text.begin()), "this is not UTF-8; save the file as UTF-8"};
    }
    return {0, text.find_first_not_of(" \t\r\n") == std::string_view::npos ? "the file is empty" : ""};
}

}  // namespace

JsonText ReadJsonText(std::string_view text) {
    if (text.starts_with(kMarkOfUtf8)) {
        text.remove_prefix(kMarkOfUtf8.size());
    }
    JsonText result{nullptr, PositionIndex(text), {}};
    const SyntaxMistake obstacle = ObstacleIn(text);
    if (!obstacle.words.empty()) {
        result.mistakes.push_back({result.positions.OfOffset(obstacle.offset), "", obstacle.words});
        return result;
    }
    Builder builder(text, result);
    result.readable = Json::sax_parse(builder.Begin(), builder.End(), &builder);
    return result;
}

}  // namespace simhost
