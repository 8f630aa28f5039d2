// The one file format of the fake host. Its registration is recorded with everything in the record:
// "AddFileFormatEx('name', 4 types ART5 EPSF PDF  AITm, title 'text', order 0, 'ai,eps', 1, 0)".
#pragma once

#include "host/FileFormatSuite.h"

struct FakeFileFormat {
    // What AddFileFormatEx gives out, whatever it answers.
    AIFileFormatHandle handle = reinterpret_cast<AIFileFormatHandle>(0x0000000100007001);
};

const AIFileFormatSuite& FakeFileFormatSuite();
