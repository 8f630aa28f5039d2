/* Cannot be loaded unless Windows finds Neighbour.dll. */
__declspec(dllimport) const char* NameOfNothing(void);
const char* UseNeighbour(void);

extern const char* const kFault;
const char* const kFault = "Nothing";

const char* UseNeighbour(void) { return NameOfNothing(); }
