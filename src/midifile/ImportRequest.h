#pragma once

#include "midifile/MidiSelection.h"

#include <string>

namespace tarvix {

class CMidiImport;
class CMmt8Memory;

// Sets the request's destination parts, track mask and target song from
// what the user selected; rows that name no part, song, track or step are
// passed over. False with "No tracks selected.\n" or "No parts selected.\n"
// when there is nothing to import into.
bool BuildImportRequest(const CMmt8Memory& memory, const MidiSelection& selection,
                        CMidiImport& request, std::string& error);

} // namespace tarvix
