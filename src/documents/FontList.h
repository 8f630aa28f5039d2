// The fonts of a document: a record for each, in the order of first appearance.
// Thread: any.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <unordered_set>

// What is known of one font: so far its "PostScriptName". Keys are looked up without making a string of them.
using FontRecord = std::map<std::string, std::string, std::less<>>;

// The record's "PostScriptName"; empty when it has none.
// Lifetime: of the record.
std::string_view PostScriptNameOf(const FontRecord& record) noexcept;

class FontList {
  public:
    using value_type = FontRecord;
    using const_iterator = std::deque<FontRecord>::const_iterator;
    using iterator = const_iterator;

    FontList() = default;
    FontList(std::initializer_list<FontRecord> records);
    FontList(const FontList&) = delete;  // the names would be those of the other list's records
    FontList& operator=(const FontList&) = delete;

    void Append(const FontRecord& record);
    // Whether a record of the list has this "PostScriptName", to the byte.
    bool Contains(std::string_view name) const { return mNames.contains(name); }

    const_iterator begin() const noexcept { return mRecords.begin(); }
    const_iterator end() const noexcept { return mRecords.end(); }
    std::size_t size() const noexcept { return mRecords.size(); }
    bool empty() const noexcept { return mRecords.empty(); }
    bool operator==(const FontList& other) const { return mRecords == other.mRecords; }

  private:
    std::deque<FontRecord> mRecords;  // none is moved when the list grows
    // The records' own names: an index, for documents with thousands of fonts and runs of text without number.
    std::unordered_set<std::string_view> mNames;
};
