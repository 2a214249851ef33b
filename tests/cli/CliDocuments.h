#pragma once

#include "support/SeededDocuments.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarvix {
class CMmt8Memory;
}

namespace tarvix::testing {

class TempDir;

// The demo document's dump.
std::vector<std::uint8_t> DemoDump();
// Writes the document's dump into the folder and returns its path.
std::string SaveDump(const CMmt8Memory& memory, const TempDir& folder, const std::string& name);
// Loads a .syx file the program wrote; a failure fails the test.
void LoadDump(CMmt8Memory& memory, const std::string& path);

// A document whose memory size is exactly size bytes, spread over ten parts
// so that every record stays where a dump can address it.
void BuildDocumentOfSize(CMmt8Memory& memory, std::uint32_t size);

// A dump whose part table points every part at part 0's record, as only a
// damaged or hand-made file would: it loads a document far larger than any
// dump can carry.
std::vector<std::uint8_t> DumpSharingPartZero(const CMmt8Memory& memory);

// The commands that exist now, in the order --help lists them.
inline const std::vector<std::string> kCliCommands = {"memory", "parts", "tracks", "songs",
                                                      "steps",  "list",  "new",    "rewrite"};

// The lines of a program's text, each without its LF.
std::vector<std::string> Lines(const std::string& text);

} // namespace tarvix::testing
