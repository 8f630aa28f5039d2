#include "simhost/run/HostPreparation.h"

#include <utility>

#include "doubles/host/Host.h"
#include "simhost/run/UnusualState.h"

namespace simhost {

namespace {

void PrepareMenu(const Scenario& scenario, HostModel& model) {
    for (const OtherPlugin& plugin : scenario.otherPlugins) {
        model.otherPlugins.Add(plugin);
    }
    for (const MenuItemToMake& made : scenario.menuItems) {
        model.menus.NeedGroup(made.item.group);
        MenuItem item = made.item;
        item.owner = model.PluginNamed(made.owner);
        model.menus.items.Add(std::move(item));
    }
}

}  // namespace

void PrepareHost(const Scenario& scenario) {
    MakeStateUnusual();
    SimulatedHost& host = Host();
    for (const std::string& name : scenario.refusedSuites) {
        host.suites.Withdraw(name);
    }
    for (const Document& document : scenario.documents) {
        host.model.documents.emplace(document.name, document);
    }
    PrepareMenu(scenario, host.model);
    host.model.defaultFonts = scenario.defaultFonts;
    host.model.emptyHandleForNoMatches = scenario.emptyHandleForNoMatches;
}

}  // namespace simhost
