#pragma once

#include "model/TextBuilder.h"

#include <string>

namespace tarvix {

class CMmt8Track;

// The track's events as the fixed-width text of the track dump view: a
// header, then one line per event with note, program and controller names.
std::string ListTrack(const CMmt8Track& track, LineEnds lineEnds = LineEnds::Crlf);

} // namespace tarvix
