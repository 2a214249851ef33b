// The dump report, character for character.
#include "support/MidiFileBuilders.h"

#include "midifile/MidiDumpSink.h"
#include "midifile/MidiFileDump.h"
#include "midifile/MidiFileException.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace tarvix::testing {
namespace {

std::string Dumped(const CMidiEvent& event)
{
    CMidiDumpSink sink(LineEnds::Lf);
    event.Dump(sink);
    return std::string(sink.GetTextView());
}

// A hex line: the hex part, blanks to column 57, the characters, blanks to 79.
std::string HexLine(const std::string& hex, const std::string& characters)
{
    return hex + std::string(57 - hex.size(), ' ') + characters +
           std::string(22 - characters.size(), ' ') + "\n";
}

TEST(MidiDumpTest, ChannelEventLines)
{
    EXPECT_EQ(Dumped(*Channel(0x60, 0x90, 0x3C, 0x64)),
              "00000060 Midi 90 3C 64   Note on          C3\n");
    EXPECT_EQ(Dumped(*Channel(0, 0xB1, 7, 100)),
              "00000000 Midi B1 07 64   Control change   Volume\n");
    EXPECT_EQ(Dumped(*Channel(0x12345, 0xC9, 0)),
              "00012345 Midi C9 00      Program change   Acoustic Grand\n");
    EXPECT_EQ(Dumped(*Channel(0, 0xD0, 0x40)), "00000000 Midi D0 40      Aftertouch       \n");
    EXPECT_EQ(Dumped(*Channel(0, 0xE5, 0, 0x40)), "00000000 Midi E5 00 40   Pitch bend       \n");
    EXPECT_EQ(Dumped(CMidiChannelEvent(0, 0xF1)), "00000000 Midi F1         (unknown)        \n");
}

TEST(MidiDumpTest, SysexLinesWithTheirHexDump)
{
    EXPECT_EQ(Dumped(*Sysex(0x30, 0xF0, {0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7})),
              "00000030 Yamaha Sysex 9 bytes\n" +
                  std::string("00000000 F0 43 10 4C 00 00 7E 00 F7") + std::string(22, ' ') +
                  ".C.L..~.." + std::string(13, ' ') + "\n");

    // Later lines are labelled by the data index: 0F, 1F, not 10, 20.
    Bytes twenty(20);
    for (std::size_t i = 0; i < twenty.size(); ++i)
        twenty[i] = static_cast<std::uint8_t>(0x41 + i);
    EXPECT_EQ(Dumped(*Sysex(0, 0xF0, twenty)),
              "00000000 Roland Sysex 21 bytes\n" +
                  HexLine("00000000 F0 41 42 43 44 45 46 47 48 49 4A 4B 4C 4D 4E 4F",
                          ".ABCDEFGHIJKLMNO") +
                  HexLine("0000000F 50 51 52 53 54", "PQRST"));
    CMidiDumpSink sink(LineEnds::Lf);
    sink.HexDumpWithStatus(0xF0, twenty.data(), 20);
    sink.HexDumpWithStatus(0xF0, twenty.data(), 20);
    EXPECT_EQ(sink.GetTextView().size(), 4 * 80u);
    twenty.resize(40);
    CMidiDumpSink three(LineEnds::Lf);
    three.HexDumpWithStatus(0xF7, twenty.data(), 40);
    EXPECT_EQ(three.GetTextView().substr(2 * 80, 9), "0000001F ");

    EXPECT_EQ(Dumped(*Sysex(0, 0xF7, {})),
              "00000000 <unknown> Sysex 1 bytes\n" + HexLine("00000000 F7", "."));
}

TEST(MidiDumpTest, PlainHexDumpCountsFromZero)
{
    Bytes bytes(17, 0x20);
    CMidiDumpSink sink(LineEnds::Lf);
    sink.HexDump(nullptr, 4);
    sink.HexDump(bytes.data(), 0);
    EXPECT_EQ(sink.GetTextView(), "");
    sink.HexDump(bytes.data(), 17);
    EXPECT_EQ(
        sink.GetTextView(),
        HexLine("00000000 20 20 20 20 20 20 20 20 20 20 20 20 20 20 20 20", std::string(16, ' ')) +
            HexLine("00000010 20", " "));
}

TEST(MidiDumpTest, MetaEventLines)
{
    struct Case {
        std::uint8_t type;
        Bytes data;
        std::string line; // after "00000000 Meta Event TT   "
    };
    const Case cases[] = {
        {0x00, {0x01, 0x02}, "Sequence number: 256\n"},
        {0x00, {}, "Sequence number: 0\n"},
        {0x01, {'a', 'b', 0, 'c'}, "Text: ab c\n"},
        {0x02, {}, "Copyright: <no data>\n"},
        {0x07, Text("cue"), "Cue point: cue\n"},
        {0x20, {9}, "MIDI Channel: 9\n"},
        {0x21, {}, "MIDI Port: 0\n"},
        {0x2F, {}, "End of track\n"},
        {0x51, {0x07, 0xA1, 0x20}, "Set tempo: 120 BPM (500000 uSec PQN)\n"},
        {0x51, {0x00, 0x00, 0x00}, "Set tempo: 0 BPM (0 uSec PQN)\n"},
        {0x51, {0x01}, "Set tempo: 915 BPM (65536 uSec PQN)\n"},
        {0x51, {}, "Set tempo: <no data>\n"},
        {0x54, {1, 2, 3, 4, 55}, "SMPTE Offset: 01:02:03:04:55\n"},
        {0x54, {}, "SMPTE Offset: <no data>\n"},
        {0x58, {6, 3, 36, 8}, "Time signature: 6/8 36 8\n"},
        {0x58, {}, "Time signature: <no data>\n"},
        {0x59, {0xFE, 0x01}, "Key signature: B-Flat minor\n"},
        {0x59, {0xFB, 0x00}, "Key signature: D-Flat major\n"},
        {0x59, {0x09, 0x00}, "Key signature: <invalid> major\n"},
        {0x59, {}, "Key signature: <no data>\n"},
        {0x7F, {0x41}, "Sequencer specific: size 2 bytes\n" + HexLine("00000000 FF 41", ".A")},
        {0x09, {}, " size 1 bytes\n" + HexLine("00000000 FF", ".")},
        {0x90, {0x7E, 0x7F}, " size 3 bytes\n" + HexLine("00000000 FF 7E 7F", ".~.")},
    };
    for (const Case& c : cases) {
        char start[32];
        std::snprintf(start, sizeof start, "00000000 Meta Event %02X   ", c.type);
        EXPECT_EQ(Dumped(*Meta(0, c.type, c.data)), start + c.line);
    }
}

TEST(MidiDumpTest, SinkTurnsLineFeedsIntoCrLfAndKeepsOpenLines)
{
    CMidiDumpSink sink;
    sink.WriteText("a\nb");
    sink.WriteText("c\n\n");
    sink.WriteFormat("%s|", "d");
    EXPECT_EQ(sink.GetTextView(), "a\r\nbc\r\n\r\nd|");
}

TEST(MidiDumpTest, StreamedReportIsTheSameText)
{
    Bytes data(100, 0x41);
    const auto sysex = Sysex(0, 0xF0, data);
    CMidiDumpSink whole;
    sysex->Dump(whole);

    std::string streamed;
    std::size_t pieces = 0;
    CMidiDumpSink sink;
    sink.StreamTo(
        [&](std::string_view text) {
            streamed += text;
            ++pieces;
        },
        200);
    sysex->Dump(sink);
    EXPECT_LT(sink.GetText().GetSize(), 200u);
    sink.Flush();
    EXPECT_EQ(sink.GetText().GetSize(), 0u);
    EXPECT_EQ(streamed, whole.GetTextView());
    EXPECT_GT(pieces, 2u);
}

TEST(MidiDumpTest, FileReportHasHeaderTracksAndFlags)
{
    CMidiFile file = ReadMidi(Join(
        {HeaderChunk(1, 3, 0xE728), Chunk("MTrk", {}),
         Chunk("MTrk", {0x00, 0x90, 0x3C, 0x64, 0x00, 0xF0, 0x01, 0xF7, 0x00, 0xFF, 0x2F, 0x00})}));
    CMidiDumpSink sink(LineEnds::Lf);
    DumpMidiFile(file, sink);
    const std::string header =
        "\nHeader\n======\nSMF type: 1\nNumber of tracks: 3\nTicks per quarter note: 59176\n"
        "\nTrack 1\n========\n\nTrack 2\n========\n";
    EXPECT_EQ(sink.GetTextView(), header +
                                      "00000000 Midi 90 3C 64   Note on          C3\n"
                                      "00000000 <unknown> Sysex 2 bytes\n" +
                                      HexLine("00000000 F0 F7", "..") +
                                      "00000000 Meta Event 2F   End of track\n");

    CMidiDumpSink metaOnly(LineEnds::Lf);
    metaOnly.SetShown(false, false, true);
    DumpMidiFile(file, metaOnly);
    EXPECT_EQ(metaOnly.GetTextView(), header + "00000000 Meta Event 2F   End of track\n");

    CMidiDumpSink none(LineEnds::Lf);
    none.SetShown(false, false, false);
    file.tracks.insert(file.tracks.begin() + 1, nullptr);
    DumpMidiFile(file, none);
    EXPECT_EQ(none.GetTextView(), "\nHeader\n======\nSMF type: 1\nNumber of tracks: 3\n"
                                  "Ticks per quarter note: 59176\n"
                                  "\nTrack 1\n========\n\nTrack 3\n========\n");
}

TEST(MidiDumpTest, ReportOfAPathStartsWithItsName)
{
    const TempDir folder;
    const std::string path = folder.File("text.mid");
    WriteAllBytes(path, Text("not MIDI"));
    CMidiDumpSink sink;
    DumpMidiFile(path, sink);
    EXPECT_EQ(sink.GetTextView(), "\r\nDumping file: " + path +
                                      "\r\n\r\nHeader\r\n======\r\nSMF type: 0\r\n"
                                      "Number of tracks: 0\r\nTicks per quarter note: 0\r\n");

    CMidiDumpSink untouched;
    EXPECT_THROW(DumpMidiFile(folder.File("missing.mid"), untouched), CMidiFileException);
    EXPECT_EQ(untouched.GetTextView(), "");
}

} // namespace
} // namespace tarvix::testing
