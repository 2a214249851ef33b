#include "model/DeviceImage.h"

#include "io/ByteBuffer.h"
#include "model/BlankImage.h"
#include "model/DeviceImageLayout.h"
#include "model/Mmt8Memory.h"
#include "support/RandomDocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tarvix {
namespace {

using namespace image;
using testing::DescribeDifference;
using ::testing::HasSubstr;
using Bytes = std::vector<std::uint8_t>;

std::uint8_t Low(std::size_t value)
{
    return static_cast<std::uint8_t>(value & 0xFF);
}
std::uint8_t High(std::size_t value)
{
    return static_cast<std::uint8_t>((value >> 8) & 0xFF);
}

void PutLittle16(Bytes& bytes, std::size_t at, std::size_t value)
{
    bytes[at] = Low(value);
    bytes[at + 1] = High(value);
}

std::uint32_t Little16(std::span<const std::uint8_t> bytes, std::size_t at)
{
    return bytes[at] | std::uint32_t{bytes[at + 1]} << 8;
}

std::uint32_t Big16(std::span<const std::uint8_t> bytes, std::size_t at)
{
    return std::uint32_t{bytes[at]} << 8 | bytes[at + 1];
}

void Append(Bytes& to, const Bytes& more)
{
    to.insert(to.end(), more.begin(), more.end());
}

void AppendName(Bytes& to, std::string_view name)
{
    std::string padded(name);
    padded.resize(kNameSize, ' ');
    to.insert(to.end(), padded.begin(), padded.end());
}

// Device track bytes: a timed note (lead, time, velocity, channel, duration)
// and the end mark.
Bytes Note(std::uint16_t time, std::uint8_t note, std::uint8_t channel = 0)
{
    return {static_cast<std::uint8_t>(0x80 | note), Low(time), High(time), 100, channel, 0, 48};
}
const Bytes kEndMark = {0x80, 0, 0, 0x00, 0x80, 0x00, 0x00};

struct PartFields {
    std::uint16_t bcd = 0x0005;
    std::string name = "PART";
    std::array<Bytes, 8> slots{kEndMark, kEndMark, kEndMark, kEndMark,
                               kEndMark, kEndMark, kEndMark, kEndMark};
    std::array<std::uint8_t, 8> channels{};
    bool lastSlotFirst = false; // lay the track data out in falling slot order
};

Bytes PartRecord(const PartFields& fields)
{
    Bytes record(kPartName, 0);
    PutLittle16(record, kPartBeats, fields.bcd);
    for (std::size_t slot = 0; slot < 8; ++slot)
        record[kPartChannels + slot] = fields.channels[slot];
    AppendName(record, fields.name);
    for (std::size_t i = 0; i < 8; ++i) {
        const std::size_t slot = fields.lastSlotFirst ? 7 - i : i;
        PutLittle16(record, kPartTrackOffsets + 2 * slot, record.size());
        Append(record, fields.slots[slot]);
    }
    PutLittle16(record, kPartLength, record.size());
    return record;
}

Bytes SongRecord(std::uint8_t tempo, std::string_view name, std::size_t stepCount,
                 std::uint8_t endByte = kSongEndByte)
{
    Bytes record(kSongName, 0);
    record[kSongTempo] = tempo;
    AppendName(record, name);
    for (std::size_t i = 0; i < stepCount; ++i)
        Append(record, {Low(i % 100), Low(i)});
    record.push_back(endByte);
    PutLittle16(record, kSongLength, record.size());
    return record;
}

// A global block with empty pointer tables, and records appended after it.
struct HandImage {
    void Point(std::uint32_t table, int index, std::size_t address)
    {
        const std::size_t entry = table + kPointerSize * static_cast<std::size_t>(index);
        bytes[entry] = High(address);
        bytes[entry + 1] = Low(address);
    }
    void Add(std::uint32_t table, int index, const Bytes& record)
    {
        Point(table, index, bytes.size() + kBaseAddress);
        Append(bytes, record);
    }

