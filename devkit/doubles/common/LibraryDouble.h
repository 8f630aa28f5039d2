// The double of a library: its record of calls and its script of answers. The same objects are linked into a unit test,
// which sets the script in code and reads the record from memory, and into a DLL, for which two environment variables
// name files: the script is read again whenever its file has changed, and each call is appended to the record as a line
// of JSON once it is answered. With either file, no record is kept in memory.
//
// Thread: the one that the library is called on. Lifetime: as long as the process or the DLL.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>

#include "doubles/common/AnswerScript.h"
#include "doubles/common/CallLog.h"
#include "doubles/common/CallRecord.h"

namespace doubles {

// What tells whether a script's file was written since it was read.
struct ScriptStamp {
    std::wstring path;
    std::uint64_t written = 0;  // as Windows counts time; 0: there is no such file
    std::uint64_t size = 0;
    bool isSettled = false;  // whoever writes it from now on gives it another time

    static ScriptStamp Of(const wchar_t* path);
    bool operator==(const ScriptStamp& other) const = default;
};

class LibraryDouble {
  public:
    struct Names {
        const char* library;            // for messages
        const wchar_t* scriptVariable;  // the environment variable that names the file of the answers
        const wchar_t* recordVariable;  // the one that names the file of the calls
        std::set<std::string> ownKeys;  // see AnswerScript
    };

    explicit LibraryDouble(Names names) : script(names.ownKeys), mNames(std::move(names)) {}

    CallLog calls;
    AnswerScript script;

  private:
    friend class ReceivedCall;
    void RefreshScript();
    void AppendToFile(const CallRecord& call) const;
    bool RecordsIntoFile() const;
    bool IsDrivenByFiles() const;

    Names mNames;
    std::string mScriptText;  // of the script file, as last read
    ScriptStamp mScriptStamp;
};

// One call while it is answered: recorded at once, what runs during it is run, then its answer is chosen. A file that
// cannot be read or written ends the process with a message: an answer made up in its place would hide the mistake.
class ReceivedCall {
  public:
    ReceivedCall(LibraryDouble& receiver, CallRecord record);

    const Answer& GetAnswer() const { return mAnswer; }
    CallRecord& Record() { return *mRecord; }

    // Records what is answered. The caller returns or throws accordingly once it has nothing left to clean up.
    struct Outcome {
        std::int32_t result;
        Throw throws;
    };
    Outcome Conclude() { return Conclude(mAnswer.result); }
    Outcome Conclude(std::int32_t result);

  private:
    LibraryDouble& mReceiver;
    std::shared_ptr<CallRecord> mRecord;
    Answer mAnswer;
};

// Throws or returns as the outcome says.
std::int32_t Return(ReceivedCall::Outcome outcome);

// The answer's text and a zero, as far as they fit into the buffer; or nothing, when the answer wants it whole; or the
// text until the buffer is full.
void WriteText(const Answer& answer, char* buffer, std::uint64_t capacity);

}  // namespace doubles
