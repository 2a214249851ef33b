#include "model/RecordPersistence.h"

#include "io/Stream.h"
#include "model/Mmt8Names.h"
#include "model/Mmt8Part.h"
#include "model/Mmt8Song.h"
#include "model/TextBuilder.h"

namespace tarvix {

namespace {
// A step naming a part that does not exist would end the song's step list
// in the device image, so a block carrying one is refused as malformed.
Mmt8Step CheckedStep(std::uint8_t part, std::uint8_t trackMask)
{
    if (part >= kPartCount)
        throw CStreamException(FormatText("Invalid song step: part %u does not exist\n", part));
    return Mmt8Step{part, trackMask};
}

// Records from outside are held to what the editor itself lets a part and a
// track hold, so a paste cannot bring in a length the beat dialog would
// refuse or a channel no menu offers.
std::uint32_t CheckedBeats(std::uint32_t beats)
{
    if (beats > kMaxBeats)
        throw CStreamException(
            FormatText("Invalid part: %u beats, more than %u\n", beats, kMaxBeats));
    return beats;
}

std::uint8_t CheckedChannel(std::uint8_t channel)
{
    if (channel > kMaxTrackChannel)
        throw CStreamException(FormatText("Invalid track: channel %u, more than %u\n",
                                          unsigned{channel}, unsigned{kMaxTrackChannel}));
    return channel;
}

void WriteTrack(const CMmt8Track& track, CStream& stream)
{
    stream.WriteByte(track.channel);
    stream.WriteUInt32(static_cast<std::uint32_t>(track.events.size()));
    CByteBuffer block;
    for (const auto& event : track.events)
        event->Encode(block);
    stream.WriteBlock(block);
}

CMmt8Track ReadTrack(CStream& stream)
{
    CMmt8Track track;
    std::uint32_t count = 0;
    CByteBuffer block;
    stream.ReadByte(track.channel);
    CheckedChannel(track.channel);
    stream.ReadUInt32(count);
    stream.ReadBlock(block);
    // The count comes from outside: the block's bytes bound the work.
    CByteCursor cursor{block.View(), 0};
    std::uint16_t runningTime = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        auto event = DecodeEvent(cursor, runningTime);
        if (!event)
            break;
        track.events.push_back(std::move(event));
    }
    return track;
}
} // namespace

void Persist(CMmt8Track& track, CStream& stream)
{
    if (stream.IsWriting())
        WriteTrack(track, stream);
    else
        track = ReadTrack(stream);
}

void Persist(CMmt8Part& part, CStream& stream)
{
    if (stream.IsWriting()) {
        stream.WriteUInt32(part.beats);
        stream.WriteString(part.name);
        for (const auto& track : part.tracks)
            WriteTrack(track, stream);
        return;
    }
    CMmt8Part read;
    std::string name;
    stream.ReadUInt32(read.beats);
    CheckedBeats(read.beats);
    stream.ReadString(name);
    read.name = NormalizeName(name);
    for (auto& track : read.tracks)
        track = ReadTrack(stream);
    part = std::move(read);
}

void Persist(CMmt8Song& song, CStream& stream)
{
    if (stream.IsWriting()) {
        CByteBuffer block;
        for (const Mmt8Step step : song.steps) {
            block.AppendByte(step.part);
            block.AppendByte(step.trackMask);
        }
        stream.WriteByte(song.tempo);
        stream.WriteString(song.name);
        stream.WriteUInt32(static_cast<std::uint32_t>(song.steps.size()));
        stream.WriteBlock(block);
        return;
    }
    CMmt8Song read;
    std::string name;
    std::uint32_t count = 0;
    CByteBuffer block;
    stream.ReadByte(read.tempo);
    stream.ReadString(name);
    stream.ReadUInt32(count);
    stream.ReadBlock(block);
    read.name = NormalizeName(name);
    const auto bytes = block.View();
    for (std::size_t i = 0; i < count && 2 * i + 1 < bytes.size() &&
                            read.steps.size() < static_cast<std::size_t>(kMaxSteps);
         ++i)
        read.steps.push_back(CheckedStep(bytes[2 * i], bytes[2 * i + 1]));
    song = std::move(read);
}

void Persist(CMmt8Song& song, int stepIndex, CStream& stream)
{
    if (stepIndex < 0)
        return;
    const auto index = static_cast<std::size_t>(stepIndex);
    if (stream.IsWriting()) {
        if (index < song.steps.size()) {
            stream.WriteByte(song.steps[index].part);
            stream.WriteByte(song.steps[index].trackMask);
        }
        return;
    }
    std::uint8_t part = 0;
    std::uint8_t trackMask = 0;
    stream.ReadByte(part);
    stream.ReadByte(trackMask);
    const Mmt8Step step = CheckedStep(part, trackMask);
    if (index < song.steps.size())
        song.steps[index] = step;
    else if (song.steps.size() < static_cast<std::size_t>(kMaxSteps))
        song.steps.push_back(step);
}

} // namespace tarvix
