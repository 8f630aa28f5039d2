#pragma once

#include "doubles/common/AnswerScript.h"

// Throws what the script asked for, or returns. Call it with nothing left to clean up in the calling function: an
// exception of another compiler runs no destructors here.
void ThrowAsAsked(Throw what);
