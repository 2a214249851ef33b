#pragma once

#include "midifile/MidiChunk.h"
#include "midifile/MidiTrack.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace tarvix {

class CMidiFileStream;

// A Standard MIDI File in memory: the header and the tracks in order. Null
// track entries are allowed and skipped.
class CMidiFile {
public:
    // Loads from a stream open for reading, saves to one open for writing,
    // does nothing otherwise. Loading is lenient: it keeps the tracks it could
    // read and ends quietly at the end of the bytes or at the first chunk that
    // is not "MTrk"; a missing "MThd" leaves an all-zero header. Only file
    // failures and lack of memory throw (CMidiFileException).
    void Persist(CMidiFileStream& stream);
    void Clear();
    void Copy(const CMidiFile& other);
    // Splits a format-0 file of one track in place: a first track with the
    // meta and SysEx events, then one track per used channel in channel
    // order. False, and nothing changed, for any other file.
    bool ExplodeType0();

    CMidiHeader header;
    std::vector<std::unique_ptr<CMidiTrack>> tracks;

private:
    void Load(CMidiFileStream& stream);
    void Save(CMidiFileStream& stream);
};

// Beats per minute from the first tempo event of the first track with at
// least 3 data bytes; 120 without one (and for a tempo of 0).
std::uint32_t FindTempoBpm(const CMidiFile& file);

} // namespace tarvix
