// Speed of a MIDI file import whose note-offs match nothing, behind a long
// run of controllers: each note-off once searched the whole track.
#include "NoteOffMidiFile.h"

#include "midifile/ImportTrackList.h"
#include "midifile/MidiFileStream.h"
#include "midifile/MidiImport.h"
#include "model/Mmt8Memory.h"

#include <benchmark/benchmark.h>

namespace {
using namespace tarvix;

// Reads the file from its bytes and imports it into part 0 of a fresh
// document, as the import dialog's OK does.
void BM_ImportUnmatchedNoteOffs(benchmark::State& state)
{
    const std::vector<std::uint8_t> bytes = bench::MakeUnmatchedNoteOffFile();
    std::size_t stored = 0;
    for (auto _ : state) {
        CMidiImport request;
        request.sourcePath = "noteoffs.mid";
        CMidiFileStream stream(bytes);
        request.file.Persist(stream);
        request.destinationParts = {0};
        request.trackMask = kAllTracksMask;
        AssignDeviceTracks(request.file, GetInitialTicks(request.file), request.trackMask);
        CMmt8Memory memory;
        RunImport(request, memory);
        stored = memory.Part(0).tracks[0].events.size();
    }
    if (stored != bench::kNoteOffFileControllers)
        state.SkipWithError("the import did not store every controller");
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
    state.counters["file_bytes"] = static_cast<double>(bytes.size());
    state.counters["stored_events"] = static_cast<double>(stored);
}
BENCHMARK(BM_ImportUnmatchedNoteOffs)->Unit(benchmark::kMillisecond);

} // namespace
