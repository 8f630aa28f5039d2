#include "simhost/sweep/Injector.h"

#include <utility>

namespace simhost::sweep {

namespace {

std::uint32_t SizeOf(HMODULE module) {
    const auto* const base = reinterpret_cast<const unsigned char*>(module);
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    return reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew)->OptionalHeader.SizeOfImage;
}

}  // namespace

void Injector::Begin(HMODULE plugin, std::optional<Fault> fault, bool records) {
    *this = Injector();
    mPlugin = plugin;
    mPluginSize = SizeOf(plugin);
    mThread = GetCurrentThreadId();
    mRecords = records;
    mFault = fault;
}

void Injector::End() { mThread = 0; }

bool Injector::Fails(Kind kind, std::string_view operation) {
    if (GetCurrentThreadId() != mThread) {
        return false;
    }
    const std::size_t number = ++mCounts[static_cast<std::size_t>(kind)];
    if (mRecords) {
        mCalls[static_cast<std::size_t>(kind)].push_back({std::string(operation), Returns()});
    }
    const bool fails = mFault && mFault->kind == kind &&
                       (number == mFault->number || (mFault->mode == Mode::kFromHere && number > mFault->number));
    if (fails) {
        ++mFailures[std::string(operation)];
    }
    return fails;
}

std::vector<std::uint32_t> Injector::Returns() const {
    std::vector<std::uint32_t> returns;
    if (!mRecords) {
        return returns;
    }
    std::array<void*, 62> frames{};  // the most that one call gives
    const WORD count = RtlCaptureStackBackTrace(1, static_cast<DWORD>(frames.size()), frames.data(), nullptr);
    for (WORD i = 0; i < count; ++i) {
        const std::uint64_t offset =
            reinterpret_cast<std::uint64_t>(frames[i]) - reinterpret_cast<std::uint64_t>(mPlugin);
        if (offset < mPluginSize) {
            returns.push_back(static_cast<std::uint32_t>(offset));
        }
    }
    return returns;
}

Injector& TheInjector() {
    static auto* const sInjector = new Injector;
    return *sInjector;
}

}  // namespace simhost::sweep
