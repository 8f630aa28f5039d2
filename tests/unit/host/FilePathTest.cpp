#include "host/FilePath.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "host/HeldSuites.h"
#include "support/Errors.h"
#include "support/host/TestHost.h"

namespace {

using Calls = std::vector<std::string>;

static_assert(sizeof(ai::FilePath) == 8 && sizeof(ai::FilePathData) == 8);
static_assert(!std::is_copy_assignable_v<ai::FilePath>);

class FilePathTest : public testing::Test {
  protected:
    FilePathTest() { host.HoldSuites(); }

    // A path as a host call fills it: the receiver's to give back.
    void Fill(ai::FilePath& path, const std::u16string& text) { path.Data().impl = host.objects.paths.Add(text); }

    template <class Call>
    static AIErr CodeThrownBy(Call call) {
        try {
            call();
        } catch (const ai::Error& error) {
            return error.Code();
        }
        return 0;
    }

    TestHost host;
};

TEST_F(FilePathTest, DefaultIsANullPointerAndCostsNoHostCall) {
    {
        const ai::FilePath path;
        EXPECT_EQ(path.Data().impl, nullptr);
        EXPECT_TRUE(path.IsEmpty());
        const ai::FilePath copy(path);
        EXPECT_EQ(copy.Data().impl, nullptr);
    }
    EXPECT_EQ(host.calls.Calls(), Calls());
}

TEST_F(FilePathTest, GoesBackToTheHostOnce) {
    {
        ai::FilePath path;
        Fill(path, u"C:\\a.ai");
        EXPECT_FALSE(path.IsEmpty());
    }
    EXPECT_EQ(host.calls.Calls(), Calls{"DeleteFilePath()"});
    EXPECT_EQ(host.LivePaths(), 0);
}

TEST_F(FilePathTest, IsEmptyWhenTheHostSaysSo) {
    ai::FilePath path;
    Fill(path, u"");
    EXPECT_TRUE(path.IsEmpty());
}

TEST_F(FilePathTest, CopyIsMadeByTheHost) {
    {
        ai::FilePath first;
        Fill(first, u"C:\\a.ai");
        const ai::FilePath second(first);
        EXPECT_NE(second.Data().impl, first.Data().impl);
        EXPECT_EQ(ai::FullPathOf(second.Data()), "C:\\a.ai");
        EXPECT_EQ(host.LivePaths(), 2);
    }
    EXPECT_EQ(host.calls.Calls(),
              (Calls{"Copy()", "GetFullPath(0)", "Destroy()", "DeleteFilePath()", "DeleteFilePath()"}));
    EXPECT_EQ(host.LivePaths(), 0);
}

TEST_F(FilePathTest, RefusedCopyThrowsTheHostsCodeAndLeavesNothing) {
    {
        ai::FilePath first;
        Fill(first, u"C:\\a.ai");
        host.calls.Fail("Copy", 11);
        EXPECT_EQ(CodeThrownBy([&] { ai::FilePath second(first); }), 11);
    }
    EXPECT_EQ(host.calls.Count("DeleteFilePath"), 1);
}

TEST_F(FilePathTest, FileNameIsNotTheDisplayNameAndItsStringGoesBack) {
    EXPECT_EQ(ai::FileNameOf(host.MakePath("C:\\docs\\gr\xC3\xBC\xC3\x9F.ai")), "gr\xC3\xBC\xC3\x9F.ai");
    EXPECT_EQ(host.calls.Calls(), (Calls{"GetFileName(0)", "Destroy()"}));
    EXPECT_EQ(host.LiveStrings(), 0);
}

TEST_F(FilePathTest, FullPathIsNotTheDisplayNameAndItsStringGoesBack) {
    EXPECT_EQ(ai::FullPathOf(host.MakePath("C:\\docs\\a.ai")), "C:\\docs\\a.ai");
    EXPECT_EQ(host.calls.Calls(), (Calls{"GetFullPath(0)", "Destroy()"}));
    EXPECT_EQ(host.LiveStrings(), 0);
}

TEST_F(FilePathTest, RefusedTextsThrowTheHostsCode) {
    host.calls.Fail("GetFileName", 21);
    host.calls.Fail("GetFullPath", 22);
    EXPECT_EQ(CodeThrownBy([&] { ai::FileNameOf(host.MakePath("a")); }), 21);
    EXPECT_EQ(CodeThrownBy([&] { ai::FullPathOf(host.MakePath("a")); }), 22);
    EXPECT_EQ(host.LiveStrings(), 0);
}

TEST_F(FilePathTest, ObjectWithoutContentHasEmptyTextsAndIsNotHandedToTheHost) {
    EXPECT_EQ(ai::FileNameOf(ai::FilePathData{nullptr}), "");
    EXPECT_EQ(ai::FullPathOf(ai::FilePathData{nullptr}), "");
    EXPECT_EQ(host.calls.Calls(), Calls());
}

TEST_F(FilePathTest, EmptyPathHasEmptyTextsOfTheHost) {
    EXPECT_EQ(ai::FileNameOf(host.MakePath("")), "");
    EXPECT_EQ(ai::FullPathOf(host.MakePath("")), "");
    EXPECT_EQ(host.calls.Calls(), (Calls{"GetFileName(0)", "Destroy()", "GetFullPath(0)", "Destroy()"}));
}

TEST_F(FilePathTest, WithoutTheSuiteNothingIsDeletedAndUseThrows) {
    void* left = nullptr;
    {
        ai::FilePath path;
        Fill(path, u"C:\\a.ai");
        left = path.Data().impl;
        *sFilePathSuite.Target() = nullptr;
        EXPECT_THROW(path.IsEmpty(), SuiteNotHeld);
        EXPECT_THROW(ai::FilePath copy(path), SuiteNotHeld);
        EXPECT_THROW(ai::FileNameOf(path.Data()), SuiteNotHeld);
        EXPECT_THROW(ai::FullPathOf(path.Data()), SuiteNotHeld);
    }
    EXPECT_EQ(host.calls.Calls(), Calls());
    EXPECT_TRUE(host.objects.paths.Remove(left));
}

}  // namespace
