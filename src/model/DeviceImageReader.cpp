#include "model/DeviceImage.h"

#include "model/DeviceImageLayout.h"
#include "model/Mmt8Memory.h"
#include "model/Mmt8Names.h"

#include <algorithm>
#include <array>
#include <vector>

namespace tarvix {

namespace {
using namespace image;

// Every read goes through this view: a byte outside the image reads as 0 and
// a record that does not fit is reported as absent.
class ImageView {
public:
    explicit ImageView(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}

    bool Holds(std::size_t offset, std::size_t count) const
    {
        return offset <= m_bytes.size() && count <= m_bytes.size() - offset;
    }
    std::uint8_t Byte(std::size_t offset) const
    {
        return offset < m_bytes.size() ? m_bytes[offset] : 0;
    }
    std::uint16_t Little16(std::size_t offset) const
    {
        return static_cast<std::uint16_t>(Byte(offset) | Byte(offset + 1) << 8);
    }
    std::string_view Text(std::size_t offset, std::size_t count) const
    {
        if (!Holds(offset, count))
            return {};
        return {reinterpret_cast<const char*>(m_bytes.data() + offset), count};
    }
    // The bytes from begin up to end, cut at the end of the image.
    std::span<const std::uint8_t> Range(std::size_t begin, std::size_t end) const
    {
        if (begin >= m_bytes.size() || end <= begin)
            return {};
        return m_bytes.subspan(begin, std::min(end, m_bytes.size()) - begin);
    }

private:
    std::span<const std::uint8_t> m_bytes;
};

// The record offset a pointer-table entry names, or -1 when the entry is
// absent (high byte 0) or missing from a short image.
std::int64_t RecordOffset(const ImageView& view, std::uint32_t entry)
{
    if (!view.Holds(entry, kPointerSize) || view.Byte(entry) == 0)
        return -1;
    const std::uint32_t address = std::uint32_t{view.Byte(entry)} << 8 | view.Byte(entry + 1);
    return (address - kBaseAddress) & 0xFFFF;
}

// Four nibbles, each taken at its face value: a digit above 9 is not
// rejected, it simply counts ten or more.
std::uint32_t DecodeBcd(std::uint16_t field)
{
    return (field & 0xF) + ((field >> 4) & 0xF) * 10u + ((field >> 8) & 0xF) * 100u +
           ((field >> 12) & 0xF) * 1000u;
}

// Where the track starting at offset ends: at the next track's start, or at
// the end of the record for the last one. A track is never read beyond its
// record, so a track without its end mark costs no more than its record's
// bytes, however many parts share the record. When the record's length does
// not even reach the track (a damaged length), the record is taken to end
// where the next record of the image begins.
std::size_t TrackEnd(const std::array<std::uint16_t, kTracksPerPart>& offsets, std::uint16_t offset,
                     std::size_t recordLength, std::size_t untilNextRecord)
{
    std::size_t end = offset < recordLength ? recordLength : untilNextRecord;
    for (const std::uint16_t other : offsets)
        if (other > offset)
            end = std::min<std::size_t>(end, other);
    return end;
}

std::uint32_t LoadPart(CMmt8Part& part, const ImageView& view, std::size_t record,
                       std::size_t nextRecord)
{
    part.Clear();
    if (!view.Holds(record, kPartHeaderSize))
        return 0;
    const std::uint32_t length = DecodeBcd(view.Little16(record + kPartBeats));
    part.beats = length == 0 ? 0 : length - 1;
    part.name = NormalizeName(view.Text(record + kPartName, kNameSize));
    const std::uint16_t recordLength = view.Little16(record + kPartLength);
    std::array<std::uint16_t, kTracksPerPart> offsets{};
    for (int slot = 0; slot < kTracksPerPart; ++slot)
        offsets[static_cast<std::size_t>(slot)] =
            view.Little16(record + kPartTrackOffsets + 2u * unsigned(slot));
    for (int slot = 0; slot < kTracksPerPart; ++slot) {
        const std::uint16_t offset = offsets[static_cast<std::size_t>(slot)];
        const std::size_t end = TrackEnd(offsets, offset, recordLength, nextRecord - record);
        const auto channel = view.Byte(record + kPartChannels + unsigned(slot));
        DecodeTrack(part.tracks[static_cast<std::size_t>(SlotOfTrack(slot))],
                    view.Range(record + offset, record + end), channel);
    }
    return recordLength;
}

bool IsEmptySongRecord(const ImageView& view, std::size_t record)
{
    return view.Little16(record + kSongLength) == kEmptySongRecordSize &&
           view.Text(record + kSongName, kNameSize) == kEmptySongName &&
           view.Holds(record + kSongSteps, 1) && view.Byte(record + kSongSteps) >= kStepListEnd;
}

std::uint32_t LoadSong(CMmt8Song& song, const ImageView& view, std::size_t record)
{
    song.Clear();
    if (!view.Holds(record, kSongSteps))
        return 0;
    const std::uint16_t length = view.Little16(record + kSongLength);
    if (IsEmptySongRecord(view, record))
        return length;
    song.tempo = view.Byte(record + kSongTempo);
    song.name = NormalizeName(view.Text(record + kSongName, kNameSize));
    const std::size_t end = record + length;
    for (std::size_t cursor = record + kSongSteps;
         cursor < end && view.Holds(cursor, 2) && view.Byte(cursor) < kStepListEnd &&
         song.steps.size() < static_cast<std::size_t>(kMaxSteps);
         cursor += 2)
        song.steps.push_back(Mmt8Step{view.Byte(cursor), view.Byte(cursor + 1)});
    return length;
}
} // namespace

std::uint32_t LoadImage(CMmt8Memory& memory, std::span<const std::uint8_t> bytes)
{
    memory.ClearPart(-1);
    memory.ClearSong(-1);
    const ImageView view(bytes);
    std::array<std::int64_t, kPartCount> parts{};
    std::array<std::int64_t, kSongCount> songs{};
    // Every record's start, and the image's end, in rising order: where a
    // record with a damaged length ends at the latest.
    std::vector<std::size_t> starts{bytes.size()};
    for (int part = 0; part < kPartCount; ++part) {
        parts[unsigned(part)] = RecordOffset(view, kPartTable + kPointerSize * unsigned(part));
        if (parts[unsigned(part)] >= 0)
            starts.push_back(static_cast<std::size_t>(parts[unsigned(part)]));
    }
    for (int song = 0; song < kSongCount; ++song) {
        songs[unsigned(song)] = RecordOffset(view, kSongTable + kPointerSize * unsigned(song));
        if (songs[unsigned(song)] >= 0)
            starts.push_back(static_cast<std::size_t>(songs[unsigned(song)]));
    }
    std::sort(starts.begin(), starts.end());
    const auto nextRecord = [&starts](std::size_t record) {
        const auto next = std::upper_bound(starts.begin(), starts.end(), record);
        return next == starts.end() ? std::max(record, starts.back()) : *next;
    };

    std::uint32_t used = kGlobalBlockSize;
    for (int part = 0; part < kPartCount; ++part) {
        const auto record = parts[unsigned(part)];
        if (record >= 0)
            used += LoadPart(memory.Part(part), view, static_cast<std::size_t>(record),
                             nextRecord(static_cast<std::size_t>(record)));
    }
    for (int song = 0; song < kSongCount; ++song) {
        const auto record = songs[unsigned(song)];
        if (record >= 0)
            used += LoadSong(memory.Song(song), view, static_cast<std::size_t>(record));
    }
    return used;
}

} // namespace tarvix
