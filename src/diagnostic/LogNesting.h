// How far each line of the log is indented, read off the plug-in's lines alone. An exception skips the exit lines of
// the operations that it ends, so entries are not simply counted: each is kept with the place on the stack that it was
// logged from. On x64 a function's frame has one size from beginning to end; a line from further up the stack than an
// open entry therefore shows that the entry's function has ended.
//
// What could deceive, and why it does not:
//   - An operation that the compiler has put into its caller logs from the caller's place: equal places are both open.
//   - The same line of code logging an entry from the same place again: the earlier one has ended, a frame runs a piece
//     of code once at a time.
//   - An exit may be logged by a helper from further down, or as the last call of a function that has given up its
//     frame, from further up. It is matched by its operation's name, with the innermost entry of that name.
//   - Messages that the host sends while one is handled, and calls of the message hook, come from further down.
//   - Ticks are not logged, and what an exception left open in one may lie further up than the next message. A message
//     that is not inside of another logged one begins at the first column.
// Two entries of different operations at one place cannot be told apart from an operation within another: the second is
// indented too far until a line from further up, the exit of its caller at the latest.
//
// Thread: the one whose lines they are.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

// Where a line was logged.
struct LinePlace {
    std::uintptr_t stack;  // the greater, the further up
    std::uintptr_t code;   // behind the call; read for entries alone
};

class LogNesting {
  public:
    // The level of the line, 0 for the first column; afterwards what follows is one deeper, or back.
    std::size_t Entry(std::string_view text, LinePlace place) noexcept;
    std::size_t Exit(std::string_view text, LinePlace place) noexcept;
    std::size_t Note(LinePlace place) noexcept;

  private:
    // A name is kept as its hash: the texts are gone with their lines.
    struct Open {
        LinePlace place;
        std::uint64_t name;
    };
    // Further ones are only counted.
    static constexpr std::size_t kKept = 100;

    std::size_t Level() const noexcept { return mCount + mBeyond; }
    void Keep(std::size_t count) noexcept;
    void DropEnded(std::uintptr_t stack) noexcept;
    bool IsWithinMessage() const noexcept;

    std::array<Open, kKept> mOpen{};
    std::size_t mCount = 0;
    std::size_t mBeyond = 0;
};

// The operation that an entry or exit line names: what stands behind "Entering" and the like, up to what is no part of
// a name.
std::string_view OperationOf(std::string_view text) noexcept;

// Of a text: FNV-1a.
std::uint64_t HashOf(std::string_view text) noexcept;

// The line that each message of the host begins with, ticks aside.
bool IsEntryOfMessage(std::string_view text) noexcept;
