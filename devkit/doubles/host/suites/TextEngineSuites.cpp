// The text engine: ranges, their runs, the features of a run, the font of features. Every reference is counted.
#include "host/TextEngineSuites.h"

#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/SuiteCall.h"

namespace simhost {

namespace {

// The kinds of references: the name of the suite and where the host keeps the objects.
struct Ranges {
    using Ref = ATE::TextRangeRef;
    static constexpr const char* kName = "ATE TextRange Suite";
    static auto& Table() { return Host().objects.ranges; }
};
struct Iterators {
    using Ref = ATE::TextRunsIteratorRef;
    static constexpr const char* kName = "ATE TextRunsIterator Suite";
    static auto& Table() { return Host().objects.iterators; }
};
struct Features {
    using Ref = ATE::CharFeaturesRef;
    static constexpr const char* kName = "ATE CharFeatures Suite";
    static auto& Table() { return Host().objects.features; }
};
struct Fonts {
    using Ref = ATE::FontRef;
    static constexpr const char* kName = "ATE Font Suite";
    static auto& Table() { return Host().objects.fonts; }
};

template <class Kind>
void AddRef(typename Kind::Ref ref) {
    const SuiteCall call(Kind::kName, "AddRef");
    auto* const object = Kind::Table().Find(ref);
    if (object == nullptr) {
        call.Stale(Kind::Table(), ref, "reference");
        return;
    }
    ++object->references;
}

template <class Kind>
void Release(typename Kind::Ref ref) {
    const SuiteCall call(Kind::kName, "Release");
    auto* const object = Kind::Table().Find(ref);
    if (object == nullptr) {
        call.Stale(Kind::Table(), ref, "reference");
        return;
    }
    if (--object->references == 0) {
        Kind::Table().Remove(ref);
    }
}

template <class Kind>
ATEBool8 IsNull(typename Kind::Ref ref) {
    const SuiteCall call(Kind::kName, "IsNull");
    if (ref == nullptr) {
        return 1;
    }
    if (Kind::Table().Find(ref) == nullptr) {
        call.Stale(Kind::Table(), ref, "reference");
        return 1;
    }
    return 0;
}

// Begins an operation on an object. Null, with the result in `code`, when the operation is over already.
template <class Kind>
auto* ObjectFor(const SuiteCall& call, typename Kind::Ref ref, const void* target, ATEErr& code) {
    auto* object = Kind::Table().Find(ref);
    code = call.code;
    if (code != 0) {
        object = nullptr;
    } else if (target == nullptr) {
        code = call.BadArgument("nowhere to put the answer");
        object = nullptr;
    } else if (object == nullptr) {
        code = call.Stale(Kind::Table(), ref, "reference");
    }
    return object;
}

ATEErr GetTextRunsIterator(ATE::TextRangeRef range, ATE::TextRunsIteratorRef* iterator) {
    ATEErr code = 0;
    if (auto* object = ObjectFor<Ranges>(SuiteCall(Ranges::kName, "GetTextRunsIterator"), range, iterator, code)) {
        *iterator =
            static_cast<ATE::TextRunsIteratorRef>(Iterators::Table().Add({RunsIteratorObject{object->content.fonts}}));
    }
    return code;
}

ATEErr GetUniqueCharFeatures(ATE::TextRangeRef range, ATE::CharFeaturesRef* features) {
    ATEErr code = 0;
    if (auto* object = ObjectFor<Ranges>(SuiteCall(Ranges::kName, "GetUniqueCharFeatures"), range, features, code)) {
        const auto& fonts = object->content.fonts;
        *features = static_cast<ATE::CharFeaturesRef>(
            Features::Table().Add({CharFeaturesObject{fonts.empty() ? std::string() : fonts.front()}}));
    }
    return code;
}

ATEErr IsNotDone(ATE::TextRunsIteratorRef iterator, ATEBool8* notDone) {
    ATEErr code = 0;
    if (auto* object = ObjectFor<Iterators>(SuiteCall(Iterators::kName, "IsNotDone"), iterator, notDone, code)) {
        *notDone = object->content.at < object->content.fonts.size() ? 1 : 0;
    }
    return code;
}

ATEErr Next(ATE::TextRunsIteratorRef iterator) {
    ATEErr code = 0;
    if (auto* object = ObjectFor<Iterators>(SuiteCall(Iterators::kName, "Next"), iterator, &code, code)) {
        ++object->content.at;
    }
    return code;
}

ATEErr Item(ATE::TextRunsIteratorRef iterator, ATE::TextRangeRef* run) {
    ATEErr code = 0;
    const SuiteCall call(Iterators::kName, "Item");
    if (auto* object = ObjectFor<Iterators>(call, iterator, run, code)) {
        if (object->content.at >= object->content.fonts.size()) {
            return call.BadArgument("there is no run left");
        }
        *run = static_cast<ATE::TextRangeRef>(
            Ranges::Table().Add({TextRangeObject{{object->content.fonts[object->content.at]}}}));
    }
    return code;
}

ATEErr GetFont(ATE::CharFeaturesRef features, ATEBool8* isAssigned, ATE::FontRef* font) {
    ATEErr code = 0;
    if (auto* object = ObjectFor<Features>(SuiteCall(Features::kName, "GetFont"), features, font, code)) {
        if (isAssigned != nullptr) {
            *isAssigned = 1;
        }
        *font = static_cast<ATE::FontRef>(Fonts::Table().Add({FontObject{object->content.font}}));
    }
    return code;
}

template <class Kind, class Suite>
Suite& InstallCounting(SuiteStore& suites) {
    auto& table = suites.Table<Suite>(Kind::kName);
    table.AddRef = &AddRef<Kind>;
    table.Release = &Release<Kind>;
    table.IsNull = &IsNull<Kind>;
    return table;
}

}  // namespace

void InstallTextEngineSuites(SuiteStore& suites) {
    auto& ranges = InstallCounting<Ranges, ATE::TextRangeSuite>(suites);
    ranges.GetTextRunsIterator = &GetTextRunsIterator;
    ranges.GetUniqueCharFeatures = &GetUniqueCharFeatures;
    auto& iterators = InstallCounting<Iterators, ATE::TextRunsIteratorSuite>(suites);
    iterators.IsNotDone = &IsNotDone;
    iterators.Next = &Next;
    iterators.Item = &Item;
    auto& features = InstallCounting<Features, ATE::CharFeaturesSuite>(suites);
    features.GetFont = &GetFont;
    InstallCounting<Fonts, ATE::FontSuite>(suites);
}

}  // namespace simhost
