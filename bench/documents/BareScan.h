// The floor of a scan: the calls of the host that it must make, in its order, and nothing else but, on request, one
// bounded formatting for each line of the log that it must write.
#pragma once

namespace bench {

// Of the document that the counting host shows; every font is new the first time, and known from then on.
void BareScanCalls();
void BareScanCallsAndLines();

// The default-font check of a name that none of the 24 scripts has.
void BareDefaultFontCalls();

}  // namespace bench
