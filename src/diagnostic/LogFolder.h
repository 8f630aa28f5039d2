// Where the logs are, for the plug-in and for who collects them. Thread: any.
#pragma once

// Each lies in the one before; the first in the user's local application data, or in the temporary folder when the
// variable LOCALAPPDATA names none.
constexpr const wchar_t* kLogFolders[] = {L"Quorvel", L"TypeAgent", L"Logs"};
