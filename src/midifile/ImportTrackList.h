#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tarvix {

class CMidiFile;
class CMidiFileStream;
class CMidiImport;

// The import dialog's track list: one row per track of the loaded file, in
// file order, with its tick kept by the caller.
enum class ImportColumn { Tick, MidiTrack, Mmt8Track, MidiEvents };

struct ImportColumnInfo {
    const char* title;
    // In widths of the text "XXX".
    int width;
};

// The four columns in order: the check column (titled with two spaces),
// "MIDI Track", "MMT8 Track" and "MIDI Events".
std::span<const ImportColumnInfo> GetImportColumns();

// Loads the request's file from a stream open for reading, after clearing
// it, and splits a format-0 file when the explode option is on. True when
// it was split. Throws CMidiFileException as the reader does; the request's
// file is then empty.
bool LoadImportFile(CMidiImport& request, CMidiFileStream& stream);
// The same from the request's source path, read whole before anything is
// kept.
bool LoadImportFile(CMidiImport& request);

// Whether turning the explode option on or off changes the loaded file, so
// that it must be loaded again.
bool ExplodeChangeReloads(bool wasSplit, const CMidiFile& file);

// A row starts ticked when its track holds a channel or a SysEx event, or
// stands for a device track in one of our exports (even an empty one, so
// that the tracks after it keep their places).
std::vector<bool> GetInitialTicks(const CMidiFile& file);

// Gives the ticked tracks, in row order, the device tracks the mask permits,
// in ascending order, in each track's spare field; every other track, and
// ticked tracks beyond the permitted ones, get 0.
void AssignDeviceTracks(CMidiFile& file, const std::vector<bool>& ticks, std::uint8_t trackMask);

// A cell as the list draws it; the check column has no text.
std::string GetImportCellText(const CMidiFile& file, std::size_t row, ImportColumn column);

} // namespace tarvix
