#pragma once

#include <string>

namespace tarvix {

class CMidiDumpSink;
class CMidiFile;

// The header block, then every track with one line per event shown by the
// sink's flags.
void DumpMidiFile(const CMidiFile& file, CMidiDumpSink& sink);

// The MIDI File Dump command's report for the file at path: the "Dumping
// file" line, then the file as read. Throws CMidiFileException when the file
// cannot be read; a file that is not MIDI at all still gives a report.
void DumpMidiFile(const std::string& path, CMidiDumpSink& sink);

} // namespace tarvix
