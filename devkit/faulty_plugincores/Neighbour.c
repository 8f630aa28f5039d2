/* What a library of the same folder gives. */
__declspec(dllexport) const char* NameOfNothing(void);

const char* NameOfNothing(void) { return "Nothing"; }
