#include "Anonymizer.h"

#include <gtest/gtest.h>

#include <string>

#include "support/TextConversion.h"

namespace {

Anonymizer Of(const std::wstring& folder, const std::wstring& account) {
    return Anonymizer(Completed({.profileFolders = {folder}, .allProfiles = {L"C:\\Users"}, .names = {account}}));
}

class AnonymizerTest : public testing::Test {
  protected:
    std::string Without(const std::wstring& text) { return Utf8FromWindowsText(anonymizer.WithoutNames(text)); }

    Anonymizer anonymizer = Of(L"C:\\Users\\J\u00F6rg Gro\u00DFe", L"jgrosse");
};

TEST_F(AnonymizerTest, ProfileFolderIsReplaced) {
    EXPECT_EQ(Without(L"Loaded C:\\Users\\J\u00F6rg Gro\u00DFe\\AppData\\x.dll now"),
              "Loaded %USERPROFILE%\\AppData\\x.dll now");
    EXPECT_EQ(Without(L"C:\\Users\\J\u00F6rg Gro\u00DFe"), "%USERPROFILE%");
    EXPECT_EQ(Without(L"('C:\\Users\\J\u00F6rg Gro\u00DFe', 0)"), "('%USERPROFILE%', 0)");
}

TEST_F(AnonymizerTest, CaseAndSeparatorsDoNotMatter) {
    EXPECT_EQ(Without(L"c:\\USERS\\j\u00D6RG gro\u00DFe\\a"), "%USERPROFILE%\\a");
    EXPECT_EQ(Without(L"C:/Users/J\u00F6rg Gro\u00DFe/a"), "%USERPROFILE%/a");
    EXPECT_EQ(Without(L"C:\\Users/J\u00F6rg Gro\u00DFe\\a"), "%USERPROFILE%\\a");
}

TEST_F(AnonymizerTest, DocumentsAndPlacedFilesBelowTheProfileAreReplaced) {
    EXPECT_EQ(Without(L"C:\\Users\\J\u00F6rg Gro\u00DFe\\Documents\\Job\\Logo.pdf"),
              "%USERPROFILE%\\Documents\\Job\\Logo.pdf");
}

TEST_F(AnonymizerTest, EscapedForJson) {
    EXPECT_EQ(Without(L"\"C:\\\\Users\\\\J\u00F6rg Gro\u00DFe\\\\a.ai\""), "\"%USERPROFILE%\\\\a.ai\"");
    EXPECT_EQ(Without(L"\"C:\\/Users\\/J\u00F6rg Gro\u00DFe\\/a.ai\""), "\"%USERPROFILE%\\/a.ai\"");
    EXPECT_EQ(Without(L"\"C:\\\\Users\\\\J\\u00f6rg Gro\\u00DFe\\\\a.ai\""), "\"%USERPROFILE%\\\\a.ai\"");
}

TEST_F(AnonymizerTest, EscapedForJsonTwice) {
    EXPECT_EQ(Without(L"C:\\\\\\\\Users\\\\\\\\J\u00F6rg Gro\u00DFe\\\\\\\\a"), "%USERPROFILE%\\\\\\\\a");
    EXPECT_EQ(Without(L"C:\\\\\\\\Users\\\\\\\\J\\\\u00f6rg Gro\\\\u00dfe\\\\\\\\a"), "%USERPROFILE%\\\\\\\\a");
}

TEST_F(AnonymizerTest, EscapedForAUrl) {
    EXPECT_EQ(Without(L"file:///C:/Users/J%C3%B6rg%20Gro%c3%9fe/a"), "file:///%USERPROFILE%/a");
    EXPECT_EQ(Without(L"x=C%3A%5CUsers%5CJ%C3%B6rg%20Gro%C3%9Fe%5Ca"), "x=%USERPROFILE%%5Ca");
}

TEST_F(AnonymizerTest, NameIsReplacedAnywhere) {
    EXPECT_EQ(Without(L"D:\\Work\\jgrosse\\a and \\\\server\\home\\JGrosse$"),
              "D:\\Work\\<user>\\a and \\\\server\\home\\<user>$");
    EXPECT_EQ(Without(L"D:\\Data\\J\u00F6rg Gro\u00DFe\\a"), "D:\\Data\\<user>\\a");
    EXPECT_EQ(Without(L"user=jgrosse;jgrosse2 backup_jgrosse.zip"), "user=<user>;<user>2 backup_<user>.zip");
}

TEST_F(AnonymizerTest, NameWithinALongerWordStays) {
    EXPECT_EQ(Without(L"jgrosser xjgrosse"), "jgrosser xjgrosse");
    EXPECT_EQ(Without(L"jgrosse\u00E9"), "jgrosse\xC3\xA9");
}

TEST_F(AnonymizerTest, LetterOfAnEscapeBelongsToNoWord) {
    EXPECT_EQ(Without(L"\"a\\njgrosse\""), "\"a\\n<user>\"");
    EXPECT_EQ(Without(L"home%5Cjgrosse"), "home%5C<user>");
    EXPECT_EQ(Without(L"home\\u005cjgrosse"), "home\\u005c<user>");
}

TEST_F(AnonymizerTest, NameThatBeginsWithAnEscapeIsFound) {
    const Anonymizer of = Of(L"C:\\Users\\\u00F6tzi", L"\u00F6tzi");
    EXPECT_EQ(of.WithoutNames(L"\"C:\\\\Users\\\\\\u00f6tzi\\\\a\""), L"\"%USERPROFILE%\\\\a\"");
    EXPECT_EQ(of.WithoutNames(L"\"D:\\\\\\u00f6tzi\\\\a\""), L"\"D:\\\\<user>\\\\a\"");
    EXPECT_EQ(of.WithoutNames(L"D:/%C3%B6tzi/a"), L"D:/<user>/a");
}

TEST_F(AnonymizerTest, LineThatIsCutWithinTheNameTellsNothingOfIt) {
    EXPECT_EQ(Without(L"-> X(\"C:\\Users\\J\u00F6r...\" (300 bytes)"), "-> X(\"%USERPROFILE%...\" (300 bytes)");
    EXPECT_EQ(Without(L"returning 'C:\\\\Users\\\\J'"), "returning '%USERPROFILE%'");
    EXPECT_EQ(Without(L"D:\\Users\\J\u00F6\\a"), "D:\\Users\\J\xC3\xB6\\a");
    EXPECT_EQ(Without(L"C:\\Users\\"), "C:\\Users\\");
    EXPECT_EQ(Without(L"C:\\Users"), "C:\\Users");
}

TEST_F(AnonymizerTest, NameThatIsCutOutsideOfTheProfileIsFoundToo) {
    EXPECT_EQ(Without(L"-> X(\"\\\\server\\home\\J\u00F6rg Gr...\" (300 bytes)"),
              "-> X(\"\\\\server\\home\\<user>...\" (300 bytes)");
    EXPECT_EQ(Without(L"\"D:/jg...\" \"D:\\J\u00D6RG...\" \"D:\\jgro...\""),
              "\"D:/<user>...\" \"D:\\<user>...\" \"D:\\<user>...\"");
    EXPECT_EQ(Without(L"\"\\\\\\\\server\\\\home\\\\J\\u00f6rg Gr...\""), "\"\\\\\\\\server\\\\home\\\\<user>...\"");
    EXPECT_EQ(Without(L"\"home%5CJ%C3%B6rg%20Gr...\" \"home\\u005cjgro...\""),
              "\"home%5C<user>...\" \"home\\u005c<user>...\"");
}

TEST_F(AnonymizerTest, NameThatIsCutWithinAnEscapeIsFoundToo) {
    for (const std::wstring cut :
         {L"\\", L"\\u", L"\\u00", L"\\u00f", L"\\\\u00f", L"%", L"%C", L"%C3", L"%C3%", L"%C3%B"}) {
        EXPECT_EQ(anonymizer.WithoutNames(L"\"D:\\J\u00F6rg Gro" + cut + L"...\""), L"\"D:\\<user>...\"")
            << Utf8FromWindowsText(cut);
    }
}

TEST_F(AnonymizerTest, WhatOnlyBeginsLikeTheNameStays) {
    for (const std::wstring text : {L"D:\\jg", L"\"D:\\jg\"", L"D:\\jgr\\a...", L"\"D:\\j...\"", L"\"D:\\J...\"",
                                    L"\"a jgro...\"", L"\"D:\\a-jgro...\"", L"\"D:\\jgx...\"", L"\"D:\\jg%41...\""}) {
        EXPECT_EQ(anonymizer.WithoutNames(text), text);
    }
}

TEST_F(AnonymizerTest, FoldersOfOtherUsersLoseTheName) {
    EXPECT_EQ(Without(L"C:\\Users\\Joe\\a c:/users/Anna Lena O'Neil/b"), "C:\\Users\\<user>\\a c:/users/<user>/b");
    EXPECT_EQ(Without(L"C:\\Users\\ANNALE~1\\a C:\\Users\\Joe.DOMAIN\\a"), "C:\\Users\\<user>\\a C:\\Users\\<user>\\a");
    EXPECT_EQ(Without(L"\"C:\\\\Users\\\\Z\\u00f6e\\\\a\""), "\"C:\\\\Users\\\\<user>\\\\a\"");
    EXPECT_EQ(Without(L"\"C:\\/Users\\/Joe\\/a\""), "\"C:\\/Users\\/<user>\\/a\"");
    EXPECT_EQ(Without(L"file:///C:/Users/Anna%20Z%C3%B6e/a"), "file:///C:/Users/<user>/a");
    EXPECT_EQ(Without(L"x=C%3A%5CUsers%5CJoe%5Ca"), "x=C%3A%5CUsers%5C<user>%5Ca");
}

TEST_F(AnonymizerTest, WhereTheNameOfAnotherEndsMayBeOpen) {
    EXPECT_EQ(Without(L"'C:\\Users\\Joe', \"C:\\Users\\Joe Doe\" C:\\Users\\Joe\r\nnext"),
              "'C:\\Users\\<user>', \"C:\\Users\\<user>\" C:\\Users\\<user>\r\nnext");
    EXPECT_EQ(Without(L"-> X(\"C:\\Users\\Joe D...\" (300 bytes)"), "-> X(\"C:\\Users\\<user>...\" (300 bytes)");
    // What follows might be a part of the name.
    EXPECT_EQ(Without(L"C:\\Users\\Anna Lena and more\r\n"), "C:\\Users\\<user>\r\n");
}

TEST_F(AnonymizerTest, FoldersOfNobodyAndOtherFoldersStay) {
    for (const std::wstring text :
         {L"C:\\Users\\Public\\a", L"c:/users/all users/a", L"C:\\Users\\Default\\a", L"C:\\Users\\Default User\\a",
          L"C:\\Users\\Public", L"C:\\Users\\Public and more", L"C:\\UsersOf\\Joe\\a", L"C:\\Users.old\\Joe",
          L"D:\\Joe\\a", L"ABC:\\Users\\Joe\\a"}) {
        EXPECT_EQ(anonymizer.WithoutNames(text), text);
    }
    EXPECT_EQ(Without(L"C:\\Users\\Publican\\a C:\\Users\\Public Joe\\a"), "C:\\Users\\<user>\\a C:\\Users\\<user>\\a");
}

TEST_F(AnonymizerTest, FolderThatOnlyBeginsLikeTheProfileLosesTheName) {
    EXPECT_EQ(Without(L"C:\\Users\\J\u00F6rg Gro\u00DFe.DOMAIN\\a"), "C:\\Users\\<user>\\a");
    EXPECT_EQ(Without(L"C:\\Users\\J\u00F6rg Gro\u00DFe-old\\a"), "C:\\Users\\<user>\\a");
}

TEST_F(AnonymizerTest, ShortFormsAreReplaced) {
    EXPECT_EQ(Without(L"C:\\Users\\J\u00D6RGGR~1\\AppData"), "C:\\Users\\<user>\\AppData");
    const Anonymizer of =
        Anonymizer(Completed({.profileFolders = {L"C:\\Users\\Johannes Meier", L"C:\\Users\\JOHANN~2"},
                              .allProfiles = {},
                              .names = {L"Johannes Meier"}}));
    EXPECT_EQ(of.WithoutNames(L"c:\\users\\johann~2\\Temp C:\\Users\\JOHANN~1\\Temp"),
              L"%USERPROFILE%\\Temp C:\\Users\\<user>\\Temp");
}

TEST_F(AnonymizerTest, NamesOfOtherScripts) {
    const Anonymizer of = Of(L"C:\\Users\\\u30E6\u30FC\u30B6\u30FC", L"\u30E6\u30FC\u30B6\u30FC");
    EXPECT_EQ(of.WithoutNames(L"C:\\Users\\\u30E6\u30FC\u30B6\u30FC\\a D:\\\u30E6\u30FC\u30B6\u30FC\\b"),
              L"%USERPROFILE%\\a D:\\<user>\\b");
    const Anonymizer cyrillic = Of(L"C:\\Users\\\u0418\u0432\u0430\u043D", L"\u0418\u0432\u0430\u043D");
    EXPECT_EQ(cyrillic.WithoutNames(L"c:/users/\u0438\u0412\u0410\u041D/a"), L"%USERPROFILE%/a");
}

TEST_F(AnonymizerTest, NameWithoutLettersIsNotFoundInNumbers) {
    const Anonymizer of = Of(L"C:\\Users\\007", L"007");
    EXPECT_EQ(of.WithoutNames(L"18:00:00.007 took 10075 ms C:\\Users\\007\\a D:\\007\\a"),
              L"18:00:00.<user> took 10075 ms %USERPROFILE%\\a D:\\<user>\\a");
}

TEST_F(AnonymizerTest, ShortNamesReplaceWholeWordsOnly) {
    const Anonymizer of = Of(L"C:\\Users\\al", L"al");
    EXPECT_EQ(of.WithoutNames(L"altered C:\\Users\\al\\a normal D:\\al"),
              L"altered %USERPROFILE%\\a normal D:\\<user>");
}

TEST_F(AnonymizerTest, NamesOfFilesHaveNoForbiddenCharacters) {
    EXPECT_EQ(anonymizer.FileNameWithoutNames(L"log of jgrosse.log"), L"log of user.log");
}

TEST_F(AnonymizerTest, WithoutAnyNameNothingChanges) {
    const Anonymizer of{Identity()};
    EXPECT_EQ(of.WithoutNames(L"C:\\Users\\a\\b"), L"C:\\Users\\a\\b");
}

TEST_F(AnonymizerTest, OddTextsStay) {
    EXPECT_EQ(Without(L""), "");
    EXPECT_EQ(Without(L"100 % \\ %2 \\u12 %zz \\uD800 end\\"), "100 % \\ %2 \\u12 %zz \\uD800 end\\");
}

TEST(Identity, IsCompletedByWhatFollows) {
    const Identity identity = Completed({.profileFolders = {L"C:\\Users\\Anna Lena\\", L"C:\\Users\\Anna Lena", L""},
                                         .allProfiles = {L"C:\\Users\\", L"C:\\Users"},
                                         .names = {L"anna", L""}});
    EXPECT_EQ(identity.allProfiles, std::vector<std::wstring>{L"C:\\Users"});
    EXPECT_EQ(identity.profileFolders, std::vector<std::wstring>{L"C:\\Users\\Anna Lena"});
    EXPECT_EQ(identity.names.front(), L"Anna Lena");
    EXPECT_EQ(identity.names.back(), L"anna");
    EXPECT_NE(std::find(identity.names.begin(), identity.names.end(), L"AnnaLe~1"), identity.names.end());
    EXPECT_EQ(std::find(identity.names.begin(), identity.names.end(), L"anna~1"), identity.names.end());
}

TEST(Identity, OfTheProgramHoldsTheAccountAndTheProfile) {
    wchar_t name[256];
    DWORD size = 256;
    ASSERT_NE(GetUserNameW(name, &size), FALSE);
    const Identity identity = CurrentIdentity();
    EXPECT_NE(std::find(identity.names.begin(), identity.names.end(), name), identity.names.end());
    wchar_t folder[MAX_PATH];
    ASSERT_NE(GetEnvironmentVariableW(L"USERPROFILE", folder, MAX_PATH), 0u);
    EXPECT_NE(std::find(identity.profileFolders.begin(), identity.profileFolders.end(), folder),
              identity.profileFolders.end());
    // Of one user as of all of them.
    ASSERT_FALSE(identity.allProfiles.empty());
    EXPECT_EQ(_wcsnicmp(folder, identity.allProfiles[0].c_str(), identity.allProfiles[0].size()), 0);
}

}  // namespace