    Bytes bytes = Bytes(kGlobalBlockSize, 0);
};

CMmt8Memory Loaded(std::span<const std::uint8_t> image)
{
    CMmt8Memory memory;
    LoadImage(memory, image);
    return memory;
}

Bytes Built(const CMmt8Memory& memory)
{
    CByteBuffer image;
    std::string error;
    EXPECT_TRUE(BuildImage(memory, image, error)) << error;
    return Bytes(image.View().begin(), image.View().end());
}

TEST(LoadImageTest, PointerToDeviceAddress0x400ReadsFromImageOffsetZero)
{
    HandImage image;
    image.Point(kPartTable, 5, 0x0400);
    // The record at offset 0 overlaps the part table: its BCD field is the
    // entry of part 9, its name those of parts 14 and 15, all pointing far
    // beyond this short image.
    image.bytes[kPartBeats] = 0x13;
    const std::string name = "ZERO";
    std::copy(name.begin(), name.end(), image.bytes.begin() + kPartName);

    const CMmt8Memory memory = Loaded(image.bytes);
    EXPECT_EQ(memory.Part(5).beats, 12u);
    EXPECT_EQ(memory.Part(5).name, "ZERO");
    for (int other : {0, 9, 14, 15})
        EXPECT_TRUE(memory.Part(other).IsEmpty()) << other;
}

TEST(LoadImageTest, PartLengthIsBcdOfBeatsPlusOneNibbleByNibble)
{
    const std::pair<std::uint16_t, std::uint32_t> cases[] = {
        {0x0000, 0}, {0x0001, 0}, {0x0002, 1}, {0x001A, 19}, {0x0683, 682}, {0xFFFF, 16664}};
    for (const auto& [bcd, beats] : cases) {
        HandImage image;
        image.Add(kPartTable, 0, PartRecord({.bcd = bcd}));
        const CMmt8Memory memory = Loaded(image.bytes);
        EXPECT_EQ(memory.Part(0).beats, beats) << std::hex << bcd;
        // A one-beat device length is no part at all: it costs no memory.
        if (beats == 0) {
            EXPECT_EQ(memory.GetMemorySize(), 530u) << std::hex << bcd;
        }
    }
}

TEST(LoadImageTest, RecordSlotsHoldTheTracksInReverseOrder)
{
    PartFields fields{.lastSlotFirst = true}; // the offsets, not the data order, decide
    for (std::uint8_t slot = 0; slot < 8; ++slot) {
        fields.channels[slot] = static_cast<std::uint8_t>(slot + 1);
        fields.slots[slot] = Note(slot, static_cast<std::uint8_t>(60 + slot), slot);
        Append(fields.slots[slot], kEndMark);
    }
    HandImage image;
    image.Add(kPartTable, 0, PartRecord(fields));

    const CMmt8Memory memory = Loaded(image.bytes);
    for (int slot = 0; slot < 8; ++slot) {
        const CMmt8Track& track = memory.Part(0).tracks[static_cast<std::size_t>(7 - slot)];
        EXPECT_EQ(track.channel, slot + 1) << slot;
        ASSERT_EQ(track.events.size(), 1u) << slot;
        EXPECT_EQ(track.events[0]->data1, 60 + slot) << slot;
    }
}

TEST(LoadImageTest, EmptySongRecordLoadsAsEmptySong)
{
    HandImage image;
    image.Add(kSongTable, 3, SongRecord(120, kEmptySongName, 0, 100));
    image.Add(kSongTable, 4, SongRecord(120, kEmptySongName, 0, 0xFF));
    // Near misses are ordinary songs: another name, or steps after the name.
    image.Add(kSongTable, 5, SongRecord(120, "NO SONG NAME", 0));
    image.Add(kSongTable, 6, SongRecord(120, kEmptySongName, 1));

    const CMmt8Memory memory = Loaded(image.bytes);
    for (int song : {3, 4}) {
        EXPECT_EQ(memory.Song(song).tempo, 0) << song;
        EXPECT_EQ(memory.Song(song).name, "") << song;
    }
    EXPECT_EQ(memory.Song(5).tempo, 120);
    EXPECT_EQ(memory.Song(5).name, "NO SONG NAME");
    EXPECT_EQ(memory.Song(6).name, " NO SONG NAME");
    EXPECT_EQ(memory.Song(6).steps.size(), 1u);
}

TEST(LoadImageTest, SongStepsStopAtTheLimitAnEndByteOrTheRecordLength)
{
    HandImage image;
    image.Add(kSongTable, 0, SongRecord(90, "LONG", 300));
    Bytes ended = SongRecord(90, "ENDED", 5);
    ended[kSongSteps + 2 * 2] = kStepListEnd; // step 3 names part 100
    image.Add(kSongTable, 1, ended);
    // The length field bounds the cursor: no step starts at or after it.
    Bytes shortLength = SongRecord(90, "SHORT", 5);
    PutLittle16(shortLength, kSongLength, kSongSteps + 2 * 2);
    image.Add(kSongTable, 2, shortLength);
    // One whose length field runs past the image: steps end with the bytes.
    Bytes cut = SongRecord(90, "CUT", 20);
    PutLittle16(cut, kSongLength, 0xFFFF);
    cut.resize(kSongSteps + 2 * 6 + 1); // six steps and half of a seventh
    image.Add(kSongTable, 3, cut);

    const CMmt8Memory memory = Loaded(image.bytes);
    EXPECT_EQ(memory.Song(0).steps.size(), 255u);
    EXPECT_EQ(memory.Song(0).steps[254], (Mmt8Step{54, 254}));
    EXPECT_EQ(memory.Song(1).steps.size(), 2u);
    EXPECT_EQ(memory.Song(2).steps.size(), 2u);
    EXPECT_EQ(memory.Song(2).name, "SHORT");
    EXPECT_EQ(memory.Song(3).steps.size(), 6u);
}

TEST(LoadImageHostileTest, RecordsOutsideTheImageLoadEmpty)
{
    HandImage image;
    image.Add(kPartTable, 0, PartRecord({}));
    image.Add(kSongTable, 0, SongRecord(100, "S", 1));
    const auto end = static_cast<std::uint32_t>(image.bytes.size()) + 64;
    image.bytes.resize(end, 0);
    image.Point(kPartTable, 1, 0xFFFF);
    image.Point(kPartTable, 2, end + kBaseAddress);
    image.Point(kPartTable, 3, 0x0100);                                   // wraps to offset 64768
    image.Point(kPartTable, 4, end - kPartHeaderSize + 1 + kBaseAddress); // header cut
    image.Point(kSongTable, 1, 0xFFFF);
    image.Point(kSongTable, 2, end + kBaseAddress);
    image.Point(kSongTable, 3, end - kSongSteps + 1 + kBaseAddress);

    const CMmt8Memory memory = Loaded(image.bytes);
    EXPECT_EQ(memory.Part(0).beats, 4u);
    EXPECT_EQ(memory.Song(0).steps.size(), 1u);
    for (int item = 1; item <= 4; ++item) {
        EXPECT_TRUE(memory.Part(item).IsEmpty()) << item;
        EXPECT_TRUE(memory.Song(item).IsEmpty()) << item;
    }
}

TEST(LoadImageHostileTest, TracksOutsideTheRecordOrWithoutEndMarkEndWhereTheBytesDo)
{
    PartFields fields{.channels = {1, 2, 3, 4, 5, 6, 7, 8}};
    // Slot 7 (model track 0) is last in the image: two notes, then three
    // bytes of a third event, and no end mark.
    fields.slots[7] = Note(0, 60);
    Append(fields.slots[7], Note(96, 62));
    Append(fields.slots[7], {0x80 | 64, 0xC0, 0x00});
    Bytes record = PartRecord(fields);
    PutLittle16(record, kPartTrackOffsets + 0, 0xFFFF);        // model track 7
    PutLittle16(record, kPartTrackOffsets + 2, record.size()); // model track 6
    HandImage image;
    image.Add(kPartTable, 0, record);

    const CMmt8Memory memory = Loaded(image.bytes);
    const auto& tracks = memory.Part(0).tracks;
    EXPECT_TRUE(tracks[7].events.empty());
    EXPECT_EQ(tracks[7].channel, 1);
    EXPECT_TRUE(tracks[6].events.empty());
    ASSERT_EQ(tracks[0].events.size(), 2u);
    EXPECT_EQ(tracks[0].events[1]->time, 96);
}

// A full image whose 100 part pointers all name one record whose tracks lack
// their end marks, followed by nothing but notes: each track stops at its
// neighbour or the record's end instead of reading the notes after it.
TEST(LoadImageHostileTest, TracksWithoutEndMarkStopAtTheirRecordHoweverManyPartsShareIt)
{
    PartFields fields;
    for (std::size_t slot = 0; slot < 8; ++slot)
        fields.slots[slot] = Note(static_cast<std::uint16_t>(slot), 60);
    const Bytes record = PartRecord(fields);
    HandImage image;
    image.Add(kPartTable, 0, record);
    const std::size_t address = kGlobalBlockSize + kBaseAddress;
    for (int part = 1; part < kPartCount; ++part)
        image.Point(kPartTable, part, address);
    while (image.bytes.size() + 7 <= kMmt8MemoryCapacity)
        Append(image.bytes, Note(1000, 64));

    const CMmt8Memory memory = Loaded(image.bytes);
    for (int part = 0; part < kPartCount; ++part)
        for (int track = 0; track < kTracksPerPart; ++track) {
            const auto& events = memory.Part(part).tracks[static_cast<std::size_t>(track)].events;
            ASSERT_EQ(events.size(), 1u) << part << " " << track;
            EXPECT_EQ(events[0]->time, 7 - track);
        }
    // Every part costs its record plus the end marks the record lacked.
    EXPECT_EQ(memory.GetMemorySize(),
              kGlobalBlockSize + 18 + kPartCount * (record.size() + kTracksPerPart * 7));

    // With the record's length damaged, the tracks still end at each other,
    // and the last one where the next record begins.
    Bytes damaged = image.bytes;
    PutLittle16(damaged, kGlobalBlockSize + kPartLength, 0);
    const std::size_t song = image.bytes.size() - 70;
    image.Point(kSongTable, 0, song + kBaseAddress);
    damaged.resize(song);
    Append(damaged, SongRecord(120, "S", 1));
    std::copy_n(image.bytes.begin(), kGlobalBlockSize, damaged.begin());
    PutLittle16(damaged, kGlobalBlockSize + kPartLength, 0);
    const CMmt8Memory fromDamaged = Loaded(damaged);
    EXPECT_EQ(fromDamaged.Part(99).tracks[1].events.size(), 1u);
    const std::size_t lastTrackBytes = song - (kGlobalBlockSize + record.size() - 7);
    EXPECT_EQ(fromDamaged.Part(99).tracks[0].events.size(), lastTrackBytes / 7);
    EXPECT_EQ(fromDamaged.Song(0).steps.size(), 1u);
}

TEST(LoadImageHostileTest, ShortImagesReplaceTheDocumentWithWhatTheyHold)
{
    // Every complete pointer entry reads 0x0404: a record at offset 4 whose
    // track offsets (0x0404) lie beyond the image.
    for (const std::size_t size : {0u, 1u, 201u, 259u}) {
        CMmt8Memory memory;
        memory.Part(0).beats = 1;
        memory.AppendStep(0, 0, 0xFF);
        LoadImage(memory, Bytes(size, 0x04));
        EXPECT_EQ(memory.Part(0).beats, size < 2 ? 0u : 403u) << size;
        EXPECT_TRUE(memory.Part(0).tracks[0].events.empty()) << size;
        for (int song = 0; song < kSongCount; ++song)
            EXPECT_TRUE(memory.Song(song).steps.empty()) << size << " " << song;
    }
}

// Any bytes at all, with pointers aimed inside them: nothing is read outside
// the image (the sanitizer build checks), and what we write of the result
// loads back to the same bytes.
TEST(LoadImageHostileTest, RandomImagesLoadAndRewrite)
{
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        Bytes image(std::uniform_int_distribution<std::size_t>(0, 3000)(random));
        for (auto& byte : image)
            byte = static_cast<std::uint8_t>(random());
        for (std::size_t entry = 0; entry + 1 < std::min<std::size_t>(image.size(), 458);
             entry += 2) {
            const auto address = kBaseAddress + random() % (image.size() + 8);
            image[entry] = High(address);
            image[entry + 1] = Low(address);
        }
        const CMmt8Memory memory = Loaded(image);
        CByteBuffer written;
        std::string error;
        if (!BuildImage(memory, written, error))
            continue;
        EXPECT_EQ(written.GetSize(), memory.GetMemorySize());
        EXPECT_TRUE(std::ranges::equal(written.View(), Built(Loaded(written.View())))) << round;
    }
}

