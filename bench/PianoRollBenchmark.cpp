// How long the piano roll takes to draw a busy part: painted into an image
// offscreen, exactly as the window paints its notes, ruler, keys and lane.
#include "model/Mmt8Part.h"
#include "ui/views/PianoRollModel.h"
#include "ui/views/PianoRollPainter.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cstdlib>
#include <random>

namespace tarvix {
namespace {

constexpr int kEvents = 10000;
constexpr int kWidth = 1280; // the notes' area of a large window
constexpr int kHeight = 720;
constexpr int kLane = 64;
constexpr int kKeys = 48;

// 10,000 events over the part's 8 tracks and its longest length: chords,
// drum hits and lines of notes, with a controller or bend every eighth event.
const CMmt8Part& BusyPart()
{
    static const CMmt8Part part = [] {
        CMmt8Part busy;
        busy.beats = kMaxBeats;
        std::mt19937 generator(1234);
        const auto random = [&generator](std::uint32_t below) {
            return static_cast<std::uint32_t>(generator() % below);
        };
        const std::uint32_t perTrack = kEvents / kTracksPerPart;
        for (int track = 0; track < kTracksPerPart; ++track) {
            auto& events = busy.tracks[static_cast<std::size_t>(track)].events;
            std::uint32_t time = 0;
            for (std::uint32_t i = 0; i < perTrack; ++i) {
                time += random(3) == 0 ? 0 : 24 + random(48);
                time = std::min<std::uint32_t>(time, kMaxBeats * kClocksPerBeat - 1);
                std::unique_ptr<CMmt8Event> event;
                if (i % 8 == 7) {
                    auto control = std::make_unique<CMmt8ControlEvent>();
                    control->data1 = 1;
                    control->data2 = static_cast<std::uint8_t>(random(128));
                    event = std::move(control);
                } else {
                    auto note = std::make_unique<CMmt8NoteEvent>();
                    note->data1 = static_cast<std::uint8_t>(
                        36 + static_cast<std::uint32_t>(track) * 6 + random(24));
                    note->data2 = static_cast<std::uint8_t>(30 + random(98));
                    note->duration = static_cast<std::uint16_t>(12 + random(180));
                    event = std::move(note);
                }
                event->time = static_cast<std::uint16_t>(time);
                event->timed = events.empty() || events.back()->time != time;
                events.push_back(std::move(event));
            }
        }
        return busy;
    }();
    return part;
}

const CPianoRollModel& BusyModel()
{
    static const CPianoRollModel model = [] {
        CPianoRollModel built;
        built.Rebuild(BusyPart());
        return built;
    }();
    return model;
}

// The whole part in view, as the window first shows it: every note drawn.
RollScale FittedScale(const CPianoRollModel& model)
{
    RollScale scale;
    scale.pixelsPerBeat = static_cast<double>(kWidth) * kClocksPerBeat / model.LengthClocks();
    scale.rowHeight = 8;
    scale.scrollY = scale.PitchToY(model.HighestPitch() + 2);
    return scale;
}

void PaintAll(QImage& notes, QImage& lane, QImage& keys, QImage& ruler,
              const CPianoRollModel& model, const RollScale& scale, benchmark::State& state)
{
    int drawn = 0;
    {
        QPainter painter(&notes);
        drawn = PianoRollPainter::PaintNotes(painter, model, scale, notes.rect());
    }
    {
        QPainter painter(&lane);
        PianoRollPainter::PaintLane(painter, model, scale, lane.rect(), kKeys, kLane);
    }
    {
        QPainter painter(&keys);
        PianoRollPainter::PaintKeys(painter, scale, keys.rect(), kKeys);
    }
    {
        QPainter painter(&ruler);
        PianoRollPainter::PaintRuler(painter, model, scale, ruler.rect(), kKeys, 22);
    }
    state.counters["notes_drawn"] = drawn;
}

// A full frame of the whole part: the worst a repaint ever does.
void BM_PaintWholePart(benchmark::State& state)
{
    const CPianoRollModel& model = BusyModel();
    const RollScale scale = FittedScale(model);
    QImage notes(kWidth, kHeight, QImage::Format_ARGB32_Premultiplied);
    QImage lane(kWidth + kKeys, kLane, QImage::Format_ARGB32_Premultiplied);
    QImage keys(kKeys, kHeight, QImage::Format_ARGB32_Premultiplied);
    QImage ruler(kWidth + kKeys, 22, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state)
        PaintAll(notes, lane, keys, ruler, model, scale, state);
    state.counters["events"] = kEvents;
    state.counters["notes"] = static_cast<double>(model.Notes().size());
}
BENCHMARK(BM_PaintWholePart)->Unit(benchmark::kMillisecond);

// Zoomed in to two bars, in the middle of the part.
void BM_PaintZoomedIn(benchmark::State& state)
{
    const CPianoRollModel& model = BusyModel();
    RollScale scale;
    scale.pixelsPerBeat = kWidth / 8.0;
    scale.rowHeight = 12;
    scale.scrollX = scale.ClockToX(model.LengthClocks() / 2);
    scale.scrollY = scale.PitchToY(90);
    QImage notes(kWidth, kHeight, QImage::Format_ARGB32_Premultiplied);
    QImage lane(kWidth + kKeys, kLane, QImage::Format_ARGB32_Premultiplied);
    QImage keys(kKeys, kHeight, QImage::Format_ARGB32_Premultiplied);
    QImage ruler(kWidth + kKeys, 22, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state)
        PaintAll(notes, lane, keys, ruler, model, scale, state);
}
BENCHMARK(BM_PaintZoomedIn)->Unit(benchmark::kMillisecond);

// One step of scrolling at that zoom: only the strip that came into view.
void BM_PaintScrollStrip(benchmark::State& state)
{
    const CPianoRollModel& model = BusyModel();
    RollScale scale;
    scale.pixelsPerBeat = kWidth / 8.0;
    scale.rowHeight = 12;
    scale.scrollX = scale.ClockToX(model.LengthClocks() / 2);
    scale.scrollY = scale.PitchToY(90);
    QImage notes(kWidth, kHeight, QImage::Format_ARGB32_Premultiplied);
    const QRect strip(kWidth - static_cast<int>(scale.pixelsPerBeat), 0,
                      static_cast<int>(scale.pixelsPerBeat), kHeight);
    for (auto _ : state) {
        QPainter painter(&notes);
        benchmark::DoNotOptimize(PianoRollPainter::PaintNotes(painter, model, scale, strip));
    }
}
BENCHMARK(BM_PaintScrollStrip)->Unit(benchmark::kMicrosecond);

// What an edit costs before the redraw: the notes taken from the part again.
void BM_RebuildModel(benchmark::State& state)
{
    CPianoRollModel model;
    for (auto _ : state) {
        model.Rebuild(BusyPart());
        benchmark::DoNotOptimize(model.Notes().data());
    }
}
BENCHMARK(BM_RebuildModel)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tarvix

int main(int argc, char** argv)
{
    // Fonts need a GUI application; no window is ever shown.
    if (std::getenv("QT_QPA_PLATFORM") == nullptr)
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
