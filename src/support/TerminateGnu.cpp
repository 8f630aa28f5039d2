// What an exception that nobody catches ends in. The C++ runtime's own handler prints the exception's name to a console
// that the host does not have, for which it brings along a demangler and formatted output: a fifth of the plug-in's
// file. The place of the exception is in the host's crash report either way. Thread: any.
#include <cstdlib>
#include <exception>

// The name is the runtime's own: a program may have another handler.
__attribute__((noreturn)) void __gnu_cxx::__verbose_terminate_handler() { std::abort(); }
