#include "json/JsonText.h"

#include "json/JsonEscape.h"

void JsonText::CopyTo(wchar_t* units) const noexcept {
    // An escape is always longer than its unit.
    if (mRaw.size() == mSize) {
        mRaw.copy(units, mSize);
        return;
    }
    JsonTextCursor cursor(mRaw);
    while (!cursor.AtEnd()) {
        const wchar_t unit = cursor.TakeUnit();
        *units++ = unit == L'\\' ? *ReadJsonEscape(cursor) : unit;
    }
}
