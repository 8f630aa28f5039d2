// A JSON text in the making, for those who know its shape: the writer of a tree, and whoever needs no tree.
// Thread: any, one at a time.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

// Writes what it is told to; whether that is JSON is its user's business. The units are gathered in pieces: most of
// what comes is shorter than appending it to the text would be worth. May throw std::bad_alloc.
class JsonOutput {
  public:
    // Room for a text of this size is made at once; a longer one may follow.
    explicit JsonOutput(std::size_t size) { mText.reserve(size); }
    JsonOutput(const JsonOutput&) = delete;  // the next unit goes into this object's own piece
    JsonOutput& operator=(const JsonOutput&) = delete;

    void AddUnit(wchar_t unit) {
        MakeRoom(1);
        *mNext++ = unit;
    }

    // Written as it is.
    void AddKeyword(std::wstring_view keyword) {
        MakeRoom(keyword.size());
        if (keyword.size() > kPieceSize) {
            mText += keyword;
        } else {
            mNext = std::copy(keyword.begin(), keyword.end(), mNext);
        }
    }

    // null for a number that is not finite.
    void AddNumber(double number);

    // In quotes, with the escapes that it needs.
    void AddString(std::wstring_view units);

    std::wstring TakeText() {
        Flush();
        return std::move(mText);
    }

  private:
    static constexpr std::size_t kPieceSize = 516;

    void MakeRoom(std::size_t units) {
        if (static_cast<std::size_t>(std::end(mPiece) - mNext) < units) {
            Flush();
        }
    }

    // Not here: the compiler would put it into all that it is called from, and they would be calls themselves then.
    void Flush();

    std::wstring mText;
    wchar_t mPiece[kPieceSize];
    wchar_t* mNext = mPiece;
};
