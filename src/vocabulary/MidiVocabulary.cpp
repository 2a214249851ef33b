#include "vocabulary/MidiVocabulary.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace tarvix {
namespace {

constexpr std::size_t kTableSize = 128;

// Generated names ("C#-1", "CC#119") are built at compile time into fixed
// slots, so the lookups hand out pointers into read-only data.
struct GeneratedName {
    char text[8]{};
    std::size_t length = 0;

    constexpr void Append(char c) { text[length++] = c; }

    // Single digits are all the note octaves need; three cover every controller.
    constexpr void AppendNumber(int value)
    {
        if (value < 0) {
            Append('-');
            value = -value;
        }
        if (value >= 100)
            Append(static_cast<char>('0' + value / 100));
        if (value >= 10)
            Append(static_cast<char>('0' + value / 10 % 10));
        Append(static_cast<char>('0' + value % 10));
    }

    constexpr void AppendText(const char* source)
    {
        while (*source != '\0')
            Append(*source++);
    }
};

constexpr std::array<GeneratedName, kTableSize> MakeNoteNames()
{
    constexpr const char* pitchClasses[12] = {"C",  "C#", "D",  "D#", "E",  "F",
                                              "F#", "G",  "G#", "A",  "A#", "B"};
    std::array<GeneratedName, kTableSize> names{};
    for (int note = 0; note < static_cast<int>(kTableSize); ++note) {
        GeneratedName& name = names[static_cast<std::size_t>(note)];
        name.AppendText(pitchClasses[note % 12]);
        name.AppendNumber(note / 12 - 2);
    }
    return names;
}

constexpr auto kNoteNames = MakeNoteNames();

constexpr const char* kProgramNames[] = {
    "Acoustic Grand",
    "Bright Acoustic",
    "Electric Grand",
    "Honky-Tonk",
    "Electric Piano 1",
    "Electric Piano 2",
    "Harpsichord",
    "Clav",
    "Celesta",
    "Glockenspiel",
    "Music Box",
    "Vibraphone",
    "Marimba",
    "Xylophone",
    "Tubular Bells",
    "Dulcimer",
    "Drawbar Organ",
    "Percussive Organ",
    "Rock Organ",
    "Church Organ",
    "Reed Organ",
    "Accoridan",
    "Harmonica",
    "Tango Accordian",
    "Acoustic Guitar(nylon)",
    "Acoustic Guitar(steel)",
    "Electric Guitar(jazz)",
    "Electric Guitar(clean)",
    "Electric Guitar(muted)",
    "Overdriven Guitar",
    "Distortion Guitar",
    "Guitar Harmonics",
    "Acoustic Bass",
    "Electric Bass(finger)",
    "Electric Bass(pick)",
    "Fretless Bass",
    "Slap Bass 1",
    "Slap Bass 2",
    "Synth Bass 1",
    "Synth Bass 2",
    "Violin",
    "Viola",
    "Cello",
    "Contrabass",
    "Tremolo Strings",
    "Pizzicato Strings",
    "Orchestral Strings",
    "Timpani",
    "String Ensemble 1",
    "String Ensemble 2",
    "SynthStrings 1",
    "SynthStrings 2",
    "Choir Aahs",
    "Voice Oohs",
    "Synth Voice",
    "Orchestra Hit",
    "Trumpet",
    "Trombone",
    "Tuba",
    "Muted Trumpet",
    "French Horn",
    "Brass Section",
    "SynthBrass 1",
    "SynthBrass 2",
    "Soprano Sax",
    "Alto Sax",
    "Tenor Sax",
    "Baritone Sax",
    "Oboe",
    "English Horn",
    "Bassoon",
    "Clarinet",
    "Piccolo",
    "Flute",
    "Recorder",
    "Pan Flute",
    "Blown Bottle",
    "Skakuhachi",
    "Whistle",
    "Ocarina",
    "Lead 1 (square)",
    "Lead 2 (sawtooth)",
    "Lead 3 (calliope)",
    "Lead 4 (chiff)",
    "Lead 5 (charang)",
    "Lead 6 (voice)",
    "Lead 7 (fifths)",
    "Lead 8 (bass+lead)",
    "Pad 1 (new age)",
    "Pad 2 (warm)",
    "Pad 3 (polysynth)",
    "Pad 4 (choir)",
    "Pad 5 (bowed)",
    "Pad 6 (metallic)",
    "Pad 7 (halo)",
    "Pad 8 (sweep)",
    "FX 1 (rain)",
    "FX 2 (soundtrack)",
    "FX 3 (crystal)",
    "FX 4 (atmosphere)",
    "FX 5 (brightness)",
    "FX 6 (goblins)",
    "FX 7 (echoes)",
    "FX 8 (sci-fi)",
    "Sitar",
    "Banjo",
    "Shamisen",
    "Koto",
    "Kalimba",
    "Bagpipe",
    "Fiddle",
    "Shanai",
    "Tinkle Bell",
    "Agogo",
    "Steel Drums",
    "Woodblock",
    "Taiko Drum",
    "Melodic Tom",
    "Synth Drum",
    "Reverse Cymbal",
    "Guitar Fret Noise",
    "Breath Noise",
    "Seashore",
    "Bird Tweet",
    "Telephone Ring",
    "Helicopter",
    "Applause",
    "Gunshot",
};
static_assert(std::size(kProgramNames) == kTableSize);

struct NumberedName {
    std::uint8_t number;
    const char* name;
};

// Controllers missing here are called "CC#" and their number.
constexpr NumberedName kNamedControllers[] = {
    {0, "Bank Select"},
    {1, "Modulation Wheel"},
    {2, "Breath controller"},
    {4, "Foot Pedal"},
    {5, "Portamento Time"},
    {6, "Data Entry"},
    {7, "Volume"},
    {8, "Balance"},
    {10, "Pan position"},
    {11, "Expression"},
    {12, "Effect Control 1"},
    {13, "Effect Control 2"},
    {16, "General Purpose Slider 1"},
    {17, "General Purpose Slider 2"},
    {18, "General Purpose Slider 3"},
    {19, "General Purpose Slider 4"},
    {32, "Bank Select (fine)"},
    {33, "Modulation Wheel (fine)"},
    {34, "Breath controller (fine)"},
    {36, "Foot Pedal (fine)"},
    {37, "Portamento Time (fine)"},
    {38, "Data Entry (fine)"},
    {39, "Volume (fine)"},
    {40, "Balance (fine)"},
    {42, "Pan position (fine)"},
    {43, "Expression (fine)"},
    {44, "Effect Control 1 (fine)"},
    {45, "Effect Control 2 (fine)"},
    {64, "Hold Pedal (on/off)"},
    {65, "Portamento (on/off)"},
    {66, "Sustenuto Pedal (on/off)"},
    {67, "Soft Pedal (on/off)"},
    {68, "Legato Pedal (on/off)"},
    {69, "Hold 2 Pedal (on/off)"},
    {70, "Sound Variation"},
    {71, "Sound Timbre"},
    {72, "Sound Release Time"},
    {73, "Sound Attack Time"},
    {74, "Sound Brightness"},
    {75, "Sound Control 6"},
    {76, "Sound Control 7"},
    {77, "Sound Control 8"},
    {78, "Sound Control 9"},
    {79, "Sound Control 10"},
    {80, "General Purpose Button 1 (on/off)"},
    {81, "General Purpose Button 2 (on/off)"},
    {82, "General Purpose Button 3 (on/off)"},
    {83, "General Purpose Button 4 (on/off)"},
    {91, "Effects Level"},
    {92, "Tremulo Level"},
    {93, "Chorus Level"},
    {94, "Celeste Level"},
    {95, "Phaser Level"},
    {96, "Data Button increment"},
    {97, "Data Button decrement"},
    {98, "Non-registered Parameter (fine)"},
    {99, "Non-registered Parameter"},
    {100, "Registered Parameter (fine)"},
    {101, "Registered Parameter"},
    {120, "All Sound Off"},
    {121, "All Controllers Off"},
    {122, "Local Keyboard (on/off)"},
    {123, "All Notes Off"},
    {124, "Omni Mode Off"},
    {125, "Omni Mode On"},
    {126, "Mono Operation"},
    {127, "Poly Operation"},
};

constexpr bool IsStrictlyAscending()
{
    for (std::size_t i = 1; i < std::size(kNamedControllers); ++i) {
        if (kNamedControllers[i].number <= kNamedControllers[i - 1].number)
            return false;
    }
    return true;
}
static_assert(IsStrictlyAscending(), "a controller is named twice or out of order");

constexpr std::array<GeneratedName, kTableSize> MakeControllerFillers()
{
    std::array<GeneratedName, kTableSize> names{};
    for (int number = 0; number < static_cast<int>(kTableSize); ++number) {
        GeneratedName& name = names[static_cast<std::size_t>(number)];
        name.AppendText("CC#");
        name.AppendNumber(number);
    }
    return names;
}

constexpr auto kControllerFillers = MakeControllerFillers();

constexpr std::array<const char*, kTableSize> MakeControllerNames()
{
    std::array<const char*, kTableSize> names{};
    for (std::size_t number = 0; number < kTableSize; ++number)
        names[number] = kControllerFillers[number].text;
    for (const NumberedName& named : kNamedControllers)
        names[named.number] = named.name;
    return names;
}

constexpr auto kControllerNames = MakeControllerNames();

constexpr const char* kChannelMessageNames[] = {
    "Note off",       "Note on",    "Poly aftertouch", "Control change",
    "Program change", "Aftertouch", "Pitch bend",      "(unknown)",
};
static_assert(std::size(kChannelMessageNames) == 8);

constexpr int kMaxAccidentals = 7;

// Indexed by the count plus 7: flats first, then C, then sharps.
constexpr const char* kKeySignatureNames[] = {
    "C-Flat", "G-Flat", "D-Flat", "A-Flat", "E-Flat", "B-Flat",  "F",       "C",
    "G",      "D",      "A",      "E",      "B",      "F-Sharp", "C-Sharp",
};
static_assert(std::size(kKeySignatureNames) == 2 * kMaxAccidentals + 1);

// Searched front to back, first match wins; 0x1B standing before 0x15 is the
// table's historical order and is kept as is.
constexpr NumberedName kManufacturers[] = {
    {0x01, "Sequential Circuits"},
    {0x02, "Big Briar"},
    {0x03, "Octave/Plateau"},
    {0x04, "Moog"},
    {0x05, "Passport Designs"},
    {0x06, "Lexicon"},
    {0x07, "Kurzweil"},
    {0x08, "Fender"},
    {0x09, "Gulbransen"},
    {0x0A, "Delta Labs"},
    {0x0B, "Sound Comp."},
    {0x0C, "General Electro"},
    {0x0D, "Techmar"},
    {0x0E, "Matthews Research"},
    {0x10, "Oberheim"},
    {0x11, "PAIA"},
    {0x12, "Simmons"},
    {0x13, "Gentle Electric"},
    {0x14, "Fairlight"},
    {0x1B, "Peavey"},
    {0x15, "JL Cooper"},
    {0x16, "Lowery"},
    {0x17, "Linn"},
    {0x18, "E-Mu"},
    {0x20, "Bon Tempi"},
    {0x21, "S.I.E.L."},
    {0x23, "SyntheAxe"},
    {0x24, "Hohner"},
    {0x25, "Crumar"},
    {0x26, "Solton"},
    {0x27, "Jellinghaus Ms"},
    {0x28, "CTS"},
    {0x29, "PPG"},
    {0x2F, "Elka"},
    {0x40, "Kawai"},
    {0x41, "Roland"},
    {0x42, "Korg"},
    {0x43, "Yamaha"},
    {0x44, "Casio"},
    {0x45, "Akai"},
    {0x7E, "Non RealTime"},
    {0x7F, "RealTime"},
};
static_assert(std::size(kManufacturers) == 42);

constexpr std::size_t LowSevenBits(std::uint8_t value)
{
    return static_cast<std::size_t>(value & 0x7F);
}

} // namespace

const char* GetNoteName(std::uint8_t note)
{
    return kNoteNames[LowSevenBits(note)].text;
}

const char* GetProgramName(std::uint8_t program)
{
    return kProgramNames[LowSevenBits(program)];
}

const char* GetControllerName(std::uint8_t controller)
{
    return kControllerNames[LowSevenBits(controller)];
}

const char* GetChannelMessageName(std::uint8_t status)
{
    return kChannelMessageNames[(status >> 4) & 7];
}

const char* GetKeySignatureName(int sharpsOrFlats)
{
    if (sharpsOrFlats < -kMaxAccidentals || sharpsOrFlats > kMaxAccidentals)
        return "<invalid>";
    return kKeySignatureNames[sharpsOrFlats + kMaxAccidentals];
}

const char* GetModeName(std::uint8_t mode)
{
    return mode == 0 ? "major" : "minor";
}

const char* GetManufacturerName(std::uint8_t id)
{
    for (const NumberedName& manufacturer : kManufacturers) {
        if (manufacturer.number == id)
            return manufacturer.name;
    }
    return "<unknown>";
}

} // namespace tarvix
