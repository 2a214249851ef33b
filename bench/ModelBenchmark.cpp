// Speed of the document's heavy paths on a near-full memory: receiving a
// dump, building one to send, and listing a long track.
#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"
#include "model/TrackListing.h"
#include "support/FullMemory.h"
#include "support/RandomDocument.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace {
using namespace tarvix;

constexpr std::size_t kMinLongTrackEvents = 2000;
constexpr unsigned kSeedsToTry = 2000;

using testing::CountEvents;
using testing::FullMemory;

const CMmt8Track& LongestTrack(const CMmt8Memory& memory)
{
    const CMmt8Track* longest = &memory.Part(0).tracks[0];
    for (int part = 0; part < kPartCount; ++part)
        for (const CMmt8Track& track : memory.Part(part).tracks)
            if (track.events.size() > longest->events.size())
                longest = &track;
    return *longest;
}

const FullMemory& GetFullMemory()
{
    static const FullMemory full = testing::MakeFullMemory();
    return full;
}

// The longest track of the first one-part random document that has a long
// one; empty if none has, which the benchmark reports.
CMmt8Track MakeLongTrack()
{
    CMmt8Memory memory;
    const testing::RandomDocumentOptions options{1, 3000, 0, 0};
    for (unsigned seed = 1; seed <= kSeedsToTry; ++seed) {
        std::mt19937 random(seed);
        testing::FillRandomDocument(memory, random, options);
        const CMmt8Track& longest = LongestTrack(memory);
        if (longest.events.size() >= kMinLongTrackEvents)
            return longest;
    }
    return {};
}

const CMmt8Track& GetLongTrack()
{
    static const CMmt8Track track = MakeLongTrack();
    return track;
}

void ReportDocument(benchmark::State& state, const FullMemory& full)
{
    state.counters["image_bytes"] = static_cast<double>(full.imageBytes);
    state.counters["dump_bytes"] = static_cast<double>(full.dump.size());
    state.counters["parts"] = static_cast<double>(full.parts);
    state.counters["events"] = static_cast<double>(full.events);
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(full.dump.size()));
}

void BM_LoadSysexData(benchmark::State& state)
{
    const FullMemory& full = GetFullMemory();
    if (!full.problem.empty()) {
        state.SkipWithError(full.problem.c_str());
        return;
    }
    CMmt8Memory memory;
    std::string error;
    if (!LoadSysexData(memory, full.dump, error) || CountEvents(memory) != full.events) {
        state.SkipWithError("the full dump does not load back whole");
        return;
    }
    for (auto _ : state) {
        const bool loaded = LoadSysexData(memory, full.dump, error);
        benchmark::DoNotOptimize(loaded);
        benchmark::ClobberMemory();
    }
    ReportDocument(state, full);
}
BENCHMARK(BM_LoadSysexData)->Unit(benchmark::kMicrosecond);

void BM_BuildDump(benchmark::State& state)
{
    const FullMemory& full = GetFullMemory();
    if (!full.problem.empty()) {
        state.SkipWithError(full.problem.c_str());
        return;
    }
    // Saving follows loading, so the document measured is the loaded one.
    CMmt8Memory loaded;
    std::string error;
    std::vector<std::uint8_t> dump;
    if (!LoadSysexData(loaded, full.dump, error) || !BuildDump(loaded, dump, error) ||
        dump != full.dump) {
        state.SkipWithError("the loaded document does not rewrite to the same dump");
        return;
    }
    for (auto _ : state) {
        const bool built = BuildDump(loaded, dump, error);
        benchmark::DoNotOptimize(built);
        benchmark::DoNotOptimize(dump.data());
    }
    ReportDocument(state, full);
}
BENCHMARK(BM_BuildDump)->Unit(benchmark::kMicrosecond);

void BM_ListTrack(benchmark::State& state)
{
    const CMmt8Track& track = GetLongTrack();
    if (track.events.size() < kMinLongTrackEvents) {
        state.SkipWithError("no random track was long enough");
        return;
    }
    std::size_t textBytes = 0;
    for (auto _ : state) {
        const std::string text = ListTrack(track);
        textBytes = text.size();
        benchmark::DoNotOptimize(text.data());
    }
    state.counters["events"] = static_cast<double>(track.events.size());
    state.counters["text_bytes"] = static_cast<double>(textBytes);
}
BENCHMARK(BM_ListTrack)->Unit(benchmark::kMicrosecond);
} // namespace
