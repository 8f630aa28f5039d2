// What the host's process is doing, in memory that it shares with the process that watches it. It can be read at any
// time from outside: while the host runs, when it hangs, and after it is gone, however it went.
//
// Thread: any to read; the writing functions belong to the main thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace simhost {

// The layout is shared by processes, and by libraries beside this program that compile these sources: numbers and UTF-8
// texts of fixed size, zero at the end, cut where they are too long.
struct FlightRecord {
    static constexpr std::uint32_t kMostEntries = 4;

    std::uint32_t hasBegun;       // not 0: the host itself runs, no longer Windows' start of its process
    std::uint32_t concluded;      // not 0: the result is written, only the end of the process is left
    std::uint32_t entriesInside;  // of the PluginCore, one called inside the other; may be more than are kept
    std::uint32_t isByHand;       // not 0: a person decides how long the step takes, but not each message
    std::uint32_t isPerEntry;     // not 0: the time of a step counts from the last begin or end of an entry
    std::uint32_t lostLines;      // not 0: something that was seen could not be written down
    std::uint64_t stepBegan;      // GetTickCount64(); 0: may take as long as it likes
    char step[256];
    char message[256];  // "" while the plug-in handles none
    char entries[kMostEntries][64];
};

// --- the host's process. Without a watching process these do nothing. ---

// Finds the memory by the name in the environment; the first of the other functions does it as well.
void OpenFlightRecorder();

// A step begins, or another part of the run that has a time limit of its own.
void RecordStep(std::string_view place);
// The present step is operated by a person: only the messages that it sends have the time limit.
void RecordOperationByHand();
// From now on a step may hold any number of calls: its time limit is that of a single one.
void RecordLimitPerEntry();
// The plug-in is given this message; "" when it has answered.
void RecordMessage(std::string_view message);
// An entry of the PluginCore is called, and has come back in whatever way.
void EnteredEntry(std::string_view name);
void LeftEntry();
void RecordConclusion();
// A line of a file that tells what was seen could not be written.
void RecordLostLines();

// --- the watching process ---

class FlightRecorder {
  public:
    // Makes the memory, and names it in the environment for processes that are started from now on. Throws
    // std::runtime_error.
    FlightRecorder();
    ~FlightRecorder();
    FlightRecorder(const FlightRecorder&) = delete;
    FlightRecorder& operator=(const FlightRecorder&) = delete;

    FlightRecord Read() const;

  private:
    void* mMapping;
    FlightRecord* mRecord;
};

// Step, message and entry in words.
std::string WhereItIs(const FlightRecord& record);

}  // namespace simhost
