#pragma once

namespace tarvix {
class CMmt8Memory;
}

namespace tarvix::demo {

// A short set as a musician might keep it: drums, bass, chords and a fill
// with every kind of event, and two songs that chain them.
void BuildDemoDocument(CMmt8Memory& memory);

} // namespace tarvix::demo
