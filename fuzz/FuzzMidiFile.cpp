// Standard MIDI Files from outside: whatever the reader keeps can be dumped,
// and writes to bytes that read back as the same file.
#include "FuzzFailure.h"

#include "midifile/MidiDumpSink.h"
#include "midifile/MidiFile.h"
#include "midifile/MidiFileDump.h"
#include "midifile/MidiFileStream.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace {
using namespace tarvix;

std::vector<std::uint8_t> Write(CMidiFile& file)
{
    CMidiFileStream stream;
    stream.OpenMemoryForWriting();
    file.Persist(stream);
    const auto bytes = stream.GetWrittenBytes();
    return {bytes.begin(), bytes.end()};
}

// Under running status a first data byte of 0x80 or more reads back as a
// status byte: the format itself cannot carry such an event, so it is no
// finding.
bool SurvivesRunningStatus(const CMidiFile& file)
{
    for (const auto& track : file.tracks) {
        const CMidiEvent* previous = nullptr;
        for (const auto& event : track->events) {
            if (event->GetKind() == CMidiEvent::kChannel && previous != nullptr &&
                previous->GetStatus() == event->GetStatus() &&
                (static_cast<const CMidiChannelEvent&>(*event).GetData1() & 0x80) != 0)
                return false;
            previous = event.get();
        }
    }
    return true;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CMidiFileStream input(std::span<const std::uint8_t>(data, size));
    CMidiFile file;
    file.Persist(input);

    CMidiDumpSink sink;
    DumpMidiFile(file, sink);

    const std::vector<std::uint8_t> written = Write(file);
    CMidiFileStream rereading(written);
    CMidiFile reread;
    reread.Persist(rereading);
    if (!SurvivesRunningStatus(file))
        return 0;
    if (reread.tracks.size() != file.tracks.size())
        fuzzing::FailFuzzCheck("the written file reads back with another number of tracks");
    if (Write(reread) != written)
        fuzzing::FailFuzzCheck("the written file reads back differently");
    return 0;
}
