#include "model/ClipboardBlock.h"

#include "io/Stream.h"
#include "model/Mmt8Memory.h"
#include "model/RecordPersistence.h"

namespace tarvix {

namespace {

constexpr std::size_t kLengthSize = 4;

std::uint32_t ReadLength(std::span<const std::uint8_t> bytes)
{
    return std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16 |
           std::uint32_t{bytes[3]} << 24;
}

// Persist writes through a mutable record, so each one is written from a
// copy and the document stays untouched.
template <typename Record> void WriteCopy(Record record, CStream& stream)
{
    Persist(record, stream);
}

bool IsItem(const CMmt8Memory& memory, ClipboardKind kind, int owner, int item)
{
    switch (kind) {
    case ClipboardKind::Parts: return CMmt8Memory::IsPart(item);
    case ClipboardKind::Tracks: return CMmt8Memory::IsPart(owner) && CMmt8Memory::IsTrack(item);
    case ClipboardKind::Songs: return CMmt8Memory::IsSong(item);
    case ClipboardKind::Steps:
        return CMmt8Memory::IsSong(owner) && item >= 0 &&
               static_cast<std::size_t>(item) < memory.Song(owner).steps.size();
    }
    return false;
}

void WriteRecord(const CMmt8Memory& memory, ClipboardKind kind, int owner, int item,
                 CStream& stream)
{
    switch (kind) {
    case ClipboardKind::Parts: WriteCopy(memory.Part(item), stream); break;
    case ClipboardKind::Tracks:
        WriteCopy(memory.Part(owner).tracks[static_cast<std::size_t>(item)], stream);
        break;
    case ClipboardKind::Songs: WriteCopy(memory.Song(item), stream); break;
    case ClipboardKind::Steps: {
        CMmt8Song song = memory.Song(owner);
        Persist(song, item, stream);
        break;
    }
    }
}

// Reads one record into records; keeps it while a paste could still place
// it, up to limit.
template <typename Record> void ReadInto(CStream& stream, std::vector<Record>& records, int limit)
{
    Record record;
    Persist(record, stream);
    if (records.size() < static_cast<std::size_t>(limit))
        records.push_back(std::move(record));
}

void ReadRecord(CStream& stream, ClipboardRecords& records, CMmt8Song& stepSong)
{
    switch (records.kind) {
    case ClipboardKind::Parts: ReadInto(stream, records.parts, kPartCount); break;
    case ClipboardKind::Tracks: ReadInto(stream, records.tracks, kTracksPerPart); break;
    case ClipboardKind::Songs: ReadInto(stream, records.songs, kSongCount); break;
    case ClipboardKind::Steps:
        // Appended while the scratch song has room, read and dropped after.
        Persist(stepSong, static_cast<int>(stepSong.steps.size()), stream);
        break;
    }
}

template <typename Record, typename Place>
int PlaceAll(std::vector<Record>& records, int start, int end, Place place)
{
    int placed = 0;
    for (std::size_t i = 0; i < records.size() && start + placed < end; ++i, ++placed)
        place(start + placed, std::move(records[i]));
    return placed;
}

} // namespace

const char* ClipboardFormatFor(ClipboardKind kind)
{
    switch (kind) {
    case ClipboardKind::Parts: return "Tarvix_Parts";
    case ClipboardKind::Tracks: return "Tarvix_Tracks";
    case ClipboardKind::Songs: return "Tarvix_Songs";
    case ClipboardKind::Steps: return "Tarvix_Steps";
    }
    return "";
}

std::vector<std::uint8_t> WriteClipboardBlock(const CMmt8Memory& memory, ClipboardKind kind,
                                              int owner, std::span<const int> items)
{
    std::uint32_t count = 0;
    for (const int item : items)
        if (IsItem(memory, kind, owner, item))
            ++count;
    CStream payload;
    payload.WriteUInt32(count);
    for (const int item : items)
        if (IsItem(memory, kind, owner, item))
            WriteRecord(memory, kind, owner, item, payload);

    CStream block;
    block.WriteUInt32(static_cast<std::uint32_t>(payload.View().size()));
    const auto bytes = payload.View();
    std::vector<std::uint8_t> out(block.View().begin(), block.View().end());
    out.insert(out.end(), bytes.begin(), bytes.end());
    return out;
}

bool ReadClipboardBlock(std::span<const std::uint8_t> block, ClipboardKind kind,
                        ClipboardRecords& records, std::string& error)
{
    ClipboardRecords read;
    read.kind = kind;
    try {
        if (block.size() < kLengthSize)
            throw CStreamException("The block holds no length.\n");
        const std::uint32_t length = ReadLength(block);
        if (length > block.size() - kLengthSize)
            throw CStreamException("The block is shorter than its length says.\n");
        // A stream over no bytes would be a writing one; the count read
        // below then fails as it should.
        CStream stream(block.subspan(kLengthSize, length));
        stream.ReadUInt32(read.count);
        // Every record takes at least one byte, so the count cannot make
        // this loop outlast the bytes.
        CMmt8Song stepSong;
        for (std::uint32_t i = 0; i < read.count; ++i)
            ReadRecord(stream, read, stepSong);
        read.steps = std::move(stepSong.steps);
    } catch (const CStreamException& exception) {
        error = std::string(kDamagedClipboardBlock) + exception.GetMessage();
        return false;
    }
    records = std::move(read);
    return true;
}

int PasteClipboardRecords(CMmt8Memory& memory, ClipboardRecords& records, int owner, int start)
{
    if (start < 0)
        return 0;
    switch (records.kind) {
    case ClipboardKind::Parts:
        return PlaceAll(records.parts, start, kPartCount, [&memory](int slot, CMmt8Part&& part) {
            memory.Part(slot) = std::move(part);
        });
    case ClipboardKind::Tracks:
        if (!CMmt8Memory::IsPart(owner))
            return 0;
        return PlaceAll(
            records.tracks, start, kTracksPerPart, [&memory, owner](int slot, CMmt8Track&& track) {
                memory.Part(owner).tracks[static_cast<std::size_t>(slot)] = std::move(track);
            });
    case ClipboardKind::Songs:
        return PlaceAll(records.songs, start, kSongCount, [&memory](int slot, CMmt8Song&& song) {
            memory.Song(slot) = std::move(song);
        });
    case ClipboardKind::Steps: {
        if (!CMmt8Memory::IsSong(owner))
            return 0;
        auto& steps = memory.Song(owner).steps;
        int placed = 0;
        for (const Mmt8Step step : records.steps) {
            const auto position =
                static_cast<std::size_t>(start) + static_cast<std::size_t>(placed);
            if (position < steps.size())
                steps[position] = step;
            else if (steps.size() < static_cast<std::size_t>(kMaxSteps))
                steps.push_back(step);
            else
                break;
            ++placed;
        }
        return placed;
    }
    }
    return 0;
}

} // namespace tarvix
