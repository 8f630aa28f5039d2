#include "simhost/contract/ReplyChecks.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string_view>
#include <vector>

#include "doubles/common/CallRecord.h"
#include "plugincore/PluginCore.h"
#include "simhost/contract/ContractBook.h"
#include "simhost/contract/TextChecks.h"

namespace simhost::contract {

namespace {

struct JsonShape {
    std::string_view entry;
    std::uint64_t capacity;  // in a smaller buffer the text may be cut
    bool isReadAnyway;       // whatever was answered
    ClauseId parses, members, kinds;
    std::vector<ShapeFault> (*faultsOf)(const std::string& json);
};

constexpr JsonShape kShapes[] = {
    {"GetMenus", kPluginCoreMenusSize, true, ClauseId::kMenuJson, ClauseId::kMenuMembers, ClauseId::kMenuKinds,
     &FaultsOfMenus},
    {"GetSettings", kPluginCoreSettingsSize, false, ClauseId::kSettingsJson, ClauseId::kSettingsMembers,
     ClauseId::kSettingsMembers, &FaultsOfSettings},
};

class ReplyCheck {
  public:
    ReplyCheck(const LentText& reply, PluginCoreCall& call, int number)
        : mReply(reply),
          mCall(call),
          mNumber(number),
          mText(reply.original, strnlen(reply.original, static_cast<std::size_t>(reply.capacity))) {}

    void Run() {
        if (std::string_view(mReply.original, mReply.capacity) != mReply.before) {
            CheckText();
            CheckRest();
        }
        if (mReply.size != nullptr) {
            CheckSize();
        }
        if (!mCall.exception && !mText.empty()) {
            CheckJson();
        }
    }

  private:
    void Finding(ClauseId clause, const std::string& what) const {
        Book().Broken({clause, mCall.entry, mNumber, what});
    }

    void CheckText() {
        mCall.results.update(doubles::CallRecord("").Text("text", mText.c_str()).Arguments());
        Book().Tried(ClauseId::kBufferTerminated);
        if (mText.size() == mReply.capacity) {
            Finding(ClauseId::kBufferTerminated,
                    "no zero within the " + std::to_string(mReply.capacity) + " bytes of the buffer");
        }
        Book().Tried(ClauseId::kBufferUtf8);
        if (!IsUtf8(mText)) {
            Finding(ClauseId::kBufferUtf8, "the reply " + Printable(mText) + " is not UTF-8");
        }
    }

    // Zeros are as good as what was there: strncpy fills with them.
    void CheckRest() const {
        Book().Tried(ClauseId::kBufferRest);
        for (std::size_t i = mText.size() + 1; i < mReply.capacity; ++i) {
            if (mReply.original[i] != mReply.before[i] && mReply.original[i] != '\0') {
                Finding(ClauseId::kBufferRest, "byte " + std::to_string(i) +
                                                   " of the buffer was written, behind a text of " +
                                                   std::to_string(mText.size()) + " bytes");
                return;
            }
        }
    }

    void CheckSize() {
        Book().Tried(ClauseId::kSizeSane);
        const std::uint64_t size = *mReply.size;
        if (size == mReply.sizeBefore) {
            return;
        }
        mCall.results["size"] = size;
        // With or without the zero.
        if (size != mText.size() && size != mText.size() + 1) {
            Finding(ClauseId::kSizeSane, "the size became " + std::to_string(size) + ", it was " +
                                             std::to_string(mReply.sizeBefore) + ", and the text has " +
                                             std::to_string(mText.size()) + " bytes");
        }
    }

    void CheckJson() const {
        const auto* const shape = std::find_if(std::begin(kShapes), std::end(kShapes),
                                               [&](const JsonShape& one) { return one.entry == mCall.entry; });
        if (shape == std::end(kShapes) || mReply.capacity < shape->capacity ||
            (mCall.answer != kPluginCoreSuccess && !shape->isReadAnyway)) {
            return;
        }
        Book().Tried(shape->parses);
        const std::vector<ShapeFault> faults = shape->faultsOf(mText);
        if (faults.empty() || faults.front().kind != ShapeFaultKind::kNoJson) {
            Book().Tried(shape->members);
            Book().Tried(shape->kinds);
        }
        for (const ShapeFault& fault : faults) {
            const ClauseId clause = fault.kind == ShapeFaultKind::kNoJson          ? shape->parses
                                    : fault.kind == ShapeFaultKind::kMemberMissing ? shape->members
                                                                                   : shape->kinds;
            Finding(clause, fault.text + ", in " + Printable(mText));
        }
    }

    const LentText& mReply;
    PluginCoreCall& mCall;
    int mNumber;
    std::string mText;
};

}  // namespace

void CheckReply(const LentText& reply, PluginCoreCall& call, int number) { ReplyCheck(reply, call, number).Run(); }

}  // namespace simhost::contract
