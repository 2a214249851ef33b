#include "ui/views/PianoRollPainter.h"

#include "model/Mmt8Limits.h"
#include "ui/views/PianoRollModel.h"
#include "ui/views/TimeLine.h"
#include "vocabulary/MidiVocabulary.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace tarvix {

int RollScale::ClockToX(std::uint32_t clock) const
{
    return static_cast<int>(std::floor(clock * pixelsPerBeat / kClocksPerBeat)) - scrollX;
}

std::uint32_t RollScale::XToClock(int x) const
{
    const double clock = (x + scrollX) * double{kClocksPerBeat} / pixelsPerBeat;
    return clock <= 0 ? 0 : static_cast<std::uint32_t>(clock);
}

int RollScale::PitchToY(int pitch) const
{
    return (127 - pitch) * rowHeight - scrollY;
}

int RollScale::YToPitch(int y) const
{
    const int row = (y + scrollY) / std::max(1, rowHeight);
    return std::clamp(127 - row, 0, 127);
}

int RollScale::ContentWidth(std::uint32_t clocks) const
{
    return static_cast<int>(std::ceil(clocks * pixelsPerBeat / kClocksPerBeat));
}

namespace PianoRollPainter {

namespace {
// Eight hues far apart, as a legend tells them apart.
constexpr std::array<QRgb, kTracksPerPart> kTrackColours = {
    0xFFD62728, 0xFF1F77B4, 0xFF2CA02C, 0xFFFF7F0E, 0xFF9467BD, 0xFF17BECF, 0xFFE377C2, 0xFF8C564B};

const QColor kRowWhite(0xF4, 0xF4, 0xF4);
const QColor kRowBlack(0xE2, 0xE2, 0xE6);
const QColor kBeatLine(0xD0, 0xD0, 0xD0);
const QColor kBarLine(0x90, 0x90, 0x98);
const QColor kOctaveLine(0xC4, 0xC4, 0xCC);
const QColor kPastEnd(0xC8, 0xC8, 0xC8);

bool IsBlackKey(int pitch)
{
    switch (pitch % 12) {
    case 1:
    case 3:
    case 6:
    case 8:
    case 10: return true;
    default: return false;
    }
}

// Shades made once: 8 tracks by 128 velocities.
const std::array<std::array<QColor, 128>, kTracksPerPart>& ShadeTable()
{
    static const auto table = [] {
        std::array<std::array<QColor, 128>, kTracksPerPart> shades;
        for (int track = 0; track < kTracksPerPart; ++track) {
            const QColor full = QColor::fromRgb(kTrackColours[static_cast<std::size_t>(track)]);
            for (int velocity = 0; velocity < 128; ++velocity) {
                // Velocity 127 is the full colour; a soft note fades to a
                // quarter of it over white.
                const double weight = 0.25 + 0.75 * velocity / 127.0;
                auto mix = [weight](int channel) {
                    return static_cast<int>(std::lround(255 - (255 - channel) * weight));
                };
                shades[static_cast<std::size_t>(track)][static_cast<std::size_t>(velocity)] =
                    QColor(mix(full.red()), mix(full.green()), mix(full.blue()));
            }
        }
        return shades;
    }();
    return table;
}

// The beats between lines at this zoom: every beat, or only bars, or
// every few bars, so lines stay at least a few pixels apart.
std::uint32_t BeatStep(double pixelsPerBeat)
{
    std::uint32_t step = 1;
    while (step * pixelsPerBeat < 6.0 && step < 1u << 16)
        step = step < kBeatsPerBar ? kBeatsPerBar : step * 2;
    return step;
}

// Calls line(beat, x) for each line's beat in [first, last] clocks' range.
template <typename Line>
void ForEachBeatLine(const RollScale& scale, int left, int right, std::uint32_t endClock, Line line)
{
    const std::uint32_t step = BeatStep(scale.pixelsPerBeat);
    const std::uint32_t firstBeat = scale.XToClock(left) / kClocksPerBeat / step * step;
    for (std::uint32_t beat = firstBeat; beat * kClocksPerBeat <= endClock; beat += step) {
        const int x = scale.ClockToX(beat * kClocksPerBeat);
        if (x > right)
            break;
        line(beat, x);
    }
}
} // namespace

QColor TrackColour(int track)
{
    return QColor::fromRgb(kTrackColours[static_cast<std::size_t>(std::clamp(track, 0, 7))]);
}

QColor NoteColour(int track, int velocity)
{
    return ShadeTable()[static_cast<std::size_t>(std::clamp(track, 0, 7))]
                       [static_cast<std::size_t>(std::clamp(velocity, 0, 127))];
}

int PaintNotes(QPainter& painter, const CPianoRollModel& model, const RollScale& scale,
               const QRect& exposed)
{
    const int top = scale.YToPitch(exposed.bottom());
    const int high = scale.YToPitch(exposed.top());
    const int endX = scale.ClockToX(model.LengthClocks());

    for (int pitch = top; pitch <= high; ++pitch) {
        const int y = scale.PitchToY(pitch);
        painter.fillRect(QRect(exposed.left(), y, exposed.width(), scale.rowHeight),
                         IsBlackKey(pitch) ? kRowBlack : kRowWhite);
        if (pitch % 12 == 0)
            painter.fillRect(QRect(exposed.left(), y + scale.rowHeight - 1, exposed.width(), 1),
                             kOctaveLine);
    }
    if (endX <= exposed.right())
        painter.fillRect(
            QRect(QPoint(std::max(endX, exposed.left()), exposed.top()), exposed.bottomRight()),
            kPastEnd);
    ForEachBeatLine(scale, exposed.left(), exposed.right(), model.LengthClocks(),
                    [&](std::uint32_t beat, int x) {
                        painter.fillRect(QRect(x, exposed.top(), 1, exposed.height()),
                                         beat % kBeatsPerBar == 0 ? kBarLine : kBeatLine);
                    });

    const std::uint32_t from = scale.XToClock(exposed.left());
    const std::uint32_t to = scale.XToClock(exposed.right() + 1) + 1;
    const int inset = scale.rowHeight > 4 ? 1 : 0;
    return model.ForEachNoteIn(from, to, top, high, [&](const CPianoRollModel::Note& note) {
        const int x = scale.ClockToX(note.start);
        const int width = std::max(2, scale.ClockToX(note.end) - x);
        const int y = scale.PitchToY(note.pitch) + inset;
        const int height = std::max(1, scale.rowHeight - 2 * inset);
        painter.fillRect(QRect(x, y, width, height), NoteColour(note.track, note.velocity));
        // A darker start marks where one note ends and the next begins.
        painter.fillRect(QRect(x, y, 1, height), TrackColour(note.track).darker(150));
    });
}

void PaintRuler(QPainter& painter, const CPianoRollModel& model, const RollScale& scale,
                const QRect& exposed, int left, int height)
{
    painter.fillRect(exposed, QColor(0xEC, 0xEC, 0xEC));
    painter.setPen(QColor(0x40, 0x40, 0x40));
    const int labelWidth = painter.fontMetrics().horizontalAdvance(QStringLiteral("000")) + 4;
    // Every bar, or every second, fourth... so numbers never touch; the
    // choice depends on the zoom alone, so strips drawn apart agree.
    std::uint32_t labelEvery = 1;
    while (labelEvery * kBeatsPerBar * scale.pixelsPerBeat < labelWidth && labelEvery < 1u << 12)
        labelEvery *= 2;
    // Lines are found in view coordinates, drawn shifted by left.
    ForEachBeatLine(scale, exposed.left() - left - labelWidth, exposed.right() - left,
                    model.LengthClocks(), [&](std::uint32_t beat, int x) {
                        const bool bar = beat % kBeatsPerBar == 0;
                        const int at = x + left;
                        painter.drawLine(at, bar ? 0 : height * 2 / 3, at, height);
                        if (bar && (beat / kBeatsPerBar) % labelEvery == 0)
                            painter.drawText(QRect(at + 2, 0, labelWidth, height * 2 / 3 + 2),
                                             Qt::AlignLeft | Qt::AlignVCenter,
                                             QString::number(beat / kBeatsPerBar + 1));
                    });
    painter.drawLine(exposed.left(), height - 1, exposed.right(), height - 1);
}

void PaintKeys(QPainter& painter, const RollScale& scale, const QRect& exposed, int width)
{
    const int low = scale.YToPitch(exposed.bottom());
    const int high = scale.YToPitch(exposed.top());
    const bool everyName = scale.rowHeight >= painter.fontMetrics().height();
    for (int pitch = low; pitch <= high; ++pitch) {
        const QRect row(0, scale.PitchToY(pitch), width, scale.rowHeight);
        painter.fillRect(row,
                         IsBlackKey(pitch) ? QColor(0x30, 0x30, 0x30) : QColor(0xFF, 0xFF, 0xFF));
        painter.fillRect(QRect(row.left(), row.bottom(), width, 1), QColor(0xB0, 0xB0, 0xB0));
    }
    // The names over the keys, once all keys are drawn: a C's name may
    // stand taller than its row.
    const int labelLow = std::max(0, low - 2);
    for (int pitch = labelLow; pitch <= high; ++pitch) {
        const QRect row(0, scale.PitchToY(pitch), width, scale.rowHeight);
        const bool black = IsBlackKey(pitch);
        if (everyName || pitch % 12 == 0) {
            painter.setPen(black ? QColor(0xF0, 0xF0, 0xF0) : QColor(0x20, 0x20, 0x20));
            const int textHeight = painter.fontMetrics().height();
            const QRect text = everyName
                                   ? row.adjusted(4, 0, -2, 0)
                                   : QRect(4, row.bottom() + 1 - textHeight, width - 6, textHeight);
            if (!everyName)
                painter.fillRect(text.adjusted(-2, 0, 0, 0), QColor(0xFF, 0xFF, 0xFF, 220));
            painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                             QString::fromLatin1(GetNoteName(static_cast<std::uint8_t>(pitch))));
        }
    }
    painter.fillRect(QRect(width - 1, exposed.top(), 1, exposed.height()),
                     QColor(0x80, 0x80, 0x80));
}

int PaintLane(QPainter& painter, const CPianoRollModel& model, const RollScale& scale,
              const QRect& exposed, int left, int height)
{
    painter.fillRect(exposed, QColor(0xF8, 0xF8, 0xF8));
    const int baseline = height - 3;
    const int tallest = std::max(4, height - 8);
    painter.fillRect(QRect(exposed.left(), baseline, exposed.width(), 1), QColor(0xB0, 0xB0, 0xB0));
    const std::uint32_t from = scale.XToClock(std::max(0, exposed.left() - left - 3));
    const std::uint32_t to = scale.XToClock(exposed.right() - left + 3) + 1;
    return model.ForEachLaneEventIn(from, to, [&](const CPianoRollModel::LaneEvent& event) {
        const int x = scale.ClockToX(event.time) + left;
        const int stem = std::max(2, event.height * tallest / 127);
        const QColor colour = TrackColour(event.track);
        painter.fillRect(QRect(x, baseline - stem, 2, stem), colour);
        painter.fillRect(QRect(x - 1, baseline - stem - 1, 4, 3), colour.darker(130));
    });
}

} // namespace PianoRollPainter

} // namespace tarvix
