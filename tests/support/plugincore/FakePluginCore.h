// The double of the PluginCore inside the test program, which exports the entries and is loaded as the library. Its
// record and its script are those of ThePluginCore(); every test begins with an empty one of each.
//
//   ThePluginCore().script["GetMenus"].text = "[]";
//   ThePluginCore().script.Fail("HandleSaveDocument", -3);
//   EXPECT_EQ(ThePluginCore().calls.Calls(), std::vector<std::string>{"HandleSaveDocument('C:/a.ai', '{}')"});
//
// Calls of PluginIsEnabled are left out of Calls() until a test says calls.Show("PluginIsEnabled"): most tests do not
// care how often it is asked. CreateMenusFromJSONBuffer does not call back by itself.
//
// Thread: the one that runs the tests.
#pragma once

#include <string>

#include "doubles/plugincore/PluginCoreDouble.h"

// Makes the test program the shared PluginCore library, under its own path.
void LoadFakePluginCore();

// The path under which LoadFakePluginCore loads it.
std::string FakePluginCorePath();

// As at the beginning of every test.
void ResetFakePluginCore();
