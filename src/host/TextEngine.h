// Owners of the text engine's references. Each releases its reference once; a copy adds a reference, a move does not. A
// non-zero result of the text engine becomes ATE::Exception.
// Thread: main.
#pragma once

#include <utility>

#include "host/HostTypes.h"
#include "support/Errors.h"

namespace ATE {

// One counted reference; `Counting` names the suite operations of its kind.
template <class Ref, class Counting>
class CountedRef {
  public:
    // Takes over a reference that is already counted for the caller; null is allowed.
    explicit CountedRef(Ref ref = nullptr) noexcept : mRef(ref) {}
    CountedRef(const CountedRef& other) : mRef(other.mRef) {
        if (mRef != nullptr) {
            Counting::AddRef(mRef);
        }
    }
    CountedRef(CountedRef&& other) noexcept : mRef(std::exchange(other.mRef, nullptr)) {}
    CountedRef& operator=(CountedRef other) noexcept {
        std::swap(mRef, other.mRef);
        return *this;
    }
    ~CountedRef() {
        if (mRef != nullptr) {
            Counting::Release(mRef);
        }
    }

    Ref GetRef() const noexcept { return mRef; }
    // Asks the text engine; a null reference is null without asking.
    bool IsNull() const { return mRef == nullptr || Counting::IsNull(mRef); }

  private:
    Ref mRef;
};

struct FontCounting {
    static void AddRef(FontRef font);
    static void Release(FontRef font) noexcept;
    static bool IsNull(FontRef font);
};
struct CharFeaturesCounting {
    static void AddRef(CharFeaturesRef features);
    static void Release(CharFeaturesRef features) noexcept;
    static bool IsNull(CharFeaturesRef features);
};
struct TextRangeCounting {
    static void AddRef(TextRangeRef range);
    static void Release(TextRangeRef range) noexcept;
    static bool IsNull(TextRangeRef range);
};
struct TextRunsIteratorCounting {
    static void AddRef(TextRunsIteratorRef iterator);
    static void Release(TextRunsIteratorRef iterator) noexcept;
    static bool IsNull(TextRunsIteratorRef iterator);
};

class IFont : public CountedRef<FontRef, FontCounting> {
  public:
    using CountedRef::CountedRef;
};

class ICharFeatures : public CountedRef<CharFeaturesRef, CharFeaturesCounting> {
  public:
    using CountedRef::CountedRef;
    // The font of the features; *isAssigned becomes false when they do not set one.
    IFont GetFont(bool* isAssigned) const;
};

class ITextRunsIterator;

class ITextRange : public CountedRef<TextRangeRef, TextRangeCounting> {
  public:
    using CountedRef::CountedRef;
    ITextRunsIterator GetTextRunsIterator() const;
    // The features that are the same over the whole range.
    ICharFeatures GetUniqueCharFeatures() const;
};

class ITextRunsIterator : public CountedRef<TextRunsIteratorRef, TextRunsIteratorCounting> {
  public:
    using CountedRef::CountedRef;
    bool IsNotDone() const;
    void Next();
    ITextRange Item() const;
};

}  // namespace ATE
