// The tables themselves are data; these tests pin what a reader of the code
// could get wrong: the octave numbering, the spellings the program keeps on
// purpose, the ranges that fall back to numbers, the rows whose order the
// maker table fixes, and what happens outside each table.
#include "vocabulary/MidiVocabulary.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <set>
#include <string>
#include <utility>

namespace tarvix {
namespace {

std::uint8_t Byte(int value)
{
    return static_cast<std::uint8_t>(value);
}

TEST(MidiVocabularyTest, NotesCountOctavesFromMinusTwoAndIgnoreTheHighBit)
{
    const std::pair<int, const char*> cases[] = {
        {0, "C-2"}, {11, "B-2"}, {12, "C-1"}, {13, "C#-1"},  {24, "C0"},
        {60, "C3"}, {70, "A#3"}, {127, "G8"}, {0x80, "C-2"}, {0xFF, "G8"},
    };
    for (const auto& [note, name] : cases)
        EXPECT_STREQ(GetNoteName(Byte(note)), name) << note;
    for (int value = 0x80; value <= 0xFF; ++value) {
        EXPECT_EQ(GetProgramName(Byte(value)), GetProgramName(Byte(value & 0x7F)));
        EXPECT_EQ(GetControllerName(Byte(value)), GetControllerName(Byte(value & 0x7F)));
    }
}

TEST(MidiVocabularyTest, ProgramsKeepTheirSpellingsInEveryRow)
{
    EXPECT_STREQ(GetProgramName(0), "Acoustic Grand");
    EXPECT_STREQ(GetProgramName(21), "Accoridan");
    EXPECT_STREQ(GetProgramName(23), "Tango Accordian");
    EXPECT_STREQ(GetProgramName(77), "Skakuhachi");
    EXPECT_STREQ(GetProgramName(127), "Gunshot");
    // A lost comma joins two rows and shifts the rest: every row is its own.
    std::set<std::string> names;
    for (int program = 0; program < 128; ++program) {
        const char* name = GetProgramName(Byte(program));
        ASSERT_NE(name, nullptr) << program;
        EXPECT_NE(name[0], '\0') << program;
        names.insert(name);
    }
    EXPECT_EQ(names.size(), 128u);
}

TEST(MidiVocabularyTest, ControllersWithoutNamesGetTheirNumber)
{
    // A lost or doubled row changes how many numbers fall back.
    int numbered = 0;
    for (int number = 0; number < 128; ++number)
        if (GetControllerName(Byte(number)) == "CC#" + std::to_string(number))
            ++numbered;
    EXPECT_EQ(numbered, 61);
    EXPECT_STREQ(GetControllerName(3), "CC#3");
    EXPECT_STREQ(GetControllerName(119), "CC#119");
    EXPECT_STREQ(GetControllerName(7), "Volume");
    EXPECT_STREQ(GetControllerName(66), "Sustenuto Pedal (on/off)");
    EXPECT_STREQ(GetControllerName(92), "Tremulo Level");
    EXPECT_STREQ(GetControllerName(120), "All Sound Off");
    EXPECT_STREQ(GetControllerName(127), "Poly Operation");
}

TEST(MidiVocabularyTest, MessagesKeysAndModesOutsideTheirTables)
{
    // Only bits 4-6 of the status byte count.
    EXPECT_STREQ(GetChannelMessageName(0x80), "Note off");
    EXPECT_STREQ(GetChannelMessageName(0x9F), "Note on");
    EXPECT_STREQ(GetChannelMessageName(0x15), "Note on");
    EXPECT_STREQ(GetChannelMessageName(0xE5), "Pitch bend");
    EXPECT_STREQ(GetChannelMessageName(0xF0), "(unknown)");
    EXPECT_STREQ(GetChannelMessageName(0x7F), "(unknown)");

    EXPECT_STREQ(GetKeySignatureName(-7), "C-Flat");
    EXPECT_STREQ(GetKeySignatureName(-1), "F");
    EXPECT_STREQ(GetKeySignatureName(0), "C");
    EXPECT_STREQ(GetKeySignatureName(7), "C-Sharp");
    for (int count : {-8, 8, INT_MIN, INT_MAX})
        EXPECT_STREQ(GetKeySignatureName(count), "<invalid>") << count;

    EXPECT_STREQ(GetModeName(0), "major");
    EXPECT_STREQ(GetModeName(1), "minor");
    EXPECT_STREQ(GetModeName(0xFF), "minor");
}

TEST(MidiVocabularyTest, ManufacturersInTheirTablesOrder)
{
    // 0x1B stands before 0x15 in the table; each still finds its own row.
    const std::pair<int, const char*> cases[] = {
        {0x01, "Sequential Circuits"},
        {0x0E, "Matthews Research"},
        {0x14, "Fairlight"},
        {0x1B, "Peavey"},
        {0x15, "JL Cooper"},
        {0x18, "E-Mu"},
        {0x2F, "Elka"},
        {0x45, "Akai"},
        {0x7E, "Non RealTime"},
        {0x7F, "RealTime"},
    };
    for (const auto& [id, name] : cases)
        EXPECT_STREQ(GetManufacturerName(Byte(id)), name) << id;
    // The high bit is not masked here: 0xC3 is no alias of Yamaha.
    for (int id : {0x00, 0x0F, 0x19, 0x1A, 0x22, 0x46, 0x7D, 0x80, 0xC3, 0xFF})
        EXPECT_STREQ(GetManufacturerName(Byte(id)), "<unknown>") << id;

    std::set<std::string> names;
    int known = 0;
    for (int id = 0; id < 256; ++id) {
        const std::string name = GetManufacturerName(Byte(id));
        if (name != "<unknown>") {
            ++known;
            names.insert(name);
        }
    }
    EXPECT_EQ(known, 42);
    EXPECT_EQ(names.size(), 42u);
}

} // namespace
} // namespace tarvix
