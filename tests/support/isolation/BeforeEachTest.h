// What must be as in a new process when a test begins, although many tests run in one.
//
// Thread: the one that runs the tests.
#pragma once

// Has a function called before each test of the program, before the test's fixture is made. For objects of namespace
// scope: the registration stays until the process ends.
class BeforeEachTest {
  public:
    explicit BeforeEachTest(void (*reset)());
};

// Begins to call what was registered, and to put the variables of the plug-in's own code back to their values at the
// time of this call. What they held on the heap is not freed. Call it after gtest's own initialisation.
//
// The variables are those that the linker script PluginVariables.ld gathers; without the script (other linkers than
// GNU's), a test that depends on fresh ones needs a process of its own.
void IsolateTests();
