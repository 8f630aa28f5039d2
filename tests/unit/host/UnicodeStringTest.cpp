#include "host/UnicodeString.h"

#include <gtest/gtest.h>
#include <utf8cpp/utf8.h>

#include "doubles/common/AllocationFaults.h"
#include "host/HeldSuites.h"
#include "support/Errors.h"
#include "support/host/TestHost.h"

namespace {

using Calls = std::vector<std::string>;

class UnicodeStringTest : public testing::Test {
  protected:
    UnicodeStringTest() { host.HoldSuites(); }

    TestHost host;
};

template <class Call>
AIErr CodeThrownBy(Call call) {
    try {
        call();
    } catch (const ai::Error& error) {
        EXPECT_STREQ(error.what(), "the host refused an operation on a string or a path");
        return error.Code();
    }
    return 0;
}

static_assert(sizeof(ai::UnicodeString) == 8 && sizeof(ai::UnicodeStringData) == 8);

TEST_F(UnicodeStringTest, DefaultIsANullPointerAndCostsNoHostCall) {
    {
        const ai::UnicodeString string;
        EXPECT_EQ(string.Data().impl, nullptr);
        EXPECT_EQ(string.ToUtf8(), "");
    }
    EXPECT_EQ(host.calls.Calls(), Calls());
}

TEST_F(UnicodeStringTest, TextIsHandedOverAsUtf8AndDestroyedOnce) {
    {
        const ai::UnicodeString string("gr\xC3\xBC\xC3\x9F");
        EXPECT_NE(string.Data().impl, nullptr);
        EXPECT_EQ(host.LiveStrings(), 1);
        EXPECT_EQ(string.ToUtf8(), "gr\xC3\xBC\xC3\x9F");
    }
    EXPECT_EQ(host.calls.Calls(), (Calls{"Initialize('gr\xC3\xBC\xC3\x9F', 1)", "Destroy()"}));
    EXPECT_EQ(host.LiveStrings(), 0);
}

TEST_F(UnicodeStringTest, TextNeedsNoTerminator) {
    const ai::UnicodeString string(std::string_view("abcdef", 3));
    EXPECT_EQ(string.ToUtf8(), "abc");
}

TEST_F(UnicodeStringTest, EmptyTextIsMadeByTheHostToo) {
    const ai::UnicodeString string("");
    EXPECT_EQ(host.calls.Calls(), Calls{"Initialize('', 1)"});
    EXPECT_EQ(string.ToUtf8(), "");
}

TEST_F(UnicodeStringTest, RefusedTextThrowsTheHostsCodeAndLeavesNothingToDestroy) {
    host.calls.Fail("Initialize", 0x4F4F4D21);
    EXPECT_EQ(CodeThrownBy([] { ai::UnicodeString string("a"); }), 0x4F4F4D21);
    EXPECT_EQ(host.calls.Calls(), Calls{"Initialize('a', 1)"});
}

TEST_F(UnicodeStringTest, CopyIsMadeByTheHost) {
    {
        const ai::UnicodeString first("abc");
        const ai::UnicodeString second(first);
        EXPECT_NE(second.Data().impl, first.Data().impl);
        EXPECT_EQ(second.ToUtf8(), "abc");
        EXPECT_EQ(host.LiveStrings(), 2);
    }
    EXPECT_EQ(host.calls.Calls(), (Calls{"Initialize('abc', 1)", "Copy()", "Destroy()", "Destroy()"}));
    EXPECT_EQ(host.LiveStrings(), 0);
}

TEST_F(UnicodeStringTest, CopyOfAnEmptyStringCostsNoHostCall) {
    const ai::UnicodeString first;
    const ai::UnicodeString second(first);
    EXPECT_EQ(second.Data().impl, nullptr);
    EXPECT_EQ(host.calls.Calls(), Calls());
}

TEST_F(UnicodeStringTest, RefusedCopyThrowsTheHostsCode) {
    const ai::UnicodeString first("abc");
    host.calls.Fail("Copy", 9);
    EXPECT_EQ(CodeThrownBy([&] { ai::UnicodeString second(first); }), 9);
    EXPECT_EQ(host.LiveStrings(), 1);
    EXPECT_EQ(host.calls.Count("Destroy"), 0);
}

TEST_F(UnicodeStringTest, AssignmentTakesTheOtherTextOver) {
    {
        const ai::UnicodeString source("source");
        ai::UnicodeString empty;
        ai::UnicodeString full("full");
        empty = source;
        full = source;
        EXPECT_EQ(empty.ToUtf8(), "source");
        EXPECT_EQ(full.ToUtf8(), "source");
        EXPECT_EQ(host.LiveStrings(), 3);
    }
    EXPECT_EQ(host.calls.Calls(), (Calls{"Initialize('source', 1)", "Initialize('full', 1)", "Assign()", "Assign()",
                                         "Destroy()", "Destroy()", "Destroy()"}));
    EXPECT_EQ(host.LiveStrings(), 0);
}

TEST_F(UnicodeStringTest, AssignmentToItselfCostsNoHostCall) {
    ai::UnicodeString string("abc");
    const ai::UnicodeString& same = string;
    string = same;
    EXPECT_EQ(string.ToUtf8(), "abc");
    EXPECT_EQ(host.calls.Count("Assign"), 0);
}

TEST_F(UnicodeStringTest, RefusedAssignmentThrowsAndLeavesTheTextAsItWas) {
    const ai::UnicodeString source("source");
    ai::UnicodeString target("target");
    host.calls.Fail("Assign", -3);
    EXPECT_EQ(CodeThrownBy([&] { target = source; }), -3);
    EXPECT_EQ(target.ToUtf8(), "target");
}

TEST_F(UnicodeStringTest, SurrogatePairsAndZerosSurvive) {
    const std::string text("\xF0\x9F\x98\x80\0z", 6);
    EXPECT_EQ(ai::UnicodeString(text).ToUtf8(), text);
}

TEST_F(UnicodeStringTest, ConvertedPathTakesOneBlockOfMemory) {
    for (const std::string text : {"C:/Users/designer/Documents/Catalogue/spread 12-13.ai",
                                   "C:/Users/designer/Documents/Gr\xC3\xB6\xC3\x9F"
                                   "e/\xE6\x96\x87\xE6\x9B\xB8 12-13.ai"}) {
        const ai::UnicodeString string(text);
        const std::size_t before = AllocationsMade();
        EXPECT_EQ(string.ToUtf8(), text);
        EXPECT_EQ(AllocationsMade() - before, 1u);
    }
}

TEST_F(UnicodeStringTest, UnpairedSurrogateOfTheHostThrows) {
    ai::UnicodeString string("ab");
    (*host.objects.strings.Find(string.Data().impl))[1] = 0xD800;
    EXPECT_THROW(string.ToUtf8(), utf8::invalid_utf16);
}

TEST_F(UnicodeStringTest, StringThatTheHostFilledIsDestroyed) {
    {
        ai::UnicodeString string;
        string.Data().impl = host.objects.strings.Add(u"filled");
        EXPECT_EQ(string.ToUtf8(), "filled");
    }
    EXPECT_EQ(host.calls.Calls(), Calls{"Destroy()"});
}

TEST_F(UnicodeStringTest, WithoutTheSuiteNothingIsDestroyedAndUseThrows) {
    void* left = nullptr;
    {
        const ai::UnicodeString string("abc");
        left = string.Data().impl;
        *sUnicodeStringSuite.Target() = nullptr;
        EXPECT_THROW(string.ToUtf8(), SuiteNotHeld);
        EXPECT_THROW(ai::UnicodeString("x"), SuiteNotHeld);
        EXPECT_THROW(ai::UnicodeString second(string), SuiteNotHeld);
    }
    EXPECT_EQ(host.calls.Count("Destroy"), 0);
    EXPECT_TRUE(host.objects.strings.Remove(left));
}

}  // namespace
