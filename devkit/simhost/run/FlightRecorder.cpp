#include "simhost/run/FlightRecorder.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace simhost {

namespace {

constexpr const wchar_t* kVariable = L"QUORVEL_FLIGHT_RECORDER";

// Set once; the memory stays as long as the process.
FlightRecord* sRecord = nullptr;
bool sIsOpen = false;

FlightRecord* Map(HANDLE mapping) {
    return static_cast<FlightRecord*>(MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, sizeof(FlightRecord)));
}

template <std::size_t kSize>
void Write(char (&field)[kSize], std::string_view text) {
    const std::size_t length = std::min(text.size(), kSize - 1);
    std::memcpy(field, text.data(), length);
    field[length] = '\0';
}

// Null when nobody watches.
FlightRecord* Record() {
    OpenFlightRecorder();
    return sRecord;
}

void NoteSignOfLife(FlightRecord& record) {
    if (record.isPerEntry != 0) {
        record.stepBegan = GetTickCount64();
    }
}

template <std::size_t kSize>
std::string TextOf(const char (&field)[kSize]) {
    return {field, strnlen(field, kSize)};
}

}  // namespace

void OpenFlightRecorder() {
    if (sIsOpen) {
        return;
    }
    sIsOpen = true;
    wchar_t name[128] = L"";
    if (GetEnvironmentVariableW(kVariable, name, 128) == 0) {
        return;
    }
    const HANDLE mapping = OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, name);
    if (mapping != nullptr) {
        sRecord = Map(mapping);
        CloseHandle(mapping);
    }
}

void RecordStep(std::string_view place) {
    if (FlightRecord* const record = Record()) {
        record->hasBegun = 1;
        Write(record->step, place);
        Write(record->message, "");
        record->entriesInside = 0;
        record->isByHand = 0;
        record->stepBegan = GetTickCount64();
    }
}

void RecordOperationByHand() {
    if (FlightRecord* const record = Record()) {
        record->isByHand = 1;
        record->stepBegan = 0;
    }
}

void RecordLimitPerEntry() {
    if (FlightRecord* const record = Record()) {
        record->isPerEntry = 1;
    }
}

void RecordMessage(std::string_view message) {
    if (FlightRecord* const record = Record()) {
        Write(record->message, message);
        if (record->isByHand != 0) {
            record->stepBegan = message.empty() ? 0 : GetTickCount64();
        }
    }
}

void EnteredEntry(std::string_view name) {
    if (FlightRecord* const record = Record()) {
        if (record->entriesInside < FlightRecord::kMostEntries) {
            Write(record->entries[record->entriesInside], name);
        }
        ++record->entriesInside;
        NoteSignOfLife(*record);
    }
}

void LeftEntry() {
    FlightRecord* const record = Record();
    if (record != nullptr && record->entriesInside != 0) {
        --record->entriesInside;
        NoteSignOfLife(*record);
    }
}

void RecordConclusion() {
    if (FlightRecord* const record = Record()) {
        record->concluded = 1;
    }
}

void RecordLostLines() {
    if (FlightRecord* const record = Record()) {
        record->lostLines = 1;
    }
}

FlightRecorder::FlightRecorder() {
    static unsigned sNumber = 0;
    const std::wstring name =
        L"Local\\simhost-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++sNumber);
    mMapping = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(FlightRecord), name.c_str());
    mRecord = mMapping == nullptr ? nullptr : Map(mMapping);
    if (mRecord == nullptr) {
        throw std::runtime_error("Windows gives no shared memory (error " + std::to_string(GetLastError()) + ")");
    }
    SetEnvironmentVariableW(kVariable, name.c_str());
    // Until the host itself knows better. How long a process takes to begin is the machine's business.
    Write(mRecord->step, "before the first step");
    mRecord->stepBegan = 0;
}

FlightRecorder::~FlightRecorder() {
    SetEnvironmentVariableW(kVariable, nullptr);
    UnmapViewOfFile(mRecord);
    CloseHandle(mMapping);
}

FlightRecord FlightRecorder::Read() const { return *mRecord; }

std::string WhereItIs(const FlightRecord& record) {
    std::string where = TextOf(record.step);
    if (const std::string message = TextOf(record.message); !message.empty()) {
        where += ", message " + message;
    }
    if (record.entriesInside != 0) {
        where += ", entry " + TextOf(record.entries[std::min(record.entriesInside, FlightRecord::kMostEntries) - 1]);
    }
    return where;
}

}  // namespace simhost
