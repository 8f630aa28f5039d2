/* A library of nothing, as the compiler makes it. */
#ifdef _MSC_VER
__declspec(dllexport)
#endif
int nothing = 0;
