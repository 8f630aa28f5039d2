#include "support/HeapCheck.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <windows.h>

#include "doubles/common/ImportPatch.h"
#include "support/log/RecordingLogSink.h"
#include "support/patches/ShownBoxes.h"

namespace {

// What the replaced functions were asked, and what they answer.
int sRuntimeResult = _HEAPOK;
BOOL sHeapIsValid = TRUE;
std::vector<HANDLE> sValidatedHeaps;
DWORD sValidationFlags = 77;
const void* sValidatedBlock = "none";

int __cdecl AnswerHeapCheck() { return sRuntimeResult; }

BOOL WINAPI AnswerValidation(HANDLE heap, DWORD flags, LPCVOID block) {
    sValidatedHeaps.push_back(heap);
    sValidationFlags = flags;
    sValidatedBlock = block;
    return sHeapIsValid;
}

class HeapCheckTest : public testing::Test {
  protected:
    HeapCheckTest() {
        ClearRecordedLog();
        sValidatedHeaps.clear();
    }

    static void CheckCorruptHeap(int runtimeResult, BOOL heapIsValid, const char* sourceName, std::int32_t line) {
        sRuntimeResult = runtimeResult;
        sHeapIsValid = heapIsValid;
        const ImportPatch runtime("_heapchk", AsReplacement(AnswerHeapCheck));
        const ImportPatch validation("HeapValidate", AsReplacement(AnswerValidation));
        CheckHeap(sourceName, line);
    }

    ShownBoxes boxes;
};

TEST_F(HeapCheckTest, HealthyHeapIsLoggedAndShowsNoWindow) {
    CheckHeap("Main.cpp", 42);
    EXPECT_TRUE(sBoxes.empty());
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{{0, "Heap is okay in Main.cpp, line 42"}}));
}

TEST_F(HeapCheckTest, CorruptRuntimeHeapIsShownWithTheRuntimesResult) {
    CheckCorruptHeap(_HEAPBADNODE, TRUE, "Main.cpp", 42);
    EXPECT_EQ(_HEAPBADNODE, -4);
    EXPECT_EQ(sBoxes, (std::vector<Box>{{nullptr, "Heap corruption -4 detected in 'Main.cpp' line 42", "ERROR", 0}}));
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(HeapCheckTest, CorruptProcessHeapIsShownWithTheRuntimesFineCode) {
    CheckCorruptHeap(_HEAPOK, FALSE, "Scan.cpp", -1);
    EXPECT_EQ(_HEAPOK, -2);
    EXPECT_EQ(sBoxes, (std::vector<Box>{{nullptr, "Heap corruption -2 detected in 'Scan.cpp' line -1", "ERROR", 0}}));
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(HeapCheckTest, EmptyRuntimeHeapIsNoFineHeap) {
    CheckCorruptHeap(_HEAPEMPTY, TRUE, "a", 1);
    EXPECT_EQ(sBoxes, (std::vector<Box>{{nullptr, "Heap corruption -1 detected in 'a' line 1", "ERROR", 0}}));
}

TEST_F(HeapCheckTest, ValidatesTheWholeProcessHeap) {
    CheckCorruptHeap(_HEAPOK, TRUE, "a", 1);
    EXPECT_EQ(sValidatedHeaps, std::vector<HANDLE>{GetProcessHeap()});
    EXPECT_EQ(sValidationFlags, 0u);
    EXPECT_EQ(sValidatedBlock, nullptr);
    EXPECT_TRUE(sBoxes.empty());
    EXPECT_EQ(RecordedTexts(), std::vector<std::string>{"Heap is okay in a, line 1"});
}

TEST_F(HeapCheckTest, LongSourceNameIsCutToTheBufferOf256Bytes) {
    CheckCorruptHeap(_HEAPBADPTR, TRUE, std::string(400, 'n').c_str(), 1);
    const std::string start = "Heap corruption -6 detected in '";
    ASSERT_EQ(sBoxes.size(), 1u);
    EXPECT_EQ(sBoxes[0].text, start + std::string(255 - start.size(), 'n'));
}

}  // namespace
