#include "vocabulary/MidiVocabulary.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <set>
#include <string>
#include <utility>

namespace tarvix {
namespace {

std::uint8_t Byte(int value) { return static_cast<std::uint8_t>(value); }

TEST(MidiVocabularyTest, NoteNamesAtOctaveBoundaries)
{
    const std::pair<int, const char*> cases[] = {
        {0, "C-2"}, {11, "B-2"}, {12, "C-1"}, {13, "C#-1"}, {23, "B-1"},
        {24, "C0"}, {35, "B0"}, {36, "C1"}, {60, "C3"}, {61, "C#3"},
        {70, "A#3"}, {119, "B7"}, {120, "C8"}, {127, "G8"},
        {0x80, "C-2"}, {0xFF, "G8"},
    };
    for (const auto& [note, name] : cases)
        EXPECT_STREQ(GetNoteName(Byte(note)), name) << note;
}

TEST(MidiVocabularyTest, SevenBitLookupsIgnoreTheHighBit)
{
    for (int value = 0x80; value <= 0xFF; ++value) {
        EXPECT_EQ(GetNoteName(Byte(value)), GetNoteName(Byte(value & 0x7F)));
        EXPECT_EQ(GetProgramName(Byte(value)), GetProgramName(Byte(value & 0x7F)));
        EXPECT_EQ(GetControllerName(Byte(value)), GetControllerName(Byte(value & 0x7F)));
    }
}

TEST(MidiVocabularyTest, ProgramNamesKeepTheirSpellings)
{
    EXPECT_STREQ(GetProgramName(0), "Acoustic Grand");
    EXPECT_STREQ(GetProgramName(21), "Accoridan");
    EXPECT_STREQ(GetProgramName(23), "Tango Accordian");
    EXPECT_STREQ(GetProgramName(24), "Acoustic Guitar(nylon)");
    EXPECT_STREQ(GetProgramName(77), "Skakuhachi");
    EXPECT_STREQ(GetProgramName(87), "Lead 8 (bass+lead)");
    EXPECT_STREQ(GetProgramName(127), "Gunshot");
}

TEST(MidiVocabularyTest, ProgramNamesAreDistinctAndNonEmpty)
{
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
    std::set<int> fillers = {3, 9, 14, 15, 35, 41};
    for (const auto& [first, last] : {std::pair{20, 31}, {46, 63}, {84, 90}, {102, 119}})
        for (int number = first; number <= last; ++number)
            fillers.insert(number);

    for (int number = 0; number < 128; ++number) {
        const std::string name = GetControllerName(Byte(number));
        if (fillers.count(number) != 0)
            EXPECT_EQ(name, "CC#" + std::to_string(number));
        else
            EXPECT_EQ(name.rfind("CC#", 0), std::string::npos) << number << " " << name;
    }
}

TEST(MidiVocabularyTest, NamedControllersKeepTheirSpellings)
{
    EXPECT_STREQ(GetControllerName(2), "Breath controller");
    EXPECT_STREQ(GetControllerName(4), "Foot Pedal");
    EXPECT_STREQ(GetControllerName(7), "Volume");
    EXPECT_STREQ(GetControllerName(34), "Breath controller (fine)");
    EXPECT_STREQ(GetControllerName(66), "Sustenuto Pedal (on/off)");
    EXPECT_STREQ(GetControllerName(92), "Tremulo Level");
    EXPECT_STREQ(GetControllerName(101), "Registered Parameter");
    EXPECT_STREQ(GetControllerName(119), "CC#119");
    EXPECT_STREQ(GetControllerName(120), "All Sound Off");
    EXPECT_STREQ(GetControllerName(127), "Poly Operation");
}

TEST(MidiVocabularyTest, ChannelMessageNamesUseBitsFourToSix)
{
    EXPECT_STREQ(GetChannelMessageName(0x80), "Note off");
    EXPECT_STREQ(GetChannelMessageName(0x9F), "Note on");
    EXPECT_STREQ(GetChannelMessageName(0xA0), "Poly aftertouch");
    EXPECT_STREQ(GetChannelMessageName(0xB3), "Control change");
    EXPECT_STREQ(GetChannelMessageName(0xC0), "Program change");
    EXPECT_STREQ(GetChannelMessageName(0xD0), "Aftertouch");
    EXPECT_STREQ(GetChannelMessageName(0xE5), "Pitch bend");
    EXPECT_STREQ(GetChannelMessageName(0xF0), "(unknown)");
    EXPECT_STREQ(GetChannelMessageName(0x15), "Note on");
    EXPECT_STREQ(GetChannelMessageName(0x7F), "(unknown)");
}

TEST(MidiVocabularyTest, KeySignaturesFromSevenFlatsToSevenSharps)
{
    const char* expected[] = {"C-Flat", "G-Flat", "D-Flat", "A-Flat", "E-Flat",
                              "B-Flat", "F", "C", "G", "D", "A", "E", "B",
                              "F-Sharp", "C-Sharp"};
    for (int count = -7; count <= 7; ++count)
        EXPECT_STREQ(GetKeySignatureName(count), expected[count + 7]) << count;
    for (int count : {-8, 8, 127, -128, INT_MIN, INT_MAX})
        EXPECT_STREQ(GetKeySignatureName(count), "<invalid>") << count;
}

TEST(MidiVocabularyTest, ModeIsMajorOnlyForZero)
{
    EXPECT_STREQ(GetModeName(0), "major");
    EXPECT_STREQ(GetModeName(1), "minor");
    EXPECT_STREQ(GetModeName(0xFF), "minor");
}

TEST(MidiVocabularyTest, ManufacturerLookup)
{
    const std::pair<int, const char*> cases[] = {
        {0x01, "Sequential Circuits"}, {0x0B, "Sound Comp."}, {0x0E, "Matthews Research"},
        {0x14, "Fairlight"}, {0x1B, "Peavey"}, {0x15, "JL Cooper"},
        {0x18, "E-Mu"}, {0x21, "S.I.E.L."}, {0x2F, "Elka"}, {0x43, "Yamaha"},
        {0x45, "Akai"}, {0x7E, "Non RealTime"}, {0x7F, "RealTime"},
    };
    for (const auto& [id, name] : cases)
        EXPECT_STREQ(GetManufacturerName(Byte(id)), name) << id;

    // The high bit is not masked here: 0xC3 is no alias of Yamaha.
    for (int id : {0x00, 0x0F, 0x19, 0x1A, 0x22, 0x2A, 0x46, 0x7D, 0x80, 0xC3, 0xFF})
        EXPECT_STREQ(GetManufacturerName(Byte(id)), "<unknown>") << id;
}

TEST(MidiVocabularyTest, ExactlyFortyTwoDistinctManufacturers)
{
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
