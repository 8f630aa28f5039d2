#include "simhost/scenario/PathsOfRun.h"

#include <gtest/gtest.h>

namespace {

using simhost::IsInFolder;
using simhost::IsSameInRun;
using simhost::WhyNotInRun;

TEST(PathsOfRun, LettersAndSlashesAreComparedAsWindowsDoes) {
    EXPECT_TRUE(IsInFolder("C:\\WORK\\a.txt", "c:/work"));
    EXPECT_TRUE(IsInFolder("C:\\ü\\x.jsonl", "C:\\Ü"));
    EXPECT_TRUE(IsInFolder("C:\\ⱥ\\x.jsonl", "C:\\Ⱥ"));  // of three bytes, and of two
    EXPECT_TRUE(IsSameInRun("Å\\ж.txt", "C:\\work\\å/Ж.txt", "C:\\Work"));
    EXPECT_FALSE(IsSameInRun("a.txt", "ä.txt", ""));
}

TEST(PathsOfRun, FoldersAreToldApartWhole) {
    EXPECT_TRUE(IsInFolder("C:\\work\\a", "C:\\work\\"));
    EXPECT_TRUE(IsInFolder("/jobs/a", "/jobs"));
    EXPECT_FALSE(IsInFolder("C:\\workshop\\a", "C:\\work"));
    EXPECT_FALSE(IsInFolder("C:\\work", "C:\\work"));
    EXPECT_FALSE(IsInFolder("C:\\a", "C:\\a\\b"));
    EXPECT_FALSE(IsInFolder("a", ""));
    EXPECT_FALSE(IsSameInRun("a", "a\\b", ""));
    EXPECT_EQ(WhyNotInRun("C:\\ÜBER\\a.txt", "C:\\über"), "");
    EXPECT_EQ(WhyNotInRun("C:\\work\\", "C:\\work"), "it is empty");
}

}  // namespace
