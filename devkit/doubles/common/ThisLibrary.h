// What every substitute library says about itself; each defines it once.
#pragma once

struct SubstituteLibrary {
    const char* name;               // for complaints
    const wchar_t* scriptVariable;  // the environment variable that names the file of the answers
    const wchar_t* recordVariable;  // the one that names the file of the calls
};

extern const SubstituteLibrary kThisLibrary;
