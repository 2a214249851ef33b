#pragma once

#include <QColor>
#include <QRect>

#include <cstdint>

class QPainter;

namespace tarvix {

class CPianoRollModel;

// Where clocks and pitches land on the screen: the zoom (pixels per beat,
// pixels per semitone) and how far the view is scrolled. Pitch 127 is the
// top row.
struct RollScale {
    double pixelsPerBeat = 48.0;
    int rowHeight = 10;
    int scrollX = 0;
    int scrollY = 0;

    int ClockToX(std::uint32_t clock) const;
    std::uint32_t XToClock(int x) const; // 0 left of the time line
    int PitchToY(int pitch) const;       // top of the pitch's row
    int YToPitch(int y) const;           // clamped to 0..127
    int ContentWidth(std::uint32_t clocks) const;
    int ContentHeight() const { return 128 * rowHeight; }
};

// The drawing of the piano roll, on any paint device, of only the exposed
// rectangle; the window draws with it and so does the drawing benchmark.
// Each returns how many events it drew.
namespace PianoRollPainter {

QColor TrackColour(int track);
// The track's colour, paler for a softer note.
QColor NoteColour(int track, int velocity);

// Pitch rows (the black keys' darker), beat and bar lines, and the notes.
int PaintNotes(QPainter& painter, const CPianoRollModel& model, const RollScale& scale,
               const QRect& exposed);
// Bar numbers and beat ticks; x as in PaintNotes, from `left` on.
void PaintRuler(QPainter& painter, const CPianoRollModel& model, const RollScale& scale,
                const QRect& exposed, int left, int height);
// The keyboard with note names; y as in PaintNotes.
void PaintKeys(QPainter& painter, const RollScale& scale, const QRect& exposed, int width);
// Controller, program, aftertouch, pitch-bend and SysEx events as stems,
// as tall as their value; x as in PaintNotes, from `left` on.
int PaintLane(QPainter& painter, const CPianoRollModel& model, const RollScale& scale,
              const QRect& exposed, int left, int height);

} // namespace PianoRollPainter

} // namespace tarvix