TEST(BuildImageTest, EmptyDocumentIsTheGlobalBlockAndSong99sEmptyRecord)
{
    const Bytes image = Built(CMmt8Memory{});
    ASSERT_EQ(image.size(), 530u);
    for (std::size_t i = 0; i < kGlobalBlockSize; ++i) {
        if (i != kSongTable + 198 && i != kSongTable + 199) {
            EXPECT_EQ(image[i], kMmt8InitData[i]) << i;
        }
    }
    EXPECT_EQ(Big16(image, kSongTable + 198), 512 + kBaseAddress);
    EXPECT_EQ(Bytes(image.begin() + 512, image.end()), SongRecord(0, kEmptySongName, 0, 0xFF));

    // Song 99 with a tempo or a name but no steps keeps them.
    CMmt8Memory memory;
    memory.SetSongTempo(99, 100);
    memory.SetSongName(99, "LAST");
    EXPECT_EQ(DescribeDifference(memory, Loaded(Built(memory))), "");
}

TEST(BuildImageTest, LaysRecordsOutContiguouslyInNumberOrder)
{
    CMmt8Memory memory;
    for (std::size_t i = 0; i < kGlobalBlockSize; ++i) // stale pointers included
        memory.globalBlock[i] = static_cast<std::uint8_t>(i * 7 + 3);
    memory.Part(1).beats = 1; // unnamed
    memory.SetPartName(3, "BASS");
    memory.Part(3).beats = 19;
    memory.Part(3).tracks[7].channel = 9;
    DecodeTrack(memory.Part(3).tracks[0], Note(0, 60), 5);
    memory.AppendStep(7, 3, 0x0F);
    memory.AppendStep(7, 1, 0xFF);
    memory.SetSongTempo(7, 132);
    memory.SetSongName(7, "VERSE");
    memory.AppendStep(99, 3, 0xFF);

    const Bytes image = Built(memory);
    ASSERT_EQ(image.size(), memory.GetMemorySize());
    const std::uint32_t part1 = 512, part3 = part1 + memory.GetPartSize(1);
    const std::uint32_t song7 = part3 + memory.GetPartSize(3), song99 = song7 + 22;
    EXPECT_EQ(Big16(image, kPartTable + 2), part1 + kBaseAddress);
    EXPECT_EQ(Big16(image, kPartTable + 6), part3 + kBaseAddress);
    EXPECT_EQ(Big16(image, kSongTable + 14), song7 + kBaseAddress);
    EXPECT_EQ(Big16(image, kSongTable + 198), song99 + kBaseAddress);
    for (std::size_t i = 0; i < kGlobalBlockSize; ++i) {
        const bool table = i < 200 || (i >= kSongTable && i < 458);
        if (!table) {
            EXPECT_EQ(image[i], memory.globalBlock[i]) << i;
        } else if (i / 2 != 1 && i / 2 != 3 && i / 2 != 136 && i / 2 != 228) { // in use
            EXPECT_EQ(image[i], 0) << i;
        }
    }

    PartFields unnamed{.bcd = 0x0002, .name = ""};
    for (auto& slot : unnamed.slots)
        slot[1] = 96; // end marks carry the part's end clock
    EXPECT_EQ(Bytes(image.begin() + part1, image.begin() + part3), PartRecord(unnamed));

    PartFields bass{.bcd = 0x0020, .name = "BASS", .channels = {9, 0, 0, 0, 0, 0, 0, 5}};
    for (auto& slot : bass.slots)
        PutLittle16(slot, 1, 19 * kClocksPerBeat);
    const Bytes note = Note(0, 60);
    bass.slots[7].insert(bass.slots[7].begin(), note.begin(), note.end());
    EXPECT_EQ(Bytes(image.begin() + part3, image.begin() + song7), PartRecord(bass));

    Bytes verse = SongRecord(132, "VERSE", 0);
    verse.insert(verse.end() - 1, {3, 0x0F, 1, 0xFF});
    PutLittle16(verse, kSongLength, verse.size());
    EXPECT_EQ(Bytes(image.begin() + song7, image.begin() + song99), verse);
    CMmt8Memory loaded = Loaded(image);
    loaded.globalBlock = memory.globalBlock; // set by the dump loader, not LoadImage
    EXPECT_EQ(DescribeDifference(memory, loaded), "");
}

