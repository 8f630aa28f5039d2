#include "doubles/common/CallLog.h"

#include <algorithm>

#include "doubles/common/OwnMemory.h"

namespace doubles {

const std::vector<std::string>& CallLog::Calls() const {
    const OwnMemory own;
    mTexts.clear();
    for (const auto& call : mCalls) {
        if (mLeftOut.count(call->Entry()) == 0) {
            mTexts.push_back(call->AsText());
        }
    }
    return mTexts;
}

int CallLog::Count(const std::string& entry) const {
    return static_cast<int>(
        std::count_if(mCalls.begin(), mCalls.end(), [&entry](const auto& call) { return call->Entry() == entry; }));
}

}  // namespace doubles
