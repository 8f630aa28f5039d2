// A run in this very process, for debuggers: a crash is then not this program's own.
//
// Thread: main.
#pragma once

namespace simhost {

// As long as the object lives.
class InProcessRun {
  public:
    InProcessRun() { sIsUnderWay = true; }
    ~InProcessRun() { sIsUnderWay = false; }
    InProcessRun(const InProcessRun&) = delete;
    InProcessRun& operator=(const InProcessRun&) = delete;

    static bool IsUnderWay() { return sIsUnderWay; }

  private:
    inline static bool sIsUnderWay = false;
};

}  // namespace simhost
