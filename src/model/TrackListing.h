#pragma once

#include "model/TextBuilder.h"

#include <string>

namespace tarvix {

class CMmt8Event;
class CMmt8Track;

// The track's events as the fixed-width text of the track dump view: a
// header, then one line per event with note, program and controller names.
std::string ListTrack(const CMmt8Track& track, LineEnds lineEnds = LineEnds::Crlf);

// The event's line of that listing without its line end, with the time shown
// even when the listing would leave it blank (an event pointed at alone has
// no line above it to take the time from).
std::string ListEventLine(const CMmt8Event& event);

} // namespace tarvix
