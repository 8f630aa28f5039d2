// Each function puts the operations of some suites into their tables.
//
// Thread: main.
#pragma once

#include "doubles/host/suites/SuiteStore.h"
#include "host/BasicSuite.h"

namespace simhost {

void InstallArtSuites(SuiteStore& suites);
void InstallDocumentSuite(SuiteStore& suites);
void InstallFileFormatSuite(SuiteStore& suites);
void InstallFontSuite(SuiteStore& suites);
void InstallMenuSuite(SuiteStore& suites);
void InstallNotifierSuite(SuiteStore& suites);
void InstallPathSuite(SuiteStore& suites);
void InstallPluginSuites(SuiteStore& suites);
void InstallStringSuite(SuiteStore& suites);
void InstallTextEngineSuites(SuiteStore& suites);
void InstallTimerSuite(SuiteStore& suites);

inline void InstallAllSuites(SuiteStore& suites) {
    InstallArtSuites(suites);
    InstallDocumentSuite(suites);
    InstallFileFormatSuite(suites);
    InstallFontSuite(suites);
    InstallMenuSuite(suites);
    InstallNotifierSuite(suites);
    InstallPathSuite(suites);
    InstallPluginSuites(suites);
    InstallStringSuite(suites);
    InstallTextEngineSuites(suites);
    InstallTimerSuite(suites);
}

// The suite that comes with every message. Its table lives as long as the process.
const SPBasicSuite* BasicSuite();

}  // namespace simhost
