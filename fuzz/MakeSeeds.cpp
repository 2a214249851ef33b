// Writes the fuzzers' seed inputs: tarvix-fuzz-seeds DIR
// DIR/sysex/ gets dumps of the demo, an empty and small random documents;
// DIR/records/ gets their tracks, parts, songs and steps in clipboard form;
// DIR/midi/ gets a few small Standard MIDI Files; DIR/clipboard/ gets
// clipboard blocks of the demo's records of each kind. Each also gets the
// damaged or outsized inputs that once cost far more than their size or
// slipped past the editor's limits.
#include "ClipboardSelector.h"
#include "RecordSelector.h"

#include "demo/DemoDocument.h"
#include "io/FileStream.h"
#include "io/Stream.h"
#include "midifile/MidiFile.h"
#include "midifile/MidiFileStream.h"
#include "model/ClipboardBlock.h"
#include "model/DeviceImageLayout.h"
#include "model/Mmt8Memory.h"
#include "model/RecordPersistence.h"
#include "model/SysexDump.h"
#include "model/SysexDumpFormat.h"
#include "model/SysexPacking.h"
#include "support/RandomDocument.h"

#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace {
using namespace tarvix;

constexpr int kRandomDocuments = 20;
// Records are taken from the first few documents only; more add little.
constexpr int kRecordDocuments = 4;
constexpr std::size_t kMaxTracksPerDocument = 8;

class SeedWriter {
public:
    explicit SeedWriter(std::filesystem::path root) : m_root(std::move(root)) {}

    bool Ok() const { return m_ok; }
    int Count() const { return m_count; }

    void Write(const std::string& folder, const std::string& name,
               const std::vector<std::uint8_t>& bytes)
    {
        if (!m_ok)
            return;
        const std::filesystem::path dir = m_root / folder;
        std::error_code code;
        std::filesystem::create_directories(dir, code);
        std::string error;
        if (code) {
            Fail("Can't create " + dir.string() + ": " + code.message() + "\n");
        } else if (!WriteFileReplacing((dir / name).string(), bytes.data(),
                                       static_cast<std::uint32_t>(bytes.size()), error)) {
            Fail(error);
        } else {
            ++m_count;
        }
    }

    void Fail(const std::string& message)
    {
        std::fputs(message.c_str(), stderr);
        m_ok = false;
    }

private:
    std::filesystem::path m_root;
    bool m_ok = true;
    int m_count = 0;
};

std::vector<std::uint8_t> RecordInput(std::vector<std::uint8_t> header, const CStream& stream)
{
    const auto bytes = stream.View();
    header.insert(header.end(), bytes.begin(), bytes.end());
    return header;
}

void WriteDump(SeedWriter& seeds, const CMmt8Memory& memory, const std::string& name)
{
    std::vector<std::uint8_t> dump;
    std::string error;
    if (!BuildDump(memory, dump, error))
        return seeds.Fail(name + ": " + error);
    seeds.Write("sysex", name + ".syx", dump);
}

template <typename Record>
void WriteRecord(SeedWriter& seeds, Record record, fuzzing::RecordKind kind,
                 const std::string& name)
{
    CStream stream;
    Persist(record, stream);
    seeds.Write("records", name + ".rec", RecordInput({fuzzing::MakeSelector(kind)}, stream));
}

void WriteSteps(SeedWriter& seeds, CMmt8Song song, const std::string& name)
{
    // Each length of the song the step lands in, at its start and past its end.
    for (std::size_t choice = 0; choice < fuzzing::kStepSongLengths.size(); ++choice) {
        for (const std::uint8_t index : {std::uint8_t{0}, std::uint8_t{200}}) {
            CStream stream;
            Persist(song, 0, stream);
            seeds.Write(
                "records",
                name + "-step-" + std::to_string(choice) + "-" + std::to_string(index) + ".rec",
                RecordInput({fuzzing::MakeSelector(fuzzing::RecordKind::Step, choice), index},
                            stream));
        }
    }
}

void WriteRecords(SeedWriter& seeds, const CMmt8Memory& memory, const std::string& name)
{
    std::size_t tracks = 0;
    bool wroteSteps = false;
    for (int p = 0; p < kPartCount; ++p) {
        const CMmt8Part& part = memory.Part(p);
        if (part.IsEmpty())
            continue;
        const std::string partName = name + "-part-" + std::to_string(p);
        WriteRecord(seeds, part, fuzzing::RecordKind::Part, partName);
        for (std::size_t t = 0; t < part.tracks.size(); ++t)
            if (!part.tracks[t].events.empty() && tracks++ < kMaxTracksPerDocument)
                WriteRecord(seeds, part.tracks[t], fuzzing::RecordKind::Track,
                            partName + "-track-" + std::to_string(t + 1));
    }
    for (int s = 0; s < kSongCount; ++s) {
        const CMmt8Song& song = memory.Song(s);
        if (song.steps.empty())
            continue;
        const std::string songName = name + "-song-" + std::to_string(s);
        WriteRecord(seeds, song, fuzzing::RecordKind::Song, songName);
        if (!wroteSteps) {
            WriteSteps(seeds, song, songName);
            wroteSteps = true;
        }
    }
}

