// Speed of the Standard MIDI File reader, writer and dump report on a busy
// 10 MB multi-track file.
#include "BigMidiFile.h"

#include "midifile/MidiDumpSink.h"
#include "midifile/MidiFileDump.h"
#include "midifile/MidiFileStream.h"
#include "support/TempDir.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {
using namespace tarvix;

constexpr std::uint32_t kFileBytes = 10 * 1024 * 1024;

std::vector<std::uint8_t> Write(CMidiFile& file)
{
    CMidiFileStream stream;
    stream.OpenMemoryForWriting();
    file.Persist(stream);
    const auto bytes = stream.GetWrittenBytes();
    return {bytes.begin(), bytes.end()};
}

// Made once, before any timing, in memory and as a file.
struct BigFile {
    BigFile()
    {
        CMidiFile file = bench::MakeBigMidiFile(kFileBytes);
        bytes = Write(file);
        path = folder.File("big.mid");
        testing::WriteAllBytes(path, bytes);
        for (const auto& track : file.tracks)
            events += static_cast<double>(track->events.size());
        CMidiDumpSink sink(LineEnds::Lf);
        DumpMidiFile(file, sink);
        reportBytes = static_cast<double>(sink.GetText().GetSize());
    }

    std::vector<std::uint8_t> bytes;
    testing::TempDir folder;
    std::string path;
    double events = 0;
    double reportBytes = 0;
};

const BigFile& GetBigFile()
{
    static const BigFile big;
    return big;
}

void SetCounters(benchmark::State& state, const BigFile& big)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(big.bytes.size()));
    state.counters["file_bytes"] = static_cast<double>(big.bytes.size());
    state.counters["events"] = big.events;
    state.counters["report_bytes"] = big.reportBytes;
}

void BM_ReadMidiFile(benchmark::State& state)
{
    const BigFile& big = GetBigFile();
    for (auto _ : state) {
        CMidiFileStream stream(big.bytes);
        CMidiFile file;
        file.Persist(stream);
        benchmark::DoNotOptimize(file.tracks.data());
    }
    SetCounters(state, big);
}
BENCHMARK(BM_ReadMidiFile)->Unit(benchmark::kMillisecond);

void BM_ReadMidiFileFromDisk(benchmark::State& state)
{
    const BigFile& big = GetBigFile();
    for (auto _ : state) {
        CMidiFileStream stream;
        stream.Open(big.path, CMidiFileStream::kModeRead);
        CMidiFile file;
        file.Persist(stream);
        benchmark::DoNotOptimize(file.tracks.data());
    }
    SetCounters(state, big);
}
BENCHMARK(BM_ReadMidiFileFromDisk)->Unit(benchmark::kMillisecond);

void BM_DumpMidiFile(benchmark::State& state)
{
    const BigFile& big = GetBigFile();
    CMidiFileStream stream(big.bytes);
    CMidiFile file;
    file.Persist(stream);
    for (auto _ : state) {
        CMidiDumpSink sink(LineEnds::Lf);
        DumpMidiFile(file, sink);
        benchmark::DoNotOptimize(sink.GetText().GetData());
    }
    SetCounters(state, big);
}
BENCHMARK(BM_DumpMidiFile)->Unit(benchmark::kMillisecond);

// What tarvix-cli dump does, less the printing: read the file and stream
// the report out in 64 KB pieces.
void BM_DumpMidiFilePathStreamed(benchmark::State& state)
{
    const BigFile& big = GetBigFile();
    for (auto _ : state) {
        CMidiDumpSink sink(LineEnds::Lf);
        std::size_t streamed = 0;
        sink.StreamTo([&streamed](std::string_view text) { streamed += text.size(); });
        DumpMidiFile(big.path, sink);
        sink.Flush();
        benchmark::DoNotOptimize(streamed);
    }
    SetCounters(state, big);
}
BENCHMARK(BM_DumpMidiFilePathStreamed)->Unit(benchmark::kMillisecond);

void BM_WriteMidiFile(benchmark::State& state)
{
    const BigFile& big = GetBigFile();
    CMidiFileStream stream(big.bytes);
    CMidiFile file;
    file.Persist(stream);
    for (auto _ : state)
        benchmark::DoNotOptimize(Write(file).data());
    SetCounters(state, big);
}
BENCHMARK(BM_WriteMidiFile)->Unit(benchmark::kMillisecond);

} // namespace
