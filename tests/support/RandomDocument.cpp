#include "support/RandomDocument.h"

#include "model/Mmt8Memory.h"

#include <sstream>

namespace tarvix::testing {

namespace {
int Pick(std::mt19937& random, int lowest, int highest)
{
    return std::uniform_int_distribution<int>(lowest, highest)(random);
}

std::uint8_t Byte(std::mt19937& random, int lowest, int highest)
{
    return static_cast<std::uint8_t>(Pick(random, lowest, highest));
}

std::string RandomName(std::mt19937& random)
{
    static const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 -#";
    std::string name(static_cast<std::size_t>(Pick(random, 0, 18)), ' ');
    for (char& c : name)
        c = letters[static_cast<std::size_t>(Pick(random, 0, int(letters.size()) - 1))];
    if (Pick(random, 0, 2) == 0)
        name += "   "; // trailing spaces are trimmed when set
    return name;
}

std::unique_ptr<CMmt8Event> RandomEvent(std::mt19937& random)
{
    std::unique_ptr<CMmt8Event> event;
    switch (Pick(random, 0, 5)) {
    case 0: {
        auto note = std::make_unique<CMmt8NoteEvent>();
        note->data1 = Byte(random, 0, 127);
        note->data2 = Byte(random, 0, 127);
        note->duration = static_cast<std::uint16_t>(Pick(random, 0, 0xFFFF));
        event = std::move(note);
        break;
    }
    case 1:
        event = std::make_unique<CMmt8ControlEvent>();
        event->data1 = Byte(random, 0, 121);
        event->data2 = Byte(random, 0, 127);
        break;
    case 2:
        event = std::make_unique<CMmt8ProgramEvent>();
        event->data1 = Byte(random, 0, 127);
        break;
    case 3:
        event = std::make_unique<CMmt8AftertouchEvent>();
        event->data1 = Byte(random, 0, 127);
        break;
    case 4: {
        auto bend = std::make_unique<CMmt8PitchBendEvent>();
        bend->value = static_cast<std::uint16_t>(Pick(random, 0, 0xFFFF));
        event = std::move(bend);
        break;
    }
    default:
        event = std::make_unique<CMmt8SysexEvent>();
        event->channel = Byte(random, 0, 127);
        event->data1 = Pick(random, 0, 3) == 0 ? 0x80 : Byte(random, 0, 127);
        event->data2 = Pick(random, 0, 3) == 0 ? 0x80 : Byte(random, 0, 127);
        return event;
    }
    event->channel = Byte(random, 0, 15);
    return event;
}

void FillTrack(CMmt8Track& track, std::mt19937& random, std::uint32_t clocks, int maxEvents)
{
    track.channel = Byte(random, 0, 16);
    const int count = Pick(random, 0, maxEvents);
    std::uint32_t time = 0;
    for (int i = 0; i < count; ++i) {
        // Some events share the time of the one before: those are untimed.
        const bool sameTime = i > 0 && Pick(random, 0, 3) == 0;
        if (!sameTime)
            time = std::min<std::uint32_t>(
                clocks - 1, time + static_cast<std::uint32_t>(Pick(random, i == 0 ? 0 : 1, 200)));
        auto event = RandomEvent(random);
        event->time = static_cast<std::uint16_t>(time);
        const bool timed = i == 0 || time != track.events.back()->time;
        event->timed = timed ? 1 : 0;
        track.events.push_back(std::move(event));
    }
}
} // namespace

void FillRandomDocument(CMmt8Memory& memory, std::mt19937& random,
                        const RandomDocumentOptions& options)
{
    memory.InitMemory();
    const int parts = Pick(random, 0, options.maxParts);
    for (int i = 0; i < parts; ++i) {
        const int part = Pick(random, 0, kPartCount - 1);
        const auto beats = static_cast<std::uint32_t>(Pick(random, 1, int(kMaxBeats)));
        CMmt8Part& target = memory.Part(part);
        target.beats = beats;
        memory.SetPartName(part, RandomName(random));
        for (auto& track : target.tracks)
            FillTrack(track, random, beats * kClocksPerBeat, options.maxEventsPerTrack);
    }
    const int songs = Pick(random, 0, options.maxSongs);
    for (int i = 0; i < songs; ++i) {
        const int song = Pick(random, 0, kSongCount - 1);
        memory.ClearSong(song);
        const int steps = Pick(random, song == kSongCount - 1 ? 0 : 1, options.maxSteps);
        for (int step = 0; step < steps; ++step)
            memory.AppendStep(song, Byte(random, 0, kPartCount - 1), Byte(random, 0, 255));
        memory.SetSongTempo(song, static_cast<std::uint32_t>(Pick(random, 0, 300)));
        memory.SetSongName(song, RandomName(random));
    }
    // Settings bytes of the global block ride along untouched.
    for (std::size_t i = 200; i < 258; ++i)
        memory.globalBlock[i] = Byte(random, 0, 255);
}

namespace {
template <typename... Parts> std::string Describe(const Parts&... parts)
{
    std::ostringstream out;
    (out << ... << parts);
    return out.str();
}
} // namespace

std::string DescribeDifference(const CMmt8Memory& expected, const CMmt8Memory& actual)
{
    for (std::size_t i = 0; i < expected.globalBlock.size(); ++i) {
        const bool pointerTable = i < 200 || (i >= 258 && i < 458);
        if (!pointerTable && expected.globalBlock[i] != actual.globalBlock[i])
            return Describe("global block byte ", i, " differs");
    }
    for (int p = 0; p < kPartCount; ++p) {
        const CMmt8Part& a = expected.Part(p);
        const CMmt8Part& b = actual.Part(p);
        if (a.beats != b.beats || a.name != b.name)
            return Describe("part ", p, ": beats ", a.beats, "/", b.beats, ", name '", a.name,
                            "'/'", b.name, "'");
        for (int t = 0; t < kTracksPerPart; ++t) {
            const CMmt8Track& x = a.tracks[std::size_t(t)];
            const CMmt8Track& y = b.tracks[std::size_t(t)];
            if (x.channel != y.channel || x.events.size() != y.events.size())
                return Describe("part ", p, " track ", t + 1, ": channel ", int(x.channel), "/",
                                int(y.channel), ", events ", x.events.size(), "/", y.events.size());
            for (std::size_t e = 0; e < x.events.size(); ++e) {
                const CMmt8Event& m = *x.events[e];
                const CMmt8Event& n = *y.events[e];
                const auto duration = [](const CMmt8Event& ev) {
                    return ev.GetTypeCode() == kNoteEventType
                               ? static_cast<const CMmt8NoteEvent&>(ev).duration
                               : 0;
                };
                const auto value = [](const CMmt8Event& ev) {
                    return ev.GetTypeCode() == kPitchBendEventType
                               ? static_cast<const CMmt8PitchBendEvent&>(ev).value
                               : 0;
                };
                if (m.GetTypeCode() != n.GetTypeCode() || m.time != n.time || m.timed != n.timed ||
                    m.channel != n.channel || m.data1 != n.data1 || m.data2 != n.data2 ||
                    duration(m) != duration(n) || value(m) != value(n))
                    return Describe("part ", p, " track ", t + 1, " event ", e, " differs (kind ",
                                    m.GetTypeCode(), "/", n.GetTypeCode(), ", time ", m.time, "/",
                                    n.time, ")");
            }
        }
    }
    for (int s = 0; s < kSongCount; ++s) {
        const CMmt8Song& a = expected.Song(s);
        const CMmt8Song& b = actual.Song(s);
        if (a.tempo != b.tempo || a.name != b.name || a.steps != b.steps)
            return Describe("song ", s, ": tempo ", int(a.tempo), "/", int(b.tempo), ", name '",
                            a.name, "'/'", b.name, "', steps ", a.steps.size(), "/",
                            b.steps.size());
    }
    return {};
}

} // namespace tarvix::testing
