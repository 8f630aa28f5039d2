// What the host hands out and must get back: strings, file paths, blocks of memory, handles of found art, references
// of the text engine. At the end each table reports leaks.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "doubles/host/model/ObjectTable.h"
#include "doubles/host/Rules.h"
#include "host/HostTypes.h"

namespace simhost {

// A frame's text, or one of its runs.
struct TextRangeObject {
    std::size_t frame;               // its index in the document
    std::vector<std::string> fonts;  // of its runs
};
struct RunsIteratorObject {
    std::size_t frame;
    std::vector<std::string> fonts;
    std::size_t at = 0;
};
struct CharFeaturesObject {
    std::string font;
    bool fontIsAssigned = true;
};
struct FontObject {
    std::string font;
};

template <class Content>
struct Counted {
    Content content;
    std::int64_t references = 1;
};

struct Block {
    std::string debugName;
    std::vector<unsigned char> bytes;  // the plug-in's, then the guard
    std::size_t size;
};

// The memory behind a handle of found art: the plug-in gets the address of `first`.
struct Matches {
    AIArtHandle* first;
    std::vector<AIArtHandle> art;
};

struct HostObjects {
    ObjectTable<std::u16string> strings{0x21};
    ObjectTable<std::u16string> paths{0x22};
    ObjectTable<Counted<TextRangeObject>> ranges{0x23};
    ObjectTable<Counted<RunsIteratorObject>> iterators{0x24};
    ObjectTable<Counted<CharFeaturesObject>> features{0x25};
    ObjectTable<Counted<FontObject>> fonts{0x26};
    // Freed ones are kept, overwritten, so that reading them does not crash.
    std::map<const void*, std::unique_ptr<Block>> blocks;
    std::vector<std::unique_ptr<Block>> freedBlocks;
    std::map<const void*, std::unique_ptr<Matches>> matches;
    std::vector<std::unique_ptr<Matches>> disposedMatches;

    void* AllocateBlock(std::size_t size, std::string debugName);
    // Checks the guard. False when there is no such block.
    bool FreeBlock(void* address, RuleBook& rules);

    AIArtHandle** NewMatches(std::vector<AIArtHandle> art);
    bool DisposeMatches(const void* handle);

    void ReportLeaks(RuleBook& rules) const;
};

}  // namespace simhost
