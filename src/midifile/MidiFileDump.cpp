#include "midifile/MidiFileDump.h"

#include "midifile/MidiDumpSink.h"
#include "midifile/MidiFile.h"
#include "midifile/MidiFileStream.h"

namespace tarvix {

void DumpMidiFile(const CMidiFile& file, CMidiDumpSink& sink)
{
    sink.WriteFormat("\nHeader\n======\nSMF type: %u\nNumber of tracks: %u\n"
                     "Ticks per quarter note: %u\n",
                     unsigned{file.header.format}, unsigned{file.header.trackCount},
                     unsigned{file.header.division});
    const bool showsEvents =
        sink.ShowsChannelEvents() || sink.ShowsSysexEvents() || sink.ShowsMetaEvents();
    for (std::size_t i = 0; i < file.tracks.size(); ++i) {
        const CMidiTrack* track = file.tracks[i].get();
        if (track == nullptr)
            continue;
        sink.WriteFormat("\nTrack %zu\n========\n", i + 1);
        if (!showsEvents)
            continue;
        for (const auto& event : track->events)
            if (event)
                event->Dump(sink);
    }
}

void DumpMidiFile(const std::string& path, CMidiDumpSink& sink)
{
    CMidiFileStream stream;
    stream.Open(path, CMidiFileStream::kModeRead);
    CMidiFile file;
    file.Persist(stream);
    stream.Close();
    sink.WriteFormat("\nDumping file: %s\n", path.c_str());
    DumpMidiFile(file, sink);
}

} // namespace tarvix
