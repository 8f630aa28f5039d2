// The text engine: ranges, their runs, the features of a run, the font of features. References are counted.
#include "host/TextEngineSuites.h"

#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/SuiteCall.h"

namespace simhost {

namespace {

// The kinds of references: the suite of each, and the table of its objects.
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

// Runs `use` with the object that an operation is called for.
template <class Kind, class Use>
ATEErr WithObject(const SuiteCall& call, typename Kind::Ref ref, const void* target, Use use) {
    return call.Perform([&]() -> ATEErr {
        if (target == nullptr) {
            return call.BadArgument("nowhere to put the answer");
        }
        auto* const object = Kind::Table().Find(ref);
        return object == nullptr ? call.Stale(Kind::Table(), ref, "reference") : use(object->content);
    });
}

// Hands out a reference that is counted for the caller.
template <class Kind, class Content>
void Answer(const SuiteCall& call, typename Kind::Ref* target, Content content) {
    *target = static_cast<typename Kind::Ref>(call.HandOut(Kind::Table(), Counted<Content>{std::move(content)}));
}

// The index of the frame that a range is of.
auto ShownFrame(ATE::TextRangeRef range) {
    return [range] {
        const auto* const object = Ranges::Table().Find(range);
        return object == nullptr ? Shown(static_cast<const void*>(range)) : Shown(object->content.frame);
    };
}

// The indices of the frame and the run that an iterator stands at.
auto ShownPosition(ATE::TextRunsIteratorRef iterator) {
    return [iterator] {
        const auto* const object = Iterators::Table().Find(iterator);
        return object == nullptr ? Shown(static_cast<const void*>(iterator))
                                 : Shown(object->content.frame) + ", " + Shown(object->content.at);
    };
}

ATEErr GetTextRunsIterator(ATE::TextRangeRef range, ATE::TextRunsIteratorRef* iterator) {
    const SuiteCall call(Ranges::kName, "GetTextRunsIterator", ShownFrame(range));
    return WithObject<Ranges>(call, range, iterator, [&](const TextRangeObject& text) {
        Answer<Iterators>(call, iterator, RunsIteratorObject{text.frame, text.fonts});
        return 0;
    });
}

ATEErr GetUniqueCharFeatures(ATE::TextRangeRef range, ATE::CharFeaturesRef* features) {
    const SuiteCall call(Ranges::kName, "GetUniqueCharFeatures");
    return WithObject<Ranges>(call, range, features, [&](const TextRangeObject& text) {
        Answer<Features>(call, features, CharFeaturesObject{text.fonts.empty() ? std::string() : text.fonts.front()});
        return 0;
    });
}

ATEErr IsNotDone(ATE::TextRunsIteratorRef iterator, ATEBool8* notDone) {
    const SuiteCall call(Iterators::kName, "IsNotDone");
    return WithObject<Iterators>(call, iterator, notDone, [&](const RunsIteratorObject& runs) {
        *notDone = runs.at < runs.fonts.size() ? 1 : 0;
        return 0;
    });
}

ATEErr Next(ATE::TextRunsIteratorRef iterator) {
    const SuiteCall call(Iterators::kName, "Next");
    return WithObject<Iterators>(call, iterator, &call, [](RunsIteratorObject& runs) {
        ++runs.at;
        return 0;
    });
}

ATEErr Item(ATE::TextRunsIteratorRef iterator, ATE::TextRangeRef* run) {
    const SuiteCall call(Iterators::kName, "Item", ShownPosition(iterator));
    return WithObject<Iterators>(call, iterator, run, [&](const RunsIteratorObject& runs) {
        if (runs.at >= runs.fonts.size()) {
            return call.BadArgument("there is no run left");
        }
        Answer<Ranges>(call, run, TextRangeObject{runs.frame, {runs.fonts[runs.at]}});
        return 0;
    });
}

ATEErr GetFont(ATE::CharFeaturesRef features, ATEBool8* isAssigned, ATE::FontRef* font) {
    const SuiteCall call(Features::kName, "GetFont");
    return WithObject<Features>(call, features, font, [&](const CharFeaturesObject& run) {
        if (isAssigned != nullptr) {
            *isAssigned = run.fontIsAssigned ? 1 : 0;
        }
        Answer<Fonts>(call, font, FontObject{run.font});
        return 0;
    });
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
