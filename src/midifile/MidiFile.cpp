#include "midifile/MidiFile.h"

#include "midifile/MidiFileException.h"
#include "midifile/MidiFileStream.h"

#include <array>
#include <new>

namespace tarvix {

namespace {
constexpr std::uint32_t kDefaultBpm = 120;
constexpr std::uint32_t kMicrosecondsPerMinute = 60000000;
constexpr std::size_t kChannelCount = 16;
} // namespace

void CMidiFile::Persist(CMidiFileStream& stream)
{
    if (stream.GetMode() == CMidiFileStream::kModeRead)
        Load(stream);
    else if (stream.GetMode() == CMidiFileStream::kModeWrite)
        Save(stream);
}

void CMidiFile::Load(CMidiFileStream& stream)
{
    Clear();
    // A bad header is ignored on purpose: reading goes on from wherever the
    // stream stands.
    header.Read(stream);
    for (;;) {
        std::unique_ptr<CMidiTrack> track(new (std::nothrow) CMidiTrack);
        if (!track)
            throw CMidiFileException(CMidiFileException::kNotEnoughMemory);
        if (!track->Read(stream))
            break;
        tracks.push_back(std::move(track));
    }
}

void CMidiFile::Save(CMidiFileStream& stream)
{
    header.Write(stream);
    for (const auto& track : tracks)
        if (track)
            track->Write(stream);
}

void CMidiFile::Clear()
{
    tracks.clear();
    header.Reset();
}

void CMidiFile::Copy(const CMidiFile& other)
{
    if (this == &other)
        return;
    Clear();
    header.format = other.header.format;
    header.trackCount = other.header.trackCount;
    header.division = other.header.division;
    tracks.reserve(other.tracks.size());
    for (const auto& track : other.tracks)
        if (track)
            tracks.push_back(std::make_unique<CMidiTrack>(*track));
}

bool CMidiFile::ExplodeType0()
{
    if (header.format != 0 || tracks.size() != 1 || !tracks[0])
        return false;

    CMidiFile exploded;
    exploded.header.division = header.division;
    auto first = std::make_unique<CMidiTrack>();
    // The spare value of each new track holds the absolute time of its last
    // event.
    std::array<std::unique_ptr<CMidiTrack>, kChannelCount> channels;
    for (auto& channel : channels)
        channel = std::make_unique<CMidiTrack>();

    std::uint32_t time = 0;
    for (const auto& event : tracks[0]->events) {
        if (!event)
            continue;
        time += event->GetDeltaTime();
        auto copy = CloneMidiEvent(*event);
        if (!copy)
            continue;
        CMidiTrack& target =
            copy->GetKind() == CMidiEvent::kChannel ? *channels[event->GetStatus() & 0x0F] : *first;
        copy->SetDeltaTime(time - target.spare);
        if (copy->GetKind() == CMidiEvent::kMeta &&
            static_cast<const CMidiMetaEvent&>(*copy).GetType() == CMidiMetaEvent::kTypeEndOfTrack)
            copy->SetDeltaTime(0);
        target.spare = time;
        target.AppendEvent(std::move(copy));
    }

    exploded.tracks.push_back(std::move(first));
    for (auto& channel : channels) {
        if (channel->events.empty())
            continue;
        auto end = std::make_unique<CMidiMetaEvent>(0, 0xFF);
        end->SetType(CMidiMetaEvent::kTypeEndOfTrack);
        channel->AppendEvent(std::move(end));
        exploded.tracks.push_back(std::move(channel));
    }
    header = exploded.header;
    tracks = std::move(exploded.tracks);
    return true;
}

std::uint32_t FindTempoBpm(const CMidiFile& file)
{
    const CMidiTrack* first = nullptr;
    for (const auto& track : file.tracks)
        if (track) {
            first = track.get();
            break;
        }
    if (first == nullptr)
        return kDefaultBpm;
    for (const auto& event : first->events) {
        if (!event || event->GetKind() != CMidiEvent::kMeta)
            continue;
        const auto& meta = static_cast<const CMidiMetaEvent&>(*event);
        const auto data = meta.GetData();
        if (meta.GetType() != CMidiMetaEvent::kTypeTempo || data.size() < 3)
            continue;
        const std::uint32_t t =
            std::uint32_t{data[0]} << 16 | std::uint32_t{data[1]} << 8 | data[2];
        return t == 0 ? kDefaultBpm : kMicrosecondsPerMinute / t;
    }
    return kDefaultBpm;
}

} // namespace tarvix
