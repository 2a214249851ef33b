#pragma once

#include "support/MidiFileBuilders.h"

#include "midifile/MidiImportOptions.h"
#include "midifile/MidiSelection.h"

#include <memory>
#include <string>
#include <vector>

namespace tarvix {
class CMmt8Memory;
}

namespace tarvix::testing {

using Events = std::vector<std::unique_ptr<CMidiEvent>>;

template <typename... Made> Events EventsOf(Made... made)
{
    Events events;
    (events.push_back(std::move(made)), ...);
    return events;
}

// A file of these tracks (each an Events).
template <typename... Tracks>
CMidiFile FileOf(std::uint16_t format, std::uint16_t division, Tracks... tracks)
{
    std::vector<Events> all;
    (all.push_back(std::move(tracks)), ...);
    return MakeFile(format, division, std::move(all));
}

MidiSelection Select(MidiSelectionKind kind, int index = 0, std::vector<int> items = {});

// The file the selection exports to; a refusal fails the test.
CMidiFile Exported(const CMmt8Memory& memory, const MidiSelection& selection);
// The same as the bytes of a file.
Bytes ExportedBytes(const CMmt8Memory& memory, const MidiSelection& selection);

// A track's events at their absolute ticks, one a line: "96 90 3c 64" for
// channel and SysEx messages, "0 meta 03 \"Track 1\"" for text meta events,
// "0 meta 20 02" for the others.
std::vector<std::string> Timeline(const CMidiTrack& track);

// The import with aftertouch and SysEx on: reads the bytes, ticks the
// tracks the dialog ticks, assigns the device tracks for the selection and
// runs it into the memory.
void ImportBack(CMmt8Memory& memory, const MidiSelection& selection, const Bytes& bytes);

} // namespace tarvix::testing
