// What the host's questions about 60 menu items cost, beside one parse of their description.
#include <windows.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "common/Run.h"
#include "json/JsonParser.h"
#include "shipped/ShippedPlugin.h"
#include "support/Log.h"
#include "support/TextConversion.h"

namespace {

constexpr std::size_t kItems = 60;

std::string Description(const char* checked) {
    std::string json = "[";
    for (std::size_t i = 1; i <= kItems; ++i) {
        const std::string number = std::to_string(i);
        json += (i == 1 ? "" : ",") + (R"({"id":")" + number) + R"(","title":"t)" + number +
                R"(","enabled":true,"checked":)" + checked + R"(,"child":0})";
    }
    return json + "]";
}

void Describe(const std::string& json) {
    const auto describe = reinterpret_cast<void (*)(const char*, int)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"PluginCoreX64.dll"), "DescribeMenus")));
    if (describe == nullptr) {
        throw std::runtime_error("the PluginCore of the benchmarks is not loaded");
    }
    describe(json.c_str(), static_cast<int>(kItems));
}

}  // namespace

void bench::Define(Run& run) {
    const std::string checked = Description("true ");
    const std::string unchecked = Description("false");
    LoadLibraryW(BesideProgram(L"PluginCoreX64.dll").c_str());
    Describe(checked);
    const auto plugin = std::make_shared<ShippedPlugin>();
    plugin->Start();

    const auto parse = [checked] { Keep(ParseJson(Utf16FromUtf8(checked))); };
    // An update logs its own frame and that of the message, and two lines for each search.
    const auto lines = [] {
        for (std::size_t i = 0; i < 2 * (kItems + 1); ++i) {
            LogMessage(kLogEntry, "Exiting %s(..., %s, ...) with result %d", "GetMenuObject", "60", 0);
        }
    };
    run.Compare("AI Update with 60 items", "one parse",
                {{"this plug-in, same description", [plugin] { plugin->Update(kItems / 2); }},
                 {"this plug-in, another description each time",
                  [=, isChecked = true]() mutable {
                      isChecked = !isChecked;
                      Describe(isChecked ? checked : unchecked);
                      plugin->Update(kItems / 2);
                  }},
                 {"one parse", parse},
                 {"floor: the log lines of the searches", lines}});
    run.Compare("opening a menu of 60 items", "one parse",
                {{"this plug-in",
                  [=] {
                      for (std::size_t item = 1; item <= kItems; ++item) {
                          plugin->Update(item);
                      }
                  }},
                 {"one parse", parse},
                 {"floor: the log lines of the searches", [lines] {
                      for (std::size_t item = 0; item < kItems; ++item) {
                          lines();
                      }
                  }}});
}
