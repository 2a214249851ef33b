// Clipboard blocks from outside, pasted into a document: a block is either
// refused whole, the caller's records untouched, or what it placed copies
// and pastes again into the same slots unchanged.
#include "ClipboardSelector.h"
#include "FuzzFailure.h"
#include "RecordSelector.h"
#include "SavedForm.h"

#include "model/ClipboardBlock.h"
#include "model/Mmt8Memory.h"
#include "support/RandomDocument.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace {
using namespace tarvix;

constexpr std::uint32_t kUntouched = 0xC0FFEE;
// Tracks go to this part, steps to this song.
constexpr int kOwner = 0;

// Song kOwner holds steps so that pasted steps both overwrite and append.
void MakeBase(CMmt8Memory& memory, std::uint8_t selector)
{
    memory.Song(kOwner) = fuzzing::MakeStepSong(selector);
}

std::size_t Kept(const ClipboardRecords& records)
{
    switch (records.kind) {
    case ClipboardKind::Parts: return records.parts.size();
    case ClipboardKind::Tracks: return records.tracks.size();
    case ClipboardKind::Songs: return records.songs.size();
    case ClipboardKind::Steps: return records.steps.size();
    }
    return 0;
}

// The slots the placed records landed in: consecutive from start, except
// that steps past the song's end were appended at its end.
std::vector<int> LandedSlots(ClipboardKind kind, int start, int placed, std::size_t oldSteps)
{
    std::vector<int> slots;
    for (int i = 0; i < placed; ++i)
        slots.push_back(start + i);
    if (kind == ClipboardKind::Steps) {
        const auto old = static_cast<int>(oldSteps);
        const int overwritten = std::clamp(old - start, 0, placed);
        for (int i = overwritten; i < placed; ++i)
            slots[static_cast<std::size_t>(i)] = old + (i - overwritten);
    }
    return slots;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < fuzzing::kPasteHeaderSize)
        return 0;
    const std::uint8_t selector = data[0];
    const int start = data[1];
    const ClipboardKind kind = fuzzing::PasteKindOfSelector(selector);
    const std::span<const std::uint8_t> block(data + fuzzing::kPasteHeaderSize,
                                              size - fuzzing::kPasteHeaderSize);

    ClipboardRecords records;
    records.count = kUntouched;
    std::string error;
    if (!ReadClipboardBlock(block, kind, records, error)) {
        if (records.count != kUntouched || !records.parts.empty())
            fuzzing::FailFuzzCheck("a refused block changed the records");
        if (error.rfind(kDamagedClipboardBlock, 0) != 0)
            fuzzing::FailFuzzCheck("a refused block without its message: " + error);
        return 0;
    }
    if (Kept(records) > records.count)
        fuzzing::FailFuzzCheck("more records kept than the block held");
    // What a paste may place is what the editor itself could have made.
    const auto checkTrack = [](const CMmt8Track& track) {
        if (track.channel > kMaxTrackChannel)
            fuzzing::FailFuzzCheck("a track on channel " + std::to_string(track.channel) +
                                   " was read");
    };
    for (const CMmt8Part& part : records.parts) {
        if (part.beats > kMaxBeats)
            fuzzing::FailFuzzCheck("a part of " + std::to_string(part.beats) + " beats was read");
        for (const CMmt8Track& track : part.tracks)
            checkTrack(track);
    }
    for (const CMmt8Track& track : records.tracks)
        checkTrack(track);

    CMmt8Memory pasted;
    MakeBase(pasted, selector);
    const std::size_t oldSteps = pasted.Song(kOwner).steps.size();
    const std::size_t kept = Kept(records);
    const int placed = PasteClipboardRecords(pasted, records, kOwner, start);
    if (placed < 0 || static_cast<std::size_t>(placed) > kept)
        fuzzing::FailFuzzCheck("more records placed than were read");

    const std::vector<int> slots = LandedSlots(kind, start, placed, oldSteps);
    const std::vector<std::uint8_t> again = WriteClipboardBlock(pasted, kind, kOwner, slots);
    ClipboardRecords reread;
    if (!ReadClipboardBlock(again, kind, reread, error))
        fuzzing::FailFuzzCheck("a copied block does not read: " + error);
    if (reread.count != static_cast<std::uint32_t>(placed))
        fuzzing::FailFuzzCheck("the copy holds " + std::to_string(reread.count) + " records, not " +
                               std::to_string(placed));

    CMmt8Memory repasted;
    MakeBase(repasted, selector);
    if (PasteClipboardRecords(repasted, reread, kOwner, start) != placed)
        fuzzing::FailFuzzCheck("the copy placed a different number of records");
    // Writing keeps only the low 4 bits of an event's channel.
    fuzzing::MaskEventChannels(pasted);
    const std::string difference = testing::DescribeDifference(pasted, repasted);
    if (!difference.empty())
        fuzzing::FailFuzzCheck("the pasted records copy differently: " + difference);
    return 0;
}