// A full image whose 100 part pointers all name one record whose tracks lack
// their end marks, the rest of it notes: each track must stop at its record.
void WriteSharedRecordDump(SeedWriter& seeds)
{
    using namespace image;
    std::vector<std::uint8_t> bytes(kGlobalBlockSize, 0);
    const std::uint32_t address = kGlobalBlockSize + kBaseAddress;
    for (int part = 0; part < kPartCount; ++part) {
        bytes[kPartTable + kPointerSize * unsigned(part)] = static_cast<std::uint8_t>(address >> 8);
        bytes[kPartTable + kPointerSize * unsigned(part) + 1] = static_cast<std::uint8_t>(address);
    }
    constexpr std::uint32_t kNoteSize = 7;
    std::vector<std::uint8_t> record(kPartHeaderSize, ' ');
    const std::uint32_t length = kPartHeaderSize + kTracksPerPart * kNoteSize;
    record[kPartLength] = static_cast<std::uint8_t>(length);
    record[kPartLength + 1] = 0;
    for (unsigned slot = 0; slot < kTracksPerPart; ++slot) {
        record[kPartTrackOffsets + 2 * slot] =
            static_cast<std::uint8_t>(kPartHeaderSize + kNoteSize * slot);
        record[kPartTrackOffsets + 2 * slot + 1] = 0;
        record[kPartChannels + slot] = 0;
    }
    record[kPartBeats] = 0x02;
    record[kPartBeats + 1] = 0;
    bytes.insert(bytes.end(), record.begin(), record.end());
    while (bytes.size() + kNoteSize <= kMmt8MemoryCapacity)
        bytes.insert(bytes.end(), {0x80 | 60, 0, 0, 100, 0, 0, 48});

    std::vector<std::uint8_t> dump(kDumpHeader.begin(), kDumpHeader.end());
    const std::vector<std::uint8_t> packed = PackSysexData(bytes);
    dump.insert(dump.end(), packed.begin(), packed.end());
    dump.push_back(kDumpTrailingByte);
    dump.push_back(kSysexEnd);
    seeds.Write("sysex", "shared-record-no-end-marks.syx", dump);
}

// Blocks as Copy makes them from the demo, pasted at the first slot, at a
// slot that drops some records, and (for steps) past the song's end.
void WriteClipboardSeeds(SeedWriter& seeds, const CMmt8Memory& memory)
{
    struct Seed {
        ClipboardKind kind;
        int owner;
        std::vector<int> items;
        const char* name;
    };
    int song = 0;
    while (song < kSongCount - 1 && memory.Song(song).steps.size() < 2)
        ++song;
    const std::vector<Seed> blocks = {
        {ClipboardKind::Parts, 0, {0, 1, 2}, "parts"},
        {ClipboardKind::Parts, 0, {}, "no-parts"},
        {ClipboardKind::Tracks, 0, {0, 1, 2, 3, 4, 5, 6, 7}, "tracks"},
        {ClipboardKind::Songs, 0, {song, song + 1}, "songs"},
        {ClipboardKind::Steps, song, {0, 1}, "steps"},
    };
    for (const Seed& seed : blocks) {
        for (const std::uint8_t start : {std::uint8_t{0}, std::uint8_t{7}, std::uint8_t{98}}) {
            std::vector<std::uint8_t> input = {fuzzing::MakePasteSelector(seed.kind, start % 4u),
                                               start};
            const auto block = WriteClipboardBlock(memory, seed.kind, seed.owner, seed.items);
            input.insert(input.end(), block.begin(), block.end());
            seeds.Write("clipboard", std::string(seed.name) + "-" + std::to_string(start) + ".clip",
                        input);
        }
    }
    // Records the editor could not have made, which a paste refuses whole.
    CMmt8Memory odd = memory;
    odd.Part(1).beats = 20000;
    odd.Part(2).tracks[3].channel = 200;
    for (const auto& [kind, name] : {std::pair{ClipboardKind::Parts, "odd-parts"},
                                     std::pair{ClipboardKind::Tracks, "odd-tracks"}}) {
        const std::vector<int> items = {1, 2, 3};
        std::vector<std::uint8_t> input = {fuzzing::MakePasteSelector(kind, 0), 0};
        const auto block = WriteClipboardBlock(odd, kind, 2, items);
        input.insert(input.end(), block.begin(), block.end());
        seeds.Write("clipboard", std::string(name) + ".clip", input);
    }
}

void WriteMidiFile(SeedWriter& seeds, CMidiFile& file, const std::string& name)
{
    CMidiFileStream stream;
    stream.OpenMemoryForWriting();
    file.Persist(stream);
    const auto bytes = stream.GetWrittenBytes();
    seeds.Write("midi", name + ".mid", {bytes.begin(), bytes.end()});
}

CMidiTrack& AddTrack(CMidiFile& file)
{
    file.tracks.push_back(std::make_unique<CMidiTrack>());
    file.header.trackCount = static_cast<std::uint16_t>(file.tracks.size());
    return *file.tracks.back();
}

