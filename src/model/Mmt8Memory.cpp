#include "model/Mmt8Memory.h"

#include "model/BlankImage.h"
#include "model/Mmt8Names.h"
#include "model/TextBuilder.h"

#include <algorithm>

namespace tarvix {

namespace {
// An empty song 99 still costs the device its 18-byte empty-song record.
constexpr std::uint32_t kEmptySongRecordSize = 18;
constexpr int kLastSong = kSongCount - 1;
// The capacity less the 530 bytes of an empty memory, so that an empty memory
// shows 100%. The numerator deliberately keeps the whole capacity.
constexpr std::int32_t kAvailableDivisor = 63726;
constexpr std::uint32_t kPartHeaderSize = 42;
constexpr std::uint32_t kSongOverhead = 18;

std::size_t Index(int value)
{
    return static_cast<std::size_t>(value);
}

// Clears the item at index, or every item for -1.
template <typename Items> bool ClearOneOrAll(Items& items, int index)
{
    if (index == -1) {
        for (auto& item : items)
            item.Clear();
        return true;
    }
    if (index < 0 || Index(index) >= items.size())
        return false;
    items[Index(index)].Clear();
    return true;
}
} // namespace

void CMmt8Part::Clear()
{
    beats = 0;
    name.clear();
    for (auto& track : tracks)
        track.Clear();
}

void CMmt8Song::Clear()
{
    tempo = 0;
    name.clear();
    steps.clear();
}

CMmt8Memory::CMmt8Memory()
{
    InitMemory();
}

void CMmt8Memory::InitMemory()
{
    modified = 0;
    globalBlock = kMmt8InitData;
    ClearPart(-1);
    ClearSong(-1);
}

bool CMmt8Memory::ClearPart(int part)
{
    return ClearOneOrAll(m_parts, part);
}

bool CMmt8Memory::ClearTrack(int part, int track)
{
    return IsPart(part) && ClearOneOrAll(Part(part).tracks, track);
}

bool CMmt8Memory::ClearSong(int song)
{
    return ClearOneOrAll(m_songs, song);
}

bool CMmt8Memory::DeleteStep(int song, int step)
{
    if (!IsSong(song))
        return false;
    auto& steps = Song(song).steps;
    if (step == -1) {
        steps.clear();
        return true;
    }
    if (step < 0 || Index(step) >= steps.size())
        return false;
    steps.erase(steps.begin() + step);
    return true;
}

bool CMmt8Memory::InsertStep(int song, int index)
{
    if (!IsSong(song))
        return false;
    auto& steps = Song(song).steps;
    if (steps.size() >= kMaxSteps || index < 0 || Index(index) > steps.size())
        return false;
    if (Index(index) == steps.size())
        steps.push_back(Mmt8Step{0, kAllTracksMask});
    else
        steps.insert(steps.begin() + index, steps[Index(index)]);
    return true;
}

bool CMmt8Memory::ChangeStepPart(int song, int step, int delta)
{
    if (!IsSong(song))
        return false;
    auto& steps = Song(song).steps;
    if (step < 0 || Index(step) >= steps.size())
        return false;
    const int part = steps[Index(step)].part + delta;
    if (!IsPart(part))
        return false;
    steps[Index(step)].part = static_cast<std::uint8_t>(part);
    return true;
}

bool CMmt8Memory::AppendStep(int song, std::uint8_t part, std::uint8_t trackMask)
{
    if (!IsSong(song) || !IsPart(part) || Song(song).steps.size() >= kMaxSteps)
        return false;
    Song(song).steps.push_back(Mmt8Step{part, trackMask});
    return true;
}

bool CMmt8Memory::SetPartBeats(int part, std::uint32_t beats)
{
    if (!IsPart(part) || beats > kMaxBeats)
        return false;
    auto& target = Part(part);
    for (auto& track : target.tracks)
        TruncateTrack(track, beats * kClocksPerBeat);
    target.beats = beats;
    return true;
}

bool CMmt8Memory::RecomputePartBeats(int part)
{
    if (!IsPart(part))
        return false;
    auto& target = Part(part);
    bool any = false;
    std::uint16_t latest = 0;
    for (const auto& track : target.tracks) {
        std::uint16_t last = 0;
        if (GetLastEventTime(track, last)) {
            latest = any ? std::max(latest, last) : last;
            any = true;
        }
    }
    target.beats = any ? latest / kClocksPerBeat + 1 : 0;
    return true;
}

bool CMmt8Memory::SetTrackChannel(int part, int track, std::uint32_t channel)
{
    if (!IsPart(part) || !IsTrack(track))
        return false;
    Part(part).tracks[Index(track)].channel =
        channel > kMaxTrackChannel ? 0 : static_cast<std::uint8_t>(channel);
    return true;
}

bool CMmt8Memory::SetSongTempo(int song, std::uint32_t tempo)
{
    if (!IsSong(song))
        return false;
    const bool valid = tempo >= kMinTempo && tempo <= kMaxTempo;
    Song(song).tempo = static_cast<std::uint8_t>(valid ? tempo : kDefaultTempo);
    return true;
}

bool CMmt8Memory::SetPartName(int part, std::string_view name)
{
    if (!IsPart(part))
        return false;
    Part(part).name = NormalizeName(name);
    return true;
}

bool CMmt8Memory::SetSongName(int song, std::string_view name)
{
    if (!IsSong(song))
        return false;
    Song(song).name = NormalizeName(name);
    return true;
}

bool CMmt8Memory::CopyTracksInWindow(int target, int source, std::uint8_t trackMask,
                                     std::uint32_t start, std::uint32_t end)
{
    if (!IsPart(target) || !IsPart(source))
        return false;
    bool received = false;
    for (int track = 0; track < kTracksPerPart; ++track) {
        if ((trackMask & (1u << track)) == 0)
            continue;
        received |= CopyEventsInWindow(Part(target).tracks[Index(track)],
                                       Part(source).tracks[Index(track)], start, end);
    }
    RecomputePartBeats(target);
    if (target != source)
        Part(target).name = Part(source).name;
    return received;
}

std::uint32_t CMmt8Memory::GetMemorySize() const
{
    std::uint32_t size = kGlobalBlockSize;
    for (int part = 0; part < kPartCount; ++part)
        if (!Part(part).IsEmpty())
            size += GetPartSize(part);
    for (int song = 0; song < kSongCount; ++song) {
        if (!Song(song).steps.empty())
            size += GetSongSize(song);
        else if (song == kLastSong)
            size += kEmptySongRecordSize;
    }
    return size;
}

std::uint32_t CMmt8Memory::GetPartSize(int part) const
{
    if (!IsPart(part))
        return 0;
    std::uint32_t size = kPartHeaderSize;
    for (const auto& track : Part(part).tracks)
        size += tarvix::GetTrackSize(track);
    return size;
}

std::uint32_t CMmt8Memory::GetTrackSize(int part, int track) const
{
    if (!IsPart(part) || !IsTrack(track))
        return 0;
    return tarvix::GetTrackSize(Part(part).tracks[Index(track)]);
}

std::uint32_t CMmt8Memory::GetSongSize(int song) const
{
    if (!IsSong(song))
        return 0;
    return kSongOverhead + 2 * static_cast<std::uint32_t>(Song(song).steps.size());
}

std::string CMmt8Memory::GetStepTracksText(int song, int step) const
{
    if (!IsSong(song) || step < 0 || Index(step) >= Song(song).steps.size())
        return {};
    const std::uint8_t mask = Song(song).steps[Index(step)].trackMask;
    if (mask == 0)
        return "None";
    if (mask == kAllTracksMask)
        return "All";
    std::string text;
    for (unsigned track = 0; track < kTracksPerPart; ++track)
        if (mask & (1u << track))
            text += FormatText("%u ", track + 1);
    return text;
}

bool ExceedsCapacity(std::uint32_t size)
{
    return size > kMmt8MemoryCapacity;
}

std::string GetMemoryText(std::uint32_t size)
{
    const auto signedSize = static_cast<std::int64_t>(size);
    const auto capacity = static_cast<std::int64_t>(kMmt8MemoryCapacity);
    if (ExceedsCapacity(size))
        return FormatText("Size %lld bytes, exceeds Alesis MMT8 memory capacity by %lld bytes",
                          static_cast<long long>(signedSize),
                          static_cast<long long>(signedSize - capacity));
    const auto percent = (capacity - signedSize) * 100 / kAvailableDivisor;
    return FormatText("Memory available: %u%%", static_cast<unsigned>(percent));
}

} // namespace tarvix
