// One call as it is recorded: a line of JSON, appended to the file that the library's environment variable names.
//
//   {"entry":"HandleSaveDocument","arguments":{"path":"C:\\a.ai","report":"{}"},"answer":0}
//
// A text that is not UTF-8, or that holds a control character, is recorded a second time as the hexadecimal digits of
// its bytes, under the argument's name with "_hex" added. A null pointer is recorded as null.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

class CallRecord {
  public:
    explicit CallRecord(const char* entry) : mEntry(entry) {}

    CallRecord& Text(const char* name, const char* text);
    CallRecord& Texts(const char* name, const std::vector<std::string>& texts);
    CallRecord& Number(const char* name, std::int64_t number);
    // What a pointer to a number points to on entry.
    template <class Integer>
    CallRecord& NumberAt(const char* name, const Integer* number) {
        mArguments[name] = number == nullptr ? nlohmann::ordered_json() : nlohmann::ordered_json(*number);
        return *this;
    }
    // A buffer for a text: its capacity, and whether all of it was zero. Without a size the caller's contract tells how
    // long it is.
    CallRecord& Buffer(const char* buffer, const std::uint64_t* size);
    CallRecord& BufferOf(const char* buffer, std::uint64_t capacity);
    // Whether a pointer was given whose target is not the library's to read.
    CallRecord& Pointer(const char* name, const void* pointer);

    // Appends the line.
    void Write(std::int32_t answer) const;

  private:
    std::string mEntry;
    nlohmann::ordered_json mArguments = nlohmann::ordered_json::object();
};
