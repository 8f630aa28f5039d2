// What a document takes goes back with it, whichever documents came before.
#include "doubles/common/AllocationFaults.h"
#include "doubles/common/OwnMemory.h"
#include "unit/frame/DocumentFixture.h"

namespace {

class ManyDocumentsTest : public DocumentTest {
  protected:
    // The host's messages for a document with a handle, a path, a font and files of its own. What changes is recorded
    // for the current document, which is closed as well.
    void WorkOnDocument(int n) {
        const auto about = reinterpret_cast<AIDocumentHandle>(std::uintptr_t{0x200000000} + static_cast<unsigned>(n));
        const std::string number = std::to_string(n);
        {
            const OwnMemory own;
            host.currentPath = "C:/Users/designer/Documents/Catalogue/spread " + number + ".ai";
            host.textFrames = {{"AvenirNextCondensed-Medium" + number}};
            host.placedFiles.assign(static_cast<std::size_t>(n % 5), "C:/Users/designer/Pictures/" + number + ".psd");
        }
        Notify(&PluginGlobals::documentOpened, "AI Document Opened Notifier", about);
        Notify(&PluginGlobals::documentChanged, "AI Document Changed Notifier", about);
        Notify(&PluginGlobals::documentClosed, "AI Document Closed Notifier", about);
        Notify(&PluginGlobals::documentClosed, "AI Document Closed Notifier", document);
        EXPECT_EQ(DocumentRegistrySize(), 0u);
        const OwnMemory own;
        ClearRecords();
    }
};

TEST_F(ManyDocumentsTest, TakeNoMoreMemoryAfter10000DocumentsThanAfter10) {
    int n = 0;
    for (; n < 10; ++n) {
        WorkOnDocument(n);
    }
    const std::ptrdiff_t blocksAfter10 = LiveAllocations();
    for (; n < 10000; ++n) {
        WorkOnDocument(n);
    }
    EXPECT_EQ(LiveAllocations(), blocksAfter10);
}

}  // namespace
