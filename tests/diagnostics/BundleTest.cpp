#include "Bundle.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

TEST(Bundle, NoTextAndNoNameHoldsTheUser) {
    Bundle bundle(Completed({.profileFolders = {L"C:\\Users\\Anna"}, .allProfiles = {}, .names = {}}));
    bundle.Add("logs/", L"of anna.log", L"C:\\Users\\ANNA\\a");
    EXPECT_EQ(bundle.Files(), (std::map<std::string, std::string>{{"logs/of user.log", "%USERPROFILE%\\a"}}));
}

TEST(Bundle, FilesOfOneNameAreBothKept) {
    Bundle bundle{Identity()};
    bundle.Add("launch-info/", L"a.conf", L"local");
    bundle.Add("launch-info/", L"a.conf", L"common");
    bundle.Add("", L"about.txt", L"last");
    EXPECT_EQ(bundle.Files(),
              (std::map<std::string, std::string>{
                  {"about.txt", "last"}, {"launch-info/a.conf", "local"}, {"launch-info/a-2.conf", "common"}}));
}

}  // namespace
