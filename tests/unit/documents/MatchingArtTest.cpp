#include "documents/MatchingArt.h"

#include "support/host/HostFixture.h"

namespace {

using MatchingArtTest = HostTest;

TEST_F(MatchingArtTest, AsksForOneTypeAndGivesTheHandleBack) {
    host.textFrames = {{}, {}};
    {
        const MatchingArt art(12);
        EXPECT_EQ(art.Status(), 0);
        EXPECT_TRUE(art.HasHandle());
        EXPECT_EQ(art.Count(), 2);
        EXPECT_EQ(host.LiveHandles(), 1);
        EXPECT_NE(art.Art()[0], art.Art()[1]);
    }
    EXPECT_EQ(host.calls.Calls(), (std::vector<std::string>{"GetMatchingArt(12 0 0, 1)", "MdMemoryDisposeHandle()"}));
}

TEST_F(MatchingArtTest, WithoutAHandleNothingIsGivenBack) {
    {
        const MatchingArt art(7);
        EXPECT_FALSE(art.HasHandle());
        EXPECT_EQ(art.Count(), 0);
    }
    EXPECT_EQ(host.calls.Calls(), std::vector<std::string>{"GetMatchingArt(7 0 0, 1)"});
}

TEST_F(MatchingArtTest, HandleOfAFailingHostIsNeitherUsedNorGivenBack) {
    host.textFrames = {{}, {}};
    host.calls.FailAfterWork("GetMatchingArt", 5);
    {
        const MatchingArt art(12);
        EXPECT_EQ(art.Status(), 5);
        EXPECT_FALSE(art.HasHandle());
    }
    EXPECT_EQ(host.calls.Calls(), std::vector<std::string>{"GetMatchingArt(12 0 0, 1)"});
}

TEST_F(MatchingArtTest, HostsFailureIsTheStatus) {
    host.calls.Fail("GetMatchingArt", 5);
    const MatchingArt art(7);
    EXPECT_EQ(art.Status(), 5);
    EXPECT_FALSE(art.HasHandle());
}

}  // namespace
