// What belongs to the host's thread and process, as it may be with a host and is not when a process begins: a plug-in
// that puts back what Windows begins with, instead of what it found, is found out.
//
// Thread: main.
#pragma once

namespace simhost {

void MakeStateUnusual();

}  // namespace simhost
