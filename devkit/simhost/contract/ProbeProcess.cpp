#include "simhost/contract/ProbeProcess.h"

#include <algorithm>
#include <exception>

#include "simhost/contract/ContractBook.h"
#include "simhost/contract/HitFindings.h"
#include "simhost/contract/PluginCoreWatch.h"
#include "simhost/contract/ProbedLibrary.h"
#include "simhost/contract/Probes.h"
#include "simhost/run/FlightRecorder.h"

namespace simhost::contract {

namespace {

// Done, unless something that is not the library's doing ended it.
void RunAndBook(const std::string& name, const std::filesystem::path& file, std::int64_t seconds) {
    const auto probe =
        std::find_if(AllProbes().begin(), AllProbes().end(), [&](const Probe& p) { return name == p.name; });
    if (probe == AllProbes().end()) {
        Book().Refused("there is no probe of that name");
        return;
    }
    try {
        ProbedLibrary library(file, Deadline(seconds));
        probe->run(library);
    } catch (const OutOfTime&) {
        Book().Note("it was not finished within " + std::to_string(seconds) + " seconds: the library takes its time");
    } catch (const std::exception& error) {
        // No finding: not loaded, or no memory.
        Book().Refused(error.what());
    }
    NoteHits();
}

}  // namespace

int RunProbe(const std::string& name, const std::filesystem::path& file, std::int64_t seconds) {
    RecordStep("the probe " + name);
    KeepBookIfAsked();
    RunAndBook(name, file, seconds);
    Book().Done();
    RecordStep("the end of the probe " + name);
    RecordConclusion();
    return 0;
}

}  // namespace simhost::contract
