#pragma once

#include "midifile/MidiEvent.h"
#include "midifile/MidiFile.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace tarvix::testing {

using Bytes = std::vector<std::uint8_t>;

Bytes Join(std::initializer_list<Bytes> parts);
// A chunk: the 4-character id, the big-endian length of the body, the body.
Bytes Chunk(const char* id, const Bytes& body);
Bytes HeaderChunk(std::uint16_t format, std::uint16_t tracks, std::uint16_t division);
Bytes Text(const std::string& text);

CMidiFile ReadMidi(const Bytes& bytes);
Bytes WriteMidi(CMidiFile& file);

std::unique_ptr<CMidiEvent> Channel(std::uint32_t delta, std::uint8_t status, std::uint8_t data1,
                                    std::uint8_t data2 = 0);
std::unique_ptr<CMidiEvent> Meta(std::uint32_t delta, std::uint8_t type, const Bytes& data = {});
std::unique_ptr<CMidiEvent> Sysex(std::uint32_t delta, std::uint8_t status, const Bytes& data);

// A file of these tracks, the header's track count set to match.
CMidiFile MakeFile(std::uint16_t format, std::uint16_t division,
                   std::vector<std::vector<std::unique_ptr<CMidiEvent>>> tracks);

// The file as text, one line per event, in the form the mido peer prints:
//   header FORMAT TRACKS DIVISION / track / DELTA channel|sysex STATUS DATA..
//   / DELTA meta TYPE DATA.. (bytes as two lower-case hex digits).
std::string ListEvents(const CMidiFile& file);

} // namespace tarvix::testing
