// One call as a double records it: the entry, its arguments by name, and what it answered. A call can be told in two
// forms: a line of JSON, for files,
//
//   {"entry":"HandleSaveDocument","arguments":{"path":"C:\\a.ai","report":"{}"},"answer":0}
//
// and a short text, for unit tests: HandleSaveDocument('C:\a.ai', '{}').
//
// Lifetime: the record keeps copies; nothing of the caller's is used after the operation returns.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace doubles {

// Small numbers in decimal, all others in hexadecimal: codes are readable in that only.
std::string AnswerInWords(std::int32_t answer);

class CallRecord {
  public:
    explicit CallRecord(const char* entry) : mEntry(entry) {}

    // A null pointer is recorded as such.
    CallRecord& Text(const char* name, const char* text);
    CallRecord& Texts(const char* name, const std::vector<std::string>& texts);
    CallRecord& Number(const char* name, std::int64_t number);
    // What a pointer to a number points to on entry.
    template <class Integer>
    CallRecord& NumberAt(const char* name, const Integer* number) {
        return number == nullptr ? Add(name, nullptr) : Number(name, static_cast<std::int64_t>(*number));
    }
    // A buffer for a text: its capacity, and whether all of it was zero. Without a size the contract of the entry tells
    // how long it is.
    CallRecord& Buffer(const char* buffer, const std::uint64_t* size);
    CallRecord& BufferOf(const char* buffer, std::uint64_t capacity);
    // Whether a pointer was given whose target is not the double's to read.
    CallRecord& Pointer(const char* name, const void* pointer);

    void SetAnswer(std::int32_t answer) { mAnswer = answer; }

    const std::string& Entry() const { return mEntry; }

    // Without a line end. A text that is not UTF-8, or that holds a control character, stands there a second time as
    // the hexadecimal digits of its bytes, under the argument's name with "_hex" added.
    std::string AsJson() const;
    // The arguments of that line.
    nlohmann::ordered_json Arguments() const;

    // Texts byte for byte and in quotes; a buffer as "4096 zeros, 4096" or, when it is not zeroed, as its text. Of
    // pointers only the null ones are shown, of the texts that Texts adds none.
    std::string AsText() const;

  private:
    struct GivenPointer {
        bool isSet;
    };
    struct GivenBuffer {
        std::optional<std::uint64_t> capacity;
        bool hasSize;                        // passed by the caller, not known from the contract
        std::optional<std::string> content;  // up to the first zero, if there is a buffer
        bool isZeroed;
    };
    using Value =
        std::variant<std::nullptr_t, std::string, std::vector<std::string>, std::int64_t, GivenPointer, GivenBuffer>;
    struct Argument {
        std::string name;
        Value value;
    };

    CallRecord& Add(const char* name, Value value);
    CallRecord& AddBuffer(const char* buffer, std::optional<std::uint64_t> capacity, bool hasSize);

    std::string mEntry;
    std::vector<Argument> mArguments;
    std::int32_t mAnswer = 0;
};

}  // namespace doubles
