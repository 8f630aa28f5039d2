#include "support/UntilUnloaded.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "unit/support/CallInLibrary.h"

namespace {

std::string sDestroyed;

template <char kName>
struct Witness {
    ~Witness() { sDestroyed += kName; }
    int value = 0;
};

TEST(UntilUnloadedTest, ValueIsMadeAndCanBeWritten) {
    const UntilUnloaded<Witness<'a'>> object;
    EXPECT_EQ(object->value, 0);
    object->value = 7;
    EXPECT_EQ((*object).value, 7);
}

TEST(UntilUnloadedTest, EndOfTheObjectAloneDestroysNoValue) {
    sDestroyed.clear();
    { const UntilUnloaded<Witness<'a'>> object; }
    EXPECT_EQ(sDestroyed, "");
}

TEST(UntilUnloadedTest, AllAreDestroyedOnceTheNewestFirst) {
    sDestroyed.clear();
    const UntilUnloaded<Witness<'a'>> first;
    const UntilUnloaded<Witness<'b'>> second;
    ModuleObject::DestroyAll();
    EXPECT_EQ(sDestroyed, "ba");
    ModuleObject::DestroyAll();
    EXPECT_EQ(sDestroyed, "ba");
}

TEST(UntilUnloadedTest, LibraryThatIsUnloadedDestroysItsObjects) {
    const HMODULE library = LoadLibraryA((FolderOfTestProgram() + "libraries\\module_objects.dll").c_str());
    const auto count =
        reinterpret_cast<void (*)(int*)>(reinterpret_cast<void*>(GetProcAddress(library, "CountUntilUnloaded")));
    ASSERT_NE(count, nullptr);
    int destroyed = 0;
    count(&destroyed);
    FreeLibrary(library);
    EXPECT_EQ(destroyed, 1);
}

TEST(UntilUnloadedTest, EndOfTheProcessDestroysNothing) {
    EXPECT_EQ(ExitCodeOf("module_objects", "WatchUntilUnloaded", 77), 0U);
}

// The negative test.
TEST(UntilUnloadedTest, EndOfTheProcessDestroysAPlainObject) {
    EXPECT_EQ(ExitCodeOf("module_objects", "WatchPlain", 77), 77U);
}

}  // namespace
