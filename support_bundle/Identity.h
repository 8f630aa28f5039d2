// Who uses the computer, by all names that a path may hold, and where the folders of all users are.
#pragma once

#include <string>
#include <vector>

struct Identity {
    std::vector<std::wstring> profileFolders;  // absolute, without a separator at the end; also in the short form
    std::vector<std::wstring> allProfiles;     // the folders that the profiles of all users lie in; in the same way
    std::vector<std::wstring> names;           // of the account, and of the profile's folder
};

// Of the user who runs this program.
Identity CurrentIdentity();

// With what follows from what is given: the names of the profiles' folders, and the short forms that Windows makes of
// longer names ("JOHNSM~1"). Nothing twice, the longer before the shorter.
Identity Completed(Identity identity);
