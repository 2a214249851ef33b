#pragma once

#include "ui/views/PianoRollModel.h"
#include "ui/views/PianoRollPainter.h"

#include <QAbstractScrollArea>

namespace tarvix {

class CRollStrip;

// The piano roll's scrolling area: notes in the middle, the bar ruler above,
// the keyboard on the left, the controller lane below. Scrolling moves the
// pixels already drawn and draws only the strip that came into view.
//
// Keys: arrows scroll, Page Up/Down scroll a page of pitches, Home and End
// go to the start and the end of the part, + and - zoom the time line,
// Ctrl with + and - zooms the pitches, 0 fits the part to the window. With
// the mouse: the wheel scrolls the pitches, Shift and the wheel the time
// line, Ctrl and the wheel zooms the time line around the pointer.
class CPianoRollView : public QAbstractScrollArea {
    Q_OBJECT
public:
    explicit CPianoRollView(QWidget* parent = nullptr);

    CPianoRollModel& Model() { return m_model; }
    const RollScale& Scale() const { return m_scale; }

    // The model changed: ranges, and everything drawn again.
    void ModelChanged();
    // Pixels per beat, kept between the limits; the clock at anchorX (in
    // the notes' coordinates) stays where it is.
    void ZoomTime(double factor, int anchorX);
    void ZoomPitch(int rowHeight);
    void FitToWindow();
    // Scrolls so the pitch is in the middle of the view.
    void CentrePitch(int pitch);

    // What the tooltip at a point of the notes or the lane says; empty over
    // nothing. The part is the one the model was built from.
    void SetPart(const CMmt8Part* part) { m_part = part; }
    QString NoteToolTipAt(QPoint viewportPos) const;
    QString LaneToolTipAt(QPoint lanePos) const;

    // Notes drawn by the last paint of the notes, for tests and the status line.
    int LastDrawnNotes() const { return m_lastDrawn; }
    QWidget* Ruler() const;
    QWidget* Keys() const;
    QWidget* Lane() const;
    int KeysWidth() const { return m_keysWidth; }

signals:
    void zoomChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    friend class CRollStrip;
    void UpdateScrollBars();
    void PlaceStrips();
    void SyncScale();
    // While alive, scroll bar moves redraw everything instead of scrolling
    // pixels (the scroll area still learns every offset).
    struct RedrawAll {
        explicit RedrawAll(CPianoRollView& view) : m_view(view) { ++m_view.m_redrawAll; }
        ~RedrawAll() { --m_view.m_redrawAll; }
        RedrawAll(const RedrawAll&) = delete;
        RedrawAll& operator=(const RedrawAll&) = delete;
        CPianoRollView& m_view;
    };

    CPianoRollModel m_model;
    RollScale m_scale;
    const CMmt8Part* m_part = nullptr;
    CRollStrip* m_ruler;
    CRollStrip* m_keys;
    CRollStrip* m_lane;
    int m_keysWidth = 48;
    int m_rulerHeight = 22;
    int m_laneHeight = 64;
    int m_lastDrawn = 0;
    int m_redrawAll = 0;
};

} // namespace tarvix
