#include "doubles/common/LibraryDouble.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "doubles/common/ForeignException.h"
#include "doubles/common/OwnMemory.h"

namespace doubles {

namespace {

// Nothing for a text without characters.
void FillWith(const std::string& text, char* buffer, std::uint64_t capacity) {
    for (std::uint64_t i = 0; buffer != nullptr && !text.empty() && i < capacity; ++i) {
        buffer[i] = text[i % text.size()];
    }
}

[[noreturn]] void EndProcess(const char* library, const char* message) {
    std::fprintf(stderr, "double of %s: %s\n", library, message);
    std::abort();
}

// Empty when there is no such file: as if the script said nothing.
std::string ReadText(const wchar_t* path) {
    std::FILE* const file = _wfopen(path, L"rb");
    if (file == nullptr) {
        return {};
    }
    std::string text;
    char part[4096];
    while (const std::size_t count = std::fread(part, 1, sizeof part, file)) {
        text.append(part, count);
    }
    std::fclose(file);
    return text;
}

std::uint64_t TicksOf(const FILETIME& time) { return (std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime; }

std::uint64_t Now() {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return TicksOf(now);
}

// File systems keep times in steps. A file that was written within this time, in units of 100 ns, before it was read
// may be written once more without getting another one.
constexpr std::uint64_t kStepsOfFileTimes = 1'000'000;

}  // namespace

ScriptStamp ScriptStamp::Of(const wchar_t* path) {
    const std::uint64_t now = Now();
    WIN32_FILE_ATTRIBUTE_DATA file{};
    if (GetFileAttributesExW(path, GetFileExInfoStandard, &file) == 0) {
        return {path, 0, 0, true};
    }
    const std::uint64_t written = TicksOf(file.ftLastWriteTime);
    return {path, written, (std::uint64_t{file.nFileSizeHigh} << 32) | file.nFileSizeLow,
            written + kStepsOfFileTimes < now};
}

// To ask for the file's time takes a tenth of the time that it takes to read it, and a day has thousands of calls.
void LibraryDouble::RefreshScript() {
    const wchar_t* const path = _wgetenv(mNames.scriptVariable);
    if (path == nullptr) {
        return;
    }
    ScriptStamp stamp = ScriptStamp::Of(path);
    if (mScriptStamp.isSettled && stamp == mScriptStamp) {
        return;
    }
    std::string text = ReadText(path);
    mScriptStamp = std::move(stamp);
    if (text == mScriptText) {
        return;
    }
    try {
        script.Load(text.empty() ? "{}" : text);
    } catch (const std::exception& error) {
        EndProcess(mNames.library, error.what());
    }
    mScriptText = std::move(text);
}

bool LibraryDouble::IsDrivenByFiles() const { return RecordsIntoFile() || _wgetenv(mNames.scriptVariable) != nullptr; }

bool LibraryDouble::RecordsIntoFile() const { return _wgetenv(mNames.recordVariable) != nullptr; }

void LibraryDouble::AppendToFile(const CallRecord& call) const {
    std::FILE* const file = _wfopen(_wgetenv(mNames.recordVariable), L"ab");
    if (file == nullptr) {
        EndProcess(mNames.library, "the record file cannot be written");
    }
    const std::string line = call.AsJson() + "\n";
    std::fwrite(line.data(), 1, line.size(), file);
    std::fclose(file);
}

ReceivedCall::ReceivedCall(LibraryDouble& receiver, CallRecord record)
    : mReceiver(receiver), mRecord(std::make_shared<CallRecord>(std::move(record))) {
    const std::string entry = mRecord->Entry();
    mReceiver.RefreshScript();
    // Nobody can read the record of a DLL, and a day of ticks makes it long.
    if (!mReceiver.IsDrivenByFiles()) {
        mReceiver.calls.Add(mRecord);
    }
    if (const std::function<void()> during = mReceiver.script.DuringNext(entry)) {
        const NotOwnMemory notOwn;
        during();
    }
    mAnswer = mReceiver.script.TakeNext(entry);
}

ReceivedCall::Outcome ReceivedCall::Conclude(std::int32_t result) {
    mRecord->SetAnswer(result);
    if (mReceiver.RecordsIntoFile()) {
        mReceiver.AppendToFile(*mRecord);
    }
    return {result, mAnswer.throws};
}

std::int32_t Return(ReceivedCall::Outcome outcome) {
    ThrowAsAsked(outcome.throws);
    return outcome.result;
}

void WriteText(const Answer& answer, char* buffer, std::uint64_t capacity) {
    if (answer.isRepeated) {
        FillWith(answer.text.value_or(""), buffer, capacity);
        return;
    }
    const bool fits = answer.text && answer.text->size() < capacity;
    if (answer.text && buffer != nullptr && (fits || !answer.isWholeTextOnly)) {
        std::memcpy(buffer, answer.text->c_str(), std::min<std::uint64_t>(answer.text->size() + 1, capacity));
    }
}

}  // namespace doubles
