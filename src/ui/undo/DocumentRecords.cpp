#include "ui/undo/DocumentRecords.h"

#include "io/Stream.h"
#include "model/Mmt8Memory.h"
#include "model/RecordPersistence.h"

#include <algorithm>

namespace tarvix {

namespace {
constexpr std::size_t kFirstPart = 1;
constexpr std::size_t kFirstSong = kFirstPart + kPartCount;
constexpr std::size_t kRecordCount = kFirstSong + kSongCount;

template <typename Record> RecordBytes Written(const Record& record)
{
    // Persist reads or writes through one signature; a writing stream only
    // reads the record.
    CStream stream;
    Persist(const_cast<Record&>(record), stream);
    const auto view = stream.View();
    return {view.begin(), view.end()};
}

template <typename Record> void Read(Record& record, const RecordBytes& bytes)
{
    CStream stream(std::span<const std::uint8_t>(bytes.data(), bytes.size()));
    Persist(record, stream);
}
} // namespace

DocumentRecords TakeRecords(const CMmt8Memory& memory)
{
    DocumentRecords records;
    records.reserve(kRecordCount);
    records.emplace_back(memory.globalBlock.begin(), memory.globalBlock.end());
    for (int part = 0; part < kPartCount; ++part)
        records.push_back(Written(memory.Part(part)));
    for (int song = 0; song < kSongCount; ++song)
        records.push_back(Written(memory.Song(song)));
    return records;
}

void RestoreRecord(CMmt8Memory& memory, std::size_t record, const RecordBytes& bytes)
{
    if (record == 0) {
        std::copy_n(bytes.begin(), std::min(bytes.size(), memory.globalBlock.size()),
                    memory.globalBlock.begin());
    } else if (record < kFirstSong) {
        Read(memory.Part(static_cast<int>(record - kFirstPart)), bytes);
    } else if (record < kRecordCount) {
        Read(memory.Song(static_cast<int>(record - kFirstSong)), bytes);
    }
}

} // namespace tarvix
