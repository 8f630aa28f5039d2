// What every suite operation begins with: it counts and records the call, applies fault injection, and reports broken
// rules.
//
// Thread: main.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

#include "doubles/common/OwnMemory.h"
#include "doubles/host/Host.h"
#include "host/HostTypes.h"

namespace simhost {

// Arguments as the record of calls shows them: 'text' or null, 17, 0x170000000010, or what a callable returns.
std::string Shown(const char* text);
std::string Shown(const void* address);
template <std::integral Number>
std::string Shown(Number number) {
    return std::to_string(number);
}
template <std::invocable Describe>
std::string Shown(const Describe& describe) {
    return describe();
}

// An operation that is counted but not recorded: no test depends on how often it is called.
struct Unrecorded {};

// One call of an operation. Memory that is allocated while it lives is marked as the double's own.
class SuiteCall {
  public:
    SuiteCall(const char* suite, const char* operation, Unrecorded);
    template <class... Arguments>
    SuiteCall(const char* suite, const char* operation, const Arguments&... arguments)
        : mName(NameOf(suite, operation)) {
        CheckListed();
        CheckHeld(suite);
        std::string list;
        (AppendArgument(list, Shown(arguments)), ...);
        Host().operations.Record(std::string(operation) + "(" + list + ")");
        mFate = Host().operations.Begin(suite, operation);
    }

    // Runs the operation's work, which returns its result, unless a fault says otherwise. The result of the operation.
    template <class DoWork>
    std::int32_t Perform(DoWork doWork) const {
        if (mFate.works) {
            const std::int32_t result = doWork();
            return mFate.code != 0 ? mFate.code : result;
        }
        return mFate.code;
    }

    // The handle of a new object that the plug-in has to give back. A failing call hands out one that is stale already.
    template <class Table, class Object>
    void* HandOut(Table& table, Object object) const {
        void* const handle = table.Add(std::move(object));
        if (FailsAfterWork()) {
            table.Remove(handle);
        }
        return handle;
    }
    bool FailsAfterWork() const { return mFate.works && mFate.code != 0; }

    // Reports a missing or senseless argument. The result of the operation.
    std::int32_t BadArgument(const std::string& what) const;
    // Whether the reference is the one that the plug-in's messages carry; reports it when it is not.
    bool IsOwnReference(SPPluginRef self) const;
    // Reports the use of a handle that was given back, or that the host never gave out. The result of the operation.
    template <class Table>
    std::int32_t Stale(const Table& table, const void* handle, const char* kind) const {
        return StaleHandle(table.WasGiven(handle), handle, kind);
    }

  private:
    static std::string NameOf(const char* suite, const char* operation) { return std::string(suite) + "/" + operation; }
    static void AppendArgument(std::string& list, const std::string& argument) {
        list += (list.empty() ? "" : ", ") + argument;
    }
    void CheckListed() const;
    void CheckHeld(const char* suite) const;
    std::int32_t StaleHandle(bool wasGiven, const void* handle, const char* kind) const;

    const OwnMemory mOwnMemory;  // first: the other members allocate
    std::string mName;           // suite, slash, operation
    CallFate mFate;
};

}  // namespace simhost
