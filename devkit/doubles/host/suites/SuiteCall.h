// What every suite operation begins with, and how it refuses.
#pragma once

#include <cstdint>
#include <string>

#include "doubles/host/Host.h"
#include "host/HostTypes.h"

namespace simhost {

// One call of an operation. `code` is not 0 when the scenario wants it to fail: then it is to be returned at once.
struct SuiteCall {
    SuiteCall(const char* suite, const char* operation);

    // Notes that an argument is missing or senseless; returns what the operation then answers.
    std::int32_t BadArgument(const std::string& what) const;
    // Whether the reference is the one that the plug-in's messages carry; notes it when it is not.
    bool IsOwnReference(SPPluginRef self) const;
    // Notes the use of a handle that was given back, or that the host never gave out.
    template <class Table>
    std::int32_t Stale(const Table& table, const void* handle, const char* kind) const {
        return StaleHandle(table.WasGiven(handle), handle, kind);
    }

    std::string name;  // suite, slash, operation
    std::int32_t code = 0;

  private:
    std::int32_t StaleHandle(bool wasGiven, const void* handle, const char* kind) const;
};

}  // namespace simhost
