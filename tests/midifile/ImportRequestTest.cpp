// Where an import goes, from what was selected, and the import dialog's
// track list.
#include "ExportTestSupport.h"

#include "midifile/ImportRequest.h"
#include "midifile/ImportTrackList.h"
#include "midifile/MidiFileException.h"
#include "midifile/MidiFileStream.h"
#include "midifile/MidiImport.h"
#include "model/Mmt8Memory.h"

#include <gtest/gtest.h>

namespace tarvix::testing {
namespace {

using Kind = MidiSelectionKind;

struct RequestCase {
    const char* name;
    MidiSelection selection;
    std::vector<int> parts;
    std::uint8_t mask;
    std::uint8_t song;
};

void PrintTo(const RequestCase& tested, std::ostream* out)
{
    *out << tested.name;
}

class ImportRequestTest : public ::testing::TestWithParam<RequestCase> {};

TEST_P(ImportRequestTest, SelectionGivesPartsMaskAndSong)
{
    CMmt8Memory memory;
    for (const std::uint8_t part : {std::uint8_t{5}, std::uint8_t{7}, std::uint8_t{5}})
        memory.AppendStep(2, part, 0xFF);
    memory.AppendStep(4, 9, 0x01);
    CMidiImport request;
    std::string error;
    ASSERT_TRUE(BuildImportRequest(memory, GetParam().selection, request, error)) << error;
    EXPECT_EQ(request.destinationParts, GetParam().parts);
    EXPECT_EQ(request.trackMask, GetParam().mask);
    EXPECT_EQ(request.targetSong, GetParam().song);
}

std::vector<int> AllParts()
{
    std::vector<int> parts(100);
    for (int part = 0; part < 100; ++part)
        parts[static_cast<std::size_t>(part)] = part;
    return parts;
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ImportRequestTest,
    ::testing::Values(RequestCase{"AllParts", {Kind::AllParts, 0, {}}, AllParts(), 0xFF, 0xFF},
                      RequestCase{"Part", {Kind::Part, 42, {}}, {42}, 0xFF, 0xFF},
                      RequestCase{"PartTracks", {Kind::PartTracks, 3, {5, 2, 9}}, {3}, 0x24, 0xFF},
                      RequestCase{"Parts", {Kind::Parts, 0, {9, 3, 9}}, {9, 3, 9}, 0xFF, 0xFF},
                      RequestCase{"AllSongs", {Kind::AllSongs, 0, {}}, {5, 7, 5, 9}, 0xFF, 0},
                      RequestCase{"Song", {Kind::Song, 2, {}}, {5, 7, 5}, 0xFF, 2},
                      RequestCase{"Songs", {Kind::Songs, 0, {4, 3, 2}}, {9, 5, 7, 5}, 0xFF, 4},
                      RequestCase{"Steps", {Kind::Steps, 2, {2, 1, 7}}, {5, 7}, 0xFF, 2}),
    [](const ::testing::TestParamInfo<RequestCase>& tested) {
        return std::string(tested.param.name);
    });

TEST(ImportRequestRefusalTest, NothingToImportIntoIsRefusedWithTheReason)
{
    const CMmt8Memory memory;
    CMidiImport request;
    std::string error;
    EXPECT_FALSE(BuildImportRequest(memory, {Kind::PartTracks, 3, {}}, request, error));
    EXPECT_EQ(error, "No tracks selected.\n");
    EXPECT_FALSE(BuildImportRequest(memory, {Kind::Song, 1, {}}, request, error));
    EXPECT_EQ(error, "No parts selected.\n");
    EXPECT_FALSE(BuildImportRequest(memory, {Kind::Parts, 0, {}}, request, error));
    EXPECT_EQ(error, "No parts selected.\n");
}

CMidiFile ThreeTracks()
{
    return FileOf(1, 96,
                  EventsOf(Meta(0, CMidiMetaEvent::kTypeTrackName, Text("Tempo\tmap")),
                           Meta(0, CMidiMetaEvent::kTypeTempo, {7, 0xA1, 0x20})),
                  EventsOf(Channel(0, 0x90, 60, 100)), EventsOf(Sysex(0, 0xF0, {0x43, 0xF7})),
                  EventsOf(Channel(0, 0xC1, 4)));
}

std::vector<std::string> Column(const CMidiFile& file, ImportColumn column)
{
    std::vector<std::string> cells;
    for (std::size_t row = 0; row < file.tracks.size(); ++row)
        cells.push_back(GetImportCellText(file, row, column));
    return cells;
}

TEST(ImportTrackListTest, RowsShowNameDeviceTrackAndEventCount)
{
    CMidiFile file = ThreeTracks();
    const std::vector<bool> ticks = GetInitialTicks(file);
    EXPECT_EQ(ticks, (std::vector<bool>{false, true, true, true}));
    // Tracks 3 and 6 permitted: the third ticked track gets none.
    AssignDeviceTracks(file, ticks, 0x24);
    EXPECT_EQ(Column(file, ImportColumn::MidiTrack),
              (std::vector<std::string>{"Tempo?map", "Track 2", "Track 3", "Track 4"}));
    EXPECT_EQ(Column(file, ImportColumn::Mmt8Track),
              (std::vector<std::string>{"", "Track 3", "Track 6", ""}));
    EXPECT_EQ(Column(file, ImportColumn::MidiEvents),
              (std::vector<std::string>{"2", "1", "1", "1"}));

    AssignDeviceTracks(file, {true, false, true, true}, 0xFF);
    EXPECT_EQ(Column(file, ImportColumn::Mmt8Track),
              (std::vector<std::string>{"Track 1", "", "Track 2", "Track 3"}));
}

TEST(ImportTrackListTest, ExplodeOptionSplitsAFormatZeroFileByChannel)
{
    CMidiFile source = FileOf(0, 96,
                              EventsOf(Meta(0, CMidiMetaEvent::kTypeTrackName, Text("All")),
                                       Channel(0, 0x92, 60, 100), Channel(0, 0x95, 62, 100)));
    const Bytes bytes = WriteMidi(source);

    CMidiImport request;
    CMidiFileStream split(bytes);
    EXPECT_TRUE(LoadImportFile(request, split));
    EXPECT_EQ(request.file.tracks.size(), 3u);
    EXPECT_TRUE(ExplodeChangeReloads(true, request.file));

    request.options.explodeType0 = 0;
    CMidiFileStream whole(bytes);
    EXPECT_FALSE(LoadImportFile(request, whole));
    EXPECT_EQ(request.file.tracks.size(), 1u);
    EXPECT_TRUE(ExplodeChangeReloads(false, request.file));
    request.file.header.format = 1;
    EXPECT_FALSE(ExplodeChangeReloads(false, request.file));
}

TEST(ImportTrackListTest, AFileThatCannotBeOpenedLeavesNoTracks)
{
    CMidiImport request;
    request.file = ThreeTracks();
    request.sourcePath = "/nonexistent/folder/song.mid";
    EXPECT_THROW(LoadImportFile(request), CMidiFileException);
    EXPECT_TRUE(request.file.tracks.empty());
}

} // namespace
} // namespace tarvix::testing
