// Exceptions that a double throws at the plug-in.
//
// Thread: the caller's. Call them with nothing left to clean up in the calling function: an exception of another
// compiler runs no destructors of this one's frames.
#pragma once

#include "doubles/common/Answer.h"

// As code built by Visual C++ throws: Windows sees its exception code, this compiler's frames see no C++ exception.
void ThrowLikeAnotherCompiler();

// Throws what the answer says, or returns.
void ThrowAsAsked(doubles::Throw what);
