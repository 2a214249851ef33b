#include "ui/undo/DocumentRecords.h"

#include "io/Stream.h"
#include "model/Mmt8Memory.h"

#include <algorithm>

namespace tarvix {

namespace {
constexpr std::size_t kFirstPart = 1;
constexpr std::size_t kFirstSong = kFirstPart + kPartCount;
constexpr std::size_t kRecordCount = kFirstSong + kSongCount;

// Not the clipboard's record form: that one refuses what outside input may
// not bring in (a part of 9998 beats from a damaged dump, a channel of 200),
// and undo must put back exactly what the document held. The events travel
// in the device's own encoding.
RecordBytes Bytes(const CStream& stream)
{
    const auto view = stream.View();
    return {view.begin(), view.end()};
}

RecordBytes WritePart(const CMmt8Part& part)
{
    CStream stream;
    stream.WriteUInt32(part.beats);
    stream.WriteString(part.name);
    for (const CMmt8Track& track : part.tracks) {
        CByteBuffer events;
        EncodeTrack(track, events);
        stream.WriteByte(track.channel);
        stream.WriteBlock(events);
    }
    return Bytes(stream);
}

void ReadPart(CMmt8Part& part, CStream& stream)
{
    stream.ReadUInt32(part.beats);
    stream.ReadString(part.name);
    for (CMmt8Track& track : part.tracks) {
        std::uint8_t channel = 0;
        CByteBuffer events;
        stream.ReadByte(channel);
        stream.ReadBlock(events);
        DecodeTrack(track, events.View(), channel);
    }
}

RecordBytes WriteSong(const CMmt8Song& song)
{
    CStream stream;
    stream.WriteByte(song.tempo);
    stream.WriteString(song.name);
    CByteBuffer steps;
    for (const Mmt8Step step : song.steps) {
        steps.AppendByte(step.part);
        steps.AppendByte(step.trackMask);
    }
    stream.WriteBlock(steps);
    return Bytes(stream);
}

void ReadSong(CMmt8Song& song, CStream& stream)
{
    CByteBuffer steps;
    stream.ReadByte(song.tempo);
    stream.ReadString(song.name);
    stream.ReadBlock(steps);
    const auto bytes = steps.View();
    song.steps.clear();
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        song.steps.push_back(Mmt8Step{bytes[i], bytes[i + 1]});
}
} // namespace

DocumentRecords TakeRecords(const CMmt8Memory& memory)
{
    DocumentRecords records;
    records.reserve(kRecordCount);
    records.emplace_back(memory.globalBlock.begin(), memory.globalBlock.end());
    for (int part = 0; part < kPartCount; ++part)
        records.push_back(WritePart(memory.Part(part)));
    for (int song = 0; song < kSongCount; ++song)
        records.push_back(WriteSong(memory.Song(song)));
    return records;
}

void RestoreRecord(CMmt8Memory& memory, std::size_t record, const RecordBytes& bytes)
{
    if (record == 0) {
        std::copy_n(bytes.begin(), std::min(bytes.size(), memory.globalBlock.size()),
                    memory.globalBlock.begin());
        return;
    }
    // Bytes of our own making: a read past their end cannot happen.
    CStream stream(std::span<const std::uint8_t>(bytes.data(), bytes.size()));
    if (record < kFirstSong)
        ReadPart(memory.Part(static_cast<int>(record - kFirstPart)), stream);
    else if (record < kRecordCount)
        ReadSong(memory.Song(static_cast<int>(record - kFirstSong)), stream);
}

} // namespace tarvix