void AddMeta(CMidiTrack& track, std::uint32_t delta, std::uint8_t type,
             const std::vector<std::uint8_t>& data)
{
    auto meta = std::make_unique<CMidiMetaEvent>(delta, 0xFF);
    meta->SetType(type);
    meta->SetData(data);
    track.AppendEvent(std::move(meta));
}

void AddChannel(CMidiTrack& track, std::uint32_t delta, std::uint8_t status, std::uint8_t data1,
                std::uint8_t data2 = 0)
{
    auto event = std::make_unique<CMidiChannelEvent>(delta, status);
    event->SetData(data1, data2);
    track.AppendEvent(std::move(event));
}

void AddSysex(CMidiTrack& track, std::uint8_t status, const std::vector<std::uint8_t>& data)
{
    auto event = std::make_unique<CMidiSysexEvent>(0, status);
    event->SetData(data);
    track.AppendEvent(std::move(event));
}

// Small Standard MIDI Files: format 0 with running status, format 1 with
// every kind of meta event, channel message and SysEx.
void WriteMidiSeeds(SeedWriter& seeds)
{
    CMidiFile file;
    file.header.division = 96;
    WriteMidiFile(seeds, file, "empty");

    CMidiTrack& single = AddTrack(file);
    AddMeta(single, 0, 0x51, {0x07, 0xA1, 0x20});
    for (std::uint8_t note = 60; note < 64; ++note) {
        AddChannel(single, 48, 0x90, note, 100);
        AddChannel(single, 48, 0x90, note, 0);
        AddChannel(single, 0, 0x99, 36, 90);
    }
    AddSysex(single, 0xF0, {0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7});
    AddMeta(single, 0, 0x2F, {});
    WriteMidiFile(seeds, file, "format0");

    file.header.format = 1;
    CMidiTrack& conductor = *file.tracks.front();
    const std::vector<std::pair<std::uint8_t, std::vector<std::uint8_t>>> metas = {
        {0x00, {0, 1}},        {0x01, {'a', 0, 'b'}},
        {0x03, {'N'}},         {0x20, {9}},
        {0x21, {1}},           {0x54, {1, 2, 3, 4, 5}},
        {0x58, {6, 3, 24, 8}}, {0x59, {0xFE, 1}},
        {0x7F, {0x41, 1}},     {0x60, {}}};
    for (const auto& [type, data] : metas)
        AddMeta(conductor, 0, type, data);
    CMidiTrack& voices = AddTrack(file);
    for (std::uint8_t status = 0x80; status < 0xF0; status += 0x10)
        AddChannel(voices, 10, static_cast<std::uint8_t>(status | 0x05), 0x40, 0x7F);
    AddSysex(voices, 0xF7, {0xF8});
    AddMeta(voices, 0, 0x2F, {});
    WriteMidiFile(seeds, file, "format1");

    // Note-offs that match nothing behind a run of controllers, and events
    // in beat 683, which the import cuts off.
    CMidiFile edges;
    edges.header.format = 1;
    edges.header.division = 96;
    CMidiTrack& unmatched = AddTrack(edges);
    for (int i = 0; i < 200; ++i)
        AddChannel(unmatched, 1, 0xB0, 7, static_cast<std::uint8_t>(i % 128));
    for (int i = 0; i < 200; ++i)
        AddChannel(unmatched, 1, 0x80, static_cast<std::uint8_t>(i % 128), 64);
    CMidiTrack& late = AddTrack(edges);
    AddChannel(late, 65400, 0x90, 60, 100);
    AddChannel(late, 100, 0xB0, 7, 1);
    AddChannel(late, 30, 0x80, 60, 0);
    WriteMidiFile(seeds, edges, "noteoffs-and-beat-683");
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("Usage: tarvix-fuzz-seeds DIR\n", stderr);
        return 2;
    }
    SeedWriter seeds(argv[1]);

    CMmt8Memory memory;
    WriteDump(seeds, memory, "empty");
    WriteRecord(seeds, CMmt8Track{}, fuzzing::RecordKind::Track, "empty-track");
    WriteRecord(seeds, CMmt8Part{}, fuzzing::RecordKind::Part, "empty-part");
    WriteRecord(seeds, CMmt8Song{}, fuzzing::RecordKind::Song, "empty-song");

    demo::BuildDemoDocument(memory);
    WriteDump(seeds, memory, "demo");
    WriteRecords(seeds, memory, "demo");
    WriteClipboardSeeds(seeds, memory);
    WriteSharedRecordDump(seeds);

    const testing::RandomDocumentOptions small{4, 12, 3, 12};
    for (int i = 0; i < kRandomDocuments; ++i) {
        std::mt19937 random(static_cast<std::mt19937::result_type>(1000 + i));
        testing::FillRandomDocument(memory, random, small);
        const std::string name = "random-" + std::to_string(i);
        WriteDump(seeds, memory, name);
        if (i < kRecordDocuments)
            WriteRecords(seeds, memory, name);
    }

    WriteMidiSeeds(seeds);

    if (!seeds.Ok())
        return 1;
    std::printf("%d seeds written to %s\n", seeds.Count(), argv[1]);
    return 0;
}
