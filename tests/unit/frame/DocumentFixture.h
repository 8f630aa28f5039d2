// A started plug-in with documents on disk, for tests of the document handlers.
#pragma once

#include "documents/DocumentRegistry.h"
#include "documents/FileModificationDate.h"
#include "frame/NotifierHandlers.h"
#include "support/ForeignExceptionGuard.h"
#include "support/Log.h"
#include "unit/frame/FileWithTime.h"
#include "unit/frame/FrameFixture.h"

class DocumentTest : public StartedTest {
  protected:
    ~DocumentTest() override { DeleteFileA(file.c_str()); }

    using Handler = std::int32_t (*)(AINotifierMessage* message);

    std::int32_t Handle(Handler handler) { return Handle(handler, document); }
    std::int32_t Handle(Handler handler, AIDocumentHandle about) {
        AINotifierMessage message = Notification(reinterpret_cast<AINotifierHandle>(0x4321), "any", about);
        return handler(&message);
    }

    // Makes a file whose last write was `seconds` after 1970.
    void WriteFileWithTime(std::uint32_t seconds) { ::WriteFileWithTime(file, seconds); }

    // One text frame in one font: the smallest document that has a report.
    void UseFont(const std::string& font) { host.textFrames = {{font}}; }
    static std::string ReportOf(const std::string& font) {
        return R"({"DocumentFonts":[{"PostScriptName":")" + font + R"("}],"LinkedDocuments":[]})";
    }

    static std::string TemporaryFile() {
        char folder[MAX_PATH] = {};
        GetTempPathA(MAX_PATH, folder);
        return std::string(folder) + "quorvel_document_" + std::to_string(GetCurrentProcessId()) + ".ai";
    }

    const std::string file = TemporaryFile();
    AIDocumentHandle other = reinterpret_cast<AIDocumentHandle>(0x00000002D0C00002);
};