TEST(BuildImageTest, WritesBackBcdLengthsWhoseNibblesExceedNine)
{
    const std::pair<std::uint16_t, std::uint16_t> cases[] = {
        {0x001A, 0x0020}, {0x00A0, 0x0100}, {0xA000, 0xA000}, {0xFFFF, 0xFFFF}};
    for (const auto& [loaded, written] : cases) {
        HandImage hand;
        hand.Add(kPartTable, 0, PartRecord({.bcd = loaded}));
        EXPECT_EQ(Little16(Built(Loaded(hand.bytes)), 512 + kPartBeats), written)
            << std::hex << loaded;
    }
}

// Parts of exact device sizes, made of timed (7-byte) and untimed (5-byte)
// notes on track 0.
void FillPart(CMmt8Memory& memory, int part, std::uint32_t size)
{
    const std::uint32_t extra = size - (kPartHeaderSize + 8 * 7);
    std::uint32_t untimed = 0;
    memory.ClearPart(part);
    while ((extra - 5 * untimed) % 7 != 0)
        ++untimed;
    memory.Part(part).beats = 1;
    auto& events = memory.Part(part).tracks[0].events;
    for (std::uint32_t i = 0; i < (extra - 5 * untimed) / 7 + untimed; ++i) {
        events.push_back(std::make_unique<CMmt8NoteEvent>());
        events.back()->timed = i == 0 || i > untimed ? 1 : 0;
        events.back()->time = static_cast<std::uint16_t>(i > untimed ? i : 0);
    }
    ASSERT_EQ(memory.GetPartSize(part), size);
}

