#pragma once

namespace tarvix {

class CMmt8Part;
class CMmt8Song;
class CMmt8Track;
class CStream;

// The stream form of the records, which the clipboard carries. Each function
// writes when the stream is writing and reads otherwise, so the two
// directions cannot drift apart. A read that runs out of bytes, or meets a
// record the editor could not have made (a part over 682 beats, a track
// channel over 16, a step naming no part), throws CStreamException with the
// reason and leaves the record as it was. Names are normalised as they are
// read.
void Persist(CMmt8Track& track, CStream& stream);
void Persist(CMmt8Part& part, CStream& stream);
void Persist(CMmt8Song& song, CStream& stream);
// One step. Writing an index past the end writes nothing; reading overwrites
// the step at index, or appends when index is at or past the end and the song
// has room.
void Persist(CMmt8Song& song, int stepIndex, CStream& stream);

} // namespace tarvix
