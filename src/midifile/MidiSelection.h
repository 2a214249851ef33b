#pragma once

#include <vector>

namespace tarvix {

// What the user picked in the tree or a list: the eight kinds the MIDI file
// import and export both start from.
enum class MidiSelectionKind {
    AllParts,   // the "Parts" folder
    Part,       // one part in the tree
    PartTracks, // track rows of one part
    Parts,      // part rows
    AllSongs,   // the "Songs" folder
    Song,       // one song in the tree
    Songs,      // song rows
    Steps,      // step rows of one song
};

// Every number counts from 0, as the model does: parts and songs 0-99,
// tracks 0-7, steps from 0. Items keep the user's order and duplicates.
struct MidiSelection {
    MidiSelectionKind kind = MidiSelectionKind::AllParts;
    // The part (Part, PartTracks) or the song (Song, Steps); unused otherwise.
    int index = 0;
    // Track indices (PartTracks), parts (Parts), songs (Songs) or step
    // indices (Steps); empty for the other kinds.
    std::vector<int> items;
};

} // namespace tarvix