// A refusal names the number at fault and leaves no partial image behind.
void ExpectRefused(const CMmt8Memory& memory, const std::string& named)
{
    CByteBuffer image;
    ASSERT_TRUE(image.AppendText("stale"));
    std::string error;
    EXPECT_FALSE(BuildImage(memory, image, error));
    EXPECT_THAT(error, HasSubstr(named));
    EXPECT_TRUE(error.ends_with("\n")) << error;
    EXPECT_EQ(image.GetSize(), 0u);
}

TEST(BuildImageTest, RecordsMustStartWithinPointerReach)
{
    // Song 99's record starts at 64511, the last offset a pointer reaches:
    // over the device's capacity, but written.
    CMmt8Memory memory;
    FillPart(memory, 0, 60000);
    FillPart(memory, 1, 3999);
    ASSERT_TRUE(ExceedsCapacity(memory.GetMemorySize()));
    const Bytes image = Built(memory);
    EXPECT_EQ(image.size(), 64529u);
    EXPECT_EQ(Big16(image, kSongTable + 198), 0xFFFFu);

    FillPart(memory, 1, 4000);
    ExpectRefused(memory, "64530");

    CMmt8Memory big;
    for (int part = 0; part < 20; ++part)
        FillPart(big, part * 5, 5000);
    ExpectRefused(big, std::to_string(big.GetMemorySize()));
}

