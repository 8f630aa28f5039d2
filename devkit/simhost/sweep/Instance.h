// The plug-in as it is loaded in this process, from its loading to the unloading of all that it has loaded: one story
// is played to it, or one after the other.
//
// Thread: main.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "doubles/host/Host.h"
#include "simhost/launch/RunFolder.h"
#include "simhost/scenario/Scenario.h"
#include "simhost/sweep/Fault.h"
#include "simhost/sweep/SweepRun.h"

namespace simhost::sweep {

class StoryRun;

// How long the plug-in stays loaded.
enum class Stays {
    kAsTheStorySays,  // a step may free it
    kToTheEnd,        // as real hosts keep their plug-ins: what one run has left in its variables, the next one meets
};

class Instance {
  public:
    Instance(const RunFolder& folder, Stays stays);
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;
    ~Instance();

    // The scenario must live as long as this. The folder is as it was before any run: see FolderReset. A run without a
    // fault is checked at its end as every run is. Not after a run that was lost.
    SweepRun Play(const Scenario& scenario, std::optional<Fault> fault, bool records);

    // False once a step has freed a plug-in that nobody else holds. Then nothing more can be played.
    bool IsLoaded() const;

    // Unloads all, and notes in the run what is left of all runs together. Not after a run that was lost.
    void End(SweepRun& run);

  private:
    const RunFolder& mFolder;
    Stays mStays;
    SimulatedHost mHost;
    // Kept: the messaging library, which stays loaded as well, calls the panel of each.
    std::vector<std::unique_ptr<StoryRun>> mRuns;
};

}  // namespace simhost::sweep
