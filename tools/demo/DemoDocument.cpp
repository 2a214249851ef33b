#include "demo/DemoDocument.h"

#include "model/Mmt8Memory.h"

namespace tarvix::demo {

namespace {
constexpr std::uint16_t kEighth = kClocksPerBeat / 2;

// Appends events in time order, marking each one that starts a new time.
class TrackWriter {
public:
    explicit TrackWriter(CMmt8Track& track) : m_track(track) {}

    template <typename Event>
    Event& Add(std::uint32_t time, std::uint8_t channel, std::uint8_t data1, std::uint8_t data2)
    {
        auto event = std::make_unique<Event>();
        event->time = static_cast<std::uint16_t>(time);
        event->timed = m_track.events.empty() || m_track.events.back()->time != time ? 1 : 0;
        event->channel = channel;
        event->data1 = data1;
        event->data2 = data2;
        Event& added = *event;
        AppendEvent(m_track, std::move(event));
        return added;
    }

    void Note(std::uint32_t time, std::uint8_t channel, std::uint8_t note, std::uint8_t velocity,
              std::uint16_t duration)
    {
        Add<CMmt8NoteEvent>(time, channel, note, velocity).duration = duration;
    }

private:
    CMmt8Track& m_track;
};

void Drums(CMmt8Memory& memory, int part)
{
    memory.SetPartName(part, "DRUMS 4/4");
    memory.SetTrackChannel(part, 0, 10);
    TrackWriter drums(memory.Part(part).tracks[0]);
    for (std::uint32_t eighth = 0; eighth < 8; ++eighth) {
        const std::uint32_t time = eighth * kEighth;
        if (eighth % 4 == 0)
            drums.Note(time, 9, 36, 112, 24); // kick
        if (eighth % 4 == 2)
            drums.Note(time, 9, 38, 100, 24); // snare
        drums.Note(time, 9, 42, eighth % 2 ? 64 : 90, 12);
    }
    memory.SetPartBeats(part, 4);
}

void Bass(CMmt8Memory& memory, int part)
{
    memory.SetPartName(part, "BASS LINE");
    memory.SetTrackChannel(part, 1, 2);
    TrackWriter bass(memory.Part(part).tracks[1]);
    bass.Add<CMmt8ProgramEvent>(0, 1, 33, 0);
    bass.Add<CMmt8ControlEvent>(0, 1, 7, 100);
    const std::uint8_t line[] = {40, 40, 43, 45, 40, 47, 45, 43};
    for (std::uint32_t i = 0; i < 8; ++i)
        bass.Note(i * kEighth, 1, line[i], 96, kEighth - 6);
    memory.SetPartBeats(part, 4);
}

void Chords(CMmt8Memory& memory, int part)
{
    memory.SetPartName(part, "CHORDS");
    TrackWriter keys(memory.Part(part).tracks[2]);
    keys.Add<CMmt8ProgramEvent>(0, 2, 4, 0);
    const std::uint8_t chords[2][3] = {{52, 55, 59}, {50, 54, 57}};
    for (std::uint32_t bar = 0; bar < 2; ++bar)
        for (const std::uint8_t note : chords[bar])
            keys.Note(bar * 4 * kClocksPerBeat, 2, note, 80, 4 * kClocksPerBeat - 8);
    keys.Add<CMmt8ControlEvent>(4 * kClocksPerBeat, 2, 64, 127);
    keys.Add<CMmt8ControlEvent>(8 * kClocksPerBeat - 4, 2, 64, 0);
    memory.SetPartBeats(part, 8);
}

void Fill(CMmt8Memory& memory, int part)
{
    memory.SetPartName(part, "FILL + FX");
    memory.SetTrackChannel(part, 3, 5);
    TrackWriter fx(memory.Part(part).tracks[3]);
    // A GM reset, F0 7E 7F 09 01 F7, stored without F0/F7 in 3-byte pieces.
    fx.Add<CMmt8SysexEvent>(0, 0x7E, 0x7F, 0x09);
    fx.Add<CMmt8SysexEvent>(0, 0x01, kSysexFiller, kSysexFiller);
    for (std::uint16_t step = 0; step <= 8; ++step)
        fx.Add<CMmt8PitchBendEvent>(kClocksPerBeat + step * 12u, 4, 0, 0).value =
            static_cast<std::uint16_t>(0x4000 + step * 0x0400 - (step == 8 ? 1 : 0));
    fx.Add<CMmt8AftertouchEvent>(2 * kClocksPerBeat, 4, 90, 0);
    fx.Note(2 * kClocksPerBeat, 4, 72, 127, kClocksPerBeat);
    memory.SetPartBeats(part, 4);
}

void Song(CMmt8Memory& memory, int song, const char* name, std::uint32_t tempo,
          std::initializer_list<Mmt8Step> steps)
{
    memory.SetSongName(song, name);
    memory.SetSongTempo(song, tempo);
    for (const Mmt8Step step : steps)
        memory.AppendStep(song, step.part, step.trackMask);
}
} // namespace

void BuildDemoDocument(CMmt8Memory& memory)
{
    memory.InitMemory();
    Drums(memory, 0);
    Bass(memory, 1);
    Chords(memory, 2);
    Fill(memory, 3);
    // A step's mask picks the tracks that play: 0x03 is tracks 1 and 2.
    Song(memory, 0, "DEMO SONG", 110,
         {{0, 0xFF}, {0, 0xFF}, {1, 0x03}, {1, 0xFF}, {2, 0xFF}, {3, 0x0F}});
    Song(memory, 1, "JAM", 128, {{0, 0xFF}, {1, 0xFF}, {2, 0x04}, {2, 0xFF}});
}

} // namespace tarvix::demo
