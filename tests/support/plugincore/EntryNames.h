// The names of the 24 entries in the order of the contract, written out once more on purpose.
#pragma once

#include <string>
#include <vector>

inline const std::vector<std::string> kEntryNames = {"ActivateChosenFonts",
                                                     "CreateMenusFromJSONBuffer",
                                                     "GetAPIVersion",
                                                     "GetDocumentFontUsage",
                                                     "GetIDForDocument",
                                                     "GetMenus",
                                                     "GetSettings",
                                                     "GetSocketPort",
                                                     "HandleCloseDocument",
                                                     "HandleCreateNewDocument",
                                                     "HandleMenuSelection",
                                                     "HandleOpenExistingDocument",
                                                     "HandleSaveDocument",
                                                     "IdleEvent",
                                                     "InitializePluginCoreInterface",
                                                     "InvokeCommandDialog",
                                                     "InvokeResolveDialog",
                                                     "InvokeRestrictedFontsDialog",
                                                     "PluginIsEnabled",
                                                     "ProcessPanelMessages",
                                                     "RegisterPlugPlug",
                                                     "SetPathForDocument",
                                                     "TerminatePluginCoreInterface",
                                                     "UpdateDocumentFontUsage"};