// The device reads a step-less record named " NO SONG NAME " as no song at
// all, so such a song 99 is written as exactly that record, every time.
TEST(BuildImageTest, Song99NamedLikeTheEmptyRecordIsWrittenAsTheEmptyRecord)
{
    CMmt8Memory named;
    named.SetSongName(99, " NO SONG NAME");
    named.SetSongTempo(99, 120);
    const Bytes image = Built(named);
    EXPECT_EQ(image, Built(CMmt8Memory{}));
    EXPECT_TRUE(Loaded(image).Song(99).IsEmpty());
    EXPECT_EQ(Loaded(image).Song(99).name, "");
}

TEST(BuildImageTest, RefusesWhatARecordCannotCarry)
{
    CMmt8Memory bigPart;
    FillPart(bigPart, 3, 65536);
    ExpectRefused(bigPart, "65536");

    CMmt8Memory longPart;
    longPart.Part(3).beats = 16665;
    ExpectRefused(longPart, "16665");

    CMmt8Memory longSong;
    longSong.Song(4).steps.assign(256, Mmt8Step{});
    ExpectRefused(longSong, "256");

    CMmt8Memory missingPart;
    missingPart.AppendStep(4, 1, 0xFF);
    missingPart.Song(4).steps.push_back(Mmt8Step{100, 0xFF});
    ExpectRefused(missingPart, "part 100");
}

} // namespace
} // namespace tarvix
