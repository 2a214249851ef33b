// What players no one here wrote make of our exports: mido's reading of
// bars, tempi, markers, channels and playing time, and timidity's rendering
// of a song to audio.
#include "ExportTestSupport.h"
#include "MidoPeer.h"

#include "midifile/MidiExport.h"
#include "model/EventBuilders.h"
#include "model/Mmt8Memory.h"
#include "support/FileTestSupport.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tarvix::testing {
namespace {

using test::Make;
using test::Note;
using test::TrackOf;
using Kind = MidiSelectionKind;

constexpr std::uint32_t kSongTempo = 150;
constexpr double kSongBeats = 16;

// Song 2 "GIG" at 150 BPM plays INTRO (3 beats), CHORUS (5), INTRO's first
// track only, CHORUS: 16 beats, 6.4 seconds. INTRO's first track forces
// channel 3 on notes recorded on channel 1; its second keeps channel 6.
// CHORUS ends on a piano middle C held past the part's end.
void FillGig(CMmt8Memory& memory)
{
    CMmt8Part& intro = memory.Part(1);
    intro.name = "INTRO";
    intro.beats = 3;
    intro.tracks[0] = TrackOf(3, Note(0, 48, 90), Note(96, 50, 90), Note(192, 52, 90));
    intro.tracks[1] = TrackOf(0, Note(0, 36, 280, 5));
    CMmt8Part& chorus = memory.Part(2);
    chorus.name = "CHORUS";
    chorus.beats = 5;
    chorus.tracks[0] = TrackOf(0, Note(0, 60, 600));
    chorus.tracks[2] = TrackOf(0, Make<CMmt8SysexEvent>(0, 0x7D, 0x01, 0x02));
    CMmt8Song& song = memory.Song(2);
    song.name = "GIG";
    song.tempo = static_cast<std::uint8_t>(kSongTempo);
    song.steps = {{1, 0xFF}, {2, 0xFF}, {1, 0x01}, {2, 0xFF}};
}

// mido's line for each of the device tracks first-last that send nothing.
std::string SilentTracks(int first, int last, std::uint64_t end)
{
    std::string text;
    for (int track = first; track <= last; ++track)
        text += "track Track " + std::to_string(track) + " end " + std::to_string(end) +
                " channels - sysex 0 empty-sysex 0\n";
    return text;
}

std::string MidoPlays(const CMmt8Memory& memory, const MidiSelection& selection,
                      const MidiExportOptions& options = {})
{
    const TempDir folder;
    const std::string path = folder.File("export.mid");
    CMidiFile file;
    std::string error;
    EXPECT_TRUE(BuildExportFile(memory, selection, file, error, options)) << error;
    WriteAllBytes(path, WriteMidi(file));
    const PeerRun run = RunMidoPeer("play", path);
    EXPECT_EQ(run.status, 0) << run.output;
    return run.output;
}

TEST(MidiExportPlayersTest, MidoPlaysASongForItsBeatsAtItsTempoWithItsBarsAndMarkers)
{
    CMmt8Memory memory;
    FillGig(memory);
    // Each step starts a bar; a step of 5 beats ends with a bar of 1.
    EXPECT_EQ(MidoPlays(memory, Select(Kind::Song, 2)),
              "seconds 6.400000\n"
              "0 time_signature 3/4\n0 tempo 150.000\n0 marker INTRO\n"
              "288 time_signature 4/4\n288 marker CHORUS\n672 time_signature 1/4\n"
              "768 time_signature 3/4\n768 marker INTRO\n"
              "1056 time_signature 4/4\n1056 marker CHORUS\n1440 time_signature 1/4\n"
              "track GIG end 1536 channels - sysex 0 empty-sysex 0\n"
              "track Track 1 end 1536 channels 3,1 sysex 0 empty-sysex 0\n"
              "track Track 2 end 1536 channels 6 sysex 0 empty-sysex 0\n"
              "track Track 3 end 1536 channels - sysex 2 empty-sysex 0\n" +
                  SilentTracks(4, 8, 1536));

    // The user's tempo replaces the song's.
    MidiExportOptions slower;
    slower.tempo = 100;
    const std::string played = MidoPlays(memory, Select(Kind::Song, 2), slower);
    EXPECT_EQ(played.substr(0, played.find("0 marker")),
              "seconds 9.600000\n0 time_signature 3/4\n0 tempo 100.000\n");
}

TEST(MidiExportPlayersTest, MidoPlaysAPartAt120InBarsOfFour)
{
    CMmt8Memory memory;
    CMmt8Part& riff = memory.Part(4);
    riff.name = "RIFF";
    riff.beats = 6;
    riff.tracks[0] = TrackOf(10, Note(0, 36, 48), Note(96, 38, 48, 4));
    riff.tracks[3] = TrackOf(0, Note(0, 40, 48, 1), Note(48, 41, 48, 2));
    const std::string tail = "0 marker RIFF\n384 time_signature 2/4\n"
                             "track RIFF end 576 channels - sysex 0 empty-sysex 0\n"
                             "track Track 1 end 576 channels 10 sysex 0 empty-sysex 0\n" +
                             SilentTracks(2, 3, 576) +
                             "track Track 4 end 576 channels 2,3 sysex 0 empty-sysex 0\n" +
                             SilentTracks(5, 8, 576);
    EXPECT_EQ(MidoPlays(memory, Select(Kind::Part, 4)),
              "seconds 3.000000\n0 time_signature 4/4\n0 tempo 120.000\n" + tail);
    MidiExportOptions faster;
    faster.tempo = 240;
    EXPECT_EQ(MidoPlays(memory, Select(Kind::Part, 4), faster),
              "seconds 1.500000\n0 time_signature 4/4\n0 tempo 240.000\n" + tail);
}

// Seconds of audio timidity renders from a file: 16-bit mono samples.
double TimiditySeconds(const std::string& midi, const std::string& raw)
{
    constexpr double kRate = 22050;
    // Debian's freepats: timidity's own default configuration names a
    // sound font that may be missing.
    const PeerRun run = RunPeerCommand(
        "timidity -c /etc/timidity/freepats.cfg -s 22050 --output-mono --output-16bit "
        "--output-signed -Or -o '" +
        raw + "' '" + midi + "'");
    EXPECT_EQ(run.status, 0) << run.output;
    std::error_code error;
    const auto size = std::filesystem::file_size(raw, error);
    EXPECT_FALSE(error) << run.output;
    return error ? 0 : static_cast<double>(size) / 2 / kRate;
}

// timidity plays a file up to its last note-off and then lets the voices
// ring out for a time of its own. That time is measured on a reference
// that mido writes, ending on the same note as the song, and taken off.
TEST(MidiExportPlayersTest, TimidityPlaysASongForItsLength)
{
    CMmt8Memory memory;
    FillGig(memory);
    const TempDir folder;
    const std::string song = folder.File("song.mid");
    const std::string tone = folder.File("tone.mid");
    WriteAllBytes(song, ExportedBytes(memory, Select(Kind::Song, 2)));
    constexpr int kToneBeats = 4;
    const PeerRun made =
        RunMidoPeer("tone", tone, std::to_string(kSongTempo) + " " + std::to_string(kToneBeats));
    ASSERT_EQ(made.status, 0) << made.output;

    const double beat = 60.0 / kSongTempo;
    const double ringing = TimiditySeconds(tone, folder.File("tone.raw")) - kToneBeats * beat;
    EXPECT_GT(ringing, 0.0);
    const double played = TimiditySeconds(song, folder.File("song.raw")) - ringing;
    EXPECT_NEAR(played, kSongBeats * beat, beat);
}

} // namespace
} // namespace tarvix::testing
