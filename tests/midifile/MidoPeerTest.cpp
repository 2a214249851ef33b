// An outside reader and writer agrees with ours: Debian's mido makes files
// that we read event for event, and reads the files we write as we meant them.
#include "MidoPeer.h"
#include "support/MidiFileBuilders.h"

#include "midifile/MidiFileStream.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace tarvix::testing {
namespace {

std::string ReadText(const std::string& path)
{
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

TEST(MidoPeerTest, WeReadWhatMidoWrote)
{
    const TempDir folder;
    const PeerRun run = RunMidoPeer("make", folder.Path().string());
    ASSERT_EQ(run.status, 0) << run.output;
    for (const char* name : {"format0", "format1", "random1", "random2"}) {
        const std::string base = folder.File(name);
        const std::string expected = ReadText(base + ".txt");
        ASSERT_GT(expected.size(), 20u) << name;
        CMidiFileStream stream;
        stream.Open(base + ".mid", CMidiFileStream::kModeRead);
        CMidiFile file;
        file.Persist(stream);
        EXPECT_EQ(ListEvents(file), expected) << name;
    }
}

TEST(MidoPeerTest, MidoReadsWhatWeWrote)
{
    std::vector<std::vector<std::unique_ptr<CMidiEvent>>> tracks(3);
    auto& conductor = tracks[0];
    conductor.push_back(Meta(0, 0x00, {0x01, 0x02}));
    for (std::uint8_t type = 0x01; type <= 0x07; ++type)
        conductor.push_back(Meta(type, type, Text("text " + std::to_string(type))));
    conductor.push_back(Meta(0, 0x20, {0x09}));
    conductor.push_back(Meta(0, 0x21, {0x02}));
    conductor.push_back(Meta(0, 0x51, {0x07, 0xA1, 0x20}));
    conductor.push_back(Meta(0, 0x54, {0x41, 0x02, 0x03, 0x04, 0x05}));
    conductor.push_back(Meta(0, 0x58, {0x06, 0x03, 0x18, 0x08}));
    conductor.push_back(Meta(0, 0x59, {0xFE, 0x01}));
    conductor.push_back(Meta(0, 0x7F, {0x41, 0x01}));
    conductor.push_back(Meta(0, 0x60, {0x01, 0x02, 0x03}));
    conductor.push_back(Meta(100, 0x2F));
    auto& notes = tracks[1];
    notes.push_back(Channel(0, 0xC5, 40));
    for (std::uint8_t note = 60; note < 72; ++note) {
        notes.push_back(Channel(note == 60 ? 0 : 24, 0x95, note, 100));
        notes.push_back(Channel(24, 0x95, note, 0));
    }
    notes.push_back(Channel(0, 0xB5, 64, 127));
    notes.push_back(Channel(3000, 0xE5, 0x00, 0x40));
    notes.push_back(Channel(0x1FFFFF, 0xD5, 0x30));
    notes.push_back(Channel(0, 0xA5, 60, 10));
    notes.push_back(Channel(0, 0x85, 60, 64));
    notes.push_back(Meta(0, 0x2F));
    auto& sysex = tracks[2];
    Bytes longMessage(300, 0x11);
    longMessage.push_back(0xF7);
    sysex.push_back(Sysex(0, 0xF0, {0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7}));
    sysex.push_back(Sysex(10, 0xF0, longMessage));
    sysex.push_back(Channel(0, 0x99, 36, 100));
    sysex.push_back(Meta(0, 0x2F));
    CMidiFile file = MakeFile(1, 192, std::move(tracks));

    const TempDir folder;
    const std::string path = folder.File("ours.mid");
    CMidiFileStream stream;
    ASSERT_TRUE(stream.Open(path, CMidiFileStream::kModeWrite));
    file.Persist(stream);
    stream.Close();
    const PeerRun run = RunMidoPeer("list", path);
    ASSERT_EQ(run.status, 0) << run.output;
    EXPECT_EQ(run.output, ListEvents(file));
}

} // namespace
} // namespace tarvix::testing
