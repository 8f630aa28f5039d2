#include "documents/FontList.h"

std::string_view PostScriptNameOf(const FontRecord& record) noexcept {
    const auto entry = record.find(std::string_view("PostScriptName"));
    return entry == record.end() ? std::string_view() : std::string_view(entry->second);
}

FontList::FontList(std::initializer_list<FontRecord> records) {
    for (const FontRecord& record : records) {
        Append(record);
    }
}

void FontList::Append(const FontRecord& record) {
    mRecords.push_back(record);
    try {
        mNames.insert(PostScriptNameOf(mRecords.back()));
    } catch (...) {
        mRecords.pop_back();
        throw;
    }
}
