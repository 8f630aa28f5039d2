// What has to be different in a watched process under Wine.
#pragma once

#include <windows.h>

namespace simhost {

// Wine takes another way for exceptions that a program throws when there is a debugger: through the kernel side and its
// dispatcher, from where registers come back wrong when an exception is thrown while another one unwinds, as GCC's
// clean-up code does. The process then crashes where it would not without a debugger. From now on such exceptions stay
// in the process; one that nobody handles still comes to the debugger.
//
// Once the process's loader has done its work. Does nothing on Windows.
void KeepThrownExceptionsInside(HANDLE process);

}  // namespace simhost
