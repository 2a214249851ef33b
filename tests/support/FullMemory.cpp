#include "support/FullMemory.h"

#include "model/SysexDump.h"
#include "support/RandomDocument.h"

#include <random>

namespace tarvix::testing {

namespace {
constexpr std::uint32_t kMinImageBytes = 60000;
constexpr std::uint32_t kFillTarget = 62000;
constexpr std::size_t kMinEvents = 10000;
constexpr unsigned kSeedsToTry = 2000;

// Parts whose events mostly share clocks (chords, drum hits) pack the most
// events into the memory: at most 5.6 bytes per event, headers included.
bool IsDense(const CMmt8Memory& memory, int part)
{
    const std::size_t events = CountEvents(memory.Part(part));
    return events > 0 && std::size_t{memory.GetPartSize(part)} * 10 <= events * 56;
}
} // namespace

std::size_t CountEvents(const CMmt8Part& part)
{
    std::size_t count = 0;
    for (const CMmt8Track& track : part.tracks)
        count += track.events.size();
    return count;
}

std::size_t CountEvents(const CMmt8Memory& memory)
{
    std::size_t count = 0;
    for (int part = 0; part < kPartCount; ++part)
        count += CountEvents(memory.Part(part));
    return count;
}

// A random document alone holds too few events when it fills the memory, so
// the dense parts of many are gathered into one, after the songs and settings
// of another.
FullMemory MakeFullMemory()
{
    FullMemory full;
    std::mt19937 songRandom(1);
    FillRandomDocument(full.memory, songRandom, {0, 0, 8, 64});
    CMmt8Memory scratch;
    int slot = 0;
    for (unsigned seed = 1; seed <= kSeedsToTry && full.memory.GetMemorySize() < kFillTarget;
         ++seed) {
        std::mt19937 random(seed);
        FillRandomDocument(scratch, random, {30, 80, 0, 0});
        for (int part = 0; part < kPartCount && slot < kPartCount; ++part) {
            if (scratch.Part(part).IsEmpty() || !IsDense(scratch, part) ||
                full.memory.GetMemorySize() + scratch.GetPartSize(part) > kMmt8MemoryCapacity)
                continue;
            full.memory.Part(slot++) = scratch.Part(part);
        }
    }
    full.imageBytes = full.memory.GetMemorySize();
    full.parts = static_cast<std::size_t>(slot);
    full.events = CountEvents(full.memory);
    std::string error;
    if (full.imageBytes < kMinImageBytes || full.events <= kMinEvents)
        full.problem = "the gathered parts do not fill the memory as intended";
    else if (!BuildDump(full.memory, full.dump, error))
        full.problem = "the full document does not build a dump: " + error;
    return full;
}

} // namespace tarvix::testing
