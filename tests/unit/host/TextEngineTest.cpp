#include "host/TextEngine.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "host/ArtSuites.h"
#include "host/HeldSuites.h"
#include "host/TextEngineSuites.h"
#include "support/host/TestHost.h"

namespace {

using Calls = std::vector<std::string>;

class TextEngineTest : public testing::Test {
  protected:
    TextEngineTest() {
        host.textFrames = {{"Minion", "Myriad"}};
        host.HoldSuites();
    }

    // The text of the only frame, counted for the caller as the host does it.
    ATE::TextRangeRef NewRange() {
        ATE::TextRangeRef range = nullptr;
        sTextFrameSuite->GetATETextRange(host.TextFrame(0), &range);
        host.calls.Clear();
        return range;
    }

    template <class Call>
    static ATEErr CodeThrownBy(Call call) {
        try {
            call();
        } catch (const ATE::Exception& exception) {
            EXPECT_STREQ(exception.what(), "the text engine refused an operation");
            return exception.Code();
        }
        return 0;
    }

    TestHost host;
};

static_assert(std::is_base_of_v<std::exception, ATE::Exception>);

TEST_F(TextEngineTest, ReferenceIsReleasedOnce) {
    {
        const ATE::ITextRange range(NewRange());
        EXPECT_NE(range.GetRef(), nullptr);
        EXPECT_EQ(host.LiveReferences(), 1);
    }
    EXPECT_EQ(host.calls.Calls(), Calls{"Release()"});
}

TEST_F(TextEngineTest, NullReferenceCostsNoCall) {
    {
        const ATE::ITextRange range;
        const ATE::ITextRange copy(range);
        EXPECT_EQ(copy.GetRef(), nullptr);
        EXPECT_TRUE(copy.IsNull());
    }
    EXPECT_EQ(host.calls.Calls(), Calls());
}

TEST_F(TextEngineTest, TextEngineIsAskedWhetherAReferenceIsNull) {
    {
        const ATE::ITextRange range(NewRange());
        EXPECT_FALSE(range.IsNull());
    }
    EXPECT_EQ(host.calls.Calls(), (Calls{"IsNull()", "Release()"}));
}

TEST_F(TextEngineTest, CopyAddsAReference) {
    {
        const ATE::ITextRange first(NewRange());
        const ATE::ITextRange second(first);
        EXPECT_EQ(second.GetRef(), first.GetRef());
        EXPECT_EQ(host.LiveReferences(), 2);
    }
    EXPECT_EQ(host.calls.Calls(), (Calls{"AddRef()", "Release()", "Release()"}));
}

TEST_F(TextEngineTest, MoveAddsNone) {
    {
        ATE::ITextRange first(NewRange());
        const ATE::ITextRange second(std::move(first));
        EXPECT_EQ(first.GetRef(), nullptr);  // promised
    }
    EXPECT_EQ(host.calls.Calls(), Calls{"Release()"});
}

TEST_F(TextEngineTest, AssignmentReleasesWhatItReplaces) {
    const ATE::TextRangeRef one = NewRange();
    const ATE::TextRangeRef other = NewRange();
    {
        ATE::ITextRange first(one);
        const ATE::ITextRange second(other);
        first = second;
        EXPECT_EQ(first.GetRef(), other);
        EXPECT_EQ(host.calls.Calls(), (Calls{"AddRef()", "Release()"}));
        EXPECT_EQ(host.LiveReferences(), 2);
    }
    EXPECT_EQ(host.calls.Calls(), (Calls{"AddRef()", "Release()", "Release()", "Release()"}));
}

TEST_F(TextEngineTest, AssignmentToItselfKeepsTheReference) {
    ATE::ITextRange range(NewRange());
    const ATE::ITextRange& same = range;
    range = same;
    EXPECT_EQ(host.LiveReferences(), 1);
}

TEST_F(TextEngineTest, RunsAreWalkedInOrderAndEverythingGoesBack) {
    {
        const ATE::ITextRange range(NewRange());
        ATE::ITextRunsIterator runs = range.GetTextRunsIterator();
        while (runs.IsNotDone()) {
            const ATE::ITextRange run = runs.Item();
            runs.Next();
        }
    }
    EXPECT_EQ(host.calls.Calls(),
              (Calls{"GetTextRunsIterator(0)", "IsNotDone()", "Item(0, 0)", "Next()", "Release()", "IsNotDone()",
                     "Item(0, 1)", "Next()", "Release()", "IsNotDone()", "Release()", "Release()"}));
}

TEST_F(TextEngineTest, FontOfTheFeaturesGoesBack) {
    {
        const ATE::ITextRange range(NewRange());
        const ATE::ICharFeatures features = range.GetUniqueCharFeatures();
        bool isAssigned = false;
        const ATE::IFont font = features.GetFont(&isAssigned);
        EXPECT_TRUE(isAssigned);
        EXPECT_FALSE(font.IsNull());
        EXPECT_FALSE(features.IsNull());
        EXPECT_EQ(host.LiveReferences(), 3);
    }
    EXPECT_EQ(host.calls.Calls(), (Calls{"GetUniqueCharFeatures()", "GetFont()", "IsNull()", "IsNull()", "Release()",
                                         "Release()", "Release()"}));
}

TEST_F(TextEngineTest, FontThatIsNotAssignedIsToldApart) {
    const ATE::ICharFeatures features = ATE::ITextRange(NewRange()).GetUniqueCharFeatures();
    host.objects.features.Find(features.GetRef())->content.fontIsAssigned = false;
    bool isAssigned = true;
    EXPECT_FALSE(features.GetFont(&isAssigned).IsNull());
    EXPECT_FALSE(isAssigned);
}

TEST_F(TextEngineTest, RefusedOperationsThrowTheEnginesCodeAndLeaveNothing) {
    const ATE::ITextRange range(NewRange());
    host.calls.Fail("GetTextRunsIterator", 31);
    host.calls.Fail("GetUniqueCharFeatures", 32);
    EXPECT_EQ(CodeThrownBy([&] { range.GetTextRunsIterator(); }), 31);
    EXPECT_EQ(CodeThrownBy([&] { range.GetUniqueCharFeatures(); }), 32);

    ATE::ITextRunsIterator runs = range.GetTextRunsIterator();
    host.calls.Fail("IsNotDone", 33);
    host.calls.Fail("Item", -34);
    host.calls.Fail("Next", 35);
    EXPECT_EQ(CodeThrownBy([&] { runs.IsNotDone(); }), 33);
    EXPECT_EQ(CodeThrownBy([&] { runs.Item(); }), -34);
    EXPECT_EQ(CodeThrownBy([&] { runs.Next(); }), 35);

    const ATE::ICharFeatures features = range.GetUniqueCharFeatures();
    host.calls.Fail("GetFont", 36);
    bool isAssigned = true;
    EXPECT_EQ(CodeThrownBy([&] { features.GetFont(&isAssigned); }), 36);
    EXPECT_TRUE(isAssigned);
    EXPECT_EQ(host.LiveReferences(), 3);
}

// A reference of one kind, as the host hands it out; the text engine refuses it to the suites of the other kinds.
template <class Reference, class Content>
void UseReference(simhost::ObjectTable<simhost::Counted<Content>>& table, const Content& content) {
    const Reference first(static_cast<decltype(Reference().GetRef())>(table.Add({content})));
    const Reference second(first);
    EXPECT_FALSE(second.IsNull());
}

TEST_F(TextEngineTest, EachKindUsesItsOwnSuite) {
    using namespace simhost;
    UseReference<ATE::ITextRange>(host.objects.ranges, TextRangeObject{0, {}});
    UseReference<ATE::ITextRunsIterator>(host.objects.iterators, RunsIteratorObject{0, {}});
    UseReference<ATE::ICharFeatures>(host.objects.features, CharFeaturesObject{""});
    UseReference<ATE::IFont>(host.objects.fonts, FontObject{""});
    for (const std::string suite : {"TextRange", "TextRunsIterator", "CharFeatures", "Font"}) {
        EXPECT_EQ(host.calls.Count("ATE " + suite + " Suite/AddRef"), 1) << suite;
        EXPECT_EQ(host.calls.Count("ATE " + suite + " Suite/IsNull"), 1) << suite;
        EXPECT_EQ(host.calls.Count("ATE " + suite + " Suite/Release"), 2) << suite;
    }
}

TEST_F(TextEngineTest, WithoutTheSuitesNothingIsReleasedAndUseThrows) {
    {
        const ATE::ITextRange range(reinterpret_cast<ATE::TextRangeRef>(1));
        ATE::ITextRunsIterator runs(reinterpret_cast<ATE::TextRunsIteratorRef>(2));
        const ATE::ICharFeatures features(reinterpret_cast<ATE::CharFeaturesRef>(3));
        const ATE::IFont font(reinterpret_cast<ATE::FontRef>(4));
        host.DropSuites();
        bool isAssigned = false;
        EXPECT_THROW(range.GetTextRunsIterator(), SuiteNotHeld);
        EXPECT_THROW(range.GetUniqueCharFeatures(), SuiteNotHeld);
        EXPECT_THROW(runs.IsNotDone(), SuiteNotHeld);
        EXPECT_THROW(runs.Item(), SuiteNotHeld);
        EXPECT_THROW(runs.Next(), SuiteNotHeld);
        EXPECT_THROW(features.GetFont(&isAssigned), SuiteNotHeld);
        EXPECT_THROW(font.IsNull(), SuiteNotHeld);
        EXPECT_THROW(ATE::IFont copy(font), SuiteNotHeld);
    }
    EXPECT_EQ(host.calls.Calls(), Calls());
}

}  // namespace
