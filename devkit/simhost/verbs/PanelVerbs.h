// panel_request, panel_open: what the font manager's panel does. No messages, so they can come at any time, also when
// the plug-in has been unloaded: the bus calls its listener all the same.
#pragma once

namespace simhost {

class Performance;

// Opens the panel when it is not open, and asks for the port.
struct RequestPort {};
void Perform(const RequestPort& action, Performance& performance);

struct OpenPanel {};
void Perform(const OpenPanel& action, Performance& performance);

}  // namespace simhost
