#include "shipped/BareHost.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <string>

#include "host/DocumentSuite.h"
#include "host/MenuSuite.h"
#include "host/SPSuites.h"
#include "host/StringSuites.h"

namespace bench {

namespace {

constexpr std::int32_t kNoDocument = 1;

// What a host string points to.
std::array<std::u16string, 100> texts;
std::size_t itemCount = 0;

// For every operation that has no answer to give.
std::int32_t Succeed() { return 0; }

// A suite in which everything succeeds, apart from what is filled in.
template <class Suite>
struct SucceedingSuite {
    SucceedingSuite() {
        std::array<decltype(&Succeed), sizeof(Suite) / sizeof(void*)> operations;
        operations.fill(&Succeed);
        static_assert(sizeof operations == sizeof suite);
        std::memcpy(static_cast<void*>(&suite), operations.data(), sizeof operations);
    }
    Suite suite{};
};

struct LargestSuite {
    void* operations[160];
};

AIErr RefuseDocument(ai::FilePathData&) { return kNoDocument; }

// The plug-in takes one block, its globals.
alignas(std::max_align_t) std::array<std::byte, 1024> globalsBlock;

SPErr AllocateBlock(std::size_t size, const char*, void** block) {
    *block = globalsBlock.data();
    return size <= globalsBlock.size() ? 0 : 1;
}

AIErr AddMenuItem(SPPluginRef, const char*, AIPlatformAddMenuItemDataUS*, std::int32_t, AIMenuItemHandle* item) {
    *item = BareItem(++itemCount);
    const std::string digits = std::to_string(itemCount);
    texts[itemCount] = u't' + std::u16string(digits.begin(), digits.end());
    return 0;
}

AIErr GetItemText(AIMenuItemHandle item, ai::UnicodeStringData& text) {
    text.impl = &texts[reinterpret_cast<std::uintptr_t>(item)];
    return 0;
}

std::size_t Utf16(const ai::UnicodeStringData& string, const HostUtf16Unit*& units) {
    const auto& text = *static_cast<const std::u16string*>(string.impl);
    units = reinterpret_cast<const HostUtf16Unit*>(text.data());
    return text.size();
}

struct Suites {
    Suites() {
        documents.suite.GetDocumentFileSpecification = RefuseDocument;
        blocks.suite.AllocateBlock = AllocateBlock;
        menus.suite.AddMenuItem = AddMenuItem;
        menus.suite.GetItemText = GetItemText;
        strings.suite.UTF_16 = Utf16;
    }
    SucceedingSuite<AIDocumentSuite> documents;
    SucceedingSuite<SPBlocksSuite> blocks;
    SucceedingSuite<AIMenuSuite> menus;
    SucceedingSuite<AIUnicodeStringSuite> strings;
    SucceedingSuite<LargestSuite> others;
};

SPErr AcquireSuite(const char* name, std::int32_t, const void** suite) {
    static const Suites suites;
    static const std::array<std::pair<const char*, const void*>, 4> kNamed{{
        {"AI Document Suite", &suites.documents},
        {kSPBlocksSuite, &suites.blocks},
        {kAIMenuSuite, &suites.menus},
        {"AI Unicode String Suite", &suites.strings},
    }};
    *suite = &suites.others;
    for (const auto& [known, operations] : kNamed) {
        if (std::strcmp(known, name) == 0) {
            *suite = operations;
        }
    }
    return 0;
}

SPErr ReleaseSuite(const char*, std::int32_t) { return 0; }

SPBoolean IsEqual(const char* token1, const char* token2) { return std::strcmp(token1, token2) == 0 ? 1 : 0; }

constexpr SPBasicSuite kBasicSuite{AcquireSuite, ReleaseSuite, IsEqual, {}};

}  // namespace

SPMessageData BareMessage(void* globals) {
    return {kSPMessageCheck, reinterpret_cast<SPPluginRef>(&itemCount), globals, &kBasicSuite};
}

AIMenuItemHandle BareItem(std::size_t number) { return reinterpret_cast<AIMenuItemHandle>(number); }

void EmptyBareMenu() { itemCount = 0; }

}  // namespace bench
